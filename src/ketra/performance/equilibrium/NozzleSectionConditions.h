#pragma once

#include <ketra/export.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>

#include <memory>

namespace performance::equilibrium {

class Chamber;

/// One cross-section of the nozzle in shifting equilibrium, given by area ratio, pressure or
/// pressure ratio.
///
/// The constructor does the whole work: it expands the products from the chamber end to the section
/// at constant entropy, so that with H the specific enthalpy and index i for the injection plane
///
///     W = sqrt(2 (H_i - H)),  F = 1/(rho W),  Fr = A/A_t = rho_t a_t F,
///     Is_v = F p + W,  Is = W,  Kp_v = Is_v/c*,  Kp = Is/c*
///
/// F is the area per mass flow, Is_v the specific impulse in vacuum and Is that of optimum
/// expansion, both in m/s, Kp_v and Kp the thrust coefficients. These four are 0 in a section that
/// is not supersonic, the throat included.
///
/// A chamber with a boundary layer gives the section a second stream at the same static pressure,
/// whose values end in `_blc`; the read-outs without an ending weight the two by their mass.
///
/// The chamber must outlive its sections. An object belongs to one thread at a time.
class KETRA_API NozzleSectionConditions
{
public:
    /// What a section is given by. Any other value counts as an area ratio that is always searched.
    enum CONDITION_TYPE : unsigned int {
        AREA_RATIO = 1,     ///< area over throat area
        PRESSURE = 2,       ///< static pressure, Pa
        PRESSURE_RATIO = 3, ///< injection pressure over static pressure
    };

    /// Solves the section at \p value of a solved \p chamber, which stays the caller's.
    /// \param supersonic  the side of the throat; a given pressure decides it by itself
    /// \param tableSize   negative: leaves the table of the nozzle exit alone; 0: uses it, or
    ///                    builds it with 120 points (that of the inlet with 90); else the number of
    ///                    points
    /// \throws thermo::Exception 11 for an area ratio or a pressure beyond the nozzle inlet and
    ///         when the search for the area ratio does not end; what `Combustor::solveReaction`
    ///         gives up with. math::interpolation::Exception 0 for a subsonic area ratio outside
    ///         the table. math::equation::Exception if there is no first guess for the layer.
    NozzleSectionConditions(Chamber* chamber, double value, CONDITION_TYPE type, bool supersonic,
                            bool expectCondensed, bool calculateTransport, int tableSize);

    NozzleSectionConditions(const NozzleSectionConditions&) = delete;
    NozzleSectionConditions& operator=(const NozzleSectionConditions&) = delete;
    virtual ~NozzleSectionConditions();

    /// The section has a second stream, the boundary layer.
    virtual bool isBLC() const { return layer.problem != nullptr; }
    /// Area over throat area, of the core and of the layer.
    virtual double getFr() const { return core.Fr; }
    virtual double getFr_blc() const { return layer.Fr; }
    /// Problem and derivatives of the section; null where there are none. They stay the section's.
    virtual reaction::Equilibrium* getReaction() const { return core.problem.get(); }
    virtual reaction::Equilibrium* getBlcReaction() const { return layer.problem.get(); }
    virtual reaction::Derivatives* getDerivatives() const { return core.derivatives.get(); }
    virtual reaction::Derivatives* getBlcDerivatives() const { return layer.derivatives.get(); }

    // The state, each value of the core and of the layer. Without a layer its values throw
    // thermo::Exception 0.

