// The course of the transport calculation, and its part without reactions.

#include <ketra/reaction/Derivatives.h>

#include <ketra/math/matrix/Matrix.h>
#include <ketra/reaction/Product.h>
#include <ketra/reaction/ReactingMixture.h>

#include <exception>
#include <iterator>
#include <limits>

using math::matrix::Matrix;
using math::matrix::RowVector;

namespace reaction {

namespace {

constexpr double bands[] = {1e-4, 1e-8, 1e-10}; // mole fractions of the molecules that matter
constexpr double recoveryBand = 1e-7;           // mole fraction of the first recovery
constexpr double recoveryStep = 100.0;          // of that band, from one recovery to the next
constexpr unsigned int recoveries = 3;
// No real gas has more; beyond lies a matrix without enough digits.
constexpr double largestCr = 10.0;     // W/(m K)
constexpr double largestCpr = 10000.0; // J/(kg K)

bool isElectron(const thermo::Species& species) { return species.isIon() && species.getM() < 1; }

bool isAtomic(const thermo::Species& species)
{
    return isElectron(species) || (species.size() == 1 && species.get(0)->getNumber() == 1.0);
}

} // namespace

/// What one pass works on: the gases, and their data in the same order.
struct Derivatives::InvolvedGases {
    std::vector<Product*> list;
    unsigned int nm = 0;
    double nSum = 0.0, nE = 0.0, xE = 0.0;
    std::unique_ptr<double[]> x;
    Matrix eta{0, 0};
    RowVector lambda{0};

