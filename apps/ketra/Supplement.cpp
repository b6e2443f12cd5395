#include "Supplement.h"
#include "EnginePerformance.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Velocity.h>
#include <ketra/util/Log.h>

#include <optional>
#include <vector>

namespace host {
namespace {

using performance::TheoreticalPerformance;
using thermo::input::Pressure;
using thermo::input::Velocity;
using util::eol;
using util::Log;

/// Lines in the manner of the library's report.
class Block
{
public:
    explicit Block(bool inEnglishUnits) : english(inEnglishUnits) {}

    void title(const char* text) const
    {
        Log::printf("THERMO", "%s***************************************************%s", eol, eol);
        Log::printf("THERMO", "%s%s", text, eol);
        Log::printf("THERMO", "***************************************************%s", eol);
    }
    void plain(const char* name, double value) const { row(name, value, ""); }
    void velocity(const char* name, double value) const
    {
        if (english)
            row(name, Velocity::convert(value, Velocity::M_PER_S, Velocity::FT_PER_S), "ft/s");
        else
            row(name, value, "m/s");
    }
    void pressure(const char* name, double value) const
    {
        if (english)
            row(name, Pressure::convert(value, Pressure::PA, Pressure::PSI), "psi");
        else
            row(name, Pressure::convert(value, Pressure::PA, Pressure::MPA), "MPa");
    }

    void word(const char* name, const char* text) const
    {
        Log::printf("THERMO", "%22s:\t %10s%s", name, text, eol);
    }

private:
    static void row(const char* name, double value, const char* unit)
    {
        Log::printf("THERMO", "%22s:\t %10.5f\t %10s%s", name, value, unit, eol);
    }

    bool english;
};

void printAt(const Block& block, const AmbientPerformance& at,
             const std::optional<Impulse>& impulse)
{
    block.pressure("Ambient pressure", at.pressure);
    if (!impulse) return block.word("Specific impulse", "unknown");
    block.velocity("Specific impulse", impulse->Is);
    block.plain("Thrust coeff.", impulse->Cf);
}

void printAmbient(const Block& block, TheoreticalPerformance& performance)
{
    const std::vector<AmbientPerformance> list = ambientPerformanceOf(performance);
    if (list.empty()) return;
    block.title("          Performance at ambient pressure");
    for (const AmbientPerformance& at : list) {
        printAt(block, at, at.impulse);
        block.word("Flow", at.separated ? "separated" : "attached");
    }
    block.pressure("Separation above", performance.getPaCrit());
}

void printDelivered(const Block& block, TheoreticalPerformance& performance,
                    const SectionPerformance& ideal, const Corrections& c)
{
    block.title("       Delivered performance (an estimate)");
    block.plain("Reaction efficiency", c.reaction);
    block.plain("Nozzle efficiency", c.nozzle);
    block.plain("Overall efficiency", c.overall);
    block.velocity("Char. velocity", performance.getChamber()->getCstar(0.0) * c.reaction);
    block.velocity("Specific impulse (vac)", delivered(ideal.vacuum, c).Is);
    block.velocity("Specific impulse (opt)", delivered(ideal.optimum, c).Is);
    for (const AmbientPerformance& at : ambientPerformanceOf(performance))
        printAt(block, at, at.impulse ? std::optional(delivered(*at.impulse, c)) : std::nullopt);
}

} // namespace

void printSupplement(TheoreticalPerformance& performance, bool english, bool corrections)
{
    const auto* const exit = performance.getExitSection();
    if (!exit) return;
    const std::optional<SectionPerformance> ideal = performanceOf(performance, *exit);
    if (!ideal) return;
    const Block block(english);
    printAmbient(block, performance);
    if (!corrections && !wantsCorrections(performance)) return;
    if (const std::optional<Corrections> c = correctionsOf(performance))
        printDelivered(block, performance, *ideal, *c);
}

} // namespace host