    /// Temperature, K.
    virtual double getT() const { return core.solved().getT(); }
    virtual double getT_blc() const { return layer.solved().getT(); }
    /// Enthalpy, J/mol and J/kg.
    virtual double getH() const { return core.solved().getH(); }
    virtual double getH_blc() const { return layer.solved().getH(); }
    virtual double getH_spec() const { return core.solved().getHspec(); }
    virtual double getH_spec_blc() const { return layer.solved().getHspec(); }
    /// Entropy, J/(mol K) and J/(kg K).
    virtual double getS() const { return core.solved().getS(); }
    virtual double getS_blc() const { return layer.solved().getS(); }
    virtual double getS_spec() const { return core.solved().getSspec(); }
    virtual double getS_spec_blc() const { return layer.solved().getSspec(); }
    /// Internal energy, J/mol and J/kg.
    virtual double getU() const { return core.solved().getU(); }
    virtual double getU_blc() const { return layer.solved().getU(); }
    virtual double getU_spec() const { return core.solved().getUspec(); }
    virtual double getU_spec_blc() const { return layer.solved().getUspec(); }
    /// Gibbs energy, J/mol and J/kg.
    virtual double getG() const { return core.solved().getG(); }
    virtual double getG_blc() const { return layer.solved().getG(); }
    virtual double getG_spec() const { return core.solved().getGspec(); }
    virtual double getG_spec_blc() const { return layer.solved().getGspec(); }
    /// Heat capacity at constant pressure, J/(mol K) and J/(kg K).
    virtual double getCp() const { return core.derived().getCp(); }
    virtual double getCp_blc() const { return layer.derived().getCp(); }
    virtual double getCp_spec() const { return core.derived().getCp_spec(); }
    virtual double getCp_spec_blc() const { return layer.derived().getCp_spec(); }
    /// Heat capacity at constant volume, J/(mol K) and J/(kg K).
    virtual double getCv() const { return core.derived().getCv(); }
    virtual double getCv_blc() const { return layer.derived().getCv(); }
    virtual double getCv_spec() const { return core.derived().getCv_spec(); }
    virtual double getCv_spec_blc() const { return layer.derived().getCv_spec(); }
    /// Gas constant, J/(kg K).
    virtual double getR_spec() const { return core.derived().getR_spec(); }
    virtual double getR_spec_blc() const { return layer.derived().getR_spec(); }
    /// Molar mass, g/mol.
    virtual double getM() const { return core.derived().getM(); }
    virtual double getM_blc() const { return layer.derived().getM(); }
    /// Molar mass of the products, and of the gas alone (`Mm2`), kg/mol.
    virtual double getMm() const { return core.derived().getMm(); }
    virtual double getMm2() const { return core.derived().getMm2(); }
    virtual double getMm_blc() const { return layer.derived().getMm(); }
    virtual double getMm2_blc() const { return layer.derived().getMm2(); }
    /// Ratio of the heat capacities.
    virtual double getGamma() const { return core.derived().getGamma(); }
    virtual double getGamma_blc() const { return layer.derived().getGamma(); }
    /// Isentropic exponent.
    virtual double getK() const { return core.derived().getK(); }
    virtual double getK_blc() const { return layer.derived().getK(); }
    /// Speed of sound, m/s.
    virtual double getA() const { return core.derived().getA(); }
    virtual double getA_blc() const { return layer.derived().getA(); }
    /// Density, kg/m^3.
    virtual double getRho() const { return core.derived().getRho(); }
    virtual double getRho_blc() const { return layer.derived().getRho(); }
    /// Viscosity, Pa s.
    virtual double getV() const { return core.derived().getV(); }
    virtual double getV_blc() const { return layer.derived().getV(); }
    /// Conductivity, W/(m K), heat capacity, J/(kg K), and Prandtl number of the frozen gas.
    virtual double getCfr() const { return core.derived().getCfr(); }
    virtual double getCfr_blc() const { return layer.derived().getCfr(); }
    virtual double getCpfr() const { return core.derived().getCpfr(); }
    virtual double getCpfr_blc() const { return layer.derived().getCpfr(); }
    virtual double getPrfr() const { return core.derived().getPrfr(); }
    virtual double getPrfr_blc() const { return layer.derived().getPrfr(); }
    /// The same with the reactions of the gas.
    virtual double getCeql() const { return core.derived().getCeql(); }
    virtual double getCeql_blc() const { return layer.derived().getCeql(); }
    virtual double getCpeql() const { return core.derived().getCpeql(); }
    virtual double getCpeql_blc() const { return layer.derived().getCpeql(); }
    virtual double getPreql() const { return core.derived().getPreql(); }
    virtual double getPreql_blc() const { return layer.derived().getPreql(); }

    /// Prints title and area ratio; \p flags as for `printResults`, likewise below.
    virtual void printHeader(unsigned int flags) const;
    /// Prints composition and state of the core.
    virtual void printConditions(unsigned int flags) const;

