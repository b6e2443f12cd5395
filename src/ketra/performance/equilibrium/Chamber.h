#pragma once

#include <ketra/export.h>
#include <ketra/performance/equilibrium/Combustor.h>

#include <memory>
#include <string>
#include <vector>

namespace math::interpolation {
class Interpolation;
} // namespace math::interpolation

namespace performance::equilibrium {

/// The combustion chamber of an engine in chemical equilibrium: injection plane, chamber end
/// (nozzle inlet) and throat.
///
/// With an infinite area the gas rests in the chamber, so that the injection plane is the chamber
/// end too. With a finite area, given by its contraction ratio or by its mass flux, the gas is
/// accelerated by burning, and the stagnation pressure falls from the injection plane to the
/// chamber end [RP1311].
///
/// Beside the core a chamber may carry a boundary layer: a second stream with reactants and a share
/// of the mass flow of its own, at the static pressures of the core. What concerns the layer is
/// named blc.
///
/// Build a chamber, set its pressure (`setP`, `setPH`) and, for a finite area, `setFcr` or `setMr`,
/// then solve it. Pose it anew before each further solve. The sections of the nozzle read the
/// stations and borrow from their problems: they must be dropped before the chamber is solved
/// again, and the chamber must outlive them. An object belongs to one thread at a time.
///
/// With warm starts (`setWarmStart`) the chamber end and the throat begin from the state before
/// them; a persistent chamber (`setPersistent`) looks for a throat or a chamber end that the method
/// does not find in a bracket, where the mass flux of the isentrope is largest. Where the speed of
/// sound jumps, as a condensed phase appears, no state has Mach 1: the throat is then the state of
/// the largest mass flux, and the log says so.
class KETRA_API Chamber : public Combustor
{
public:
    enum CHAMBER_STATION : unsigned int {
        INJECTION_PLANE = 0, ///< the problem of the combustor
        CHAMBER_END = 1,     ///< the nozzle inlet
        THROAT = 2
    };

    /// Reactants, initial enthalpy in J/mol and phases as for a `Combustor`.
    explicit Chamber(thermo::Propellant& propellant);
    Chamber(thermo::Propellant& propellant, double H);
    Chamber(thermo::Propellant& propellant, bool multiphase, bool ions);
    Chamber(thermo::Propellant& propellant, double H, bool multiphase, bool ions);
    explicit Chamber(thermo::Mixture& mixture);
    Chamber(thermo::Mixture& mixture, double H);
    Chamber(thermo::Mixture& mixture, bool multiphase, bool ions);
    Chamber(thermo::Mixture& mixture, double H, bool multiphase, bool ions);
    ~Chamber() override;

    using Combustor::solve; // the injection plane alone
    /// Solves the three stations, and those of the boundary layer if there is one. The tables of
    /// the nozzle are dropped: they belong to the solution before.
    /// \param finiteArea  the chamber has the contraction ratio or the mass flux that was set
    /// \throws thermo::Exception 14 when a station could not be found, or when a finite area is not
    ///         defined; chamber end, throat and the derivatives of all stations are gone then.
    ///         Failures of other families (math::equation::Exception for a chamber narrower than
    ///         its throat) pass, without chamber end and throat.
    virtual void solve(bool finiteArea, bool expectCondensed, bool calculateTransport);
    /// Solves the boundary layer at the static pressures of the solved core; without a layer
    /// nothing. \throws thermo::Exception 8 and others when a state has no equilibrium, 10 when the
    /// layer has no sonic state, 0 when the core is not solved
    virtual void blc_solve(bool calculateTransport);

    /// As `Combustor::setSpecies`. Drops all results.
    void setSpecies(std::vector<std::string>& included, std::vector<std::string>& omitted);
    /// Contraction ratio, nozzle inlet area over throat area; takes the place of a mass flux.
    void setFcr(double ratio);
    /// Mass flux at the chamber end, kg/(m2 s); takes the place of a contraction ratio. The search
    /// begins with a characteristic velocity of 2350 m/s, so that a flux above that of such a
    /// throat, p/(2350 m/s), is not solved.
    void setMr(double flux);

