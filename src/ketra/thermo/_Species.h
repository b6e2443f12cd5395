#pragma once

#include <ketra/export.h>

#include <cstdint>

namespace thermo {

class ChemicalFormula;
class Species;

/// One entry of a `Mixture`: a species with its fraction and its state. The species stays the
/// database's and must outlive the entry.
class KETRA_API _Species
{
    friend class Mixture;

public:
    /// Which of the two fractions is the given one.
    enum FractionType : std::int32_t { MASS_FRACTION = 0, MOLE_FRACTION = 1 };

    virtual ~_Species();
    _Species& operator=(const _Species&) = default;

    const Species* getSpecies() const { return species; }
    /// Mass fraction.
    double getG() const { return g; }
    /// Mole fraction.
    double getR() const { return r; }
    /// Temperature, K.
    double getT() const { return T; }
    /// Pressure, Pa.
    double getP() const { return p; }
    /// Density assigned by the caller, kg/m^3; 0 if there is none.
    double getRho() const { return rho; }
    /// Molar mass of the species, g/mol.
    double getM() const;

    /// Stores the pressure in Pa and returns it.
    double setP(double newP) { return p = newP; }
    /// Stores a density in kg/m^3 that takes the place of the species' table, and returns it.
    double setRho(double newRho) { return rho = newRho; }
    /// Stores a temperature in K and returns what was stored: the species' temperature for 298.15 K
    /// if \p newT is not above 0; else, with \p check, the species' temperature for \p newT; else
    /// \p newT as it stands.
    /// \throws thermo::Exception 1 if the species cannot be had at that temperature
    double setT(double newT, bool check);

    /// The entry holds that species.
    bool operator==(const Species* other) const;
    bool operator==(const _Species* other) const;
    /// The species has that formula.
    bool operator==(const ChemicalFormula& formula) const;

protected:
    /// Mass fraction 1 at 298.15 K and 101325 Pa.
    explicit _Species(const Species* newSpecies);
    /// The given fraction at 298.15 K and 101325 Pa.
    _Species(const Species* newSpecies, double fraction, FractionType type);
    /// The given fraction at \p newT in K and 101325 Pa; only \p newT is asked of the species.
    _Species(const Species* newSpecies, double newT, double fraction, FractionType type);
    /// The same at the pressure \p newP in Pa. Without \p check the temperature is taken as it is.
    _Species(const Species* newSpecies, double newT, double newP, double fraction,
             FractionType type, bool check = true);
    /// Copies all but the assigned density, which stays with the original.
    _Species(const _Species& other);

private:
    _Species(const Species* newSpecies, double fraction, FractionType type, double newP);

    const Species* species;
    double g;         // mass fraction
    double r;         // mole fraction
    double T = 0.0;   // K
    double p;         // Pa
    double rho = 0.0; // kg/m^3, 0: not assigned
};

} // namespace thermo
