#include <ketra/reaction/Derivatives.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/report/Table.h>
#include <ketra/util/Log.h>

namespace reaction {

void Derivatives::printResults(unsigned int flags) const
{
    const report::Table table(flags);
    table.bare7("d_lnV_d_lnT", d_lnV_d_lnT);
    table.bare7("d_lnV_d_lnp", d_lnV_d_lnp);
    table.bare7("Molecular weight, M", getM());
    // The line of the products keeps an empty column for a unit.
    util::Log::printf("THERMO", "%19s:\t %10.7f\t %s", "Molecular weight, MW", Mm * 1000,
                      util::eol);
    table.row("Cp (eq)", report::molarEntropy(Cp));
    table.more(report::specificEntropy(getCp_spec()));
    table.row("Cv (eq)", report::molarEntropy(Cv));
    table.more(report::specificEntropy(getCv_spec()));
    table.bare7("gamma", gamma);
    table.bare7("k", k);
    table.row("R", report::gasConstant(R_spec));
    table.row("a", report::velocity(a));
    if (isConstantVolume())
        table.row("Pressure", report::pressure(p));
    else
        table.row("Specific volume", report::specificVolume(1 / rho));
    table.row("rho", report::density(rho));
    if (rhoGas != rho) table.row("rho (gas only)", report::density(rhoGas));
    table.row7("C-phase", {Z, "Condensed phase mass fraction", Z, "Condensed phase mass fraction"});
    if (flags & report::transportProperties) printTransport(table);
}

void Derivatives::printTransport(const report::Table& table) const
{
    table.rule();
    table.heading("Thermal transport properties");
    table.rule();
    table.row7("Viscosity", report::viscosity(viscosity));
    table.heading("Frozen parameters:");
    table.row7("Conductivity", report::conductivity(Cfr));
    table.row7("Cp", report::specificEntropy(Cpfr));
    table.row7("Pr", report::plain(Prfr));
    table.heading("Effective parameters with equilibrium:");
    table.row7("Conductivity", report::conductivity(Ceql));
    table.row7("Cp", report::specificEntropy(Cpeql));
    table.row7("Pr", report::plain(Preql));
}

} // namespace reaction
