#include <ketra/performance/efficiency/CorrectionFactors.h>

#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/efficiency/detail/CorrectionTables.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/input/ConfigFile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace performance::efficiency {

namespace {

using equilibrium::Chamber;
using equilibrium::NozzleSectionConditions;
using math::interpolation::Interpolation2D;
using thermo::input::EfficiencyFactors;

constexpr double percents = 100.0;                // in 1
constexpr double radiansPerDegree = 3.14 / 180.0; // two decimals of pi; results rely on it
constexpr double usualLength = 80.0;              // of a bell nozzle, percent
constexpr double usualFrictionAxis = 9.0;
constexpr double usualAlpha = 0.8; // oxidizer excess coefficient of a premixed charge

// Classes of products, the second axis of the reaction table.
constexpr double otherProducts = 1.0;
constexpr double productsWithCO = 2.0;
constexpr double productsWithN2 = 3.0;

// Loss of the reaction by the chamber pressure p: 2.1 % at 2 MPa, 1 % less with each factor e.
constexpr double lossPressure = 2000000.0; // Pa
constexpr double lossAtPressure = 2.1;     // percent

// Shares of the lag in velocity and of that in temperature in the two-phase loss.
constexpr double velocityLag = 0.42;
constexpr double temperatureLag = 1.58;

template <std::size_t rows, std::size_t columns>
std::unique_ptr<Interpolation2D> tableOf(const std::array<detail::Row<columns>, rows>& table,
                                         const std::array<double, columns>& axis)
{
    std::array<double, rows> x;
    std::array<double, rows * columns> values;
    for (std::size_t i = 0; i < rows; ++i) {
        x[i] = table[i].x;
        std::copy(table[i].entries.begin(), table[i].entries.end(), values.begin() + i * columns);
    }
    return std::make_unique<Interpolation2D>(rows, x.data(), columns, axis.data(), values.data());
}

double limitedX(const Interpolation2D& table, double x)
{
    return std::clamp(x, table.getMinX(), table.getMaxX());
}

double limitedY(const Interpolation2D& table, double y)
{
    return std::clamp(y, table.getMinY(), table.getMaxY());
}

/// The entry at \p x, \p y as a fraction, both limited to the axes.
double readOut(const Interpolation2D& table, double x, double y)
{
    return table.bilinearInterpolation(limitedX(table, x), limitedY(table, y)) / percents;
}

template <class Result> Result& required(Result* result)
{
    if (result == nullptr) throw thermo::Exception(0);
    return *result;
}

/// The user's factors, null without any.
const EfficiencyFactors* givenFactors(const TheoreticalPerformance* performance)
{
    const auto& options = required(required(performance).getData()).getNozzleFlowOptions();
    return options.isEfficiencyFactorsSet() ? &options.getEfficiencyFactors() : nullptr;
}

bool nozzleIsGiven(const EfficiencyFactors* given)
{
    return given != nullptr && given->isNozzleEfficiencySet();
}

} // namespace

CorrectionFactors::CorrectionFactors(TheoreticalPerformance* source)
    : performance(source), friction(tableOf(detail::frictionLosses, detail::frictionAxis)),
      reaction(tableOf(detail::reactionLosses, detail::reactionAxis)),
      divergence(tableOf(detail::divergenceEfficiencies, detail::divergenceAxis))
{
}

CorrectionFactors::~CorrectionFactors() = default;

double CorrectionFactors::getReactionEfficiency() const
{
    const EfficiencyFactors* given = givenFactors(performance);
    if (given != nullptr && given->isReactionEfficiencySet()) return given->getReactionEfficiency();

    const thermo::Propellant* propellant = performance->getPropellant();
    const double alpha = propellant != nullptr ? propellant->getAlpha() : usualAlpha;
    const double kept = 1.0 - readOut(*reaction, alpha, productClass());

    const Chamber& chamber = required(performance->getChamber());
    const double p = required(chamber.getReaction(Chamber::INJECTION_PLANE)).getP();
    const double pressureLoss = (lossAtPressure - std::log(p / lossPressure)) / percents;
    return pressureLoss > 0.0 ? (1.0 - pressureLoss) * kept : kept;
}

