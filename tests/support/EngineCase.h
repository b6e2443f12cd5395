#pragma once

#include <support/Reactants.h>

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Ratio.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

// One rocket engine as plain data, and the document that describes it.

namespace ketra_test {

/// One stream of a propellant; fractions by mass.
using Stream = std::vector<Reactant>;

/// An engine. A charge without fuel is premixed, and its ratio is not read.
struct EngineCase {
    std::string kind; // of the propellant
    Stream oxidizer, fuel;
    double alpha = 1.0;         // mixture ratio over the stoichiometric one
    bool ions = false;          // among the products
    double p = 0.0;             // Pa, in the chamber
    double areaRatio = 0.0;     // of the exit
    double contraction = 0.0;   // of a chamber of finite area, else 0
    double massFlux = 0.0;      // kg/(m2 s), in its place, else 0
    double freezingRatio = 0.0; // area ratio where the flow freezes, 0 in shifting equilibrium
    double ambient = 0.0;       // Pa; the flow may separate at it; 0 in vacuum
    double throttling = 1.0;    // flow rate over that of the design

    bool isPremixed() const { return fuel.empty(); }
    bool isFiniteArea() const { return contraction > 0.0 || massFlux > 0.0; }
    bool isFrozen() const { return freezingRatio > 0.0; }
    bool isThrottled() const { return throttling != 1.0; } // exactly: the design itself
};

/// One line that says what the engine is, in full precision.
inline std::string describe(const EngineCase& engine)
{
    std::string line = engine.kind;
    const auto add = [&](const char* what, double value, const char* unit = "") {
        char number[32];
        std::snprintf(number, sizeof number, "%.10g", value);
        line += what + (number + std::string(unit));
    };
    for (const Stream* stream : {&engine.oxidizer, &engine.fuel})
        for (const Reactant& part : *stream) {
            line += (&part == &stream->front() ? " [" : ", ") + part.name;
            add(" ", part.fraction);
            add(" at ", part.T, &part == &stream->back() ? " K]" : " K");
        }
    if (!engine.isPremixed()) add(" alpha ", engine.alpha, ",");
    add(" ", engine.p, " Pa");
    add(", area ratio ", engine.areaRatio);
    if (engine.contraction > 0.0) add(", contraction ", engine.contraction);
    if (engine.massFlux > 0.0) add(", mass flux ", engine.massFlux, " kg/(m2 s)");
    if (engine.isFrozen()) add(", freezing at ", engine.freezingRatio);
    if (engine.ambient > 0.0) add(", ambient ", engine.ambient, " Pa");
    if (engine.isThrottled()) add(", throttled to ", engine.throttling);
    if (engine.ions) line += ", ions";
    return line;
}

/// The document of the design case of an engine.
inline std::unique_ptr<thermo::input::ConfigFile> documentOf(const EngineCase& engine)
{
    using thermo::input::Component;
    using thermo::input::Pressure;
    using thermo::input::Ratio;
    auto document = std::make_unique<thermo::input::ConfigFile>();
    document->getGeneralOptions().setMultiphase(true);
    document->getGeneralOptions().setIons(engine.ions);
    document->getGeneralOptions().setFlowSeparation(engine.ambient > 0.0);
    document->getCombustionChamberConditions().setPressure(engine.p, Pressure::PA, true);

    thermo::input::Propellant& propellant = document->getPropellant();
    const auto component = [](const Reactant& part) {
        return new Component(part.name.c_str(), part.fraction, part.T);
    };
    if (engine.isPremixed()) {
        propellant.setRatio(0.0, Ratio::MIXTURE);
        for (const Reactant& part : engine.oxidizer) propellant.addSpecies(component(part));
    } else {
        propellant.setRatio(engine.alpha, Ratio::ALPHA);
        for (const Reactant& part : engine.oxidizer) propellant.addOxidizer(component(part));
        for (const Reactant& part : engine.fuel) propellant.addFuel(component(part));
    }

    thermo::input::NozzleFlowOptions& flow = document->getNozzleFlowOptions();
    flow.setCalculateNozzleFlow(true);
    flow.setNozzleExitConditions().setAreaRatio(engine.areaRatio, true);
    if (engine.contraction > 0.0)
        flow.setNozzleInletConditions().setContractionAreaRatio(engine.contraction);
    if (engine.massFlux > 0.0)
        flow.setNozzleInletConditions().setMassFlux(engine.massFlux,
                                                    thermo::input::MassFlux::KG_PER_M2_S, true);
    if (engine.isFrozen()) {
        flow.setFreezingConditions().setCalculate(true);
        flow.getFreezingConditions().setExpansionRatio(engine.freezingRatio);
    }
    if (engine.ambient > 0.0)
        flow.setAmbientConditions().setFixedPressure(engine.ambient, Pressure::PA, true);
    return document;
}

} // namespace ketra_test
