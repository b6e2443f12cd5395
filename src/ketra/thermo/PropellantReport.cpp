#include <ketra/thermo/Propellant.h>

#include <ketra/report/Table.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/detail/EntryState.h>
#include <ketra/util/Log.h>

#include <exception>
#include <memory>

using util::eol;
using util::Log;

namespace thermo {

namespace {

/// A propellant of unknown density is no failure of the report.
void printDensity(const report::Table& table, const Propellant& propellant)
{
    double rho;
    try {
        rho = propellant.getRho();
    } catch (const std::exception&) {
        table.word("rho", "unknown");
        return;
    }
    table.row("rho", report::density(rho));
}

} // namespace

void Propellant::print(unsigned int flags) const
{
    const report::Table table(flags);
    table.title("Propellant:");
    const std::unique_ptr<Mixture> mixture(getMixture());
    mixture->print("Component", flags | Mixture::LONG_TABLE);

    Log::printf("THERMO", "%19s: ", "Propellant exploded formula");
    detail::printFormula(formula(), 1.0);
    Log::printf("THERMO", "%19s:\t %10.7f (oxidizer excess coefficient)%s", "alpha", getAlpha(),
                eol);
    table.bare7("O/F", getKm());
    Log::printf("THERMO", "%19s:\t %10.7f (stoichiometric)%s", "O/F 0", getKm0(), eol);
    printDensity(table, *this);
}

} // namespace thermo
