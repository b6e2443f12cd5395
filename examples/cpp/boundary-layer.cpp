// An engine of a document with a cool layer of fuel-rich gas along its wall.
//
// Usage: example_boundary-layer DOCUMENT [FOLDER OF THE SPECIES FILES]

#include <ketra/api/ketra.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/input/ConfigFile.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

namespace {

using performance::TheoreticalPerformance;
using performance::equilibrium::Chamber;
using Section = performance::equilibrium::NozzleSectionConditions;

constexpr double layerShare = 0.05; // of the mass flow
constexpr double layerRatio = 1.2;  // O/F of the layer, by mass

/// The engine's own propellant, mixed for the layer.
void addLayer(TheoreticalPerformance& engine)
{
    thermo::Propellant layer(*engine.getPropellant());
    layer.assignKm(layerRatio);
    Chamber& chamber = *engine.getChamber();
    chamber.setBLC(layerShare, layer, /*calculateTransport=*/false);
    chamber.blc_solve(/*calculateTransport=*/false);
    // The sections were solved before the layer was there.
    engine.propagateChamberBLC();
}

void printEngine(TheoreticalPerformance& engine)
{
    const Chamber& chamber = *engine.getChamber();
    const Section& exit = *engine.getExitSection();
    std::printf("%-28s %10s %10s %10s\n", "", "core", "layer", "both");
    std::printf("%-28s %10.2f %10.2f\n", "chamber temperature, K",
                chamber.getReaction(Chamber::INJECTION_PLANE)->getT(),
                chamber.getBlcReaction(Chamber::INJECTION_PLANE)->getT());
    std::printf("%-28s %10.2f %10.2f\n", "throat temperature, K",
                chamber.getReaction(Chamber::THROAT)->getT(),
                chamber.getBlcReaction(Chamber::THROAT)->getT());
    std::printf("%-28s %10.2f %10.2f %10.2f\n", "c*, m/s", chamber.getCstar_core(),
                chamber.getCstar_blc(), chamber.getCstar(0.0));
    std::printf("%-28s %10.2f %10.2f\n", "exit temperature, K", exit.getT(), exit.getT_blc());
    std::printf("%-28s %10.3f %10.3f\n", "exit area ratio", exit.getFr(), exit.getFr_blc());
    std::printf("%-28s %10.2f %10.2f %10.2f\n", "impulse in vacuum, m/s", exit.getIs_v_core(),
                exit.getIs_v_blc(), exit.getIs_v(0.0));
    std::printf("%-28s %10.5f %10.5f %10.5f\n", "thrust coefficient in vacuum", exit.getKp_v_core(),
                exit.getKp_v_blc(), exit.getKp_v(0.0));
}

/// \returns whether the document is one for this program
bool solveAndPrint(const char* document)
{
    const std::unique_ptr<thermo::input::ConfigFile, decltype(&deleteConfig)> config(
        loadConfig(document), &deleteConfig);
    TheoreticalPerformance engine(config.get(), /*ownsDocument=*/false);
    engine.solve(/*calculateTransport=*/false);
    if (engine.getPropellant() == nullptr || engine.getExitSection() == nullptr) {
        std::fprintf(stderr, "the document needs an oxidizer, a fuel and a nozzle exit\n");
        return false;
    }
    addLayer(engine);
    printEngine(engine);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: example_boundary-layer DOCUMENT [FOLDER]\n");
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
