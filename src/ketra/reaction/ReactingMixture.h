#pragma once

#include <ketra/export.h>
#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/reaction/Product.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/util/Lent.h>

#include <memory>
#include <string>
#include <vector>

namespace thermo {
class Propellant;
}

namespace reaction {

namespace detail {
class ElementPotentials;
class Iteration;
class Persistence;
struct SolvedState;
} // namespace detail

/// What an equilibrium calculation works on: the initial mixture, its elements and their balance,
/// every product that could form, and the list of products that react at present, all gases first.
///
/// Amounts are moles per mole of initial mixture. Which condensed phases belong to the present list
/// changes during a solution; `checkNewCondesedPhases` and `checkPresentCondesedPhases` decide it.
/// An object belongs to one thread at a time. A copy shares the elements and their balance with its
/// source, read-only, so the source must outlive it.
class KETRA_API ReactingMixture
{
public:
    /// Products of a propellant: with condensed phases, without ions. The propellant stays the
    /// caller's. \throws thermo::Exception as `Propellant::getMixture`.
    explicit ReactingMixture(thermo::Propellant& propellant);
    ReactingMixture(thermo::Propellant& propellant, bool multiphase, bool ions);
    /// Products of a mixture, which is copied.
    explicit ReactingMixture(thermo::Mixture& mixture);
    ReactingMixture(thermo::Mixture& mixture, bool multiphase, bool ions);
    /// An independent working copy, with the same phase pairs and present amounts. The lists of
    /// included and omitted species are not taken over.
    /// \param condensed  whether the condensed entries of the present list are taken over
    /// \param ions       whether the ions of the present list are taken over
    ReactingMixture(const ReactingMixture& other, bool condensed = true, bool ions = true);
    /// The same copy, and the lists of included and omitted species.
    ReactingMixture& operator=(const ReactingMixture& other);
    virtual ~ReactingMixture();

    /// Number of entries of the present list.
    unsigned int size() const { return count; }
    /// Number of gases among them: the entries from here on are condensed.
    unsigned int gasSize() const { return gasCount; }
    /// Number of elements.
    unsigned int elSize() const { return static_cast<unsigned int>(balance->elements.size()); }
    /// Element of row \p i of the balance; not checked.
    const thermo::ChemicalElement* element(unsigned int i) const
    {
        return balance->elements[i].get();
    }
    /// Mass of element \p i in one mole of initial mixture, g.
    double b(unsigned int i) const { return balance->b->at(i); }
    /// Atoms of element \p i in entry \p j of the present list.
    double a(unsigned int i, unsigned int j) const { return (*reacting)[j]->a(i); }
    /// Amount of entry \p i, its logarithm, and the entry itself; not checked.
    double n(unsigned int i) const { return (*reacting)[i]->n(); }
    double ln_n(unsigned int i) const { return (*reacting)[i]->ln_n(); }
    Product* product(unsigned int i) const { return (*reacting)[i]; }

    /// Amount of all products, and of the gases, mol per mole of initial mixture.
    double getN() const;
    double getResultingMixtureQuantaty() const { return getN(); }
    double getNg() const;
    double getResultingGasMixtureQuantaty() const { return getNg(); }

    /// Enthalpy of the products, J per mole of products and J/kg.
    double getH() const;
    double getHspec();
    /// Entropy of the products at \p p, Pa; J/(mol K) of products and J/(kg K).
    double getS(double p) const;
    double getSspec(double p);
    /// Brings all entries to \p T, K; returns the enthalpy, J/mol.
    double setT(double T);
    /// The same; with \p clamp each entry gets T moved into its own range.
    double setT(double T, bool clamp);
    /// Searches the temperature at which the products, unchanged, have the enthalpy \p H, J/mol,
    /// and brings them to it. \returns the temperature, K.
    double setH(double H);

    /// Some entry of the present list is the species \p product.
    bool contains(Product* product) const;
    /// New copy of the initial mixture, the caller's.
    thermo::Mixture* copyInitialMixture() const;
    /// The products as a mole-based mixture, transition products as their real phases; the
    /// caller's. Its entries point to products of this object.
    thermo::Mixture* copyResultingMixture();
    /// The condensed products; of a transition product the low or high phase, and nothing for a
    /// blend. The vector is the caller's, the species are not.
    std::vector<const thermo::Species*>* copyAllCondensedSpecies();

    bool isMultiphase() const { return multiphase; }
    bool isIons() const { return ions; }
    /// Sets the flag and rebuilds nothing.
    void setIons(bool newIons) { ions = newIons; }
    /// Drops all ions and builds the products anew; earlier product pointers are invalid then.
    void removeIons();
    /// Adds to the species that may, or may not, be products, and builds the products anew. An
    /// empty list adds nothing.
    void setSpecies(std::vector<std::string>& included, std::vector<std::string>& omitted);

