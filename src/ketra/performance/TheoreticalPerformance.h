#pragma once

#include <ketra/export.h>

#include <memory>

namespace thermo {
class Mixture;
class Propellant;
} // namespace thermo
namespace thermo::input {
class ConfigFile;
class Propellant;
} // namespace thermo::input
namespace reaction {
class Derivatives;
class Equilibrium;
} // namespace reaction

namespace performance {

/// Runs the problem that a document describes: builds the propellant or the mixture, solves for the
/// combustion products at the chamber pressure and prints the report.
///
/// The document states `calculateNozzleFlow = false` and a mixture ratio, or a premixed list of
/// species: the equilibrium of the chamber is what this class solves.
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

    /// Drops all results and solves the document anew.
    /// \throws thermo::Exception 14 for a document without a usable propellant, and for one that
    ///         asks for nozzle flow or for the optimum mixture ratio; 5 for fractions that do not
    ///         add up to one; 8 and others when there is no solution, and `isInvalid()` then
    void solve(bool calculateTransport);

    /// Drops the results; with \p all also what `setH` gave, the mixture and the propellant, so
    /// that the next solve builds them from a changed document.
    void clearForRestart(bool all);

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

protected:
    /// No document, and so nothing to solve: for a subclass that brings its own.
    TheoreticalPerformance();
    /// A performance of its own on a copy of the document of \p source, with its settings.
    explicit TheoreticalPerformance(TheoreticalPerformance* source);

    /// Builds the propellant or the mixture of the document, unless there is one. A component
    /// without a mass fraction is left out with a warning.
    void initPropellant();

private:
    std::unique_ptr<thermo::Propellant>
    buildPropellant(const thermo::input::Propellant& input) const;
    std::unique_ptr<thermo::Mixture> buildMixture(const thermo::input::Propellant& input) const;
    [[noreturn]] void failWithoutPropellant() const;
    bool expectsCondensed() const;
    void solveEquilibrium(bool expectCondensed, bool calculateTransport);

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
    double relativeTolerance = 1.0;
};

} // namespace performance
