#pragma once

// The tables of docs/verification.md, in Markdown on the standard output.

namespace ketra_test {

/// All comparisons in one table: how many figures, largest and mean error, limit.
void printSummary();

/// How far the library is from the reference: equilibrium states, chambers and throats, exits.
void printStates();
void printChambers();
void printNozzles();
/// Transport properties against the reference.
void printTransport();

/// How far it is from what the literature publishes.
void printStandardStates();
void printGases();
void printFlames();
void printExplosives();
void printAtmosphere();
void printEngines();

/// How the laws of equilibrium hold over random states, with a line for each that fails if \p
/// lines.
void printLaws(bool lines);
/// What fails close to complete combustion.
void printStoichiometric();

} // namespace ketra_test
