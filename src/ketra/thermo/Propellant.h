#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Mixture.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace thermo {

class ChemicalFormula;
class Species;

/// A charge of two parts: an oxidizer and a fuel mixture, and one number that says how much of each
/// goes in, either the mass ratio km of oxidizer to fuel or the oxidizer excess coefficient
/// alpha = km / km0, with km0 the stoichiometric mass ratio.
///
/// The answers about the pair are kept until one of the assigning operations or an `addComponent`
/// by name changes the propellant. Changes through `getComponent` and the addition of a whole
/// mixture do not drop them. Reading fills that cache, so a propellant belongs to one thread at a
/// time.
///
/// The reading operations throw what `Mixture::checkFractions` throws for either part.
class KETRA_API Propellant
{
public:
    enum Type : std::int32_t { OXIDIZER = 0, FUEL = 1 };

    /// A propellant with the mass ratio \p km of oxidizer to fuel.
    explicit Propellant(double km);
    /// The same, or with the oxidizer excess coefficient if \p isAlpha.
    Propellant(double value, bool isAlpha);
    /// Copies the parts and the ratio, with an empty cache.
    Propellant(const Propellant& other);
    Propellant& operator=(const Propellant& other);
    virtual ~Propellant();

    /// Sets the mass ratio of oxidizer to fuel.
    void assignKm(double km);
    /// Sets the oxidizer excess coefficient.
    void assignAlpha(double alpha);
    /// Sets the temperature of a part, K. \throws thermo::Exception 1 if a species cannot have it
    void assignT0(Type type, double T);
    /// Sets the pressure of a part, Pa.
    void assignP0(Type type, double p);

    // Adding components. A temperature in K that the species cannot have is replaced by one that it
    // can, with a warning. Throws thermo::Exception 4 for an unknown name. Returns the species,
    // which stays the database's.

    /// A component of mass fraction 0, to be set through `getComponent`.
    const Species* addComponent(Type type, const std::string& name);
    const Species* addComponent(Type type, const std::string& name, double T);
    /// The same at the pressure \p p, Pa, and with the mass fraction \p f.
    const Species* addComponent(Type type, const std::string& name, double T, double p, double f);
    /// Adds a whole mixture with the weight \p w to the fuel, and to the oxidizer too if that is
    /// the given part.
    void addComponent(Type type, Mixture& m, double w);
    /// The mixture of one part, the propellant's; null for any other type.
    Mixture* getComponent(Type type);

    /// Mass ratio of oxidizer to fuel.
    double getKm() const;
    /// Oxidizer excess coefficient.
    double getAlpha() const;
    /// Stoichiometric mass ratio of oxidizer to fuel.
    double getKm0() const;
    /// Stoichiometric mole ratio of oxidizer to fuel: the one that balances the valences.
    double getMix0() const;
    /// Mole ratio of oxidizer to fuel.
    double getMix() const;
    // Shares of the parts in the mass and in the moles of the charge.
    double getGOx() const;
    double getGFuel() const;
    double getNOx() const;
    double getNFuel() const;
    /// Molar mass of the charge, g/mol.
    double getM() const;
    /// Formula of one mole of the charge. \returns a new formula, the caller's
    ChemicalFormula* getFormula() const;
    /// The charge as one mixture, the fuel first. \returns a new mixture, the caller's
    Mixture* getMixture() const;
    /// Enthalpy of one mole of the charge, J/mol. The pressure left uncorrected is 101325 Pa for
    /// condensed species too, so the mixture of `getMixture` need not agree.
    double H() const;
    double getH() const { return H(); }
    /// Internal energy of one mole of the charge, J/mol.
    double U() const;
    double getU() const { return U(); }
    /// Density from the tables of the species, kg/m^3; 0 if a part is empty.
    /// \throws thermo::Exception 0 if a species has no density
    double getRho() const;

    /// Prints the propellant through the log; flags as in `Mixture::print`.
    void print(unsigned int flags) const;

protected:
    /// The species of that name, by the rules of `Mixture::findSpecies`.
    const Species* findSpecies(const std::string& name) const;

private:
    /// The answers worked out so far.
    struct Cache {
        Cache();
        virtual ~Cache();
        void clear();

        std::unique_ptr<Mixture> mixture;
        std::unique_ptr<ChemicalFormula> formula;
        std::optional<double> H, U;           // J/mol
        std::optional<double> M;              // g/mol
        std::optional<double> mix0, km0, mix; // mole and mass ratios of oxidizer to fuel
    };

    const ChemicalFormula& formula() const;

    // Reading fills in the fractions of the other kind and no more.
    mutable Mixture oxidizer;
    mutable Mixture fuel;
    double ratio;      // km or alpha
    bool ratioIsAlpha; // which of the two
    mutable Cache cache;
};

} // namespace thermo
