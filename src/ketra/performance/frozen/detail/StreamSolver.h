#pragma once

#include <ketra/performance/frozen/NozzleSectionConditions.h>

namespace performance::frozen {

/// Solves one stream of a frozen section, the core or the layer: takes over the composition of the
/// freezing section, expands it, and works out state and performance.
class NozzleSectionConditions::StreamSolver
{
public:
    /// What the stream comes from: its stations in the chamber, and the freezing section.
    struct Origin {
        const reaction::Equilibrium& injection;
        const reaction::Equilibrium& end; // of the chamber
        const reaction::Derivatives& throat;
        double throatFlux; // kg/(m^2 s)
        const reaction::Equilibrium& freezing;
    };

    /// \param stream  receives the frozen state
    /// \param flow    receives velocity and performance
    StreamSolver(NozzleSectionConditions& section, Frozen& stream, Stream& flow,
                 const Origin& origin);

    /// The lowest temperature at which an expansion starts, K.
    static constexpr double floorT = 400.0;

    /// Temperature of a perfect gas expanded to a ratio of pressure to that of the chamber end, K.
    /// \throws math::equation::Exception if there is none
    double guessByPressure(double ratio) const;
    /// Expands the stream to the pressure of the section, from the temperature \p T0, K.
    void expand(double T0);
    /// Finds the pressure of the section at which the area ratio of the core is \p Fr.
    /// \param persistent  between two pressures if the method does not come to it
    void findAreaRatio(double Fr, bool persistent);

    /// The values that follow from the temperature, and the velocity.
    void storeState();
    /// All that follows from the velocity, with the characteristic velocity \p Betta, m/s.
    void storePerformance(double Betta);
    /// Reads the transport properties at the freezing section.
    /// \param calculate  compute them at the temperature of this section first
    void storeTransport(reaction::Derivatives& freezing, bool calculate);

    /// Area over throat area of the expanded stream.
    double areaRatio() const { return origin.throatFlux / (stream.rho * flow.W); }

private:
    void freeze();
    bool stepToAreaRatio(double Fr);
    void bracketAreaRatio(double Fr);
    double excessAt(double lnP, double Fr);
    void accelerate(double sumH);
    double sum_nH() const;
    void calculateTransport(reaction::Derivatives& freezing);

    NozzleSectionConditions& section;
    Frozen& stream;
    Stream& flow;
    const Origin origin;
    double mass = 0.0; // kg per mole of reactants
    double Ngas = 0.0; // mol per mole of reactants
};

} // namespace performance::frozen