    /// Contraction ratio: as set, or the result of a finite-area solve with a given mass flux, for
    /// which it counts as given in a further solve.
    double getFcr() const { return Fcr; }
    /// Mass flux at the chamber end, kg/(m2 s): as set, or the result for a given contraction.
    double getMr() const { return Mr; }
    double getWc() const { return Wc; }         ///< velocity at the chamber end, m/s
    double getPc_0() const { return Pc_0; }     ///< stagnation pressure at the chamber end, Pa
    double getSigmaC() const { return SigmaC; } ///< the same over the injection pressure

    double getWc_blc() const { return Wc_blc; }         ///< m/s
    double getPc_0_blc() const { return Pc_0_blc; }     ///< Pa
    double getSigmaC_blc() const { return SigmaC_blc; } ///< of finite area, else 0
    double getMr_blc() const { return Mr_blc; }         ///< kg/(m2 s), of finite area, else 0
    double getFcr_blc() const { return Fcr_blc; }       ///< of finite area, else 0

    /// Mass flux in the throat of the core, kg/(m2 s): rho a, as the flow is sonic there. In the
    /// throat of a persistent chamber whose speed of sound jumps it is rho w.
    /// \throws thermo::Exception 0 without a throat
    double getThroatFlux() const;
    /// Characteristic velocity, m/s, of the core and of the layer, each under two names.
    double getCstar_core() const { return cstar; }
    double getBetta_core() const { return cstar; }
    double getCstar_blc() const { return cstar_blc; }
    double getBetta_blc() const { return cstar_blc; }
    /// Characteristic velocity of both streams, weighted with the mass fraction \p blc of the
    /// layer, or with the stored one if \p blc is 0; m/s.
    double getCstar(double blc) const;
    double getBetta(double blc) const { return getCstar(blc); }

    using Combustor::getDerivatives;
    using Combustor::getReaction;
    /// Problem and derivatives of a station; this object's. Null for a station that is not solved
    /// and for any other number.
    reaction::Equilibrium* getReaction(CHAMBER_STATION station) const;
    reaction::Derivatives* getDerivatives(int station) const;
    /// The same of the boundary layer.
    reaction::Equilibrium* getBlcReaction(CHAMBER_STATION station) const;
    reaction::Derivatives* getBlcDerivatives(int station) const;

    /// There is a boundary layer, solved or not.
    bool isBLC() const { return layer.problem != nullptr; }
    /// Mass fraction of the boundary layer, 0 without one.
    double getBLC() const { return layerShare; }
    /// Replaces the boundary layer by one of \p reactants with the mass fraction \p fraction; its
    /// phases are those of the core. The reactants stay the caller's. A fraction of 0 or less takes
    /// the layer away. The layer is solved with the next solve of the chamber.
    void setBLC(double fraction, thermo::Propellant& reactants, bool calculateTransport);
    /// The same with a mixture, whatever the fraction. In a solved chamber the layer is solved at
    /// once. \throws thermo::Exception as `blc_solve`; the layer stays set
    void setBLC(double fraction, thermo::Mixture& reactants, bool calculateTransport);
    /// Takes the boundary layer away.
    void blc_clear();

    /// The pressure, Pa, over the area ratio in the convergent part, from the throat to the chamber
    /// end; built of \p n points (at least 2) at the first call and the same table from then on,
    /// until the next solve. Stays the chamber's. A point without an equilibrium takes the mean of
    /// its neighbours.
    /// \throws thermo::Exception 0 when the chamber is not solved; math::interpolation::Exception 0
    ///         when no usable point is left
    math::interpolation::Interpolation* getNozzleInput(bool expectCondensed, int n);
    /// The same in the divergent part, from the throat to the area ratio \p Fr at the pressure
    /// \p p, Pa. The numbers are not read when there is a table.
    math::interpolation::Interpolation* getNozzleExit(double p, double Fr, bool expectCondensed,
                                                      int n);
    bool isNozzleExitTable() const { return nozzleExit != nullptr; }
    void deleteNozzleExitTable();
    /// The largest area ratio of the exit table. \throws thermo::Exception 0 without a table
    double getNozzleExitTableMaxFr() const;

