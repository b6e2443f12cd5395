// Viscosities and conductivities of the gases and of their pairs: from the data of the species, and
// estimated where these lack them.

#include <ketra/reaction/Derivatives.h>

#include <ketra/math/matrix/Matrix.h>
#include <ketra/reaction/Product.h>
#include <ketra/thermo/Constants.h>

#include <algorithm>
#include <cmath>
#include <numbers>

using math::matrix::Matrix;
using math::matrix::RowVector;
using thermo::gasConstant;

namespace reaction {

namespace {

constexpr double micropoise = 1e7; // in one Pa s

/// 5/16 sqrt(k/(pi N)) for masses in g/mol, cross sections in square Angstrom over pi and
/// viscosities in micropoise: the 26.7 of the kinetic theory of gases.
const double viscosityFactor = std::sqrt(7.29764695192136e-43) * 3.125e22;

// Reduced cross section of a molecule without data, ln(50 M^4.6 / T^1.4), at least 1 [TM86885].
constexpr double massPower = 4.6;
constexpr double temperaturePower = 1.4;
constexpr double crossSectionFactor = 50.0;

// Conductivity of a gas by its viscosity and heat capacity: the share of the translation is 15/4,
// that of the inner degrees of freedom 1.32, both in units of eta R/M [TM86885].
constexpr double translationShare = 0.00375;
constexpr double innerShare = 0.00132;
// An ion without data keeps its inner energy to itself but for a tenth.
constexpr double innerShareOfIons = 0.000132;

constexpr double avogadro = 6.02214179;          // 1e23/mol
constexpr double elementaryCharge = 4.8032;      // 1e-10 esu
constexpr double boltzmann = 1.3806503217520556; // 1e-16 erg/K: 8314.472 over avogadro
constexpr double leastShielding = 2.71828183;

/// Conductivity, mW/(cm K), of the viscosity \p eta, Pa s.
double conductivityOf(const Product& gas, double eta, double inner, double T)
{
    return eta * micropoise * gasConstant *
           ((gas.Cp0(T) / gasConstant - 2.5) * inner + translationShare) / gas.getM();
}

/// Collision integrals in which charges take part, square Angstrom [TM86885, RP1311].
class ChargedCollisions
{
public:
    ChargedCollisions(double T, double lnT, double xE)
    {
        const double te = T / 1000.0;
        const double ekt = elementaryCharge * elementaryCharge / (boltzmann * te);
        const double c = 100 * 8314.472 / avogadro;
        const double debye = c * 7.16197243913529 * (te / xE) / (ekt * ekt * ekt);
        const double ionic = std::pow(c * 64.45775195221762 * (te / xE), 2.0 / 3.0) / (ekt * ekt);
        const double lambda = std::max(std::sqrt(debye + ionic), leastShielding);
        coulomb = 100 * ekt * ekt * 1.29 * std::log(lambda);
        ionAndMolecule = std::exp(6.776 - 0.4 * lnT);
    }

    /// 0 for two neutral gases.
    double integral(const Product& i, const Product& j) const
    {
        if (!i.isIon()) return j.isIon() ? coulomb : 0.0;
        return j.isIon() || i.getM() < 1 ? coulomb : ionAndMolecule;
    }

private:
    double coulomb;        // two charges; a neutral gas in front of a charge likewise
    double ionAndMolecule; // polarisation
};

/// What the data of the species hold; 0 for what they do not.
void readData(const std::vector<Product*>& list, Matrix& eta, RowVector& lambda, double T)
{
    const auto n = static_cast<unsigned int>(list.size());
    for (unsigned int i = 0; i < n; ++i) {
        const Product& gas = *list[i];
        if (!gas.isTransportPropertiesAvailable()) continue;
        lambda.set(i, gas.findConductivity(T));
        eta.set(i, i, gas.findViscosity(T));
        if (!gas.isTransportIPropertiesAvailable()) continue;
        for (unsigned int j = 0; j < n; ++j)
            if (j != i) eta.set(i, j, gas.findViscosity(list[j], T));
    }
}

/// The species without data, ions left out.
void estimateSpecies(const std::vector<Product*>& list, Matrix& eta, RowVector& lambda, double T)
{
    const auto n = static_cast<unsigned int>(list.size());
    const double power = std::pow(T, temperaturePower);
    for (unsigned int i = 0; i < n; ++i) {
        const Product& gas = *list[i];
        const double M = gas.getM();
        if (eta.at(i, i) == 0.0) {
            if (gas.isIon()) continue;
            const double omega =
                std::max(1.0, std::log(crossSectionFactor * std::pow(M, massPower) / power));
            eta.set(i, i, std::sqrt(M * T) * viscosityFactor / (omega * micropoise));
        }
        if (lambda.at(i) == 0.0) lambda.set(i, conductivityOf(gas, eta.at(i, i), innerShare, T));
    }
}

/// Interaction viscosity of two neutral gases by their own viscosities.
double neutralPair(double Mi, double Mj, double etaI, double etaJ)
{
    const double e = 1 + std::sqrt(std::sqrt(Mj / Mi) * etaI / etaJ);
    return std::sqrt(Mj / (Mi + Mj)) * etaI * 5.656854 / (e * e);
}

/// The pairs without data, and the ions, whose collisions among themselves are such a pair.
void estimatePairs(const std::vector<Product*>& list, Matrix& eta, RowVector& lambda, double T,
                   const ChargedCollisions& charged)
{
    const auto n = static_cast<unsigned int>(list.size());
    for (unsigned int i = 0; i < n; ++i) {
        const Product& gas = *list[i];
        const double Mi = gas.getM();
        for (unsigned int j = 0; j < n; ++j) {
            if (eta.at(i, j) == 0.0) eta.set(i, j, eta.at(j, i));
            if (eta.at(j, i) == 0.0) eta.set(j, i, eta.at(i, j));
            if (eta.at(i, j) != 0.0) continue;

            const double Mj = list[j]->getM();
            const double Q = charged.integral(gas, *list[j]);
            const double pair = Q != 0.0 ? std::sqrt(2 * T * Mi * Mj / (Mi + Mj)) *
                                               viscosityFactor * std::numbers::pi / (Q * micropoise)
                                         : neutralPair(Mi, Mj, eta.at(i, i), eta.at(j, j));
            eta.set(i, j, pair);
            eta.set(j, i, pair);
            if (i == j) lambda.set(i, conductivityOf(gas, pair, innerShareOfIons, T));
        }
    }
}

} // namespace

void Derivatives::prepareData(const std::vector<Product*>& list, unsigned int, unsigned int, double,
                              double, const double*, double xE, Matrix* eta, RowVector* lambda,
                              double atT) const
{
    eta->clear();
    lambda->clear();
    readData(list, *eta, *lambda, atT);
    estimateSpecies(list, *eta, *lambda, atT);
    estimatePairs(list, *eta, *lambda, atT,
                  ChargedCollisions(atT, std::log(atT), std::max(xE, leastElectrons)));
}

} // namespace reaction
