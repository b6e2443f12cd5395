// Specific impulse over altitude: an engine of a document in the standard atmosphere.
//
// Usage: example_altitude DOCUMENT [FOLDER OF THE SPECIES FILES]

#include <ketra/api/ketra.h>
#include <ketra/gasdynamics/StandardAtmosphere.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/input/ConfigFile.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

namespace {

using performance::TheoreticalPerformance;
using Section = performance::equilibrium::NozzleSectionConditions;

constexpr double step = 5000.0;     // m
constexpr double highest = 50000.0; // m
constexpr double standardGravity = 9.80665;

/// Where the flow leaves the wall at an ambient pressure above `getPaCrit`. A section that is
/// handed out is ours.
std::unique_ptr<Section> separation(TheoreticalPerformance& engine, double pa)
{
    const double exitPressure = engine.getExitSection()->getP();
    return std::unique_ptr<Section>(engine.solveNozzleSection(
        exitPressure, Section::PRESSURE, /*frozen=*/false, /*overExpansion=*/true, pa,
        /*calculateTransport=*/false, /*supersonic=*/true));
}

void printAt(TheoreticalPerformance& engine, double altitude)
{
    StandardAtmosphere air;
    air.setAltitude(altitude);
    const double pa = air.getPressure();
    const bool separates = pa > engine.getPaCrit();
    const std::unique_ptr<Section> separated = separates ? separation(engine, pa) : nullptr;
    const Section& end = separates ? *separated : *engine.getExitSection();
    const double Is = end.getIs_H(pa, 0.0);
    std::printf("%8.0f %10.1f %10.3f %10.2f %8.2f  %s\n", altitude, pa, end.getFr(), Is,
                Is / standardGravity, separates ? "separated" : "attached");
}

/// \returns whether the document is one for this program
bool solveAndPrint(const char* document)
{
    const std::unique_ptr<thermo::input::ConfigFile, decltype(&deleteConfig)> config(
        loadConfig(document), &deleteConfig);
    TheoreticalPerformance engine(config.get(), /*ownsDocument=*/false);
    engine.solve(/*calculateTransport=*/false);
    if (engine.getExitSection() == nullptr) {
        std::fprintf(stderr, "the document states no nozzle exit\n");
        return false;
    }
    std::printf("%8s %10s %10s %10s %8s\n", "h, m", "pa, Pa", "Ae/At", "Is, m/s", "Is, s");
    for (double altitude = 0.0; altitude <= highest; altitude += step) printAt(engine, altitude);
    std::printf("\nThe nozzle flows full above %.0f m.\n",
                StandardAtmosphere::getAltitudeForPressure(engine.getPaCrit()));
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: example_altitude DOCUMENT [FOLDER]\n");
        return 2;
    }
    const std::string folder = argc > 2 ? argv[2] : "resources";
    try {
        loadThermodynamicsDatabase((folder + "/thermo.inp").c_str(), /*clear=*/true);
        loadPropertiesDatabase((folder + "/properties.inp").c_str());
        if (!solveAndPrint(argv[1])) return 1;
    } catch (const runtime::Exception& e) {
        std::fprintf(stderr, "error %u: %s\n", e.getType(), e.getMessage());
        return 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "error: %s\n", e.what());
        return 1;
    }
    return 0;
}
