#pragma once

#include <ketra/thermo/Mixture.h>

namespace thermo {

/// A mixture of ideal gases at one temperature and one pressure. The states of its entries play no
/// part in the properties of this class.
class KETRA_API GasMixture : public Mixture
{
public:
    /// An empty mixture at \p newT, K, and \p newP, Pa.
    GasMixture(double newT, double newP, _Species::FractionType type);
    ~GasMixture() override;

    // The state of the mixture; the entries keep theirs.
    void assignT(double newT) { T = newT; }
    void assignP(double newP) { p = newP; }

    /// Checks the fractions, and once after each change that there are only gases.
    /// \throws thermo::Exception 5, 6, or 7 for a condensed species. The fractions count as checked
    ///         after a 7: the next call passes.
    void checkFractions() const;
    using Mixture::checkFractions;

    /// Density, kg/m^3: p Mm / (R T).
    double rho() const;
    double getRho() const override { return rho(); }
    /// Specific gas constant, J/(kg K).
    double R() const;
    /// Heat capacities at the temperature of the mixture, J/(mol K).
    double Cp0() const;
    double Cv0() const;
    /// Ratio of the heat capacities.
    double k() const;
    /// Speed of sound, m/s.
    double a() const;

private:
    double T; // K
    double p; // Pa
};

} // namespace thermo
