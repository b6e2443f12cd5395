#pragma once

#include <ketra/export.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>

#include <memory>

namespace thermo {
class Mixture;
class Propellant;
} // namespace thermo
namespace thermo::input {
class ConfigFile;
class NozzleFlowOptions;
class Propellant;
} // namespace thermo::input
namespace reaction {
class Derivatives;
class Equilibrium;
} // namespace reaction

namespace performance::equilibrium {
class Chamber;
} // namespace performance::equilibrium

namespace performance {

/// Runs the problem that a document describes: builds the propellant or the mixture, solves for the
/// combustion products in the chamber and along the nozzle, and prints the report.
///
/// Without nozzle flow that is the one equilibrium at the chamber pressure, `getEquilibrium()`.
/// With it, it is a chamber with its throat, `getChamber()`, in shifting equilibrium or frozen from
/// a section on; the nozzle exit where the document states one, `getExitSection()`; and, where the
/// ambient pressure lets the flow separate inside the nozzle, the section at which it leaves the
/// wall, `getOverExpansionSection()`. A document that asks for the optimum mixture ratio is
/// searched for it first.
///
/// The object is built on a document, solved, read and printed; it can be solved again at any time
/// and drops its results first. One object belongs to one thread at a time.
class KETRA_API TheoreticalPerformance
{
public:
    /// Builds the propellant of \p document at once. With \p ownsDocument the document is this
    /// object's from the call on, and is deleted also if the constructor throws; otherwise it stays
    /// the caller's and must outlive the object.
    /// \throws thermo::Exception 4 for a species that the database does not know; 0 for no document
    TheoreticalPerformance(thermo::input::ConfigFile* document, bool ownsDocument);

    TheoreticalPerformance& operator=(const TheoreticalPerformance&) = delete;

    /// Deletes the results, the mixture and the propellant; with \p all also the document, if it is
    /// this object's.
    virtual void clear(bool all);
    virtual ~TheoreticalPerformance();
    /// Prints name and title of the case.
    virtual void printHeader();
    /// Prints the report of all that is there. \p flags: 0x80 English units, 0x100 transport
    /// properties, and those of `Mixture::print`.
    virtual void printResults(unsigned int flags);
    /// The solved problem and the derivatives of its solution; null before a solve. They stay this
    /// object's.
    virtual reaction::Equilibrium* getEquilibrium() { return equilibrium.get(); }
    virtual reaction::Derivatives* getDerivatives() { return derivatives.get(); }
    /// The solved chamber, the nozzle exit and the section at which an over-expanded flow
    /// separates; null where the document asks for none. They stay this object's.
    virtual equilibrium::Chamber* getChamber() { return chamber.get(); }
    virtual equilibrium::NozzleSectionConditions* getExitSection() { return exitSection.get(); }
    /// Ambient pressure, Pa, at which the flow begins to separate at the nozzle exit; 0 without an
    /// exit.
    virtual double getPaCrit() { return PaCrit; }
    virtual equilibrium::NozzleSectionConditions* getOverExpansionSection()
    {
        return overExpansionSection.get();
    }
    /// Another name of `getExitSection`.
    equilibrium::NozzleSectionConditions* getNozzleExitSection() { return getExitSection(); }

    /// Drops all results and solves the document anew. A document that asks for the optimum mixture
    /// ratio is searched from 0.2 to 1.8 times the stoichiometric ratio.
    /// \throws thermo::Exception 14 for a document without a usable propellant, and for a search
    ///         without a nozzle exit; 5 for fractions that do not add up to one; 0 for freezing or
    ///         exit conditions without a value; 8, 14 and others when the chamber has no solution,
    ///         and `isInvalid()` then; 11 when the exit has none, with the chamber kept
    void solve(bool calculateTransport);

    /// Drops the results; with \p all also what `setH` gave, the mixture and the propellant, so
    /// that the next solve builds them from a changed document.
    void clearForRestart(bool all);

    /// Finds the oxidizer excess coefficient between \p a and \p b, in either order, with the
    /// highest effective vacuum specific impulse, to the relative width \p eps of its bracket:
    /// bisection by the golden ratio on the sign of the slope. Bounds at which the engine has no
    /// solution are moved inwards first. A coefficient between them at which it has none counts as
    /// one without impulse and misleads the search, which ends with a warning then. The points are
    /// solved in parallel, each on a copy of the document; the result is the same for any number of
    /// threads.
    ///
    /// \returns the optimum, which the document then states, with the object solved at it and
    /// `isOptimized()`. Where the impulse falls from the lower bound on, \p a, with a warning, and
    /// the object as it was.
    /// \throws thermo::Exception 14 for a premixed charge and for a document without a nozzle exit;
    ///         as `solve` at the optimum
    double optimizeForSpecificImpulse(double a, double b, double eps);

    /// Solves the nozzle exit of \p options behind the solved chamber, and the over-expansion
    /// section if \p flowSeparation and the ambient pressure of \p options exceeds `getPaCrit()`.
    /// Transport properties are always solved, whatever \p calculateTransport says.
    /// \throws thermo::Exception 0 for an exit without a value and without a chamber; 11 when the
    ///         exit has no solution
    void solveNozzleExit(thermo::input::NozzleFlowOptions& options, bool flowSeparation,
                         bool calculateTransport);

