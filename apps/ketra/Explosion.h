#pragma once

#include "ExplosiveCommand.h"
#include "Station.h"

#include <ketra/explosion/HeatOfExplosion.h>

#include <map>

namespace host {

using Replacements = std::map<std::string, std::string>; // by the name of the product

bool isExact(const ExplosiveOptions& options);
/// Of the products, or of the argon before, K.
double temperatureOf(const ExplosiveOptions& options);
/// What stands for which product; water is liquid unless the user says otherwise. \throws Failure
Replacements replacementsOf(const ExplosiveOptions& options);

/// A run of one of the two methods, and what it found.
///
/// The gas of the inert diluent method keeps its internal energy; its temperature is searched with
/// `solveAtConstantVolume`, unless the default method alone is asked for.
class Explosion
{
public:
    /// \throws Failure if there is no solution, or if it does not hold the sample's elements
    Explosion(const ExplosiveOptions& options, ExplosiveSample takenSample);
    ~Explosion();

    const ExplosiveSample& getSample() const { return sample; }
    const Replacements& getReplacements() const { return replacements; }
    double getHeat() const { return Q; }        ///< J/kg
    double getTemperature() const { return T; } ///< K
    const reaction::Equilibrium& burnt() const;
    /// Of the inert diluent method, K.
    double rise() const;
    /// Heat capacity of its gas at constant volume, J/(kg K).
    double cv() const;
    Composition composition() const;
    /// Moles per kg of sample of a product with that share of the mass.
    double amount(double massFraction, double M) const { return massFraction / M / share; }
    /// The species that stands for a product in the final state.
    std::string finalOf(const std::string& product) const;

private:
    void run(const ExplosiveOptions& options);
    void burnInArgon(const ExplosiveOptions& options);
    const reaction::Derivatives& derivatives() const;
    void requireBalance() const;

    ExplosiveSample sample;
    double T; // K
    explosion::HeatOfExplosion calculation;
    Replacements replacements;
    // The problem in argon and its derivatives; null where the library's calculation holds them.
    std::unique_ptr<reaction::Equilibrium> inArgon;
    std::unique_ptr<reaction::Derivatives> inArgonDerivatives;
    double Q = 0.0;     // J/kg
    double share = 1.0; // of the sample in what burns, by mass
};

} // namespace host
