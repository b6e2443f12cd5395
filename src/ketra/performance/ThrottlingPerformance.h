#pragma once

#include <ketra/performance/TheoreticalPerformance.h>

namespace performance {

/// What an engine delivers at a changed flow rate.
///
/// The hardware is that of a design case: contraction and exit area ratio are held at the design's,
/// however they were given. The throttling ratio is the mass flux at the end of a finite-area
/// chamber over the design's, found by iterating on the chamber pressure; for a chamber of infinite
/// area, whose mass flow follows its pressure, it is the pressure over the design's.
///
/// At a ratio of exactly 1 nothing is solved, and all results are those of the design case itself.
///
/// Persistence and warm starts are those of the design case unless set anew for a further
/// `throttle`. A persistent object whose mass flux does not settle by the method searches the
/// chamber pressure in a bracket.
class KETRA_API ThrottlingPerformance : public TheoreticalPerformance
{
public:
    /// Works on a copy of the document of \p design, which stays the caller's and must outlive the
    /// object. A finite-area design, or one with a nozzle exit, must have been solved.
    /// \throws thermo::Exception as `throttle`; 0 for no design, or one without a document
    ThrottlingPerformance(TheoreticalPerformance* design, double ratio, bool calculateTransport);
    ~ThrottlingPerformance() override;

    reaction::Equilibrium* getEquilibrium() override;
    reaction::Derivatives* getDerivatives() override;
    equilibrium::Chamber* getChamber() override;
    equilibrium::NozzleSectionConditions* getExitSection() override;
    double getPaCrit() override;
    equilibrium::NozzleSectionConditions* getOverExpansionSection() override;

    /// Solves at \p ratio, 1e-6 to 2. The start is the chamber pressure of the object's own
    /// document, which the last throttling has changed, times the ratio.
    /// \throws thermo::Exception 0 for another ratio, for a design without the chamber or the exit
    ///         that is needed, and when the mass flux does not settle within 20 chamber solves;
    ///         otherwise as `solve`. The object is invalid then.
    void throttle(double ratio, bool calculateTransport);

private:
    bool isDesign() const { return ratio == 1.0; } // exactly: the results are the design's own
    bool isFiniteArea() const;
    void setChamberPressure(double p);
    void solveThrottled(bool calculateTransport);
    void solveChamberForFlux(double targetMr, bool calculateTransport);
    bool settleFlux(double targetMr, bool calculateTransport);
    bool bracketFlux(double targetMr, bool calculateTransport);
    void solveDesignExit(bool calculateTransport);
    equilibrium::Chamber& designChamber() const;
    equilibrium::NozzleSectionConditions& designExit() const;

    TheoreticalPerformance* design; // not owned
    double ratio;
};

} // namespace performance
