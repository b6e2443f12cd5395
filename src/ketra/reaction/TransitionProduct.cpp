#include <ketra/reaction/TransitionProduct.h>

#include <ketra/thermo/Exception.h>

#include <string>

namespace reaction {

namespace {

constexpr int blendTypeFactor = 10000; // keeps the id of a blend apart from those of its phases

double clampedInto(const thermo::Species& phase, double T)
{
    const double low = phase.getMinimalT();
    if (T < low) return low;
    const double high = phase.getMaximalT();
    return T > high ? high : T;
}

} // namespace

TransitionProduct::TransitionProduct(Product* phase, double newMinT, double newMaxT)
    : Product(static_cast<const thermo::Species&>(*phase)), minT(newMinT), maxT(newMaxT),
      phase1(phase)
{
}

TransitionProduct::~TransitionProduct() = default;

void TransitionProduct::makeTransit(Product* upper)
{
    type *= blendTypeFactor;
    ownedPhase1.reset(phase1);
    ownedPhase2.reset(upper);
    phase2 = upper;
    nameTransit();
}

// AL2O3(a) becomes AL2O3(transit): the last parentheses of a name hold its phase. Every mixture
// names its blends anew, in each copy too.
void TransitionProduct::nameTransit()
{
    const std::size_t close = name.rfind(')');
    if (close == std::string::npos) return;
    const std::size_t open = name.rfind('(', close);
    if (open != std::string::npos) name.replace(open, close + 1 - open, "(transit)");
}

double TransitionProduct::phase1T() const { return clampedInto(*phase1, T()); }

double TransitionProduct::phase2T() const { return clampedInto(*phase2, T()); }

double TransitionProduct::phase1N() const { return isBlend() ? weight1 * n() : n(); }

Product* TransitionProduct::publishPhase1()
{
    phase1->setN(phase1N());
    phase1->setT(phase1T());
    return phase1;
}

Product* TransitionProduct::publishPhase2()
{
    if (!isBlend()) return nullptr;
    phase2->setN(phase2N());
    phase2->setT(phase2T());
    return phase2;
}

double TransitionProduct::getT(double T) const
{
    if (minT > 0.0 && maxT > 0.0) {
        if (minT <= T && T <= maxT) return T;
        throw thermo::Exception(1);
    }
    return phase1->getT(T);
}

double TransitionProduct::getMinimalT() const { return minT > 0.0 ? minT : phase1->getMinimalT(); }

double TransitionProduct::getMaximalT() const { return maxT > 0.0 ? maxT : phase1->getMaximalT(); }

int TransitionProduct::getCondensed() const
{
    if (minT == 0.0) return 99;
    return maxT != 0.0 ? 100 : 101;
}

void TransitionProduct::setT(double T)
{
    requireInBand(T);
    storeT(T);
    if (isBlend()) {
        weight1 = (maxT - T) / (maxT - minT);
        weight2 = 1.0 - weight1;
    }
    phase1->setT(phase1T());
    if (isBlend()) phase2->setT(phase2T());
}

ReducedFunctions TransitionProduct::reduced() const
{
    return {H0_tilde(), U0_tilde(), G0_tilde(), S0_tilde(), Cp0_tilde(), Cv0_tilde()};
}

double TransitionProduct::Cp0(double T) const { return blend(&Product::Cp0, T); }

double TransitionProduct::Cp0_tilde(double T) const { return blend(&Product::Cp0_tilde, T); }

double TransitionProduct::H0(double T) const { return blend(&Product::H0, T); }

double TransitionProduct::H0_tilde(double T) const { return blend(&Product::H0_tilde, T); }

double TransitionProduct::S0(double T) const { return blend(&Product::S0, T); }

double TransitionProduct::S0_tilde(double T) const { return blend(&Product::S0_tilde, T); }

double TransitionProduct::G0(double T) const { return blend(&Product::G0, T); }

double TransitionProduct::G0_tilde(double T) const { return blend(&Product::G0_tilde, T); }

double TransitionProduct::blend(Cached function) const
{
    if (!isBlend()) return (phase1->*function)();
    return weight1 * (phase1->*function)() + weight2 * (phase2->*function)();
}

// The weights are those of the last `setT`; they do not follow T.
double TransitionProduct::blend(AtT function, double T) const
{
    requireInBand(T);
    if (!isBlend()) return (phase1->*function)(T);
    return weight1 * (phase1->*function)(clampedInto(*phase1, T)) +
           weight2 * (phase2->*function)(clampedInto(*phase2, T));
}

void TransitionProduct::requireInBand(double T) const
{
    if ((minT > 0.0 && T < minT) || (maxT > 0.0 && T > maxT)) throw thermo::Exception(1);
}

} // namespace reaction
