#include <ketra/performance/equilibrium/NozzleSectionConditions.h>

#include <ketra/report/Table.h>
#include <ketra/util/Log.h>

using util::eol;
using util::Log;

namespace performance::equilibrium {

void NozzleSectionConditions::printHeader(unsigned int) const
{
    report::Table::openFrame();
    Log::printf("THERMO", "      Nozzle section e= %6.3f (equilibrium)%s", core.Fr, eol);
    report::Table::closeFrame();
}

void NozzleSectionConditions::printConditions(unsigned int flags) const
{
    core.solved().printResults(flags);
    core.derived().printResults(flags);
}

void NozzleSectionConditions::printResults(unsigned int flags) const
{
    printHeader(flags);
    printConditions(flags);
    const report::Table table(flags);
    table.row("Velocity", report::velocity(core.W));
    table.row7("Mach number", report::plain(core.Mach));
    table.row("Pressure ratio", report::plain(Pi));
    table.row("Specific impulse (vac)", report::velocity(getIs_v(0.0)));
    table.row("Specific impulse (opt)", report::velocity(getIs(0.0)));
    table.row("Thrust coeff. (vac)", report::plain(getKp_v(0.0)));
    table.row("Thrust coeff. (opt)", report::plain(getKp(0.0)));
}

void NozzleSectionConditions::printOverexpansionPerformanceHeader(unsigned int) const
{
    report::Table::openFrame();
    Log::printf("THERMO", "     Sea level performance with respect to%s", eol);
    Log::printf("THERMO", "     flow separation at e= %6.3f%s", core.Fr, eol);
    report::Table::closeFrame();
}

void NozzleSectionConditions::printOverexpansionPerformance(unsigned int flags) const
{
    printOverexpansionPerformanceHeader(flags);
    const report::Table table(flags);
    table.row("Specific impulse", report::velocity(core.Is));
    table.row("Thrust coeff.", report::plain(core.Kp));
}

} // namespace performance::equilibrium
