#pragma once

#include <ketra/export.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace reaction {
class Derivatives;
class Equilibrium;
} // namespace reaction
namespace thermo {
class Mixture;
class Propellant;
} // namespace thermo

namespace explosion {

/// The heat that an energetic material gives off when it burns in a closed vessel, in J per kg of
/// sample and as a positive number, in two ways that stand for two practices of measurement.
///
/// The exact method takes the equilibrium products at a given temperature in the vessel, cools them
/// unchanged to 298.15 K with the water condensed, and compares internal energies: a calorimeter
/// bomb, whose products stop reacting near the given temperature. The inert diluent method burns
/// one part per thousand of sample in argon and takes the heat from the temperature rise of the
/// gas.
///
/// An object can run either method repeatedly; it belongs to one thread at a time.
class KETRA_API HeatOfExplosion
{
public:
    /// A sample whose products may be condensed and ionised, unless \p multiphase and \p ions say
    /// otherwise. The sample is copied; the argument stays the caller's.
    /// \throws thermo::Exception as `Propellant::getMixture`
    explicit HeatOfExplosion(thermo::Propellant& propellant);
    HeatOfExplosion(thermo::Propellant& propellant, bool multiphase, bool ions);
    explicit HeatOfExplosion(thermo::Mixture& sample);
    HeatOfExplosion(thermo::Mixture& sample, bool multiphase, bool ions);
    /// A copy has a sample of its own and can run in another thread. It shares the problem and the
    /// derivatives of the last run with its source until either runs again or dies.
    HeatOfExplosion(const HeatOfExplosion& other);
    HeatOfExplosion& operator=(const HeatOfExplosion& other);
    virtual ~HeatOfExplosion();

    /// Heat of explosion by the difference of internal energies, J/kg; there are no derivatives
    /// afterwards.
    /// \param rho           loading density, kg/m^3
    /// \param T             temperature in K at which the products are taken
    /// \param replacements  name of a product: name of the species that stands for it in the final
    ///                      state. Without an entry for "H2O" one is added that makes it "H2O(L)".
    ///                      A replacement that cannot be made is left out with a warning.
    /// \param included      the only products to consider; empty: all
    /// \param omitted       products to leave out
    /// \throws thermo::Exception what the solver gave up with, 0 for a failure of another family
    double runExactMethod(double rho, double T, std::map<std::string, std::string>& replacements,
                          std::vector<std::string>& included, std::vector<std::string>& omitted);
    double runExactMethod(double rho, double T, std::map<std::string, std::string>& replacements);
    double runExactMethod(double rho, double T);

    /// Heat of explosion by the temperature rise of argon, J/kg.
    /// \param rho       loading density of argon and sample together, kg/m^3
    /// \param T         initial temperature of the argon, K; the sample keeps its own
    /// \param included  the only products to consider, and argon; empty: all
    /// \param omitted   products to leave out, never argon
    /// \throws thermo::Exception what the solver gave up with, 0 for a failure of another family
    double runInertDiluentMethod(double rho, double T, std::vector<std::string>& included,
                                 std::vector<std::string>& omitted);
    double runInertDiluentMethod(double rho, double T);

    /// Whether the problem of the next run goes on where the default method fails; see
    /// `reaction::Equilibrium::setPersistent`. Off unless set; a copy has it from its source.
    void setPersistent(bool newPersistent) { persistent = newPersistent; }
    bool isPersistent() const { return persistent; }

    /// The problem of the last run, null before the first; this object's, until the next run.
    reaction::Equilibrium* getReaction() const { return reaction.get(); }
    /// The derivatives of the last run, null but after the inert diluent method; this object's.
    reaction::Derivatives* getDerivatives() const { return derivatives.get(); }

private:
    HeatOfExplosion(std::unique_ptr<thermo::Mixture> sample, bool multiphase, bool ions);
    void startRun();
    void pose(thermo::Mixture& charge);
    double burnInArgon(double T);

    std::unique_ptr<thermo::Mixture> mixture; // the sample
    bool multiphase;
    bool ions;
    bool persistent = false;
    // Derivatives refer to their problem: copies of this object share both, or neither.
    std::shared_ptr<reaction::Equilibrium> reaction;
    std::shared_ptr<reaction::Derivatives> derivatives;
};

} // namespace explosion
