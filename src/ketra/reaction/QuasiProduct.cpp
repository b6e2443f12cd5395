#include <ketra/reaction/QuasiProduct.h>

namespace reaction {

QuasiProduct::~QuasiProduct() = default;

void QuasiProduct::addMember(Product* phase)
{
    members.push_back(phase);
    totalN += phase->n();
}

void QuasiProduct::setT(double T)
{
    Product::setT(T);
    for (Product* member : members) member->setT(T);
}

void QuasiProduct::setT(const thermo::TemperatureTerms& terms)
{
    Product::setT(terms);
    for (Product* member : members) member->setT(terms);
}

ReducedFunctions QuasiProduct::reduced() const
{
    return {H0_tilde(), U0_tilde(), G0_tilde(), S0_tilde(), Cp0_tilde(), Cv0_tilde()};
}

double QuasiProduct::mean(double (Product::*function)() const, double own) const
{
    double sum = own * n();
    for (const Product* member : members) sum += member->n() * (member->*function)();
    return sum / totalN;
}

} // namespace reaction
