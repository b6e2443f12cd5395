#include <ketra/thermo/nasa9/NASA9Polynomial.h>

#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/detail/TextFile.h>

#include <cmath>

namespace thermo::nasa9 {

namespace {

constexpr double highestLowerT = 20000.0; // K, an interval that begins above this is a slip

// The functions of [McBride2002] in nested form, with r = 1/T and L = ln T. The single functions
// and evaluate() go through these, so that both give the same bits.

/// Cp/R = a0/T^2 + a1/T + a2 + a3 T + a4 T^2 + a5 T^3 + a6 T^4
inline double reducedCp(const double* a, double T, double r)
{
    return (a[0] * r + a[1]) * r + a[2] + T * (a[3] + T * (a[4] + T * (a[5] + T * a[6])));
}

/// H/(R T) = -a0/T^2 + (a1 L + b0)/T + a2 + a3 T/2 + a4 T^2/3 + a5 T^3/4 + a6 T^4/5
inline double reducedH(const double* a, const double* b, double T, double r, double L)
{
    return (-a[0] * r + a[1] * L + b[0]) * r + a[2] +
           T * (a[3] * (1.0 / 2) +
                T * (a[4] * (1.0 / 3) + T * (a[5] * (1.0 / 4) + T * (a[6] * (1.0 / 5)))));
}

/// S/R = -a0/(2 T^2) - a1/T + a2 L + a3 T + a4 T^2/2 + a5 T^3/3 + a6 T^4/4 + b1
inline double reducedS(const double* a, const double* b, double T, double r, double L)
{
    return (-0.5 * a[0] * r - a[1]) * r + a[2] * L +
           T * (a[3] + T * (a[4] * (1.0 / 2) + T * (a[5] * (1.0 / 3) + T * (a[6] * (1.0 / 4))))) +
           b[1];
}

/// G/(R T) = -a0/(2 T^2) + a1 (L + 1)/T + a2 (1 - L) - a3 T/2 - a4 T^2/6 - a5 T^3/12 - a6 T^4/20
///         + b0/T - b1
inline double reducedG(const double* a, const double* b, double T, double r, double L)
{
    return (-0.5 * a[0] * r + a[1] * (L + 1.0) + b[0]) * r + a[2] * (1.0 - L) -
           T * (a[3] * (1.0 / 2) +
                T * (a[4] * (1.0 / 6) + T * (a[5] * (1.0 / 12) + T * (a[6] * (1.0 / 20))))) -
           b[1];
}

} // namespace

NASA9Polynomial::~NASA9Polynomial() = default;

NASA9Polynomial* NASA9Polynomial::create() { return new NASA9Polynomial; }

Polynomial* NASA9Polynomial::getCopy() const { return new NASA9Polynomial(*this); }

bool NASA9Polynomial::load(std::string& line)
{
    using detail::fortranNumber;
    using detail::number;
    using detail::slice;
    switch (lines++) {
    case 0:
        T1 = number(slice(line, 0, 11));
        T2 = number(slice(line, 11, 22));
        readExponents(slice(line, 23, 58));
        if (!(T1 > 0.0) || T1 > highestLowerT) throw runtime::Exception(1);
        return false;
    case 1:
        for (std::size_t i = 0; i < 5; ++i) A[i] = fortranNumber(slice(line, 16 * i, 16 * i + 16));
        return false;
    case 2:
        A[5] = fortranNumber(slice(line, 0, 16));
        A[6] = fortranNumber(slice(line, 16, 32));
        B[0] = fortranNumber(slice(line, 48, 64));
        B[1] = fortranNumber(slice(line, 64, 80));
        return true;
    default:
        return false;
    }
}

/// The exponents of a file are always the same ones; they are recognised as one text.
void NASA9Polynomial::readExponents(std::string_view field)
{
    const bool usual = field == " -2.0 -1.0  0.0  1.0  2.0  3.0  4.0";
    for (std::size_t i = 0; i < 7; ++i)
        E[i] = usual ? static_cast<double>(i) - 2.0
                     : detail::number(detail::slice(field, 5 * i, 5 * i + 5));
}

void NASA9Polynomial::requireInRange(double T) const
{
    if (!holds(T)) throw Exception(1);
}

double NASA9Polynomial::Cp0_tilde(double T) const
{
    requireInRange(T);
    return reducedCp(A, T, 1.0 / T);
}

double NASA9Polynomial::H0_tilde(double T) const
{
    requireInRange(T);
    return reducedH(A, B, T, 1.0 / T, std::log(T));
}

double NASA9Polynomial::S0_tilde(double T) const
{
    requireInRange(T);
    return reducedS(A, B, T, 1.0 / T, std::log(T));
}

double NASA9Polynomial::G0_tilde(double T) const
{
    requireInRange(T);
    return reducedG(A, B, T, 1.0 / T, std::log(T));
}

StandardState NASA9Polynomial::evaluate(const TemperatureTerms& terms) const
{
    requireInRange(terms.T);
    const double T = terms.T;
    const double r = terms.inverseT;
    const double L = terms.lnT;
    return {reducedCp(A, T, r), reducedH(A, B, T, r, L), reducedS(A, B, T, r, L),
            reducedG(A, B, T, r, L)};
}

} // namespace thermo::nasa9