    unsigned int n() const { return static_cast<unsigned int>(list.size()); }
};

void Derivatives::calculateTransportProperties(double atT, bool reacting)
{
    viscosity = Cfr = Cr = Ceql = 0.0;
    Cpfr = Cpr = Cpeql = 0.0;
    Prfr = Prr = Preql = 0.0;
    if (atT == 0.0) atT = temperature();

    const InvolvedGases gases = involve(bands, std::size(bands), atT);
    if (!(gases.nSum > 0.0)) return; // nothing but condensed phases
    calculateTransportPropertiesFr(gases.list, gases.n(), gases.nSum, gases.nE, gases.x.get(),
                                   gases.xE, &gases.eta, &gases.lambda, atT);
    if (reacting && !solveReactions(gases, atT)) recoverReactions(atT);

    Ceql = Cr + Cfr;
    Cpeql = Cpr + Cpfr;
    Preql = viscosity * Cpeql / Ceql;
}

/// Fewer species make the matrices better conditioned. If nothing helps, the reactions are left
/// out.
void Derivatives::recoverReactions(double atT)
{
    double threshold = recoveryBand;
    for (unsigned int attempt = 0; attempt < recoveries; ++attempt) {
        if (solveReactions(involve(&threshold, 1, atT), atT)) return;
        threshold *= recoveryStep;
    }
    Cr = Cpr = Prr = 0.0;
}

/// The share of the reactions. \returns whether it was found and is plausible
bool Derivatives::solveReactions(const InvolvedGases& gases, double atT)
{
    try {
        calculateTransportPropertiesR(gases.list, gases.nm, gases.n(), gases.nSum, gases.nE,
                                      gases.x.get(), gases.xE, &gases.eta, &gases.lambda, atT);
    } catch (const std::exception&) {
        return false;
    }
    return 0.0 <= Cr && Cr <= largestCr && 0.0 <= Cpr && Cpr <= largestCpr;
}

Derivatives::InvolvedGases Derivatives::involve(const double* thresholds, unsigned int levels,
                                                double atT) const
{
    InvolvedGases gases;
    double counts[std::size(bands)] = {};
    double* x = nullptr;
    getInvolvedSpecies(gases.list, gases.nm, gases.nSum, gases.nE, x, gases.xE, thresholds, counts,
                       levels);
    gases.x.reset(x);
    gases.eta = Matrix(gases.n(), gases.n());
    gases.lambda = RowVector(gases.n());
    prepareData(gases.list, gases.nm, gases.n(), gases.nSum, gases.nE, x, gases.xE, &gases.eta,
                &gases.lambda, atT);
    return gases;
}

void Derivatives::getInvolvedSpecies(std::vector<Product*>& list, unsigned int& nm, double& nSum,
                                     double& nE, double*& x, double& xE, const double* thresholds,
                                     double* counts, unsigned int levels) const
{
    const unsigned int gasCount = mixture->gasSize();
    nm = 0;
    nSum = 0.0;
    for (unsigned int j = 0; j < gasCount; ++j) {
        nSum += mixture->n(j);
        if (!isAtomic(*mixture->product(j))) continue;
        list.push_back(mixture->product(j));
        ++nm;
    }
    double upper = std::numeric_limits<double>::infinity();
    for (unsigned int level = 0; level < levels; ++level) {
        for (unsigned int j = 0; j < gasCount; ++j) {
            const double f = mixture->n(j) / nSum;
            if (f < thresholds[level] || f >= upper || isAtomic(*mixture->product(j))) continue;
            list.push_back(mixture->product(j));
            counts[level] += 1;
        }
        upper = thresholds[level];
    }

    nSum = 0.0;
    nE = 0.0;
    for (const Product* gas : list) {
        nSum += gas->n();
        if (isElectron(*gas)) nE = gas->n();
    }
    auto fractions = std::make_unique<double[]>(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) fractions[i] = list[i]->n() / nSum;
    x = fractions.release();
    xE = nE / nSum > leastElectrons ? nE / nSum : leastElectrons;
}

/// Rules of Wilke and of Mason and Saxena, with interaction viscosities [TM86885]:
///
///     eta = sum_i eta_i x_i / sum_j phi_ij x_j,  lambda = sum_i lambda_i x_i / sum_j psi_ij x_j,
///     phi_ij = 2 M_j eta_i / (eta_ij (M_i + M_j)),
///     psi_ij = phi_ij (1 + 2.41 (M_i - M_j) (M_i - 0.142 M_j) / (M_i + M_j)^2)
void Derivatives::calculateTransportPropertiesFr(const std::vector<Product*>& list, unsigned int n,
                                                 double, double, const double* x, double,
                                                 const Matrix* eta, const RowVector* lambda,
                                                 double atT)
{
    constexpr double milliwattPerCentimetre = 10.0; // in W/m
    constexpr double gramsPerKilogram = 1000.0;
    std::vector<double> masses(n); // g/mol
    for (unsigned int i = 0; i < n; ++i) masses[i] = list[i]->getM();

    viscosity = Cfr = 0.0;
    double heat = 0.0, mass = 0.0;
    for (unsigned int i = 0; i < n; ++i) {
        const double Mi = masses[i];
        double sumPhi = 0.0, sumPsi = 0.0;
        for (unsigned int j = 0; j < n; ++j) {
            const double Mj = masses[j], s = Mi + Mj;
            const double interaction = i < j ? eta->at(i, j) : eta->at(j, i);
            const double phi = i == j ? 1.0 : 2 / (interaction * s) * Mj * eta->at(i, i);
            const double psi = phi * (1 + 2.41 * (Mi - 0.142 * Mj) * (Mi - Mj) / (s * s));
            sumPhi += phi * x[j];
            sumPsi += psi * x[j];
        }
        viscosity += eta->at(i, i) * x[i] / sumPhi;
        Cfr += lambda->at(i) * x[i] / sumPsi;
        heat += x[i] * list[i]->Cp0(atT);
        mass += x[i] * Mi;
    }
    Cfr /= milliwattPerCentimetre;
    Cpfr = gramsPerKilogram * heat / mass;
    Prfr = viscosity * Cpfr / Cfr;
}

} // namespace reaction
