// How a chamber with warm starts finds the section of an area ratio, and a persistent one.

#include <ketra/performance/equilibrium/detail/NozzleSectionSolver.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/util/Log.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using performance::detail::BracketedRoot;
using reaction::Derivatives;
using reaction::Equilibrium;

namespace performance::equilibrium {

namespace {

constexpr unsigned int noSection = 11; // code of a section that cannot be found

constexpr double lawfulError = 0.0005; // of the area ratio, relative, within which a section is one
constexpr double widestError = 0.0075; // at a jump, where no section has the area ratio itself
constexpr double tightError = 1e-6;    // where a further step costs a few cycles only
constexpr int newtonPasses = 20;
constexpr double widestStep = 2.0; // of ln p
constexpr double leastStep = 0.001;
constexpr double bracketError = 1e-5;
constexpr double narrowestBracket = 1e-10;
constexpr int bracketSteps = 60;
constexpr double endOfData = 0.5;      // K, within which the data of a species end
constexpr double traceFraction = 1e-6; // of the gas

} // namespace

/// The solved state nearest to the section.
const Equilibrium& NozzleSectionConditions::Solver::start() const
{
    return chamber.isWarmStart() && supersonic ? throat : end;
}

void NozzleSectionConditions::Solver::findAreaRatio(double Fr)
{
    section.core.Fr = Fr;
    if (!supersonic || !(chamber.isWarmStart() && stepToAreaRatio(Fr))) {
        try {
            searchAreaRatio(Fr);
            improve(Fr);
        } catch (const thermo::Exception&) {
            if (!chamber.isPersistent()) throw;
            bracketAreaRatio(Fr);
        }
    }
    if (calculateTransport)
        section.core.derivatives->calculateTransportProperties(0.0, /*reacting=*/true);
}

/// Searches in a bracket, unless the section is one of the area ratio as it is.
void NozzleSectionConditions::Solver::improve(double Fr)
{
    if (!chamber.isPersistent()) return;
    if (std::abs(areaRatio() / Fr - 1) > lawfulError) bracketAreaRatio(Fr);
}

/// Newton's method in ln p for the logarithm of the area ratio, which is nearly a straight line.
/// \returns whether it has come to the area ratio
bool NozzleSectionConditions::Solver::stepToAreaRatio(double Fr)
try {
    guess(Fr);
    double lnP = std::log(section.p);
    double previous = std::numeric_limits<double>::infinity();
    for (int pass = 0; pass < newtonPasses; ++pass) {
        const double excess = excessAt(lnP, Fr);
        if (std::abs(excess) < tightError) return true;
        // Where the digits of the equilibrium end, or at a jump.
        if (!(std::abs(excess) < previous)) return std::abs(excess) < lawfulError;
        previous = std::abs(excess);
        const double slope = areaSlope();
        if (!(slope < 0)) return false;
        lnP -= std::clamp(excess / slope, -widestStep, widestStep);
        if (!(lnP < std::log(throat.getP())))
            lnP = (std::log(section.p) + std::log(throat.getP())) / 2;
    }
    return false;
} catch (const thermo::Exception&) {
    return false; // another road may still lead to the section
}

/// The area ratio rises from the throat on either side, without end in front of it.
void NozzleSectionConditions::Solver::bracketAreaRatio(double Fr)
{
    util::Log::infof("THERMO",
                     "Nozzle section %.3f: the search has not come to the area ratio. Searching "
                     "between two pressures.%s",
                     Fr, util::eol);
    section.core.problem = std::make_unique<Equilibrium>(start());
    section.core.problem->setPersistent(chamber.isPersistent());
    section.core.problem->setWarmStart(chamber.isWarmStart());
    const Bracket bracket = bracketBehind(Fr);
    BracketedRoot root([&](double lnP) { return excessAt(lnP, Fr); }, bracket.throatSide,
                       bracket.farSide);
    if (!root.close(bracketError, narrowestBracket)) keepJump(root, Fr);
}

NozzleSectionConditions::Solver::Bracket NozzleSectionConditions::Solver::bracketBehind(double Fr)
{
    const double w = std::sqrt(2 * (injection.getHspec() - throat.getHspec()));
    const double atThroat = throatFlux / (throatDerivatives.getRho() * w);
    Bracket bracket{{std::log(throat.getP()), std::log(atThroat / Fr)},
                    {std::log(end.getP()), std::numeric_limits<double>::infinity()}};
    if (!(bracket.throatSide.value < 0)) {
        util::Log::errorf("THERMO",
                          "Could not find nozzle section shifting equilibrium conditions: area "
                          "ratio %.3f is not above that of the throat.%s",
                          Fr, util::eol);
        throw thermo::Exception(noSection);
    }
    if (!supersonic) return bracket;

    guess(Fr);
    double lnP = std::min(std::log(section.p), bracket.throatSide.x - leastStep);
    double unsolved = -std::numeric_limits<double>::infinity(); // ln p without an equilibrium
    std::exception_ptr failure;
    for (int step = 0; step < bracketSteps; ++step) {
        try {
            const double excess = excessAt(lnP, Fr);
            if (excess >= 0) {
                bracket.farSide = {lnP, excess};
                return bracket;
            }
            bracket.throatSide = {lnP, excess};
            coldest = {section.core.problem->getT(), std::exp(excess) * Fr, isAtEndOfData()};
            const double slope = areaSlope();
            const double newton = slope < 0 ? excess / slope : 0.0;
            lnP -= std::clamp(1.2 * newton, leastStep, widestStep);
        } catch (const thermo::Exception&) {
            failure = std::current_exception();
            unsolved = lnP;
        }
        lnP = std::max(lnP, (bracket.throatSide.x + unsolved) / 2);
        if (bracket.throatSide.x - unsolved < leastStep) break;
    }
    failBehind(Fr, failure);
}

/// No section of the area ratio has been found behind the coldest state that has.
void NozzleSectionConditions::Solver::failBehind(double Fr, std::exception_ptr failure) const
{
    if (coldest.isAtEndOfData)
        util::Log::errorf("THERMO",
                          "Could not find nozzle section shifting equilibrium conditions: at area "
                          "ratio %.3f, in front of %.3f, the products are at %.2f K, where their "
                          "data begin.%s",
                          coldest.Fr, Fr, coldest.T, util::eol);
    else if (failure)
        std::rethrow_exception(failure);
    else
        util::Log::errorf("THERMO",
                          "Could not find nozzle section shifting equilibrium conditions: no "
                          "pressure belongs to area ratio %.3f.%s",
                          Fr, util::eol);
    throw thermo::Exception(noSection);
}

/// Some gas of the section that is more than a trace has no data below its temperature.
bool NozzleSectionConditions::Solver::isAtEndOfData() const
{
    const Equilibrium& products = *section.core.problem;
    std::vector<const thermo::Species*> species;
    products.getAllSpecies(&species, traceFraction * products.getNg());
    return std::any_of(species.begin(), species.end(), [&](const thermo::Species* gas) {
        return !gas->isCondensed() && products.getT() - gas->getMinimalT() < endOfData;
    });
}

/// The nearer side of a jump in area ratio, as a phase changes.
void NozzleSectionConditions::Solver::keepJump(const BracketedRoot& root, double Fr)
{
    const double error = std::abs(std::expm1(excessAt(root.best().x, Fr)));
    if (error <= lawfulError) return;
    util::Log::infof("THERMO",
                     "Nozzle section %.3f: the area ratio jumps between %.3f and %.3f, as a phase "
                     "changes.%s",
                     Fr, Fr * std::exp(root.best().value), Fr * std::exp(root.other().value),
                     util::eol);
    if (error <= widestError) return;
    util::Log::errorf("THERMO",
                      "Could not find nozzle section shifting equilibrium condition: no state has "
                      "area ratio %.3f.%s",
                      Fr, util::eol);
    throw thermo::Exception(noSection);
}

/// Expands to the pressure. \returns the logarithm of the area ratio over the one sought
double NozzleSectionConditions::Solver::excessAt(double lnP, double Fr)
{
    section.p = std::exp(lnP);
    const double k = throatDerivatives.getK();
    expand(end.getT() * std::pow(section.p / end.getP(), (k - 1) / k), /*transport=*/false);
    return std::log(areaRatio() / Fr);
}

/// d ln F / d ln p = (1/M^2 - 1)/k at constant entropy and total enthalpy.
double NozzleSectionConditions::Solver::areaSlope() const
{
    const Derivatives& gas = *section.core.derivatives;
    const double M = section.core.W / gas.getA();
    return (1 / (M * M) - 1) / gas.getK();
}

} // namespace performance::equilibrium
