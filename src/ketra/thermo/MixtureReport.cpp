#include <ketra/thermo/Mixture.h>

#include <ketra/report/Table.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/detail/EntryState.h>
#include <ketra/util/Log.h>

#include <exception>
#include <memory>

using util::eol;
using util::Log;

namespace thermo {

namespace {

static_assert(Mixture::ENGLISH == report::englishUnits);

constexpr double traceFraction = 1e-7; // mole fraction below which an entry is not listed

void printShortHeader(const char* title)
{
    Log::printf("THERMO", "%20s\t %10s\t %10s%s", title, "Mass", "Mole", eol);
    Log::printf("THERMO", "%20s\t %10s\t %10s%s", "", "fractions", "fractions", eol);
}

void printLongHeader(const char* title, bool english)
{
    Log::printf("THERMO", "%13s %6s\t %8s\t %10s\t %10s\t %10s%s", title, "Temp.", "Pressure",
                "Enthalpy", "", "Mass", eol);
    Log::printf("THERMO", "%13s %6s\t %8s\t %10s\t %10s\t %10s%s", "", english ? "[F]" : "[K]",
                english ? "[psi]" : "[MPa]", english ? "[Btu/lb-mol]" : "[kJ/mol]",
                english ? "[Btu/lbm]" : "[kJ/kg]", "fraction", eol);
}

void printShortRow(const _Species& e)
{
    Log::printf("THERMO", "%20s\t %10.7f\t %10.7f%s", e.getSpecies()->getName().c_str(), e.getG(),
                e.getR(), eol);
}

/// \param h  enthalpy of the entry, J/mol
void printLongRow(const report::Table& table, const _Species& e, double h)
{
    // An entry without a pressure counts as one at one atmosphere.
    const double p = e.getP() > 0 ? e.getP() : standardPressure;
    Log::printf("THERMO", "%13s %6.1f\t %8.4f\t %10.4f\t %10.3f\t %10.7f%s",
                e.getSpecies()->getName().c_str(), table.value(report::fahrenheit(e.getT())),
                table.value(report::pressure(p)), table.value(report::molarEnergyColumn(h)),
                table.value(report::specificEnergy(h / e.getM() * 1000)), e.getG(), eol);
}

void printTotal(const Mixture& mixture)
{
    double g = 0.0, r = 0.0;
    for (int i = 0; i < mixture.size(); ++i) {
        g += mixture._getSpecies(i).getG();
        r += mixture._getSpecies(i).getR();
    }
    Log::printf("THERMO", "%19s:\t %10.7f\t %10.7f%s", "Total", g, r, eol);
}

void printMean(const report::Table& table, const Mixture& mixture)
{
    const double H = mixture.H();
    Log::printf("THERMO", "%13s %6s\t %8s\t %10.4f\t %10.3f\t%s", "Mixture", "", "",
                table.value(report::molarEnergyColumn(H)),
                table.value(report::specificEnergy(H / mixture.getM() * 1000)), eol);
}

void printFormulaBlock(const report::Table& table, const Mixture& mixture)
{
    const std::unique_ptr<ChemicalFormula> formula(mixture.copyFormula());
    const double M = detail::massOf(*formula);
    Log::printf("THERMO", "%-19s%s", "Exploded formula", eol);
    Log::printf("THERMO", "%-2s %16s:\t ", "1)", "based on 1 mole");
    detail::printFormula(*formula, 1.0);
    table.row("molar mass", report::molarMass(M));
    Log::printf("THERMO", "%-2s %16s:\t ", "2)", "based on 100 g");
    detail::printFormula(*formula, M / 100);
    table.row("molar mass", report::molarMass(100.0));
    Log::printf("THERMO", "%s", eol);
    table.row("Equivalence ratio", report::plain(mixture.getEquivalenceRatio()));
}

/// A mixture of unknown density is no failure of the report.
void printDensity(const report::Table& table, const Mixture& mixture)
{
    double rho;
    try {
        rho = mixture.getRho();
    } catch (const std::exception&) {
        table.word("Density", "unknown");
        return;
    }
    table.row("Density", report::density(rho));
}

} // namespace

void Mixture::print(const char* title, unsigned int flags) const
{
    checkFractions(false);
    const report::Table table(flags);
    const bool longTable = (flags & LONG_TABLE) != 0;

    table.rule();
    longTable ? printLongHeader(title, table.english()) : printShortHeader(title);
    table.rule();
    for (const auto& e : entries) {
        if (!(flags & PRINT_ALL) && e->r < traceFraction) continue;
        longTable ? printLongRow(table, *e, H(e.get(), /*weighted=*/false)) : printShortRow(*e);
    }
    table.rule();
    if (flags & TOTAL) {
        printTotal(*this);
        table.rule();
    } else if (longTable) {
        printMean(table, *this);
        table.rule();
    }
    if (flags & FORMULA) printFormulaBlock(table, *this);
    if (flags & DENSITY) printDensity(table, *this);
}

} // namespace thermo
