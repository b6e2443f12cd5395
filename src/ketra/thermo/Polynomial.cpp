#include <ketra/thermo/Polynomial.h>

#include <algorithm>

namespace thermo {

Polynomial::Polynomial(unsigned int ne, unsigned int na, unsigned int nb)
{
    allocate(static_cast<int>(ne), static_cast<int>(na), static_cast<int>(nb));
}

Polynomial::Polynomial(const Polynomial& other) : T1(other.T1), T2(other.T2)
{
    allocate(other.Ne, other.Na, other.Nb);
    copyNumbers(other);
}

Polynomial& Polynomial::operator=(const Polynomial& other)
{
    if (this == &other) return *this;
    if (Ne != other.Ne || Na != other.Na || Nb != other.Nb) allocate(other.Ne, other.Na, other.Nb);
    T1 = other.T1;
    T2 = other.T2;
    copyNumbers(other);
    return *this;
}

Polynomial::~Polynomial() = default;

StandardState Polynomial::evaluate(const TemperatureTerms& terms) const
{
    return {Cp0_tilde(terms.T), H0_tilde(terms.T), S0_tilde(terms.T), G0_tilde(terms.T)};
}

// The coefficients stand first: an evaluation reads A and B and never E.
void Polynomial::allocate(int ne, int na, int nb)
{
    numbers = std::make_unique<double[]>(
        static_cast<std::size_t>(ne) + static_cast<std::size_t>(na) + static_cast<std::size_t>(nb));
    Ne = ne;
    Na = na;
    Nb = nb;
    A = numbers.get();
    B = A + na;
    E = B + nb;
}

void Polynomial::copyNumbers(const Polynomial& other)
{
    std::copy_n(other.numbers.get(), Ne + Na + Nb, numbers.get());
}

} // namespace thermo
