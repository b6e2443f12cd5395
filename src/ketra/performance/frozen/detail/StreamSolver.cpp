#include <ketra/performance/frozen/detail/StreamSolver.h>

#include <ketra/gasdynamics/gasdynamics.h>
#include <ketra/performance/detail/BracketedRoot.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>

using gasdynamics::gf_pi;
using gasdynamics::gf_tau;
using performance::detail::BracketedRoot;
using reaction::Product;
using reaction::ReactingMixture;
using thermo::gasConstant;

namespace performance::frozen {

namespace {

constexpr unsigned int noFrozenSection = 13; // code of a section that cannot be found
constexpr double referencePressure = 1e5;    // Pa, of the logarithms

} // namespace

NozzleSectionConditions::StreamSolver::StreamSolver(NozzleSectionConditions& newSection,
                                                    Frozen& newStream, Stream& newFlow,
                                                    const Origin& newOrigin)
    : section(newSection), stream(newStream), flow(newFlow), origin(newOrigin)
{
    freeze();
}

/// Takes the composition, its entropy and its sums, which no expansion changes any more.
void NozzleSectionConditions::StreamSolver::freeze()
{
    stream.products.reset(origin.freezing.copyReactingMixture(true, true));
    const ReactingMixture& products = *stream.products;
    stream.mixture.reset(stream.products->copyResultingMixture());
    stream.N = products.getN();
    stream.Mm = stream.mixture->getMm();
    stream.q = gasConstant / (stream.N * stream.Mm);

    double gasMass = 0.0;
    for (unsigned int j = 0; j < products.size(); ++j) {
        const double m = products.n(j) * products.product(j)->getM() / 1000;
        mass += m;
        if (j >= products.gasSize()) continue;
        gasMass += m;
        Ngas += products.n(j);
    }
    stream.Z = mass == gasMass ? 0.0 : 1 - gasMass / mass;
    stream.S_spec = origin.freezing.getSspec();
    stream.S = origin.freezing.getS() * stream.N;
}

double NozzleSectionConditions::StreamSolver::guessByPressure(double ratio) const
{
    const double k = origin.throat.getK();
    return origin.end.getT() * gf_tau(gasdynamics::lambda_pi(ratio, k, true), k);
}

/// Temperature at the entropy of the freezing section, and density: rho = m p / (Ngas R T)
void NozzleSectionConditions::StreamSolver::expand(double T0)
{
    const double lnp = std::log(section.p / referencePressure);
    stream.T = section.solveForFixedPressure(stream.S, stream.products.get(), Ngas, lnp, T0);
    stream.rho = mass / (Ngas * gasConstant * stream.T / section.p);
}

/// Velocity from the enthalpy sum n_j H_j/(R T): W = sqrt(2 (H_i - H))
void NozzleSectionConditions::StreamSolver::accelerate(double sumH)
{
    stream.H_spec = stream.T * sumH * stream.q;
    flow.W = std::sqrt(2 * (origin.injection.getHspec() - stream.H_spec));
}

double NozzleSectionConditions::StreamSolver::sum_nH() const
{
    double sum = 0.0;
    for (unsigned int j = 0; j < stream.products->size(); ++j) {
        Product* product = stream.products->product(j);
        sum += product->n() * section.heldAt(*product, stream.T).H;
    }
    return sum;
}

void NozzleSectionConditions::StreamSolver::findAreaRatio(double Fr, bool persistent)
{
    try {
        if (stepToAreaRatio(Fr)) return;
    } catch (const std::exception&) {
        if (!persistent) throw;
    }
    if (persistent) {
        bracketAreaRatio(Fr);
        return;
    }
    util::Log::errorf("THERMO",
                      "Could not solve frozen equilibrium for nozzle section: maximum number of "
                      "iterations is exceeded.%s",
                      util::eol);
    throw thermo::Exception(noFrozenSection);
}

bool NozzleSectionConditions::StreamSolver::stepToAreaRatio(double Fr)
{
    constexpr double tolerance = 0.0005; // of the area ratio, relative
    constexpr double close = 0.01;       // within which the step is linear in the ratio
    constexpr int passes = 100;

    const double k = origin.throat.getK();
    const double lambda = gasdynamics::lambda_q(1 / Fr, k, true);
    section.p = origin.end.getP() * gf_pi(lambda, k);
    stream.T = std::max(floorT, origin.end.getT() * gf_tau(lambda, k));
    for (int pass = 0; pass < passes; ++pass) {
        expand(stream.T);
        accelerate(sum_nH());
        const double ratio = areaRatio() / Fr;
        const double error = std::abs(Fr - areaRatio()) / Fr;
        if (error < tolerance) return true;
        section.p *= error < close ? ratio : ratio * ratio;
    }
    return false;
}

/// The area ratio rises as the pressure falls from that of the freezing section.
void NozzleSectionConditions::StreamSolver::bracketAreaRatio(double Fr)
{
    constexpr double tolerance = 1e-6;
    constexpr double narrowest = 1e-10;
    constexpr double step = 0.5; // of ln p
    constexpr int steps = 100;

    util::Log::infof("THERMO",
                     "Frozen nozzle section %.3f: the search has not come to the area ratio. "
                     "Searching between two pressures.%s",
                     Fr, util::eol);
    const auto excess = [&](double lnP) { return excessAt(lnP, Fr); };
    stream.T = origin.freezing.getT();
    BracketedRoot::Point near{std::log(origin.freezing.getP()), 0.0};
    near.value = excess(near.x);
    BracketedRoot::Point far = near;
    for (int i = 0; i < steps && near.value < 0.0 && far.value < 0.0; ++i) {
        near = far;
        far.x -= step;
        far.value = excess(far.x);
    }
    if (!(near.value < 0.0 && far.value >= 0.0)) {
        util::Log::errorf("THERMO",
                          "Could not solve frozen equilibrium for nozzle section: no pressure "
                          "behind the freezing section belongs to area ratio %.3f.%s",
                          Fr, util::eol);
        throw thermo::Exception(noFrozenSection);
    }
    BracketedRoot root(excess, near, far);
    if (!root.close(tolerance, narrowest)) excess(root.best().x);
}

/// Expands to the pressure. \returns the logarithm of the area ratio over the one sought
double NozzleSectionConditions::StreamSolver::excessAt(double lnP, double Fr)
{
    section.p = std::exp(lnP);
    expand(stream.T);
    accelerate(sum_nH());
    return std::log(areaRatio() / Fr);
}

/// Sums of the composition over R T, or over R, with the potential of a gas raised by its
/// concentration: G_j/(R T) + ln(n_j / Ngas) + ln p.
void NozzleSectionConditions::StreamSolver::storeState()
{
    const double lnp = std::log(section.p / referencePressure);
    double sumH = 0.0, sumU = 0.0, sumCp = 0.0, sumG = 0.0;
    for (unsigned int j = 0; j < stream.products->size(); ++j) {
        Product& product = *stream.products->product(j);
        const double n = product.n();
        const double T = section.getT(&product, stream.T);
        const Held held = section.heldAt(product, stream.T);
        sumH += n * held.H;
        sumU += n * (product.U0_tilde(T) + (held.H - product.H0_tilde(T)));
        sumCp += n * held.Cp;
        // n ln n vanishes with n; its logarithm alone does not
        const double x = n / Ngas;
        const bool isPure = product.isCondensed() || x == 0.0;
        const double G = section.persistent ? held.H - held.S : product.G0_tilde(T);
        sumG += n * (G + (isPure ? 0.0 : std::log(x) + lnp));
    }
    accelerate(sumH);
    stream.H = stream.H_spec * stream.Mm;
    stream.U_spec = stream.T * sumU * stream.q;
    stream.U = stream.U_spec * stream.Mm;
    stream.G_spec = stream.T * sumG * stream.q;
    stream.G = stream.G_spec * stream.Mm;
    stream.Cp = sumCp * gasConstant / stream.N;
    stream.Cv = stream.Cp - gasConstant;
    stream.K = stream.Gamma = stream.Cp / stream.Cv;
    stream.A = std::sqrt(stream.K * gasConstant * stream.T / stream.Mm);
}

void NozzleSectionConditions::StreamSolver::storePerformance(double Betta)
{
    flow.F = 1 / (flow.W * stream.rho);
    flow.Mach = flow.W / stream.A;
    flow.Is_v = flow.F * section.p + flow.W;
    flow.Is = flow.W;
    flow.Kp_v = flow.Is_v / Betta;
    flow.Kp = flow.W / Betta;
}

/// Beyond the data of a gas, such as the electron's below 298.15 K, a persistent section takes the
/// properties at the nearest temperature that all gases have.
void NozzleSectionConditions::StreamSolver::calculateTransport(reaction::Derivatives& freezing)
{
    try {
        freezing.calculateTransportProperties(stream.T, /*reacting=*/false);
    } catch (const thermo::Exception&) {
        if (!section.persistent) throw;
        const GasRange data = dataOf(*stream.products);
        if (!(data.low < data.high)) throw;
        const double T = std::clamp(stream.T, data.low, data.high);
        util::Log::infof("THERMO",
                         "Frozen nozzle section: no transport data of some species at %.2f K. "
                         "Taking those at %.2f K.%s",
                         stream.T, T, util::eol);
        freezing.calculateTransportProperties(T, /*reacting=*/false);
    }
}

void NozzleSectionConditions::StreamSolver::storeTransport(reaction::Derivatives& freezing,
                                                           bool calculate)
{
    if (calculate) calculateTransport(freezing);
    stream.V = freezing.getV();
    stream.Cfr = freezing.getCfr();
    stream.Cpfr = freezing.getCpfr();
    stream.Prfr = freezing.getPrfr();
}

} // namespace performance::frozen
