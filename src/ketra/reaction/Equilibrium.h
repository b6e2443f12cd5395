#pragma once

#include <ketra/export.h>
#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/verification/criteria/EquilibriumCertificate.h>

#include <memory>
#include <string>
#include <vector>

namespace thermo {
class Mixture;
class Propellant;
} // namespace thermo

namespace verification {
struct EquilibriumState;
} // namespace verification

namespace reaction {

namespace detail {
class ElementPotentials;
class Iteration;
class Persistence;
struct SolvedState;
} // namespace detail

/// One problem of chemical equilibrium: two prescribed quantities and the products that can form.
///
/// Pose a problem with a `set` operation, call `solve`, read the getters. Targets on a molar basis
/// are per mole of initial mixture; after `solve` the molar results H, S, U, G are per mole of
/// products and the specific ones per kg. The temperature of one solution is the start of the next.
/// An object belongs to one thread at a time.
///
/// The method is the reduced Gibbs iteration of Gordon and McBride [RP1311]: a Newton step in the
/// logarithms of the gas amounts with Lagrange multipliers for the element balance.
///
/// Two properties, both off by default, change how a solution is found and never what it is: a
/// persistent problem tries further starts and a second method where the first solve fails
/// (`setPersistent`), a warm one begins at the solution it was copied from (`setWarmStart`).
class KETRA_API Equilibrium
{
public:
    enum PROCESS_TYPE : unsigned int {
        PH = 0, ///< pressure and enthalpy
        PS = 1, ///< pressure and entropy
        PT = 2, ///< pressure and temperature
        VU = 3, ///< specific volume and internal energy
        VS = 4, ///< specific volume and entropy
        VT = 5  ///< specific volume and temperature
    };

    /// A problem on the products of a propellant or mixture, posed with its enthalpy and internal
    /// energy; with condensed phases and without ions unless told otherwise. The argument stays the
    /// caller's. \throws thermo::Exception as `H()` of the argument.
    explicit Equilibrium(thermo::Propellant& propellant);
    Equilibrium(thermo::Propellant& propellant, bool multiphase, bool ions);
    explicit Equilibrium(thermo::Mixture& mixture);
    Equilibrium(thermo::Mixture& mixture, bool multiphase, bool ions);
    /// A problem of type PT on a copy of \p mixture, which must outlive it.
    explicit Equilibrium(const ReactingMixture& mixture);
    /// A problem of its own on a copy of the mixture of \p other, which must outlive it.
    Equilibrium(const Equilibrium& other);
    Equilibrium& operator=(const Equilibrium&) = delete;
    virtual ~Equilibrium();

    // Posing a problem. p in Pa, v in m^3/kg, T in K; molar values per mole of initial mixture.
    void setPT(double p, double T);
    void setPH(double p, double H);
    void setPHspec(double p, double h);
    void setPS(double p, double S);
    void setPSspec(double p, double s);
    void setVT(double v, double T);
    void setVU(double v, double U);
    void setVUspec(double v, double u);
    void setVS(double v, double S);
    void setVSspec(double v, double s);
    /// Start temperature, K; the process type stays.
    void setT(double T);
    /// Raises the start temperature to \p T if it is lower.
    void adjustT(double T);

    /// A multiplier of all tolerances of the solver; its absolute value counts.
    void setRelativeTolerance(double tolerance);
    double getRelativeTolerance() const { return relativeTolerance; }
    unsigned int getMaxCycles() const { return maxCycles; }
    void setMaxCycles(unsigned int cycles) { maxCycles = cycles; }

