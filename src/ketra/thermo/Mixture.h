#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Atom.h>
#include <ketra/thermo/_Species.h>

#include <memory>
#include <string>
#include <vector>

namespace thermo {

class ChemicalFormula;
class Species;

/// An ordered list of species with fractions and states: the arithmetic from a recipe of named
/// ingredients to molar mass, formula, enthalpy, internal energy and density of the charge.
///
/// The fractions are entered in any order. The first operation that reads checks their sum and
/// works out the fractions of the other kind; any change of the composition calls for a new check.
/// So even reading operations write, and a mixture belongs to one thread at a time.
///
/// The reading operations throw what `checkFractions(false)` throws.
class KETRA_API Mixture
{
public:
    // Bits of the flags of `print`.
    static constexpr unsigned PRINT_ALL = 0x01;  ///< entries with a mole fraction below 1e-7 too
    static constexpr unsigned LONG_TABLE = 0x02; ///< with temperature, pressure and enthalpy
    static constexpr unsigned TOTAL = 0x04;      ///< with the sums of the fractions
    static constexpr unsigned DENSITY = 0x08;    ///< with the density
    static constexpr unsigned FORMULA = 0x10;    ///< with exploded formula and equivalence ratio
    static constexpr unsigned ENGLISH = 0x80;    ///< in US customary units

    /// An empty mixture whose fractions will be given by mass or by mole.
    explicit Mixture(_Species::FractionType type = _Species::MASS_FRACTION);
    /// Copies the entries; densities assigned with `setRho` stay behind.
    Mixture(const Mixture& other);
    Mixture& operator=(const Mixture& other);
    virtual ~Mixture();

    // Building the list. Each appends an entry and returns its species, which stays the database's.
    // The fraction f is of the kind the mixture was built with, T in K, p in Pa.
    // Throws thermo::Exception 1 for a temperature the species cannot have, 4 without a species.

    /// An entry of mass fraction 1, in a mixture by mole too.
    const Species* addSpecies(const Species* added);
    const Species* addSpecies(const Species* added, double f);
    const Species* addSpecies(const Species* added, double T, double f);
    const Species* addSpecies(const Species* added, double T, double p, double f);
    /// Without \p check the temperature is stored as it stands.
    const Species* addSpecies(const Species* added, double T, double p, double f, bool check);

    // The same with the species of the database that `findSpecies` finds.
    const Species* addSpecies(const std::string& name);
    const Species* addSpecies(const std::string& name, double f);
    const Species* addSpecies(const std::string& name, double T, double f);
    const Species* addSpecies(const std::string& name, double T, double p, double f);

    /// Mixes \p other in with the weight \p w. An entry of the same species, and with \p ignoreT
    /// false of exactly the same temperature, is merged; other entries keep their temperature.
    /// The present fractions are scaled by 1 - w if they have been checked before.
    virtual void addMixture(Mixture& other, double w, bool ignoreT);
    /// The same for equal temperatures, with new entries by their name and with a checked
    /// temperature. A merge without new entries leaves the scaled fractions counted as checked.
    virtual void addMixture(Mixture& other, double w);

    /// The species of that name. A name whose crystal modification, as "(a)" or "(IV)", the
    /// database lacks stands for the "(cr)" of the same name, with a warning. \throws
    /// thermo::Exception 4 if there is none
    static const Species* findSpecies(const std::string& name);

    // Reading the list. An index out of range throws std::out_of_range.

    int size() const { return static_cast<int>(entries.size()); }
    const Species* getSpecies(int i) const { return entry(i).species; }
    const _Species& _getSpecies(int i) const { return entry(i); }
    /// The only entry of that species.
    /// \throws thermo::Exception 4 without an entry, 0 if there is a second one
    const _Species& _getSpecies(const Species* wanted) const;
    /// The species of all entries. \returns a new vector, the caller's
    std::vector<const Species*>* copyAllSpecies() const;
    /// Copies of all entries. \returns a new vector with new entries, the caller's
    std::vector<_Species*>* _copyAllSpecies() const;
    /// The formula of one mole of mixture. \returns a new formula, the caller's
    ChemicalFormula* copyFormula() const;

