#include <ketra/reaction/Product.h>

#include <ketra/thermo/Constants.h>

#include <cmath>

using math::matrix::ColumnVector;
using thermo::gasConstant;

namespace reaction {

Product::Product(const thermo::Species& species) : Species(species) {}

Product::Product(const Product& other)
    : Species(other),
      stoichiometry(other.stoichiometry ? std::make_unique<ColumnVector>(*other.stoichiometry)
                                        : nullptr),
      amount(other.amount), lnAmount(other.lnAmount), temperature(other.temperature),
      functions(other.functions), reducedFunctions(other.reducedFunctions)
{
}

Product& Product::operator=(const Product& other)
{
    if (this == &other) return *this;
    Species::operator=(other);
    stoichiometry =
        other.stoichiometry ? std::make_unique<ColumnVector>(*other.stoichiometry) : nullptr;
    amount = other.amount;
    lnAmount = other.lnAmount;
    temperature = other.temperature;
    functions = other.functions;
    reducedFunctions = other.reducedFunctions;
    excluded = other.excluded;
    return *this;
}

Product::~Product() = default;

void Product::setN(double n, double ln_n)
{
    amount = n;
    lnAmount = ln_n;
}

void Product::setN(double n) { setN(n, n == 0.0 ? 0.0 : std::log(n)); }

void Product::setT(double T) { setT(thermo::TemperatureTerms(T)); }

void Product::setT(const thermo::TemperatureTerms& terms)
{
    const double T = terms.T;
    temperature = T;
    const thermo::StandardState state = evaluate(terms);
    const bool gas = !thermo::Species::isCondensed();
    ReducedFunctions& f = reducedFunctions;
    f.H = state.H;
    f.U = gas ? state.H - 1.0 : state.H;
    f.G = state.G;
    f.S = state.S;
    f.Cp = state.Cp;
    f.Cv = gas ? state.Cp - 1.0 : state.Cp;

    functions.Cv0 = f.Cv * gasConstant;
    functions.H0 = f.H * gasConstant * T;
    functions.U0 = f.U * gasConstant * T;
    functions.S0 = f.S * gasConstant;
    functions.Cp0 = f.Cp * gasConstant;
    functions.G0 = f.G * gasConstant * T;
}

} // namespace reaction