    /// Whether `solve` goes on where the default method fails or its result is no equilibrium
    /// (certificate F). Further attempts follow then, each from a fresh state, with ions and
    /// targets as posed: from 3600 K; with the hint on condensed phases reversed; from the nearest
    /// solved state (the one that this problem was copied from, or its own last solution); with the
    /// main species first; and last by minimisation over the element potentials, where condensed
    /// phases enter and leave by their driving force. Only a result of grade A or B is taken. Each
    /// attempt is logged as information. Copies inherit the property.
    void setPersistent(bool newPersistent);
    bool isPersistent() const { return persistent; }
    /// Whether `solve` begins at composition and condensed phases of the state that this problem
    /// was copied from, or of its own last solution, instead of equal amounts of all gases. The
    /// temperature is that of the state too, unless `setT` says otherwise after the copy. If such a
    /// solve fails, or its certificate is F, the usual one follows: a state is only a start. Copies
    /// inherit the property.
    void setWarmStart(bool newWarmStart);
    bool isWarmStart() const { return warmStart; }

    /// What one attempt of a solve did.
    struct Attempt {
        std::string start;         ///< where it began
        bool finished;             ///< false if it ended by an exception
        verification::Grade grade; ///< of its result; F if it has not finished
        double T;                  ///< K, of its result, or where it broke off
    };
    /// The attempts of the last solve, in their order; the result is the first one of the best
    /// grade. Empty if the problem was neither persistent nor warm. Valid until the next solve.
    const std::vector<Attempt>& getAttempts() const { return attempts; }

    /// An independent check of the solution that stands; grade F without one.
    /// See verification::EquilibriumCertificate.
    verification::EquilibriumCertificate certificate() const;
    /// What the certificate judges: the solution that stands, with the functions of all products
    /// evaluated anew. Valid until the next change of this object.
    verification::EquilibriumState describe() const;

    PROCESS_TYPE getProcessType() const { return processType; }
    double getP() const { return p; }         ///< Pa; 0 in a problem of given volume
    double getV() const { return v; }         ///< m^3/kg; 0 in a problem of given pressure
    double getT() const { return T; }         ///< K
    double getRT() const { return RT; }       ///< J/mol
    double getNg() const { return Ng; }       ///< gas, mol per mole of initial mixture
    double getH() const { return H; }         ///< J/mol
    double getHspec() const { return Hspec; } ///< J/kg
    double getS() const { return S; }         ///< J/(mol K)
    double getSspec() const { return Sspec; } ///< J/(kg K)
    double getU() const { return U; }         ///< J/mol
    double getUspec() const { return Uspec; } ///< J/kg
    double getG() const { return G; }         ///< J/mol
    double getGspec() const { return Gspec; } ///< J/kg

    bool isMultiphase() const { return mixture->isMultiphase(); }
    bool isIons() const { return mixture->isIons(); }
    void removeIons();
    void setSpecies(std::vector<std::string>& included, std::vector<std::string>& omitted);

    /// Moles of products per mole of initial mixture.
    double getResultingMixtureQuantaty() const { return mixture->getN(); }
    bool hasCondensedPhase() const { return mixture->gasSize() < mixture->size(); }
    unsigned int getNumberOfCondensedSpecies() const
    {
        return mixture->size() - mixture->gasSize();
    }
    /// Condensed product \p i, or null beyond the last; not the caller's.
    const thermo::Species* getCondensedSpecies(unsigned int i) const;
    /// Fills \p out with the condensed products; a null pointer is allowed.
    void getCondensedSpecies(std::vector<const thermo::Species*>* out) const;
    /// Fills \p out with the products of at least \p minN moles; a null pointer is allowed.
    void getAllSpecies(std::vector<const thermo::Species*>* out, double minN) const;
    void getAllSpeciesNames(std::vector<std::string>* out, double minN) const;
    /// Appends to \p out the species that only one of the two lists holds.
    void getDifference(const std::vector<const thermo::Species*>* a,
                       const std::vector<const thermo::Species*>* b,
                       std::vector<const thermo::Species*>* out) const;
    /// A working copy of the products, the caller's; this object must outlive it.
    ReactingMixture* copyReactingMixture(bool condensed, bool ions) const;
    /// Prints the composition and the state through the log; bit 0x80 selects English units.
    void printResults(unsigned int flags) const;

