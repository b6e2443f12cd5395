#include <validation/tables/Tables.h>

#include <validation/published/DeliveredEngines.h>
#include <validation/published/Heats.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace ketra_test {

namespace {

// The products of a detonation stop reacting somewhere between the temperature of the table and
// this.
constexpr double hotterProducts = 1800.0; // K

double percentOf(double found, double published) { return 100.0 * (found / published - 1.0); }

/// The names of the components; those of a solid with their shares.
std::string propellantsOf(const DeliveredEngine& engine)
{
    std::string text;
    for (const Reactant& part : engine.components) {
        text += (text.empty() ? "" : ", ") + part.name;
        if (engine.isSolid())
            text += " " + std::to_string(std::lround(100.0 * part.fraction)) + " %";
    }
    return text;
}

std::string ratioOf(const DeliveredEngine& engine)
{
    if (engine.isSolid()) return "";
    char text[16];
    std::snprintf(text, sizeof text, "%.4g", engine.ratio);
    return text;
}

} // namespace

void printExplosives()
{
    std::printf("| explosive | origin | water | vessel, kg/m3 | published, kJ/kg | here, 1500 K | "
                "error | here, 1800 K | error | source |\n"
                "|---|---|---|---:|---:|---:|---:|---:|---:|---|\n");
    for (PublishedHeat heat : publishedHeats()) {
        const double published = std::stod(heat.Q);
        const double here = heatOf(heat) / 1000.0;
        std::printf("| %s | %s | %s | %.0f | %.0f | %.0f | %+.1f %% |", heat.explosive.c_str(),
                    heat.origin.c_str(), heat.water.c_str(), heat.rho, published, here,
                    percentOf(here, published));
        if (heat.origin == "measured") {
            heat.T = hotterProducts;
            const double hotter = heatOf(heat) / 1000.0;
            std::printf(" %.0f | %+.1f %% |", hotter, percentOf(hotter, published));
        } else {
            std::printf(" | |");
        }
        std::printf(" [%s] |\n", heat.source.c_str());
    }
}

void printEngines()
{
    std::printf("| engine | cycle | propellants | O/F | p, MPa | area ratio | delivered, s | "
                "ideal, s | delivered/ideal | corrected, s | error | source |\n"
                "|---|---|---|---:|---:|---:|---:|---:|---:|---:|---:|---|\n");
    for (const DeliveredEngine& engine : deliveredEngines()) {
        const FoundImpulse found = impulseOf(engine);
        std::printf("| %s | %s | %s | %s | %.4g | %.4g | %s | %.1f | %.3f | %.1f |",
                    engine.name.c_str(), engine.cycle.c_str(), propellantsOf(engine).c_str(),
                    ratioOf(engine).c_str(), engine.p, engine.areaRatio, engine.Isp.c_str(),
                    found.ideal, engine.delivered() / found.ideal, found.corrected);
        if (engine.isComparable())
            std::printf(" %+.1f %% |", percentOf(found.corrected, engine.delivered()));
        else
            std::printf(" |");
        std::printf(" [%s] |\n", engine.source.c_str());
    }
}

} // namespace ketra_test
