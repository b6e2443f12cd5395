#pragma once

#include <support/Certificates.h>
#include <support/ReferenceStates.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// The published rocket engines of tests/validation/data, and how far the library is from them.

namespace ketra_test {

/// One station of a reference engine, SI units. A NaN was not computed.
struct ReferenceStation {
    int number;
    std::string place; // chamber, injector, infinity, combustor_end, throat, exit
    std::string given; // of an exit: p, sub, sup
    bool twoPhase;     // liquid and solid of one substance at their melting point
    bool frozen;       // with the composition of the freezing section
    double p, T, mach, areaRatio, cstar, ivac, isp;
};

/// An engine of the reference and its stations.
struct ReferenceEngine {
    const ReferenceCase* charge = nullptr;
    double p = 0.0;                // Pa, in the chamber
    double contractionRatio = 0.0; // 0: not given
    double massFlux = 0.0;         // kg/(m2 s), 0: not given
    double frozenAt = 0.0;         // pressure ratio of the freezing section, 0: none
    std::vector<ReferenceStation> stations;

    const std::string& id() const { return charge->id; }
    bool isFiniteArea() const { return contractionRatio != 0.0 || massFlux != 0.0; }
    bool isFreezing() const { return frozenAt != 0.0; }
};

inline std::vector<ReferenceEngine> readReferenceEngines()
{
    const auto orZero = [](const std::string& field) {
        return field.empty() ? 0.0 : numberOf(field);
    };
    std::vector<ReferenceEngine> engines;
    std::map<std::string, std::size_t> index;
    for (const auto& row : referenceRows("engines.csv")) {
        index[row.at(0)] = engines.size();
        ReferenceEngine& engine = engines.emplace_back();
        for (const ReferenceCase& c : referenceCases())
            if (c.id == row[0]) engine.charge = &c;
        if (!engine.charge) throw std::runtime_error("no reactants of " + row[0]);
        engine.p = numberOf(row.at(1));
        engine.contractionRatio = orZero(row.at(2));
        engine.massFlux = orZero(row.at(3));
        engine.frozenAt = orZero(row.at(4));
    }
    for (const auto& row : referenceRows("stations.csv")) {
        const auto number = [&](std::size_t i) { return numberOf(row.at(i)); };
        engines.at(index.at(row.at(0)))
            .stations.push_back({std::stoi(row.at(1)), row.at(2), row.at(3), row.at(4) == "1",
                                 row.at(5) == "1", number(6), number(7), number(8), number(9),
                                 number(10), number(11), number(12)});
    }
    return engines;
}

inline const std::vector<ReferenceEngine>& referenceEngines()
{
    static const std::vector<ReferenceEngine> engines = readReferenceEngines();
    return engines;
}

/// The solved chamber of an engine; a freezing one has its freezing section.
inline std::unique_ptr<performance::equilibrium::Chamber> chamberOf(const ReferenceEngine& engine)
{
    using FrozenChamber = performance::frozen::Chamber;
    const auto charge = chargeOf(*engine.charge);
    const bool ions = engine.charge->ions;
    std::unique_ptr<performance::equilibrium::Chamber> chamber;
    if (engine.isFreezing())
        chamber = std::make_unique<FrozenChamber>(*charge, true, ions, engine.frozenAt,
                                                  FrozenChamber::PRESSURE_RATIO);
    else
        chamber = std::make_unique<performance::equilibrium::Chamber>(*charge, true, ions);
    chamber->setP(engine.p);
    if (engine.contractionRatio != 0.0) chamber->setFcr(engine.contractionRatio);
    if (engine.massFlux != 0.0) chamber->setMr(engine.massFlux);
    chamber->solve(engine.isFiniteArea(), false, false);
    return chamber;
}

/// A condensed product of the section is a blend of two phases: a band of temperature stands in
/// place of the melting point.
inline bool isMelting(const performance::equilibrium::NozzleSectionConditions& section)
{
    const reaction::Equilibrium* problem = section.getReaction();
    if (!problem) return false;
    std::vector<const thermo::Species*> condensed;
    problem->getCondensedSpecies(&condensed);
    for (const thermo::Species* species : condensed) {
        const auto* transition = dynamic_cast<const reaction::TransitionProduct*>(species);
        if (transition && transition->isBlend()) return true;
    }
    return false;
}

/// How far each quantity of an exit may be from the reference, relative; 0 for one that is not
/// compared.
struct ExitLimits {
    double T, p, ivac, isp;
};

/// The limits of an exit. At a given pressure the two methods agree to their tolerances. By area
/// ratio the search stops within 5e-4 of the area, and the temperature of a frozen section is found
/// within 5e-4. The end of a finite area is found in another way than the reference's. Near a
/// melting point the band of the library makes another density of the same pressure.
inline ExitLimits limitsOf(const ReferenceEngine& engine, const ReferenceStation& station,
                           bool byPressure, bool melting)
{
    if (melting || station.twoPhase) {
        if (byPressure) return {2e-2, 0.0, 0.0, 2e-3};
        return {2e-2, 2e-2, 2e-4, 2e-3};
    }
    if (station.frozen) return {1.5e-3, byPressure ? 0.0 : 2e-3, 0.0, 7e-4};
    if (engine.isFiniteArea()) return {1e-3, 0.0, 0.0, 1e-3};
    if (byPressure) return {1e-5, 0.0, 0.0, 1e-5};
    return {5e-4, 2e-3, 3e-4, 1e-3};
}

/// What an exit can be solved from: any from its pressure, a supersonic one from its area ratio
/// too.
inline std::vector<bool> waysToPose(const ReferenceStation& station)
{
    if (station.given == "sub") return {true};
    return {true, false};
}

/// The exit of the reference, solved from its pressure or its area ratio: all deviations that have
/// a limit. \throws runtime::Exception if it is not found
/// \param certificate  receives that of the chamber with the exit, unless null
inline std::vector<Deviation> deviationsOf(performance::equilibrium::Chamber& chamber,
                                           const ReferenceEngine& engine,
                                           const ReferenceStation& station, bool byPressure,
                                           verification::EngineCertificate* certificate = nullptr)
{
    using Section = performance::equilibrium::NozzleSectionConditions;
    const double value = byPressure ? station.p : station.areaRatio;
    const auto type = byPressure ? Section::PRESSURE : Section::AREA_RATIO;
    std::unique_ptr<Section> section;
    if (station.frozen)
        section = std::make_unique<performance::frozen::NozzleSectionConditions>(
            dynamic_cast<performance::frozen::Chamber*>(&chamber), value, type, false);
    else
        section = std::make_unique<Section>(&chamber, value, type, true, false, false, -1);

    if (certificate) *certificate = certificateOf(chamber, *section);
    const ExitLimits limits = limitsOf(engine, station, byPressure, isMelting(*section));
    std::vector<Deviation> all;
    const auto relative = [&](const char* quantity, double found, double reference, double limit) {
        if (limit != 0.0) all.push_back({quantity, std::abs(found / reference - 1.0), limit});
    };
    relative("T", section->getT(), station.T, limits.T);
    relative("p", section->getP(), station.p, limits.p);
    if (station.mach > 1.0) relative("Ivac", section->getIs_v(0.0), station.ivac, limits.ivac);
    relative("Isp", section->getW(), station.isp, limits.isp);
    return all;
}

} // namespace ketra_test
