#include <ketra/reaction/ReactingMixture.h>

#include <ketra/reaction/QuasiProduct.h>
#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <algorithm>
#include <array>
#include <cmath>

using math::matrix::ColumnVector;
using thermo::Atom;
using thermo::ChemicalElement;
using thermo::ChemicalFormula;
using thermo::Database;
using thermo::Mixture;
using thermo::Species;

namespace reaction {

namespace {

constexpr double balanceShare = 0.0001; // of the largest element mass: what the balance may miss
const Atom::TYPE electron = Atom::TYPE(0);

bool holds(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Which atoms the elements of a mixture are, for the walk over the whole database.
class AtomSet
{
public:
    template <class Elements> explicit AtomSet(const Elements& elements)
    {
        for (const auto& element : elements) present[index(*element)] = true;
    }

    /// Whether a species can form from the atoms; tells too if it is an ion. The electron counts as
    /// charge, not as an element, in a formula of two terms or more.
    bool allows(const Species& species, bool withIons, bool& isIon) const
    {
        const int terms = static_cast<int>(species.size());
        isIon = false;
        for (int k = 0; k < terms; ++k) {
            const ChemicalElement& element = *species.get(k);
            if (withIons && terms >= 2 && element.getType() == electron)
                isIon = true;
            else if (!present[index(element)])
                return false;
        }
        return terms > 0; // without a formula nothing says what it forms from
    }

private:
    static std::size_t index(const ChemicalElement& element)
    {
        return static_cast<std::size_t>(element.getType());
    }

    std::array<bool, 128> present{}; // by type of atom, of which there are 105
};

} // namespace

ReactingMixture::ReactingMixture(thermo::Propellant& propellant)
    : ReactingMixture(propellant, true, false)
{
}

ReactingMixture::ReactingMixture(thermo::Propellant& propellant, bool newMultiphase, bool newIons)
    : multiphase(newMultiphase), ions(newIons), mixture(propellant.getMixture())
{
    init();
}

ReactingMixture::ReactingMixture(Mixture& initial) : ReactingMixture(initial, true, false) {}

ReactingMixture::ReactingMixture(Mixture& initial, bool newMultiphase, bool newIons)
    : multiphase(newMultiphase), ions(newIons), mixture(std::make_unique<Mixture>(initial))
{
    init();
}

ReactingMixture::ReactingMixture(const ReactingMixture& other, bool condensed, bool withIons)
    : multiphase(other.multiphase), ions(other.ions),
      mixture(std::make_unique<Mixture>(*other.mixture)), balance(other.balance), maxB(other.maxB),
      balanceTolerance(other.balanceTolerance)
{
    copyProducts(other);
    if (other.reacting) copyReacting(other, condensed, withIons);
}

ReactingMixture& ReactingMixture::operator=(const ReactingMixture& other)
{
    if (this == &other) return *this;
    ReactingMixture copy(other);
    multiphase = copy.multiphase;
    ions = copy.ions;
    includedSpecies = other.includedSpecies;
    omittedSpecies = other.omittedSpecies;
    mixture = std::move(copy.mixture);
    balance = copy.balance;
    reacting = std::move(copy.reacting);
    products = std::move(copy.products);
    pool = std::move(copy.pool);
    count = copy.count;
    gasCount = copy.gasCount;
    maxB = copy.maxB;
    balanceTolerance = copy.balanceTolerance;
    return *this;
}

ReactingMixture::~ReactingMixture() = default;

void ReactingMixture::init()
{
    auto fresh = std::make_unique<Balance>();
    fresh->elements = findRelevantElements();
    balance = util::Lent<Balance>(fresh.release());

    reacting.reset();
    count = gasCount = 0;
    products.reset();
    pool.clear();
    products.reset(findRelevantProducts(nullptr, false, ions));
    std::sort(products->begin(), products->end(),
              [](const Product* left, const Product* right) { return *left < right; });
    if (multiphase) findRelevantProducts(products.get(), true, ions);
    balance->b.reset(materialBalance(mixture.get()));
}

ReactingMixture::Elements ReactingMixture::findRelevantElements() const
{
    Elements list;
    if (ions) list.push_back(std::make_unique<ChemicalElement>("E", 1.0));
    const std::unique_ptr<std::vector<const Species*>> species(mixture->copyAllSpecies());
    for (const Species* s : *species) {
        for (int k = 0; k < static_cast<int>(s->size()); ++k) {
            const ChemicalElement* element = s->get(k);
            if (!containsElement(list, element))
                list.push_back(std::make_unique<ChemicalElement>(element, 1.0));
        }
    }
    return list;
}

ReactingMixture::Products* ReactingMixture::findRelevantProducts(Products* list, bool condensed,
                                                                 bool withIons)
{
    std::unique_ptr<Products> created;
    if (!list) {
        created = std::make_unique<Products>();
        list = created.get();
    }
    const auto append = [&](const Species* species) {
        auto product = std::make_unique<Product>(*species);
        product->assignA(MaterialBalanceCoefficients(species));
        list->push_back(own(std::move(product)));
    };

    Database& database = *Database::getInstance();
    const AtomSet atoms(balance->elements);
    const unsigned int total = database.size();
    for (unsigned int i = 0; i < total; ++i) {
        const Species* species = database[i];
        if (species->isReactantOnly() || species->isCondensed() != condensed) continue;
        bool ion = false;
        if (!atoms.allows(*species, withIons, ion)) continue;
        if (!includedSpecies.empty() && !holds(includedSpecies, species->getName())) continue;
        if (holds(omittedSpecies, species->getName())) continue;
        if (containsProduct(list, species)) continue;
        // Wherever an ion can form there are free electrons.
        if (ion) {
            const Species* free = database.find("e-");
            if (!free) throw thermo::Exception(4);
            if (!containsProduct(list, free)) append(free);
        }
        append(species);
    }
    if (condensed) createTransitProducts(list);
    return created ? created.release() : list;
}

ColumnVector* ReactingMixture::MaterialBalanceCoefficients(const Species* species) const
{
    auto numbers = std::make_unique<ColumnVector>(elSize());
    for (unsigned int i = 0; i < elSize(); ++i) {
        double atoms = 0.0;
        for (int k = 0; k < static_cast<int>(species->size()); ++k)
            if (*species->get(k) == *element(i)) atoms += species->get(k)->getNumber();
        numbers->set(i, atoms);
    }
    return numbers.release();
}

ColumnVector* ReactingMixture::materialBalance(Mixture* initial)
{
    const std::unique_ptr<ChemicalFormula> formula(initial->copyFormula());
    auto masses = std::make_unique<ColumnVector>(elSize());
    for (unsigned int i = 0; i < elSize(); ++i) {
        double mass = 0.0;
        for (unsigned int k = 0; k < formula->size(); ++k)
            if (*(*formula)[k] == *element(i)) mass += (*formula)[k]->M();
        masses->set(i, mass);
        raiseBalance(mass);
    }
    balanceTolerance = maxB * balanceShare;
    return masses.release();
}

void ReactingMixture::raiseBalance(double mass)
{
    if (mass > maxB) maxB = mass;
}

double ReactingMixture::massInProducts(unsigned int i) const
{
    double atoms = 0.0;
    for (const Product* product : *reacting) atoms += product->a(i) * product->n();
    return atoms * element(i)->am();
}

double ReactingMixture::resultingMm() const
{
    double mass = 0.0;
    for (unsigned int i = 0; i < elSize(); ++i) mass += massInProducts(i);
    return mass / getN() / 1000.0;
}

// The element masses of one mole of products raise the tolerance too, as those of any mixture do.
bool ReactingMixture::balanceCloses(double total)
{
    const double perMole = 1.0 / getN();
    for (unsigned int i = 0; i < elSize(); ++i) raiseBalance(massInProducts(i) * perMole);
    balanceTolerance = maxB * balanceShare;
    for (unsigned int i = 0; i < elSize(); ++i)
        if (!(std::abs(massInProducts(i) * perMole * total - b(i)) <= balanceTolerance))
            return false;
    return true;
}

Product* ReactingMixture::own(std::unique_ptr<Product> product)
{
    pool.push_back(std::move(product));
    return pool.back().get();
}

std::unique_ptr<Product> ReactingMixture::disown(Product* product)
{
    const auto found = std::find_if(pool.begin(), pool.end(),
                                    [&](const auto& owned) { return owned.get() == product; });
    std::unique_ptr<Product> released = std::move(*found);
    pool.erase(found);
    return released;
}

void ReactingMixture::copyProducts(const ReactingMixture& other)
{
    products = std::make_unique<Products>();
    products->reserve(other.products->size());
    pool.reserve(other.products->size());
    for (Product* product : *other.products) {
        auto* transition =
            product->isCondensed() ? dynamic_cast<TransitionProduct*>(product) : nullptr;
        if (!transition) {
            products->push_back(own(std::make_unique<Product>(*product)));
        } else if (transition->isBlend()) { // and with it the low and high phase before it
            Product* lower = own(std::make_unique<Product>(*transition->getPhase1()));
            Product* upper = own(std::make_unique<Product>(*transition->getPhase2()));
            addTransition(products.get(), lower, upper, transition->getMinT(),
                          transition->getMaxT());
        }
    }
}

void ReactingMixture::copyReacting(const ReactingMixture& other, bool condensed, bool withIons)
{
    reacting = std::make_unique<Products>();
    reacting->reserve(other.reacting->size());
    for (Product* entry : *other.reacting) {
        if (entry->isCondensed() && !condensed) continue;
        if (entry->isIon() && !withIons) continue;
        const int index = getIndexOf(products.get(), entry);
        if (index < 0) continue;
        Product* copy = (*products)[static_cast<std::size_t>(index)];
        reacting->push_back(copy);
        if (dynamic_cast<TransitionProduct*>(entry) || dynamic_cast<TransitionProduct*>(copy)) {
            copy->setN(entry->n());
            copy->setT(entry->T());
        }
    }
    count = static_cast<unsigned int>(reacting->size());
    gasCount = static_cast<unsigned int>(
        std::count_if(reacting->begin(), reacting->end(),
                      [](const Product* product) { return !product->isCondensed(); }));
}

void ReactingMixture::removeIons()
{
    ions = false;
    init();
}

void ReactingMixture::setSpecies(std::vector<std::string>& included,
                                 std::vector<std::string>& omitted)
{
    includedSpecies.insert(includedSpecies.end(), included.begin(), included.end());
    omittedSpecies.insert(omittedSpecies.end(), omitted.begin(), omitted.end());
    init();
    reset();
}

bool ReactingMixture::containsElement(const Elements& list, const ChemicalElement* element)
{
    return std::any_of(list.begin(), list.end(),
                       [&](const auto& present) { return *present == *element; });
}

bool ReactingMixture::containsProduct(const Products* list, const Species* species)
{
    return std::any_of(list->begin(), list->end(),
                       [&](const Product* product) { return *product == species; });
}

int ReactingMixture::getIndexOf(const Products* list, const Product* product)
{
    for (std::size_t i = 0; i < list->size(); ++i)
        if (*(*list)[i] == product) return static_cast<int>(i);
    return -1;
}

} // namespace reaction