    /// Start values of an iteration; `solve` calls it.
    void reset(bool expectCondensed);
    /// Solves the posed problem.
    /// \param expectCondensed  look for a condensed phase before the first cycle, however hot
    /// \throws thermo::Exception 8 if there is no solution, 18 with the name of a condensed species
    ///         that has made the system singular. Where a persistent problem asks for less or more
    ///         energy or entropy than its products have between the ends of their data, an error
    ///         with the temperature is logged, and the code is 8.
    void solve(bool expectCondensed);

    // The reduced chemical potentials and the sums of the solver. L is the concentration term of a
    // gas, PSI the chemical potential over R T; the forms with _V hold at constant volume.
    double L(unsigned int j) const;
    double L_V(unsigned int j) const;
    double PSI(unsigned int j) const;
    double PSI_V(unsigned int j) const;

    // Sums over the entries from `from` up to but excluding `to` of a mixture, and of the own one.
    // Letters stand for factors: a(i) atoms of element i, n amount, H, U, S, Cp, Cv the
    // dimensionless functions.
    static double sum_n(unsigned int from, unsigned int to, const ReactingMixture* m);
    static double sum_nH(unsigned int from, unsigned int to, const ReactingMixture* m);
    static double sum_nU(unsigned int from, unsigned int to, const ReactingMixture* m);
    static double sum_nS(unsigned int from, unsigned int to, const ReactingMixture* m);
    static double sum_an(unsigned int i, unsigned int from, unsigned int to,
                         const ReactingMixture* m);
    static double sum_aan(unsigned int i, unsigned int k, unsigned int from, unsigned int to,
                          const ReactingMixture* m);
    static double sum_anH(unsigned int i, unsigned int from, unsigned int to,
                          const ReactingMixture* m);
    static double sum_anU(unsigned int i, unsigned int from, unsigned int to,
                          const ReactingMixture* m);
    /// n H H over the first range, plus n Cp over the second.
    static double sum_nH_nCp(unsigned int from1, unsigned int to1, unsigned int from2,
                             unsigned int to2, const ReactingMixture* m);
    /// n U U over the first range, plus n Cv over the second.
    static double sum_nU_nCv(unsigned int from1, unsigned int to1, unsigned int from2,
                             unsigned int to2, const ReactingMixture* m);

    double sum_n(unsigned int from, unsigned int to) const;
    double sum_nH(unsigned int from, unsigned int to) const;
    double sum_nU(unsigned int from, unsigned int to) const;
    double sum_nS(unsigned int from, unsigned int to) const;
    double sum_an(unsigned int i, unsigned int from, unsigned int to) const;
    double sum_aan(unsigned int i, unsigned int k, unsigned int from, unsigned int to) const;
    double sum_anH(unsigned int i, unsigned int from, unsigned int to) const;
    double sum_anU(unsigned int i, unsigned int from, unsigned int to) const;
    double sum_nH_nCp(unsigned int from1, unsigned int to1, unsigned int from2,
                      unsigned int to2) const;
    double sum_nU_nCv(unsigned int from1, unsigned int to1, unsigned int from2,
                      unsigned int to2) const;

