#pragma once

#include <ketra/export.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>

#include <memory>

namespace performance::frozen {

/// A chamber whose products stop reacting at a section of the nozzle, the freezing section, which
/// it solves together with its stations. Upstream of it the flow is in equilibrium; the sections
/// downstream (`NozzleSectionConditions`) keep its composition.
class KETRA_API Chamber : public equilibrium::Chamber
{
public:
    /// What the freezing section is given by. Not the numbers of the section classes.
    enum CONDITION_TYPE : unsigned int {
        EXPANSION_RATIO = 0, ///< area over throat area, at least 1.1
        PRESSURE = 1,        ///< static pressure, Pa
        PRESSURE_RATIO = 2,  ///< injection pressure over static pressure
    };

    /// The chambers of `equilibrium::Chamber`, with a freezing section at \p value.
    Chamber(thermo::Propellant& propellant, double value, CONDITION_TYPE type);
    Chamber(thermo::Propellant& propellant, double H, double value, CONDITION_TYPE type);
    Chamber(thermo::Propellant& propellant, bool multiphase, bool ions, double value,
            CONDITION_TYPE type);
    Chamber(thermo::Propellant& propellant, double H, bool multiphase, bool ions, double value,
            CONDITION_TYPE type);
    Chamber(thermo::Mixture& mixture, double value, CONDITION_TYPE type);
    Chamber(thermo::Mixture& mixture, double H, double value, CONDITION_TYPE type);
    Chamber(thermo::Mixture& mixture, bool multiphase, bool ions, double value,
            CONDITION_TYPE type);
    Chamber(thermo::Mixture& mixture, double H, bool multiphase, bool ions, double value,
            CONDITION_TYPE type);
    ~Chamber() override;

    using equilibrium::Chamber::solve;
    /// Solves the stations, always with transport properties and without looking for condensed
    /// phases at once, and then the freezing section, for which the two last arguments hold. A
    /// freezing pressure not below that of the throat becomes 0.9 times the throat's.
    /// \throws thermo::Exception 14 whatever has failed
    void solve(bool finiteArea, bool expectCondensed, bool calculateTransport) override;

    /// Moves the freezing section to \p value; the next `solve` heeds it.
    void init(double value, CONDITION_TYPE type);
    /// Area ratio of the freezing section, at least 1.1.
    void setFrozenSection(double Fr);
    /// Pressure of the freezing section, Pa; a negative value is a pressure ratio. For a chamber
    /// whose freezing section has no area ratio.
    void setFrozenPressure(double newP);

    /// The freezing section; stays the chamber's and lives until the next `solve`.
    /// \throws thermo::Exception 0 before the chamber is solved
    equilibrium::NozzleSectionConditions* getEquilibriumSection() const;

private:
    void solveFreezingSection(bool expectCondensed, bool calculateTransport);

    double frozenFr = 0.0; // 0 if the section is given by pressure
    double frozenP = 0.0;  // Pa; negative: a pressure ratio
    std::unique_ptr<equilibrium::NozzleSectionConditions> section;
};

} // namespace performance::frozen
