#include <ketra/performance/frozen/NozzleSectionConditions.h>

#include <ketra/report/Table.h>
#include <ketra/util/Log.h>

using util::eol;
using util::Log;

namespace performance::frozen {

namespace {

constexpr double kilogramsPerPound = 0.45359237; // kg/lbm

void rule() { Log::printf("THERMO", "---------------------------------------------------%s", eol); }

} // namespace

void NozzleSectionConditions::printHeader(unsigned int) const
{
    report::Table::openFrame();
    Log::printf("THERMO", "      Nozzle section e= %6.3f (frozen)%s", core.Fr, eol);
    report::Table::closeFrame();
}

void NozzleSectionConditions::printConditions(unsigned int flags) const
{
    const report::Table table(flags);
    const Frozen& state = frozenCore;
    table.title("Combustion composition:");
    state.mixture->print("Product", flags);

    table.heading("Combustion parameters:");
    rule();
    table.row("Temperature", report::temperature(state.T));
    if (table.english()) table.more(report::fahrenheit(state.T));
    table.row("Pressure", report::pressure(p));
    table.row3("Enthalpy", report::molarEnergy(state.H));
    table.more3(report::specificEnergy(state.H_spec));
    table.row3("Entropy", report::molarEntropy(state.S));
    table.more3(report::specificEntropy(state.S_spec));
    table.row3("Internal energy", report::molarEnergy(state.U));
    table.more3(report::specificEnergy(state.U_spec));
    table.row3("Gibbs energy", report::molarEnergy(state.G));
    table.more3(report::specificEnergy(state.G_spec));
    table.bare7("M", getM());
    table.row7("Molar mass", {state.Mm, "kg/mol", state.Mm / kilogramsPerPound, "lbm/mol"});
    table.row("Cp (eq)", report::molarEntropy(state.Cp));
    table.more(report::specificEntropy(state.Cp_spec()));
    table.row("Cv (eq)", report::molarEntropy(state.Cv));
    table.more(report::specificEntropy(state.Cv_spec()));
    table.bare7("k", state.K);
    table.row("R", report::gasConstant(state.R_spec()));
    table.row("a", report::velocity(state.A));
    table.row("rho", report::density(state.rho));
    constexpr const char* condensed = "Condensed phase mass fraction";
    table.row("C-ph", {state.Z, condensed, state.Z, condensed});

    rule();
    table.heading("Thermal transport properties");
    rule();
    table.row7("Viscosity", report::viscosity(state.V));
    table.row7("Conductivity", report::conductivity(state.Cfr));
    table.row7("Cp", report::specificEntropy(state.Cpfr));
    table.row7("Pr", report::plain(state.Prfr));
    rule();
}

} // namespace performance::frozen