    double getP() const { return p; }            ///< static pressure, Pa
    double getPi() const { return Pi; }          ///< injection pressure over static pressure
    double getBLC() const { return BLC; }        ///< mass fraction of the layer
    double getW() const { return core.W; }       ///< velocity, m/s
    double getW_blc() const { return layer.W; }  ///< velocity of the layer, m/s
    double getMach() const { return core.Mach; } ///< Mach number
    double getMach_blc() const { return layer.Mach; }
    double getF() const { return core.F; } ///< area per mass flow, m^2 s/kg
    double getF_blc() const { return layer.F; }
    double getMr() const { return 1 / core.F; } ///< mass flux, kg/(m^2 s)
    double getMr_blc() const { return 1 / layer.F; }

    // Performance of each stream: specific impulse in m/s and thrust coefficient, in vacuum (_v)
    // and at optimum expansion.
    double getIs_v_core() const { return core.Is_v; }
    double getIs_v_blc() const { return layer.Is_v; }
    double getIs_core() const { return core.Is; }
    double getIs_blc() const { return layer.Is; }
    double getKp_v_core() const { return core.Kp_v; }
    double getKp_v_blc() const { return layer.Kp_v; }
    double getKp_core() const { return core.Kp; }
    double getKp_blc() const { return layer.Kp; }

    // Performance of both streams together. \p x is the mass fraction of the layer, 0 for the
    // chamber's; without either it is that of the core. The layer is never expanded optimally: its
    // share is the vacuum impulse in all of them.
    double getIs_v(double x) const;
    double getIs(double x) const;
    double getKp_v(double x) const;
    double getKp(double x) const;

    // Performance at the ambient pressure \p pa, Pa: Is_v less F pa, and over c*.
    double getIs_H(double pa, double x) const;
    double getIs_H_core(double pa) const { return core.impulseAt(pa); }
    double getIs_H_blc(double pa) const { return layer.impulseAt(pa); }
    double getKp_H(double pa, double x) const;
    /// The impulse of both streams, by the chamber's mass fraction, over c* of the core.
    double getKp_H_core(double pa) const;
    double getKp_H_blc(double pa) const;

    /// Solves the layer of \p chamber at the pressure of this section, or drops it if the chamber
    /// has none. The layer's transport properties are always computed.
    /// \throws thermo::Exception as `Combustor::solveReaction`; math::equation::Exception if there
    ///         is no first guess
    void blc_solve(Chamber* chamber, bool supersonic, bool expectCondensed,
                   bool calculateTransport);

    /// Prints the section: title, state, performance. Bit 0x80 of \p flags selects English units,
    /// bit 0x100 adds the transport properties.
    void printResults(unsigned int flags) const;
    /// The section as the place where an over-expanded flow separates: title, and title with
    /// performance.
    void printOverexpansionPerformanceHeader(unsigned int flags) const;
    void printOverexpansionPerformance(unsigned int flags) const;

protected:
    /// A section with nothing but zeros, for a subclass that solves it in its own way.
    NozzleSectionConditions();

    /// What the section knows of one stream.
    struct KETRA_API Stream {
        /// The problem and its derivatives. \throws thermo::Exception 0 without them
        const reaction::Equilibrium& solved() const;
        const reaction::Derivatives& derived() const;
        /// Completes a stream solved at the pressure \p p: all that follows from its velocity. The
        /// performance is left 0 unless \p supersonic.
        void store(double p, bool supersonic);
        /// Specific impulse at the ambient pressure \p pa, Pa, in m/s.
        double impulseAt(double pa) const { return Is_v - F * pa; }

        std::unique_ptr<reaction::Equilibrium> problem;
        std::unique_ptr<reaction::Derivatives> derivatives; // refer to the problem
        double Fr = 0.0;                                    // area over throat area
        double W = 0.0;                                     // m/s
        double Mach = 0.0;
        double F = 0.0;              // m^2 s/kg
        double Is_v = 0.0, Is = 0.0; // m/s
        double Kp_v = 0.0, Kp = 0.0;
        double Betta = 0.0; // characteristic velocity of the chamber, m/s
    };

    Stream core;
    Stream layer;
    double p = 0.0; // Pa
    double Pi = 0.0;
    double BLC = 0.0;

private:
    class Solver;

    double weightOf(double x) const { return x != 0.0 ? x : BLC; }
    double weightedBetta(double w) const;
};

} // namespace performance::equilibrium