    /// A new section behind the solved chamber, the caller's, at \p value: an area ratio, a
    /// pressure in Pa or a pressure ratio, as \p type says. With \p frozen it is a frozen one,
    /// unless it lies upstream of the freezing section. With \p overExpansion, and a \p
    /// ambientPressure, Pa, of at least `getPaCrit()`, it is the section in front of it at which
    /// the flow separates from the wall. The section is to be deleted before the object is solved
    /// again. Null for a section of a freezing flow that is not supersonic and has no solution.
    /// \throws thermo::Exception 11 when there is no solution; 0 without a chamber of the kind, or
    ///         without the exit that an over-expanded flow needs
    equilibrium::NozzleSectionConditions*
    solveNozzleSection(double value, equilibrium::NozzleSectionConditions::CONDITION_TYPE type,
                       bool frozen, bool overExpansion, double ambientPressure,
                       bool calculateTransport, bool supersonic);

    /// Carries a boundary layer that was given to the solved chamber on to the nozzle sections.
    /// \throws thermo::Exception 0 for a layer that the chamber has not solved yet
    void propagateChamberBLC();

    /// Enthalpy, J/mol, with which a chamber starts in place of the propellant's own. The problem
    /// without nozzle flow always takes the propellant's own.
    void setH(double newH);
    void removeH();

    bool isValid() const { return !invalid; }
    bool isInvalid() const { return invalid; }
    /// The mixture ratio is the result of a search.
    bool isOptimized() const { return optimized; }

    /// The document and what was built of it; all stay this object's, or the document's owner's.
    thermo::input::ConfigFile* getData() const { return data; }
    thermo::Mixture* getMixture() const { return mixture.get(); }
    thermo::Propellant* getPropellant() const { return propellant.get(); }

    /// Multiplier of the solver's own tolerances, 1 unless set; the sign is dropped.
    double getRelativeTolerance() const { return relativeTolerance; }
    void setRelativeTolerance(double multiplier);

    /// Whether what fails is tried again until it is certified, and whether solves begin from the
    /// nearest solved state: `equilibrium::Combustor::setPersistent` and `setWarmStart` of all that
    /// the next solve builds, the points of a search for the optimum included. Off unless set.
    void setPersistent(bool newPersistent) { persistent = newPersistent; }
    bool isPersistent() const { return persistent; }
    void setWarmStart(bool newWarmStart) { warmStart = newWarmStart; }
    bool isWarmStart() const { return warmStart; }

protected:
    /// No document, and so nothing to solve: for a subclass that brings its own.
    TheoreticalPerformance();
    /// A performance of its own on a copy of the document of \p source, with its settings.
    explicit TheoreticalPerformance(TheoreticalPerformance* source);

    /// Builds the propellant or the mixture of the document, unless there is one. A component
    /// without a mass fraction is left out with a warning.
    void initPropellant();

    /// Records that the last solve has failed.
    void markInvalid() { invalid = true; }
    /// Whether `solve` goes on from the chamber to the nozzle exit; it does unless told otherwise.
    void setNozzleSolving(bool follow) { nozzleSolving = follow; }

private:
    void clearResults();
    void clearSections();
    void requireDocument() const;
    std::unique_ptr<thermo::Propellant>
    buildPropellant(const thermo::input::Propellant& input) const;
    std::unique_ptr<thermo::Mixture> buildMixture(const thermo::input::Propellant& input) const;
    [[noreturn]] void failWithoutPropellant() const;
    bool expectsCondensed() const;
    void solveEquilibrium(bool expectCondensed, bool calculateTransport);
    void solveNozzleFlow(bool expectCondensed, bool calculateTransport);
    void solveChamber(bool expectCondensed, bool calculateTransport);
    std::unique_ptr<equilibrium::NozzleSectionConditions>
    newSection(double value, equilibrium::NozzleSectionConditions::CONDITION_TYPE type, bool frozen,
               bool calculateTransport, bool supersonic) const;
    std::unique_ptr<equilibrium::NozzleSectionConditions>
    separatedSection(const equilibrium::NozzleSectionConditions& expanded, bool frozen,
                     double ambientPressure) const;
    void requireSearchable() const;

    bool invalid = false;
    thermo::input::ConfigFile* data = nullptr;
    std::unique_ptr<thermo::input::ConfigFile> ownedData; // the same document, if it is ours
    bool optimized = false;
    bool hasH = false;
    double H = 0.0; // J/mol
    std::unique_ptr<thermo::Mixture> mixture;
    std::unique_ptr<thermo::Propellant> propellant;
    std::unique_ptr<reaction::Equilibrium> equilibrium;
    std::unique_ptr<reaction::Derivatives> derivatives; // refer to the equilibrium
    std::unique_ptr<equilibrium::Chamber> chamber;
    bool nozzleSolving = true;
    std::unique_ptr<equilibrium::NozzleSectionConditions> exitSection;
    double PaCrit = 0.0; // Pa
    std::unique_ptr<equilibrium::NozzleSectionConditions> overExpansionSection;
    double relativeTolerance = 1.0;
    bool persistent = false;
    bool warmStart = false;
};

} // namespace performance
