#pragma once

#include <ketra/export.h>

#include <memory>
#include <string>
#include <vector>

namespace thermo {
class Mixture;
class Propellant;
} // namespace thermo
namespace reaction {
class Derivatives;
class Equilibrium;
} // namespace reaction

namespace performance::equilibrium {

/// One equilibrium problem with the thermodynamic derivatives of its solution: the smallest unit of
/// a performance calculation.
///
/// A combustor is built on its reactants, given a state (`setP`, `setPH`, `setPT`) and solved. The
/// products of a solution are the start of the next one. Every solver of an engine goes through the
/// static `solveReaction`, which turns a failed solution into a second and a third attempt.
///
/// Two flags have one meaning everywhere: `expectCondensed` lets the solver look for condensed
/// phases before its first cycle, whatever the start temperature; `calculateTransport` asks for
/// the transport properties too.
class KETRA_API Combustor
{
public:
    /// Reactants whose initial enthalpy, J/mol, is their own, or \p H where it is given. Without
    /// \p multiphase and \p ions the problem takes its own defaults: condensed products, no ions.
    /// The reactants stay the caller's and are not referred to afterwards.
    /// \throws thermo::Exception 5 or 6 when the fractions of the reactants do not add up to one
    explicit Combustor(thermo::Propellant& propellant);
    Combustor(thermo::Propellant& propellant, double H);
    Combustor(thermo::Propellant& propellant, bool multiphase, bool ions);
    Combustor(thermo::Propellant& propellant, double H, bool multiphase, bool ions);
    explicit Combustor(thermo::Mixture& mixture);
    Combustor(thermo::Mixture& mixture, double H);
    Combustor(thermo::Mixture& mixture, bool multiphase, bool ions);
    Combustor(thermo::Mixture& mixture, double H, bool multiphase, bool ions);

    Combustor(const Combustor&) = delete;
    Combustor& operator=(const Combustor&) = delete;
    virtual ~Combustor();

    /// Solves the problem as it stands and keeps the derivatives of the solution.
    /// \throws thermo::Exception what `solveReaction` gave up with; there are no derivatives then
    virtual void solve(bool expectCondensed, bool calculateTransport);
    /// Solves for the temperature at which the specific property of the problem is \p target, and
    /// keeps the derivatives; see `solveReactionByIteration`.
    /// \throws thermo::Exception what the search gave up with; there are no derivatives then
    virtual void solveByIteration(double T0, double target, bool expectCondensed,
                                  bool calculateTransport);

    /// Pressure in Pa, with the initial enthalpy of the reactants.
    void setP(double p);
    /// Pressure in Pa and enthalpy in J per mole of reactants.
    void setPH(double p, double H);
    /// Pressure in Pa and temperature in K.
    void setPT(double p, double T);
    /// Names of the only products to consider, and of products to leave out; an empty list changes
    /// nothing. All products are found anew.
    void setSpecies(std::vector<std::string>& included, std::vector<std::string>& omitted);

    /// The problem, solved or not; stays the combustor's.
    reaction::Equilibrium* getReaction() const { return problem.get(); }
    /// The derivatives of the last solution, null before it; stay the combustor's.
    reaction::Derivatives* getDerivatives() const { return derivatives.get(); }

    /// Initial enthalpy of the reactants, J/mol and J/kg.
    double getInitialH() const { return initialH; }
    double getInitialHspec() const { return initialHspec; }

    /// Multiplier of the solver's own tolerances, 1 unless set; the sign is dropped.
    double getRelativeTolerance() const { return relativeTolerance; }
    void setRelativeTolerance(double multiplier);

    /// Whether a failed solution is followed by further attempts until one is certified: those of
    /// `reaction::Equilibrium::setPersistent`, and in a chamber a bracketed search for a throat, a
    /// chamber end or a section that the method does not find. A chamber hands the flag on to its
    /// stations, its boundary layer, its sections and its tables. Off unless set; holds from the
    /// next solve on.
    void setPersistent(bool persistent);
    bool isPersistent() const;
    /// Whether each solve begins from the nearest solved state instead of equal amounts of all
    /// gases, see `reaction::Equilibrium::setWarmStart`: the chamber end and the throat from the
    /// state before, a section from its chamber end or throat and each step of its search from the
    /// one before. Searches converge more tightly then, in fewer steps. Handed on like persistence.
    /// Off unless set; holds from the next solve on.
    void setWarmStart(bool warmStart);
    bool isWarmStart() const;

    /// Solves \p reaction and returns the derivatives of the solution, the caller's.
    ///
    /// A failure is answered by up to two further attempts on the same problem, each from at least
    /// 250 K and with condensed phases from the start: the first without ions, the second with at
    /// least 500 cycles. What they change (ions, cycle limit, start temperature) stays changed. A
    /// persistent problem has had its further attempts already, and gets none of these.
    /// \throws thermo::Exception 18 at once, when a new condensed species made the matrix singular;
    ///         any other when no attempt is left
    static reaction::Derivatives* solveReaction(reaction::Equilibrium* reaction,
                                                double relativeTolerance, bool expectCondensed,
                                                bool calculateTransport);

    /// Finds the temperature at which the specific property of \p reaction (J/kg or J/(kg K)) is
    /// \p target, by Newton's method from \p T0, K. Returns the derivatives, the caller's, and
    /// leaves \p reaction solved at that fixed temperature. \p relativeTolerance is both the
    /// multiplier of the solver's tolerances and the tolerance of the search.
    /// \throws thermo::Exception 14 for a problem of fixed temperature
    static reaction::Derivatives* solveReactionByIteration(reaction::Equilibrium* reaction,
                                                           double T0, double target,
                                                           double relativeTolerance,
                                                           bool expectCondensed,
                                                           bool calculateTransport);

protected:
    /// The hint of the last solve, which a chamber hands on to its other stations.
    bool isCondensedExpected() const { return condensedExpected; }
    void setCondensedExpected(bool expected) { condensedExpected = expected; }
    /// Drops the derivatives of the last solution; there are none until the next.
    void clearDerivatives();

private:
    Combustor(std::unique_ptr<reaction::Equilibrium> newProblem, double H, double M);
    void dropDerivatives();

    bool condensedExpected = false;
    std::unique_ptr<reaction::Equilibrium> problem;
    std::unique_ptr<reaction::Derivatives> derivatives; // refers to the problem, and so dies first
    double relativeTolerance = 1.0;
    double initialH;     // J per mole of reactants
    double initialHspec; // J/kg
};

} // namespace performance::equilibrium
