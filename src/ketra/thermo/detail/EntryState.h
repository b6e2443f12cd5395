#pragma once

namespace thermo {
class ChemicalFormula;
class _Species;
} // namespace thermo

namespace thermo::detail {

/// The pressures at which no correction for pressure is made, Pa. The polynomials hold at one
/// atmosphere for gases and at one bar for condensed species.
struct UncorrectedPressure {
    double gas;
    double condensed;
};

/// The parts of the enthalpy of one mole of an entry, J/mol. They are added up apart, so that each
/// caller can weight them in its own way.
struct EntryEnthalpy {
    double standard;    // at the temperature, or at the nearest one that the species has
    double heating;     // from there to the temperature of the entry
    double compression; // from the standard pressure to that of the entry
};

/// \param p  pressure for the corrections, Pa; whether one is made depends on the entry's own
EntryEnthalpy enthalpyOf(const _Species& e, double p, const UncorrectedPressure& uncorrected);

/// Internal energy of one mole of an entry, J/mol, without corrections.
double internalEnergyOf(const _Species& e);

/// Density from the species' table, kg/m^3, at the nearest temperature and pressure it covers.
/// \throws thermo::Exception 0 without a table
double tabulatedDensity(const _Species& e);

/// Prints the terms of a formula on one line, each amount divided by \p divisor.
void printFormula(const ChemicalFormula& formula, double divisor);

/// Sum of the masses of the terms, g.
double massOf(const ChemicalFormula& formula);

/// Sum of the valences of the terms.
double valenceOf(const ChemicalFormula& formula);

} // namespace thermo::detail
