#pragma once

#include <ketra/export.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/thermo/Mixture.h>

#include <memory>
#include <optional>

namespace performance::frozen {

class Chamber;

/// A supersonic cross-section of the nozzle downstream of the freezing section, whose composition
/// it keeps.
///
/// The temperature is that at which the composition has the entropy of the freezing section; all
/// other values are sums over its products, without an equilibrium. A species that leaves the range
/// of its data keeps the temperature of the limit while the mixture cools on: a gas over 50 K at
/// most, a condensed product over any distance.
///
/// Unlike in a section in equilibrium, `getS` is the entropy of all products of a mole of
/// reactants, and `getM` and `getR_spec` are those of all products, not of the gas alone. The
/// weighted thrust coefficients divide by a characteristic velocity that a frozen section does not
/// store, so they mean nothing here.
///
/// The chamber must outlive its sections.
class KETRA_API NozzleSectionConditions : public equilibrium::NozzleSectionConditions
{
public:
    /// Solves the section at \p value of a solved \p chamber, which stays the caller's. Transport
    /// properties are computed in the derivatives of the freezing section, which hold those of the
    /// present temperature afterwards; without \p calculateTransport they are read as they stand.
    /// \throws thermo::Exception 13 if no temperature is found or one is too far outside the range
    ///         of a gas; 0 for a chamber that is not solved. math::equation::Exception if there is
    ///         no first guess
    NozzleSectionConditions(Chamber* chamber, double value, CONDITION_TYPE type,
                            bool calculateTransport);
    ~NozzleSectionConditions() override;

    bool isBLC() const override { return frozenLayer.products != nullptr; }
    /// Always null: a frozen section has no equilibrium.
    reaction::Equilibrium* getReaction() const override { return nullptr; }
    reaction::Equilibrium* getBlcReaction() const override { return nullptr; }
    reaction::Derivatives* getDerivatives() const override { return nullptr; }
    reaction::Derivatives* getBlcDerivatives() const override { return nullptr; }

    double getT() const override { return frozenCore.T; }
    double getT_blc() const override { return presentLayer().T; }
    double getH() const override { return frozenCore.H; }
    double getH_blc() const override { return presentLayer().H; }
    double getH_spec() const override { return frozenCore.H_spec; }
    double getH_spec_blc() const override { return presentLayer().H_spec; }
    double getS() const override { return frozenCore.S; }
    double getS_blc() const override { return presentLayer().S; }
    double getS_spec() const override { return frozenCore.S_spec; }
    double getS_spec_blc() const override { return presentLayer().S_spec; }
    double getU() const override { return frozenCore.U; }
    double getU_blc() const override { return presentLayer().U; }
    double getU_spec() const override { return frozenCore.U_spec; }
    double getU_spec_blc() const override { return presentLayer().U_spec; }
    double getG() const override { return frozenCore.G; }
    double getG_blc() const override { return presentLayer().G; }
    double getG_spec() const override { return frozenCore.G_spec; }
    double getG_spec_blc() const override { return presentLayer().G_spec; }
    double getCp() const override { return frozenCore.Cp; }
    double getCp_blc() const override { return presentLayer().Cp; }
    double getCp_spec() const override { return frozenCore.Cp_spec(); }
    double getCp_spec_blc() const override { return presentLayer().Cp_spec(); }
    double getCv() const override { return frozenCore.Cv; }
    double getCv_blc() const override { return presentLayer().Cv; }
    double getCv_spec() const override { return frozenCore.Cv_spec(); }
    double getCv_spec_blc() const override { return presentLayer().Cv_spec(); }
    double getR_spec() const override { return frozenCore.R_spec(); }
    double getR_spec_blc() const override { return presentLayer().R_spec(); }
    double getM() const override { return frozenCore.mixture->getM(); }
    double getM_blc() const override { return presentLayer().mixture->getM(); }
    double getMm() const override { return frozenCore.mixture->getMm(); }
    double getMm2() const override { return frozenCore.Mm2(); }
    double getMm_blc() const override { return presentLayer().mixture->getMm(); }
    double getMm2_blc() const override { return presentLayer().Mm2(); }
    double getGamma() const override { return frozenCore.Gamma; }
    double getGamma_blc() const override { return presentLayer().Gamma; }
    double getK() const override { return frozenCore.K; }
    double getK_blc() const override { return presentLayer().K; }
    double getA() const override { return frozenCore.A; }
    double getA_blc() const override { return presentLayer().A; }
    double getRho() const override { return frozenCore.rho; }
    double getRho_blc() const override { return presentLayer().rho; }
    double getV() const override { return frozenCore.V; }
    double getV_blc() const override { return presentLayer().V; }
    double getCfr() const override { return frozenCore.Cfr; }
    double getCfr_blc() const override { return presentLayer().Cfr; }
    double getCpfr() const override { return frozenCore.Cpfr; }
    double getCpfr_blc() const override { return presentLayer().Cpfr; }
    double getPrfr() const override { return frozenCore.Prfr; }
    double getPrfr_blc() const override { return presentLayer().Prfr; }
    // Nothing reacts: the values with reactions are the frozen ones.
    double getCeql() const override { return frozenCore.Cfr; }
    double getCeql_blc() const override { return presentLayer().Cfr; }
    double getCpeql() const override { return frozenCore.Cpfr; }
    double getCpeql_blc() const override { return presentLayer().Cpfr; }
    double getPreql() const override { return frozenCore.Prfr; }
    double getPreql_blc() const override { return presentLayer().Prfr; }