    /// Sorts the present list: gases, then condensed entries, by name. The argument has no effect.
    void sortProducts(bool);
    /// Makes the present list all gases (without ions unless they are considered).
    void reset();
    /// Brings all entries to \p T, K; entries that have left their range, or have a negative amount
    /// while a flag asks for it, leave the list or give way to another phase of their formula.
    /// \param tolerance  K by which a range may be exceeded
    /// \returns true if the list changed
    bool checkPresentCondesedPhases(double T, bool removeNegative, bool removeNegativeToo,
                                    double tolerance);
    /// Lets the condensed phase enter whose appearance lowers the Gibbs energy most, if there is
    /// one. \param x       element multipliers from index \p offset on, or null for plain Gibbs
    /// energies \returns true if a phase has entered
    bool checkNewCondesedPhases(double T, math::matrix::ColumnVector* x, int offset);

    /// Merges condensed entries of one formula into quasi-products, which the derivatives of an
    /// equilibrium need. \returns the sum of the amounts of the first phases of all groups, mol.
    double mergeCondensedPhases();

protected:
    using Products = std::vector<Product*>;
    using Elements = std::vector<std::unique_ptr<thermo::ChemicalElement>>;

    /// Builds elements, products and balance from the initial mixture.
    void init();
    /// The elements in the order of their first appearance, the electron first with ions.
    Elements findRelevantElements() const;
    /// Appends the gases, or the condensed products with their transitions, to \p list; a null list
    /// becomes a new one, the caller's. The products themselves belong to this object.
    Products* findRelevantProducts(Products* list, bool condensed, bool withIons);
    /// Joins pairs of condensed phases of one formula in \p list into transition products.
    void createTransitProducts(Products* list);
    /// Mass of each element in one mole of \p initial, g; raises the tolerance of the balance. The
    /// caller's.
    math::matrix::ColumnVector* materialBalance(thermo::Mixture* initial);
    /// Atoms of each element in one formula of \p species; the caller's.
    math::matrix::ColumnVector* MaterialBalanceCoefficients(const thermo::Species* species) const;
    /// Lets a product enter the present list. \throws thermo::Exception 4 if it is not one of ours.
    void addProduct(Product* product);
    static bool containsElement(const Elements& list, const thermo::ChemicalElement* element);
    static bool containsProduct(const Products* list, const thermo::Species* species);
    /// Index of the first entry that is the same species, else -1.
    static int getIndexOf(const Products* list, const Product* product);

private:
    friend class Equilibrium;
    friend class detail::ElementPotentials;
    friend class detail::Iteration;
    friend class detail::Persistence;
    friend struct detail::SolvedState;

    /// The elements and their amounts in the initial mixture: what a copy shares with its source.
    struct Balance {
        Elements elements;
        std::unique_ptr<math::matrix::ColumnVector> b; // g per mole of initial mixture
    };
    Product* own(std::unique_ptr<Product> product);
    std::unique_ptr<Product> disown(Product* product);
    void addTransition(Products* list, Product* lower, Product* upper, double minT, double maxT);
    void copyProducts(const ReactingMixture& other);
    void copyReacting(const ReactingMixture& other, bool condensed, bool withIons);
    bool replaceOrMerge(std::size_t index, double T, bool atEdge, double tolerance);
    void addEdgePhase(Product* leaving, Product* phase, double T);
    void raiseBalance(double mass);
    /// Mass of element \p i in the products, g per mole of initial mixture.
    double massInProducts(unsigned int i) const;
    /// Molar mass of the products, kg/mol, from their atoms: that of `copyResultingMixture` without
    /// the copy.
    double resultingMm() const;
    /// Whether the products hold the elements of the initial mixture.
    /// \param total  moles of products per mole of initial mixture
    bool balanceCloses(double total);

    bool multiphase;
    bool ions;
    std::vector<std::string> includedSpecies;
    std::vector<std::string> omittedSpecies;
    std::unique_ptr<thermo::Mixture> mixture;
    util::Lent<Balance> balance;
    std::vector<std::unique_ptr<Product>> pool; // owns all products but the phases of blends
    std::unique_ptr<Products> products;         // all candidates
    std::unique_ptr<Products> reacting;         // the present list, gases first; null until reset
    unsigned int count = 0;
    unsigned int gasCount = 0;
    double maxB = 0.0;             // g, largest element mass met so far
    double balanceTolerance = 0.0; // g
};

} // namespace reaction