    /// Prints the stations that are solved. \p flags: 0x80 English units, 0x100 transport
    /// properties.
    void printResults(unsigned int flags) const;
    /// The same of the boundary layer; without a layer nothing.
    void printBlcResults(unsigned int flags) const;

protected:
    /// Finds the throat: the pressure at which the products, expanded from the chamber end, flow at
    /// their own speed of sound. \throws thermo::Exception 10 when there is none, without a throat
    void throat(bool expectCondensed);
    /// Finds chamber end and throat of a finite area.
    /// \throws thermo::Exception 0 without contraction ratio and mass flux, 9 when there is no
    ///         chamber end, 10 when there is no throat; without chamber end and throat
    void combustion_end_and_throat(bool expectCondensed);
    /// Finds the sonic state of the layer at the pressure of the core's throat.
    /// \throws thermo::Exception 10 when there is none, without a throat of the layer
    void blc_throat();

private:
    /// A state with the problem that it solves.
    struct Station {
        std::unique_ptr<reaction::Equilibrium> problem;
        std::unique_ptr<reaction::Derivatives> derivatives; // refer to the problem

        void clear();
    };
    struct Estimate;
    struct Flow;
    /// Which objects the chamber end has.
    enum class End {
        NONE,
        INJECTION, // those of the injection plane: infinite area
        OWN        // of finite area
    };

    /// \throws thermo::Exception 0 unless the station is solved
    void requireSolved(int station) const;
    static double stagnationPressure(const Station& station, double w);

    void solveInfiniteArea(bool expectCondensed, bool calculateTransport);
    void solveFiniteArea(bool expectCondensed, bool calculateTransport);
    void clearStations();
    void clearCoreStations();
    void clearTables();
    void inherit(reaction::Equilibrium& station) const;

    void findThroat(bool expectCondensed);
    void iterateThroat(bool expectCondensed);
    void bracketThroat(bool expectCondensed);
    void expandToThroat(double p, double S, bool expectCondensed);
    double throatMach() const;
    bool throatIsSonic() const;

    void findChamberEnd(bool expectCondensed);
    double iterateChamberEnd(double F, bool expectCondensed);
    double bracketChamberEnd(double F, bool expectCondensed);
    Flow flowOfEndAt(double p, double& F, bool expectCondensed);
    bool isFluxGiven() const { return Fcr < 1.0; }
    double firstContraction() const;
    Estimate firstEstimate(double F) const;
    double enthalpyAt(double w, const reaction::Derivatives& gas,
                      const reaction::Equilibrium& products) const;
    void solveChamberEnd(const Estimate& estimate, bool expectCondensed);
    Flow flowThrough(double F) const;
    bool endIsSettled(double F, const Estimate& estimate, const Flow& flow) const;
    Estimate nextEstimate(const Estimate& estimate, const Flow& flow) const;

    template <class Reactants> void setLayer(double fraction, Reactants& reactants);
    void clearLayerStations();
    void poseLayer();
    void findLayerThroat();
    void iterateLayerThroat();
    void bracketLayerThroat();
    void solveLayerThroat(double w);
    double layerThroatMach() const;
    bool layerThroatIsSonic() const;
    void solveLayerEnd();

    std::vector<double> areaRatios(const reaction::Equilibrium& start,
                                   const std::vector<double>& pressures, double k, bool supersonic,
                                   bool expectCondensed) const;

    double Fcr = 0.0;
    double Mr = 0.0; // kg/(m2 s)
    Station layer;   // injection plane of the boundary layer
    End endKind = End::NONE;
    Station end;
    End layerEndKind = End::NONE;
    Station layerEnd;
    Station throatStation;
    Station layerThroat;
    double Wc = 0.0;   // m/s
    double Pc_0 = 0.0; // Pa
    double SigmaC = 0.0;
    double cstar = 0.0;       // m/s
    double layerShare = 0.0;  // mass fraction
    double layerH = 0.0;      // J per mole of the layer's reactants
    bool layerIsFresh = true; // not solved yet
    double Pc_0_blc = 0.0;    // Pa
    double SigmaC_blc = 0.0;
    double Mr_blc = 0.0; // kg/(m2 s)
    double Fcr_blc = 0.0;
    double Wc_blc = 0.0;    // m/s
    double cstar_blc = 0.0; // m/s
    std::unique_ptr<math::interpolation::Interpolation> nozzleInput;
    std::unique_ptr<math::interpolation::Interpolation> nozzleExit;
};

} // namespace performance::equilibrium