    // Fractions. The index is checked as above; an entry without a species throws
    // thermo::Exception 4.

    void setFraction(int i, double f);
    double getMassFraction(int i) const;
    double getMolarFraction(int i) const;
    /// Checks that the given fractions add up to 1 within 1e-5, or with \p correct scales them to
    /// that sum, and works out the fractions of the other kind. Does nothing if that is done.
    /// \throws thermo::Exception 5 for mass, 6 for mole fractions with another sum
    void checkFractions(bool correct) const;

    // The state of all entries: Pa, K.

    void setP(double p);
    void setT(double T);
    void setTWithoutCheck(double T);
    /// With \p clamp each entry takes the nearest temperature that its species allows.
    void setT(double T, bool clamp);

    // Results.

    /// Mean molar mass, g/mol.
    double getM() const;
    /// Mean molar mass, kg/mol.
    double mm() const { return getM() / 1000; }
    double getMm() const { return mm(); }
    /// Mass of mixture per mole of gas in it, kg/mol.
    double getMm2() const;
    /// Sum of the valences of one mole.
    double getValence() const;
    /// Oxidizing over reducing valences, 1 for a stoichiometric mixture.
    /// \throws thermo::Exception 0 without a reducing element
    double getEquivalenceRatio() const;
    /// The same over the elements that \p excluded does not name.
    double getEquivalenceRatio(const std::vector<Atom::TYPE>& excluded) const;
    /// Enthalpy of one mole, J/mol, with the corrections for pressure and for temperatures outside
    /// the range of condensed species.
    double H() const;
    double getH() const { return H(); }
    /// Enthalpy of one entry, J/mol. Unlike in the sum over the mixture, the mole fraction always
    /// weights the first term of a gas and, with \p weighted, the whole once more; and the pressure
    /// left uncorrected is 100000 Pa for gases too.
    double H(const _Species* e, bool weighted) const;
    double getH(const _Species* e, bool weighted) const { return H(e, weighted); }
    double getH(int i, bool weighted) const { return H(&entry(i), weighted); }
    /// Internal energy of one mole, J/mol.
    double U() const;
    double getU() const { return U(); }
    /// Density in kg/m^3 from the densities assigned to the entries and the tables of the species;
    /// 0 for an empty mixture.
    /// \throws thermo::Exception 0 if an entry has neither
    virtual double getRho() const;

    // Changing the list.

    /// Puts another species into the place of the first entry of that name, with its fraction and
    /// temperature. \returns the index of the entry
    /// \throws thermo::Exception 4 if there is no such entry or species
    unsigned int replaceSpecies(const std::string& oldName, const std::string& newName);
    /// Removes all ions and scales the remaining fractions.
    void removeIons();
    /// Removes condensed species that cannot exist at \p T, K, and scales the remaining fractions.
    /// Only for mixtures without a condensed species that can: such an entry is examined for ever.
    void removeCondensed(double T);

    /// Prints the composition through the log.
    /// \throws thermo::Exception 0 with FORMULA for a mixture without a reducing element
    void print(const char* title, unsigned int flags) const;

protected:
    /// The fractions have been checked since the last change.
    bool areFractionsChecked() const { return fractionsChecked; }

private:
    const _Species& entry(int i) const;
    const Species* append(std::unique_ptr<_Species> added);
    _Species::FractionType type() const;
    double& given(_Species& e) const { return massBased ? e.g : e.r; }
    void scaleGiven(double factor) const;
    void requireUnitSum(bool correct) const;
    void fillTwins() const;
    _Species* findEntry(const _Species& like, bool ignoreT) const;

    std::vector<std::unique_ptr<_Species>> entries; // in order of insertion
    mutable bool fractionsChecked = false;          // the sum is right, the twin fractions fit
    bool massBased;                                 // the mass fractions are the given ones
};

} // namespace thermo