/// Whether CO or N2 comes first among the products of the chamber.
double CorrectionFactors::productClass() const
{
    const Chamber& chamber = required(performance->getChamber());
    const std::unique_ptr<reaction::ReactingMixture> products(
        required(chamber.getReaction(Chamber::INJECTION_PLANE)).copyReactingMixture(true, true));
    const std::unique_ptr<thermo::Mixture> mixture(products->copyResultingMixture());
    for (int i = 0; i < mixture->size(); ++i) {
        const auto name = mixture->getSpecies(i)->getName();
        if (name == "CO") return productsWithCO;
        if (name == "N2") return productsWithN2;
    }
    return otherProducts;
}

double CorrectionFactors::getDivergenceEfficiency() const
{
    const EfficiencyFactors* given = givenFactors(performance);
    if (nozzleIsGiven(given)) return 1.0;
    if (given != nullptr && given->isConeHalfAngleSet())
        return (std::cos(given->getConeHalfAngle() * radiansPerDegree) + 1.0) * 0.5;
    const bool lengthIsGiven = given != nullptr && given->isNozzleLengthSet();
    return getDivergenceEfficiency(lengthIsGiven ? given->getNozzleLength() : usualLength,
                                   required(performance->getExitSection()).getFr());
}

double CorrectionFactors::getDivergenceEfficiency(double length, double areaRatio) const
{
    return readOut(*divergence, length, areaRatio);
}

double CorrectionFactors::getFrictionEfficiency() const
{
    if (nozzleIsGiven(givenFactors(performance))) return 1.0;
    return getFrictionEfficiency(required(performance->getExitSection()).getFr(),
                                 usualFrictionAxis);
}

double CorrectionFactors::getFrictionEfficiency(double areaRatio, double y) const
{
    // The limits are those of the area ratio, before its root: of the table's rows only those up to
    // the root of the last are ever read.
    const double root = std::sqrt(limitedX(*friction, areaRatio));
    return 1.0 - friction->bilinearInterpolation(root, limitedY(*friction, y)) / percents;
}

// With Z the mass fraction of the particles, c_z their share of the heat capacity, and W, T_e the
// velocity and the temperature at the exit:
//   0.5 (0.42 (1 - Z/2) + 1.58 (1 - (T_c - (1 + ln(T_c/T_e)) T_e) c_z Z / W^2))
double CorrectionFactors::getMultiphaseEfficiency() const
{
    const Chamber& chamber = required(required(performance).getChamber());
    const NozzleSectionConditions& exit = required(performance->getExitSection());
    const auto* frozenChamber = dynamic_cast<const frozen::Chamber*>(&chamber);
    const NozzleSectionConditions& composition =
        frozenChamber != nullptr ? *frozenChamber->getEquilibriumSection() : exit;

    const reaction::Derivatives& derivatives = required(composition.getDerivatives());
    const double Z = derivatives.getZ();
    if (Z == 0.0) return 1.0; // exactly: a trace of particles counts already

    const double Te = exit.getT();
    const double W = exit.getW();
    const double Tc = required(chamber.getReaction(Chamber::INJECTION_PLANE)).getT();
    const double heatLost = (Tc - (1.0 + std::log(Tc / Te)) * Te) * derivatives.getCpz_spec() * Z;
    return 0.5 * (velocityLag * (1.0 - Z / 2.0) + temperatureLag * (1.0 - heatLost / (W * W)));
}

double CorrectionFactors::getNozzleEfficiency() const
{
    const EfficiencyFactors* given = givenFactors(performance);
    if (nozzleIsGiven(given)) return given->getNozzleEfficiency();
    return getDivergenceEfficiency() * getFrictionEfficiency() * getMultiphaseEfficiency();
}

double CorrectionFactors::getOverallEfficiency() const
{
    return getReactionEfficiency() * getNozzleEfficiency();
}

} // namespace performance::efficiency
