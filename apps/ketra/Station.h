#pragma once

#include <memory>
#include <optional>

namespace performance {
class TheoreticalPerformance;
}
namespace performance::equilibrium {
class Chamber;
class NozzleSectionConditions;
} // namespace performance::equilibrium
namespace reaction {
class Derivatives;
class Equilibrium;
} // namespace reaction
namespace thermo {
class Mixture;
}

namespace host {

/// A cross-section of an engine, whichever objects of the library hold its state; these must
/// outlive it. Where the composition is frozen there is no equilibrium, and the section itself
/// holds the state.
struct Station {
    const reaction::Equilibrium* equilibrium = nullptr;
    const reaction::Derivatives* derivatives = nullptr;
    const performance::equilibrium::NozzleSectionConditions* section = nullptr; ///< of a nozzle

    std::optional<double> areaRatio; ///< none where the gas rests: the area is infinite
    double W = 0.0;                  ///< m/s
    double pressureRatio = 1.0;      ///< injection pressure over static pressure

    bool isFrozen() const { return equilibrium == nullptr; }
    double T() const;     ///< K
    double p() const;     ///< Pa
    double rho() const;   ///< kg/m^3
    double a() const;     ///< speed of sound, m/s
    double M() const;     ///< molar mass of the gas, kg/mol
    double gamma() const; ///< ratio of heat capacities
    double k() const;     ///< isentropic exponent
    double Mach() const { return W / a(); }
    double massFlux() const { return rho() * W; } ///< kg/(m^2 s)
};

/// The state of a problem without flow.
Station stationOf(const reaction::Equilibrium& equilibrium,
                  const reaction::Derivatives& derivatives);
/// Injection plane, chamber end and throat of a solved chamber.
Station injectionPlaneOf(const performance::equilibrium::Chamber& chamber);
Station chamberEndOf(const performance::equilibrium::Chamber& chamber);
Station throatOf(const performance::equilibrium::Chamber& chamber);
Station stationOf(const performance::equilibrium::NozzleSectionConditions& section);

/// The composition with the objects that hold its species.
class Composition
{
public:
    explicit Composition(const Station& station);
    Composition(Composition&&) noexcept;
    ~Composition();
    const thermo::Mixture& getMixture() const { return *mixture; }
    /// Mass fraction of what is condensed.
    double condensedFraction() const;

private:
    struct Products;
    std::unique_ptr<Products> products; // hold the species of the mixture
    std::unique_ptr<thermo::Mixture> mixture;
};

} // namespace host