    double sum_nPSI(unsigned int from, unsigned int to) const;
    double sum_nPSI_V(unsigned int from, unsigned int to) const;
    double sum_nHPSI(unsigned int from, unsigned int to) const;
    double sum_nUPSI(unsigned int from, unsigned int to) const;
    double sum_anPSI(unsigned int i, unsigned int from, unsigned int to) const;
    double sum_anPSI_V(unsigned int i, unsigned int from, unsigned int to) const;
    double sum_nS_L(unsigned int from, unsigned int to) const;
    double sum_nS_L_V(unsigned int from, unsigned int to) const;
    double sum_anS_L_1(unsigned int i, unsigned int from, unsigned int to) const;
    double sum_anS_L_V_1(unsigned int i, unsigned int from, unsigned int to) const;
    /// n (S - L - 1) H over the first range, plus n Cp over the second.
    double sum_nHS_nCp(unsigned int from1, unsigned int to1, unsigned int from2,
                       unsigned int to2) const;
    /// n (S - L_V - 1) U over the first range, plus n Cv over the second.
    double sum_nUS_nCv(unsigned int from1, unsigned int to1, unsigned int from2,
                       unsigned int to2) const;
    double sum_nS_L_1_PSI(unsigned int from, unsigned int to) const;
    double sum_nS_L_V_1_PSI_V(unsigned int from, unsigned int to) const;

protected:
    // One quantity of the problem each, as the public setters.
    void setP(double p);
    void setV(double v);
    void setH(double H);
    void setHspec(double h);
    void setS(double S);
    void setSspec(double s);
    void setU(double U);
    void setUspec(double u);

    /// One run of the iteration towards the posed target. \returns the last solution vector, the
    /// caller's.
    math::matrix::ColumnVector* _solve();
    /// Builds and solves the system of one cycle at constant pressure or volume. \returns the new
    /// solution vector, the caller's. \throws math::matrix::Exception
    math::matrix::ColumnVector* solveSystemP();
    math::matrix::ColumnVector* solveSystemV();
    /// Takes one of two condensed phases of a formula out of the calculation, by omitting its name.
    void excludeTransitPhase();

private:
    friend class detail::ElementPotentials;
    friend class detail::Iteration;
    friend class detail::Persistence;
    friend struct detail::SolvedState;

    bool isConstantPressure() const { return processType <= PT; }
    bool isFixedTemperature() const { return processType == PT || processType == VT; }
    /// Molar mass of the initial mixture, kg/mol.
    double initialMm() const;
    double lnPvAt(double atT) const;
    void clearTargets();
    void storeTemperature(double newT);
    /// The quantity that the process prescribes beside pressure or volume: H, S or U; 0 at fixed
    /// temperature.
    double target() const;
    /// The default method, from the composition and the temperature that stand.
    void iterate();
    void rememberSolution();
    /// Logs why a solve has failed: an error, or information while further attempts are left.
    [[gnu::format(printf, 2, 3)]] void report(const char* format, ...) const;
    void reportSingularity(const std::vector<std::string>& knownCondensed) const;
    bool phasesAndEnergySettled(math::matrix::ColumnVector* x, double savedH, double savedS,
                                double savedU);

    unsigned int maxCycles = 50;
    double traceLimit = 1e-18; // kept and copied, read by no calculation
    double baseTolerance = 1e-7;
    PROCESS_TYPE processType;
    std::unique_ptr<ReactingMixture> mixture;
    double H = 0.0;     // J/mol
    double Hspec = 0.0; // J/kg
    double S = 0.0;     // J/(mol K)
    double Sspec = 0.0; // J/(kg K)
    double U = 0.0;     // J/mol
    double Uspec = 0.0; // J/kg
    double G = 0.0;     // J/mol
    double Gspec = 0.0; // J/kg
    double p = 0.0;     // Pa; 0 at constant volume
    double v = 0.0;     // m^3/kg; 0 at constant pressure
    double lnP = 0.0;   // ln(p / 1e5)
    double lnPv = 0.0;  // ln(R T / (M0 v 1e5)): pressure in bar of one mole of gas in the volume
    double T;           // K
    double lnT;
    double RT;         // J/mol
    double Ng = 0.0;   // mol of gas
    double lnNg = 0.0; // its logarithm
    double relativeTolerance = 1.0;

    bool persistent = false;
    bool warmStart = false;
    bool solved = false;      // a solution of the posed problem stands
    double posedTarget = 0.0; // J or J/K per mole of initial mixture, as `solve` found it
    bool trial = false;       // further attempts are left: a failure is information, not an error
    std::vector<Attempt> attempts;
    std::unique_ptr<detail::SolvedState> nearest; // where a warm start begins; may be null
};

} // namespace reaction
