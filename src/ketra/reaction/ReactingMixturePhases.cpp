// The present list of a reacting mixture: which products react, and how condensed phases come and
// go.

#include <ketra/reaction/QuasiProduct.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>
#include <ketra/util/String.h>

#include <algorithm>
#include <cmath>

using math::matrix::ColumnVector;
using thermo::ChemicalFormula;
using util::Log;

namespace reaction {

namespace {

constexpr double sleepingAmount = 0.1;  // mol that an entry is given when it enters or leaves
constexpr int firstTransitionCode = 91; // phase codes from here on belong to transition products

/// Half the width of the band around a phase change, K: wider where the measured melting points of
/// a substance scatter, narrow for water.
double halfBand(const std::string& name)
{
    if (util::String::startsWith(name, "H2O(")) return 20.0;
    if (util::String::startsWith(name, "AL2O3(") || util::String::startsWith(name, "MgO("))
        return 100.0;
    return 35.0;
}

double clampedInto(const thermo::Species& species, double T)
{
    const double low = species.getMinimalT();
    const double high = species.getMaximalT();
    return T < low ? low : T > high ? high : T;
}

} // namespace

void ReactingMixture::createTransitProducts(Products* list)
{
    for (std::size_t i = 0; i < list->size();) {
        Product* first = (*list)[i];
        if (!first->isCondensed()) {
            ++i;
            continue;
        }
        const ChemicalFormula& formula = first->getFormula();
        const auto partner = std::find_if(
            list->begin() + static_cast<std::ptrdiff_t>(i) + 1, list->end(), [&](Product* other) {
                return other->isCondensed() && other->getCondensed() < firstTransitionCode &&
                       *other == formula;
            });
        if (partner == list->end()) {
            ++i;
            continue;
        }
        Product* second = *partner;
        const bool firstIsLower = second->getMinimalT() > first->getMinimalT();
        const double boundary = firstIsLower ? first->getMaximalT() : first->getMinimalT();
        const double half = halfBand(first->getName());
        list->erase(partner);
        list->erase(list->begin() + static_cast<std::ptrdiff_t>(i));
        addTransition(list, firstIsLower ? first : second, firstIsLower ? second : first,
                      boundary - half, boundary + half);
    }
}

// Appends low phase, high phase and blend of a pair, which passes from the pool to the blend.
void ReactingMixture::addTransition(Products* list, Product* lower, Product* upper, double minT,
                                    double maxT)
{
    auto low = std::make_unique<TransitionProduct>(lower, 0.0, minT);
    auto high = std::make_unique<TransitionProduct>(upper, maxT, 0.0);
    auto blend = std::make_unique<TransitionProduct>(lower, minT, maxT);
    low->assignA(MaterialBalanceCoefficients(low.get()));
    high->assignA(MaterialBalanceCoefficients(high.get()));
    blend->assignA(MaterialBalanceCoefficients(blend.get()));
    static_cast<void>(disown(lower).release()); // the blend owns both from here on
    blend->makeTransit(disown(upper).release());
    list->push_back(own(std::move(low)));
    list->push_back(own(std::move(high)));
    list->push_back(own(std::move(blend)));
}

void ReactingMixture::reset()
{
    if (!reacting) reacting = std::make_unique<Products>();
    reacting->clear();
    for (Product* product : *products)
        if (!product->isCondensed() && (ions || !product->isIon())) reacting->push_back(product);
    sortProducts(true);
}

void ReactingMixture::sortProducts(bool)
{
    std::sort(reacting->begin(), reacting->end(),
              [](const Product* left, const Product* right) { return *left < right; });
    count = static_cast<unsigned int>(reacting->size());
    gasCount = static_cast<unsigned int>(
        std::count_if(reacting->begin(), reacting->end(),
                      [](const Product* product) { return !product->isCondensed(); }));
}

void ReactingMixture::addProduct(Product* product)
{
    if (!containsProduct(products.get(), product)) {
        Log::errorf("THERMO", "Reacting Mixture: unknown species%s", util::eol);
        throw thermo::Exception(4);
    }
    reacting->push_back(product);
    sortProducts(true);
}

bool ReactingMixture::checkNewCondesedPhases(double T, ColumnVector* x, int offset)
{
    if (!multiphase) return false;
    Product* best = nullptr;
    double bestValue = 0.0;
    for (Product* candidate : *products) {
        if (!candidate->isCondensed() || contains(candidate)) continue;
        if (!(candidate->getMinimalT() <= T && T <= candidate->getMaximalT())) continue;
        double g = 0.0;
        try {
            g = candidate->G0_tilde(T);
        } catch (const std::exception&) {
            continue; // a candidate that cannot be evaluated cannot enter
        }
        if (x) {
            for (unsigned int i = 0; i < elSize(); ++i)
                g -= x->at(static_cast<unsigned int>(offset) + i) * candidate->a(i);
        }
        if (g < bestValue) {
            bestValue = g;
            best = candidate;
        }
    }
    if (!best) return false;
    best->setT(T);
    best->setN(sleepingAmount);
    addProduct(best);
    Log::warnf("THERMO", "T=%7.4f Include %s\n", T, best->getName().c_str());
    return true;
}

// The range of a present phase is open at both ends, that of a candidate is closed.
bool ReactingMixture::checkPresentCondesedPhases(double T, bool removeNegative,
                                                 bool removeNegativeToo, double tolerance)
{
    const thermo::TemperatureTerms terms(T);
    bool changed = false;
    const auto remove = [&](std::size_t i) {
        (*reacting)[i]->setN(sleepingAmount);
        reacting->erase(reacting->begin() + static_cast<std::ptrdiff_t>(i));
        changed = true;
    };

    for (std::size_t i = 0; i < reacting->size();) {
        Product* product = (*reacting)[i];
        if (!product->isCondensed() && !product->isIon()) {
            try {
                product->setT(terms);
                ++i;
                continue;
            } catch (const thermo::Exception&) {
                // The gas has left its range and is judged as a condensed product would be.
            }
        }
        if (product->n() < 0.0 && (removeNegative || removeNegativeToo)) {
            remove(i);
            continue;
        }
        const double low = product->getMinimalT();
        const double high = product->getMaximalT();
        bool atEdge = false;
        if (T <= low) {
            atEdge = tolerance > low - T;
            if (atEdge) product->setT(low);
        } else if (T >= high) {
            atEdge = tolerance > T - high;
            if (atEdge) product->setT(high);
        } else {
            product->setT(terms);
            ++i;
            continue;
        }
        if (replaceOrMerge(i, T, atEdge, tolerance)) {
            changed = true;
            ++i;
            continue;
        }
        Log::warnf("THERMO", "T=%f Remove %s\n", T, product->getName().c_str());
        remove(i);
    }
    if (changed) sortProducts(true);
    return changed;
}

// Looks for another condensed phase of the formula of an entry that has reached the end of its
// range. A phase that is not present takes the entry's place (or stands beside it at the edge) and
// true is returned; one that is present takes over the amount.
bool ReactingMixture::replaceOrMerge(std::size_t index, double T, bool atEdge, double tolerance)
{
    Product* leaving = (*reacting)[index];
    const ChemicalFormula& formula = leaving->getFormula();
    const int code = leaving->getCondensed();
    for (Product* phase : *products) {
        if (!phase->isCondensed() || phase->getCondensed() == code || !(*phase == formula))
            continue;
        if (!(phase->getMinimalT() - tolerance <= T && T <= phase->getMaximalT() + tolerance))
            continue;
        if (contains(phase)) {
            if (!atEdge) phase->setN(phase->n() + leaving->n());
            continue;
        }
        phase->setT(clampedInto(*phase, T));
        if (atEdge) {
            addEdgePhase(leaving, phase, T);
        } else {
            Log::warnf("THERMO", "T=%f Replace %s with %s\n", T, leaving->getName().c_str(),
                       phase->getName().c_str());
            phase->setN(leaving->n());
            leaving->setN(sleepingAmount);
            (*reacting)[index] = phase;
        }
        return true;
    }
    return false;
}

void ReactingMixture::addEdgePhase(Product* leaving, Product* phase, double T)
{
    Log::warnf("THERMO", "T=%f Add %s\n", T, phase->getName().c_str());
    reacting->push_back(phase);
    leaving->setN(leaving->n() / 2.0);
    phase->setN(leaving->n());
}

bool ReactingMixture::contains(Product* product) const
{
    return getIndexOf(reacting.get(), product) >= 0;
}

double ReactingMixture::getN() const
{
    double sum = 0.0;
    if (reacting)
        for (const Product* product : *reacting) sum += product->n();
    return sum;
}

double ReactingMixture::getNg() const
{
    double sum = 0.0;
    if (reacting)
        for (const Product* product : *reacting)
            if (!product->isCondensed()) sum += product->n();
    return sum;
}

double ReactingMixture::getH() const
{
    double sum = 0.0;
    for (const Product* product : *reacting) sum += product->n() * product->H0();
    return sum / getN();
}

double ReactingMixture::getHspec()
{
    const std::unique_ptr<thermo::Mixture> resulting(copyResultingMixture());
    return getH() / resulting->getMm();
}

double ReactingMixture::getS(double p) const
{
    const double lnNg = std::log(getNg());
    const double lnP = std::log(p / thermo::referencePressure);
    double sum = 0.0;
    for (const Product* product : *reacting) {
        const double mixing = product->isCondensed() ? 0.0 : lnNg - product->ln_n() - lnP;
        sum += product->n() * (product->S0_tilde() + mixing) * thermo::gasConstant;
    }
    return sum / getN();
}

double ReactingMixture::getSspec(double p)
{
    const std::unique_ptr<thermo::Mixture> resulting(copyResultingMixture());
    return getS(p) / resulting->getMm();
}

double ReactingMixture::setT(double T) { return setT(T, false); }

double ReactingMixture::setT(double T, bool clamp)
{
    for (Product* product : *reacting) product->setT(clamp ? clampedInto(*product, T) : T);
    return getH();
}

double ReactingMixture::setH(double H)
{
    constexpr double closeEnough = 0.0001; // relative
    double T = reacting->front()->T();
    double h = getH();
    const bool downFirst = H <= h;
    double step = 200.0; // K
    double error = (h - H) / h;
    while (std::abs(error) > closeEnough) {
        // The step shrinks each time the search turns against its first direction.
        const bool down = H <= h;
        if (down != downFirst) step *= 0.9;
        T += down ? -step : step;
        for (Product* product : *reacting) product->setT(T);
        h = getH();
        error = (h - H) / h;
    }
    return T;
}

thermo::Mixture* ReactingMixture::copyInitialMixture() const
{
    return std::make_unique<thermo::Mixture>(*mixture).release();
}

thermo::Mixture* ReactingMixture::copyResultingMixture()
{
    const double total = getN();
    auto resulting = std::make_unique<thermo::Mixture>(thermo::_Species::MOLE_FRACTION);
    for (Product* product : *reacting) {
        auto* transition =
            product->isCondensed() ? dynamic_cast<TransitionProduct*>(product) : nullptr;
        if (!transition) {
            resulting->addSpecies(product, product->T(), product->n() / total);
            continue;
        }
        transition->publishPhase1();
        resulting->addSpecies(transition->getPhase1(), transition->phase1T(),
                              transition->phase1N() / total);
        if (!transition->isBlend()) continue;
        transition->publishPhase2();
        resulting->addSpecies(transition->getPhase2(), transition->phase2T(),
                              transition->phase2N() / total);
    }
    resulting->checkFractions(false);
    return resulting.release();
}

std::vector<const thermo::Species*>* ReactingMixture::copyAllCondensedSpecies()
{
    auto condensed = std::make_unique<std::vector<const thermo::Species*>>();
    for (std::size_t i = gasCount; i < reacting->size(); ++i) {
        auto* transition = dynamic_cast<TransitionProduct*>((*reacting)[i]);
        if (!transition)
            condensed->push_back((*reacting)[i]);
        else if (transition->isBlend())
            transition->publishPhase2();
        else
            condensed->push_back(transition->publishPhase1());
    }
    return condensed.release();
}

double ReactingMixture::mergeCondensedPhases()
{
    double total = 0.0;
    for (std::size_t i = gasCount; i < reacting->size(); ++i) {
        Product* first = (*reacting)[i];
        total += first->n();
        const ChemicalFormula& formula = first->getFormula();
        QuasiProduct* merged = nullptr;
        // After an erasure the scan moves on: the entry that has slid into the place is not looked
        // at.
        for (std::size_t k = i + 1; k < reacting->size(); ++k) {
            if (!(*(*reacting)[k] == formula)) continue;
            if (!merged) {
                auto* transition = dynamic_cast<TransitionProduct*>(first);
                auto quasi =
                    std::make_unique<Product>(transition ? *transition->publishPhase1() : *first);
                quasi->setN(first->n());
                auto group = std::make_unique<QuasiProduct>(*quasi);
                merged = group.get();
                products->push_back(own(std::move(group)));
            }
            merged->addMember((*reacting)[k]);
            reacting->erase(reacting->begin() + static_cast<std::ptrdiff_t>(k));
            --count;
        }
        if (merged) (*reacting)[i] = merged;
    }
    return total;
}

} // namespace reaction