    void printHeader(unsigned int flags) const override;
    void printConditions(unsigned int flags) const override;

    /// The frozen composition. \returns a new mixture, the caller's, whose species stay the
    /// section's
    virtual thermo::Mixture* getResultingMixture() const;

    using equilibrium::NozzleSectionConditions::blc_solve;

protected:
    /// The temperature, K, at which \p products have the total entropy \p S, J/K, at the pressure
    /// whose logarithm over 1e5 Pa is \p lnp; Newton's method in ln T from \p T0. For a persistent
    /// chamber a search in a bracket follows steps that leave the range of a gas or do not end.
    /// \param Ngas  moles of the gases among them
    /// \throws thermo::Exception 13 after 50 steps, and as the other `getT`
    double solveForFixedPressure(double S, reaction::ReactingMixture* products, double Ngas,
                                 double lnp, double T0) const;
    /// The temperature of a product when the mixture has \p T, K: the nearest limit of its range.
    /// Warns outside of it. \throws thermo::Exception 13 for a gas 50 K or more outside
    double getT(reaction::Product* product, double T) const;
    /// Solves the layer of the freezing section, if it has one, at the pressure of this section.
    /// \throws thermo::Exception 13 as the constructor; there is no layer then
    void blc_solve(Chamber* chamber, bool calculateTransport);

private:
    class StreamSolver;

    /// One stream of the section, with the values of its fixed composition.
    struct Frozen {
        double Cp_spec() const { return Cp / Mm; } // J/(kg K)
        double Cv_spec() const { return Cv / Mm; } // J/(kg K)
        double R_spec() const;
        /// Mass over the moles of gas, kg/mol.
        double Mm2() const;

        std::unique_ptr<reaction::ReactingMixture> products;
        std::unique_ptr<thermo::Mixture> mixture; // its species are the products
        double N = 0.0;                           // mol per mole of reactants
        double Z = 0.0;                           // mass fraction of the condensed products
        double Mm = 0.0;                          // kg/mol
        double q = 0.0;                           // R/(N Mm): from a sum over R T to J/(kg K)
        double T = 0.0;                           // K
        double H = 0.0, H_spec = 0.0;             // J/mol, J/kg
        double S = 0.0, S_spec = 0.0;             // J/K per mole of reactants, J/(kg K)
        double U = 0.0, U_spec = 0.0;             // J/mol, J/kg
        double G = 0.0, G_spec = 0.0;             // J/mol, J/kg
        double rho = 0.0;                         // kg/m^3
        double Cp = 0.0, Cv = 0.0;                // J/(mol K)
        double Gamma = 0.0, K = 0.0;
        double A = 0.0;    // m/s
        double V = 0.0;    // Pa s
        double Cfr = 0.0;  // W/(m K)
        double Cpfr = 0.0; // J/(kg K)
        double Prfr = 0.0;
    };

    /// The functions of a product of fixed amount: H/(R T), S/R and Cp/R.
    struct Held {
        double H, S, Cp;
    };
    struct FixedEntropy;
    /// K, exclusive.
    struct GasRange {
        double low, high;
    };

    /// The layer. \throws thermo::Exception 0 without one
    const Frozen& presentLayer() const;

    Held heldAt(reaction::Product& product, double T) const;
    FixedEntropy entropyAt(double T, reaction::ReactingMixture* products, double lnN,
                           double lnp) const;
    static GasRange dataOf(const reaction::ReactingMixture& products);
    std::optional<double> iterateTemperature(double S, reaction::ReactingMixture* products,
                                             double lnN, double lnp, double T0,
                                             GasRange range) const;
    std::optional<double> bracketTemperature(double S, reaction::ReactingMixture* products,
                                             double lnN, double lnp, GasRange range) const;

    Frozen frozenCore;
    Frozen frozenLayer;
    bool persistent = false; // as the chamber
};

} // namespace performance::frozen
