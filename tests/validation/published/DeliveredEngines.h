#pragma once

#include <validation/published/PublishedFigure.h>

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/efficiency/CorrectionFactors.h>
#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/verification/EngineCertificate.h>

#include <memory>
#include <string>
#include <vector>

// Rocket engines as built, with the specific impulse that they deliver.

namespace ketra_test {

inline constexpr double standardGravity = 9.80665; // m/s^2

/// An engine and what it delivers.
struct DeliveredEngine {
    std::string name;
    std::string cycle;                // closed, fed, open, solid
    std::vector<Reactant> components; // oxidizer and fuel, or what a solid is mixed of
    double ratio;                     // oxidizer over fuel, 0 of a solid
    double p;                         // MPa
    double areaRatio;
    std::string Isp; // s, in vacuum
    std::string source;
    std::string reason; // why the corrected impulse is beyond its limit

    double delivered() const { return std::stod(Isp); }
    bool isSolid() const { return cycle == "solid"; }
    /// All propellant leaves the chamber through its throat, and the impulse delivered is that of
    /// the nozzle.
    bool isComparable() const { return cycle != "open"; }
};

/// The engines of liquid propellants, then the solid motors.
inline std::vector<DeliveredEngine> deliveredEngines()
{
    std::vector<DeliveredEngine> all;
    for (const auto& row : referenceRows("delivered.csv"))
        all.push_back(
            {row.at(0),
             row.at(1),
             {{row.at(2), numberOf(row.at(3)), 1.0}, {row.at(4), numberOf(row.at(5)), 1.0}},
             numberOf(row.at(6)),
             numberOf(row.at(7)),
             numberOf(row.at(8)),
             row.at(9),
             row.at(10),
             row.at(11)});
    for (const auto& row : referenceRows("motors.csv"))
        all.push_back({row.at(0),
                       "solid",
                       {{"NH4CLO4(I)", 298.15, numberOf(row.at(1))},
                        {"AL(cr)", 298.15, numberOf(row.at(2))},
                        {"HTPB", 298.15, numberOf(row.at(3))}},
                       0.0,
                       numberOf(row.at(4)),
                       numberOf(row.at(5)),
                       row.at(6),
                       row.at(7),
                       ""});
    return all;
}

/// What the library makes of an engine: specific impulse in vacuum, s.
struct FoundImpulse {
    double ideal;     // shifting equilibrium
    double corrected; // of a real engine by the correlations, with a bell nozzle of 80 % length
    verification::Grade grade; // of chamber and exit
};

/// The document that states no more than the published figures.
inline std::unique_ptr<thermo::input::ConfigFile> documentOf(const DeliveredEngine& engine)
{
    auto document = std::make_unique<thermo::input::ConfigFile>();
    document->getGeneralOptions().setIons(false);
    document->getCombustionChamberConditions().setPressure(engine.p, thermo::input::Pressure::MPA,
                                                           true);
    document->getNozzleFlowOptions().setCalculateNozzleFlow(true);
    document->getNozzleFlowOptions().setNozzleExitConditions().setAreaRatio(engine.areaRatio, true);
    thermo::input::Propellant& propellant = document->getPropellant();
    const auto component = [](const Reactant& part) {
        return new thermo::input::Component(part.name.c_str(), part.fraction, part.T);
    };
    if (engine.isSolid()) {
        propellant.setRatio(0.0, thermo::input::Ratio::MIXTURE);
        for (const Reactant& part : engine.components) propellant.addSpecies(component(part));
    } else {
        propellant.setRatio(engine.ratio, thermo::input::Ratio::KM);
        propellant.addOxidizer(component(engine.components.at(0)));
        propellant.addFuel(component(engine.components.at(1)));
    }
    return document;
}

inline FoundImpulse impulseOf(const DeliveredEngine& engine)
{
    useShippedSpecies();
    performance::TheoreticalPerformance performance(documentOf(engine).release(),
                                                    /*ownsDocument=*/true);
    performance.solve(/*calculateTransport=*/false);
    const performance::efficiency::CorrectionFactors factors(&performance);
    const double ideal = performance.getExitSection()->getIs_v(0.0) / standardGravity;
    const performance::equilibrium::NozzleSectionConditions* const exit[] = {
        performance.getExitSection()};
    return {ideal, ideal * factors.getOverallEfficiency(),
            verification::certify(*performance.getChamber(), exit, {}).grade};
}

/// What is lost in engines of one cycle and size varies by as much: the correlations know chamber
/// pressure, mixture ratio and area ratio, but no injector, no film cooling and no contour.
inline constexpr double correctedLimit = 0.03;
/// Of a solid motor the size of its drops of alumina, too, which is not known to them.
inline constexpr double correctedSolidLimit = 0.05;

/// The corrected impulses of the engines that can be compared.
inline std::vector<PublishedFigure> engineFigures()
{
    std::vector<PublishedFigure> all;
    for (const DeliveredEngine& engine : deliveredEngines())
        if (engine.isComparable())
            all.push_back({engine.name, engine.isSolid() ? "solid, s" : "liquid, s", engine.Isp,
                           impulseOf(engine).corrected,
                           engine.isSolid() ? correctedSolidLimit : correctedLimit, true,
                           engine.source, engine.reason});
    return all;
}

} // namespace ketra_test
