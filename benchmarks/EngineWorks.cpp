#include "Work.h"

#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Mixture.h>

#include <tbb/global_control.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace ketra_bench {

namespace {

using performance::equilibrium::Chamber;
using performance::equilibrium::NozzleSectionConditions;

constexpr double impulseTolerance = 1e-3; // of an exit by area ratio, which is met to 5e-4
constexpr double tableTolerance = 1e-3;   // of a pressure between two points of a table
constexpr int noTable = -1;

/// An engine and its vacuum impulse.
struct Engine {
    const char* charge;
    bool metals;        // condensed products are expected
    double contraction; // 0: infinite area
    double areaRatio;   // of the exit
    double impulse;     // m/s
};

// The impulses of the liquids were computed with NASA CEA from the same species data; that of the
// solid, and those of finite area, were captured from this library on 2026-11-21 and guard against
// change only.
constexpr Engine shifting[] = {
    {"LoxHydrogen", false, 0.0, 20.0, 4286.82519},
    {"LoxRP1", false, 0.0, 16.0, 3296.81498},
    {"N2O4_MMH", false, 0.0, 10.0, 3052.54980},
    {"AP_HTPB_Al", true, 0.0, 10.0, 2820.71478},
};
constexpr Engine finiteArea[] = {
    {"LoxHydrogen", false, 2.5, 20.0, 4286.38530},
    {"LoxRP1", false, 2.5, 16.0, 3296.33048},
};

const Charge& chargeOf(const std::string& name)
{
    for (const Charge& charge : charges())
        if (charge.name == name) return charge;
    throw std::runtime_error("no charge " + name);
}

/// Finds the products, solves chamber, throat and one exit, and drops them.
/// \param certify  hold chamber and exit against their certificate
double impulseOf(const Engine& engine, double p, thermo::Mixture& reactants, bool certify)
{
    Chamber chamber(reactants, /*multiphase=*/true, /*ions=*/false);
    chamber.setP(p);
    if (engine.contraction > 0.0) chamber.setFcr(engine.contraction);
    chamber.solve(engine.contraction > 0.0, engine.metals, /*calculateTransport=*/false);
    const NozzleSectionConditions exit(
        &chamber, engine.areaRatio, NozzleSectionConditions::AREA_RATIO, /*supersonic=*/true,
        /*expectCondensed=*/false, /*calculateTransport=*/false, noTable);
    if (certify) requireCertified(engine.charge, chamber, exit);
    return exit.getIs_v(0.0);
}

Body shiftingExit(const Engine& engine)
{
    useShippedSpecies();
    const Charge& charge = chargeOf(engine.charge);
    const std::shared_ptr<thermo::Mixture> reactants(charge.mixture());
    requireClose(charge.name + " vacuum impulse",
                 impulseOf(engine, charge.p, *reactants, /*certify=*/true), engine.impulse,
                 impulseTolerance);
    return [=, p = charge.p] { impulseOf(engine, p, *reactants, /*certify=*/false); };
}

/// The kerosene engine with the composition kept from an eighth of the chamber pressure on.
double frozenImpulse(const Charge& charge, thermo::Mixture& reactants, bool certify)
{
    using performance::frozen::Chamber;
    Chamber chamber(reactants, /*multiphase=*/true, /*ions=*/false, 8.0, Chamber::PRESSURE_RATIO);
    chamber.setP(charge.p);
    chamber.solve(/*finiteArea=*/false, /*expectCondensed=*/false, /*calculateTransport=*/false);
    const performance::frozen::NozzleSectionConditions exit(
        &chamber, 16.0, NozzleSectionConditions::AREA_RATIO, /*calculateTransport=*/false);
    if (certify) requireCertified("frozen " + charge.name, chamber, exit);
    return exit.getIs_v(0.0);
}

Body frozenExit()
{
    useShippedSpecies();
    const Charge& charge = chargeOf("LoxRP1");
    const std::shared_ptr<thermo::Mixture> reactants(charge.mixture());
    const double ofCEA = 3270.70630; // m/s
    requireClose("frozen vacuum impulse", frozenImpulse(charge, *reactants, /*certify=*/true),
                 ofCEA, impulseTolerance);
    return [reactants, &charge] { frozenImpulse(charge, *reactants, /*certify=*/false); };
}

/// A solved hydrogen engine and the tables of its nozzle.
class TableEngine
{
public:
    TableEngine() : p(chargeOf("LoxHydrogen").p), chamber(*chargeOf("LoxHydrogen").mixture())
    {
        solve();
    }

    /// Drops the tables, too.
    void solve()
    {
        chamber.setP(p);
        chamber.solve(/*finiteArea=*/false, /*expectCondensed=*/false,
                      /*calculateTransport=*/false);
    }
    const math::interpolation::Interpolation& buildInput()
    {
        return *chamber.getNozzleInput(/*expectCondensed=*/false, 90);
    }
    const math::interpolation::Interpolation& buildExit()
    {
        chamber.deleteNozzleExitTable();
        return *chamber.getNozzleExit(exitP, exitRatio, /*expectCondensed=*/false, 120);
    }
    /// Area ratio at the share \p ratio of the chamber pressure, without a table.
    double areaRatioAt(double ratio)
    {
        const NozzleSectionConditions section(&chamber, p * ratio,
                                              NozzleSectionConditions::PRESSURE,
                                              /*supersonic=*/true, /*expectCondensed=*/false,
                                              /*calculateTransport=*/false, noTable);
        requireCertified("nozzle table", chamber, section);
        return section.getFr();
    }
    double chamberPressure() const { return p; }

private:
    static constexpr double exitRatio = 20.0;
    static constexpr double exitP = 106042.0; // Pa, at this area ratio

    double p; // Pa
    Chamber chamber;
};

/// The input table holds for a chamber, so that the chamber is solved with it: five of 95 problems.
Body inputTable(std::size_t threads)
{
    useShippedSpecies();
    const auto engine = std::make_shared<TableEngine>();
    const double p = 0.9 * engine->chamberPressure();
    requireClose("input table", engine->buildInput().linearInterpolation(engine->areaRatioAt(0.9)),
                 p, tableTolerance);
    return [=] {
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
        engine->solve();
        engine->buildInput();
    };
}

Body exitTable(std::size_t threads)
{
    useShippedSpecies();
    const auto engine = std::make_shared<TableEngine>();
    const double p = 0.05 * engine->chamberPressure();
    requireClose("exit table",
                 engine->buildExit().polynomialInterpolation(engine->areaRatioAt(0.05)), p,
                 tableTolerance);
    return [=] {
        const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
        engine->buildExit();
    };
}

} // namespace

std::vector<Work> engineWorks()
{
    std::vector<Work> works;
    for (const Engine& engine : shifting)
        works.push_back({std::string("Engine/ShiftingExit/") + engine.charge,
                         [&engine] { return shiftingExit(engine); }});
    for (const Engine& engine : finiteArea)
        works.push_back({std::string("Engine/FiniteArea/") + engine.charge,
                         [&engine] { return shiftingExit(engine); }});
    works.push_back({"Engine/FrozenExit/LoxRP1", frozenExit});
    works.push_back({"NozzleTable/Input/1Thread", [] { return inputTable(1); }});
    works.push_back({"NozzleTable/Input/2Threads", [] { return inputTable(2); }});
    works.push_back({"NozzleTable/Exit/1Thread", [] { return exitTable(1); }});
    works.push_back({"NozzleTable/Exit/2Threads", [] { return exitTable(2); }});
    return works;
}

} // namespace ketra_bench
