#pragma once

#include <ketra/export.h>
#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/math/matrix/LinearSystem.h>
#include <ketra/math/matrix/RowVector.h>

#include <memory>
#include <vector>

namespace report {
class Table;
} // namespace report
namespace thermo {
class GasMixture;
class Mixture;
} // namespace thermo

namespace reaction {

class Equilibrium;
class Product;
class ReactingMixture;

/// What a gas-dynamic calculation needs of a solved equilibrium: equilibrium heat capacities, the
/// derivatives of the volume, isentropic exponent, speed of sound, density, and the transport
/// properties of the gas.
///
/// The method is that of Gordon and McBride [RP1311]: two right-hand sides on the matrix of the
/// equilibrium without its energy row; for the transport properties the mixture rules of Wilke and
/// of Mason and Saxena, and the reactions' share by Butler and Brokaw.
///
/// Two phases of one formula, which a persistent problem finds together at their melting point,
/// are merged. The masses, densities and amounts then count both; heat capacities and speed of
/// sound are those of fixed shares of the two, for while both are there the heat capacity
/// of the whole is infinite. By default what is merged counts by its first phase alone.
///
/// An object reads its `Equilibrium` in `solve` and in `getP`; the problem must outlive it, and
/// must not be solved again in between if the results are to belong together. Copies share mixtures
/// and problem with their source. An object belongs to one thread at a time.
class KETRA_API Derivatives
{
public:
    /// The derivatives of a solved problem, which stays the caller's.
    explicit Derivatives(Equilibrium* solved);
    /// The derivatives of a mixture solved elsewhere at \p newT, K, and \p newP, Pa. Takes
    /// ownership of the mixture.
    Derivatives(ReactingMixture* solved, double newT, double newP);
    virtual ~Derivatives();
    Derivatives(const Derivatives&) = default;
    Derivatives& operator=(const Derivatives&) = default;

    /// Computes all results; to be called once.
    /// \param transport  the transport properties of the gas too
    /// \throws thermo::Exception 12 if the system has no solution
    void solve(bool transport);

    /// Computes the transport properties of the gas for its present composition, condensed phases
    /// left out. What the data of the species lack is estimated. Where the share of the reactions
    /// comes out implausible, it is computed again with ever fewer species and in the end left out.
    /// \param atT       temperature, K; 0 for that of the equilibrium
    /// \param reacting  with the share of the reactions; otherwise it is 0
    /// \throws thermo::Exception 1 if a gas has no heat capacity at this temperature
    void calculateTransportProperties(double atT, bool reacting);

    /// Prints the results through the log; bit 0x80 of \p flags selects English units, bit 0x100
    /// adds the transport properties.
    void printResults(unsigned int flags) const;

    /// The products with the condensed phases of one formula merged; this object's.
    ReactingMixture* getReactingMixture() const { return mixture.get(); }
    /// The gases alone; this object's.
    thermo::GasMixture* getGasMixture() const { return gasMixture.get(); }
    /// Pressure, Pa; of a problem of given volume the one that `solve` has computed.
    double getP() const;

    double getCp() const { return Cp; }             ///< J/(mol K), per mole of products
    double getCp_spec() const { return Cp / Mm; }   ///< J/(kg K)
    double getCv() const { return Cv; }             ///< J/(mol K), per mole of products
    double getCv_spec() const { return Cv / Mm; }   ///< J/(kg K)
    double getGamma() const { return Cp / Cv; }     ///< ratio of the heat capacities
    double getK() const { return k; }               ///< isentropic exponent
    double getA() const { return a; }               ///< speed of sound, m/s
    double getRho() const { return rho; }           ///< density of the whole, kg/m^3
    double getRhoGas() const { return rhoGas; }     ///< mass of gas in a volume, kg/m^3
    double getR_spec() const { return R_spec; }     ///< gas constant of the gas, J/(kg K)
    double getZ() const { return Z; }               ///< mass fraction of condensed phases
    double getCpz_spec() const { return Cpz_spec; } ///< heat-capacity term of condensed phases
    double getM() const { return Mm2 * 1000; }      ///< molar mass of the gas, g/mol
    double getMm() const { return Mm; }             ///< molar mass of the products, kg/mol
    double getMm2() const { return Mm2; }           ///< molar mass of the gas, kg/mol

    double get_d_lnV_d_lnT() const { return d_lnV_d_lnT; } ///< (d ln V / d ln T) at constant p
    double get_d_lnV_d_lnp() const { return d_lnV_d_lnp; } ///< (d ln V / d ln p) at constant T
    double get_d_lnp_d_lnT() const { return d_lnp_d_lnT; }
    double getAlpha_p() const { return alpha_p; } ///< volume expansion coefficient, 1/K
    double getBetta_t() const { return betta_t; } ///< isothermal compressibility, 1/Pa
    double getGamma_v() const { return gamma_v; } ///< pressure coefficient, 1/K

    // Transport properties of the gas; 0 until they are computed.
    double getV() const { return viscosity; } ///< viscosity, Pa s
    double getCfr() const { return Cfr; }     ///< frozen conductivity, W/(m K)
    double getCr() const { return Cr; }       ///< conductivity of the reactions, W/(m K)
    double getCpfr() const { return Cpfr; }   ///< frozen heat capacity, J/(kg K)
    double getCpr() const { return Cpr; }     ///< heat capacity of the reactions, J/(kg K)
    double getPrfr() const { return Prfr; }   ///< frozen Prandtl number
    double getPrr() const { return Prr; }     ///< Prandtl number of the reactions
    double getCeql() const { return Ceql; }   ///< conductivity at equilibrium, W/(m K)
    double getCpeql() const { return Cpeql; } ///< heat capacity at equilibrium, J/(kg K)
    double getPreql() const { return Preql; } ///< Prandtl number at equilibrium

protected:
    /// Merges the phases, builds the mixtures, fixes the molar masses.
    void init();
    /// The matrix of both systems. \returns a new one, the caller's
    math::matrix::LinearSystem* composeMatrix() const;
    /// The derivatives with respect to ln T at constant p, and to ln p at constant T: multipliers,
    /// ln n and condensed amounts. \returns a new vector, the caller's; null if there is no
    /// solution
    math::matrix::ColumnVector* solveSystemT(math::matrix::LinearSystem* system) const;
    math::matrix::ColumnVector* solveSystemP(math::matrix::LinearSystem* system) const;
    /// d ln n(j) / d ln T, or / d ln p, of each gas. \returns a new vector, the caller's
    math::matrix::ColumnVector* getNT(const math::matrix::ColumnVector* xT) const;
    math::matrix::ColumnVector* getNP(const math::matrix::ColumnVector* xP) const;

    // The transport properties step by step. All lists and arrays of n species are in the order of
    // the list of involved species: the nm monatomic gases with the electron, then the molecules.

    /// Selects the gases that matter: the monatomic ones first, then the molecules in bands of
    /// falling mole fraction.
    /// \param list        receives the gases, which stay the mixture's
    /// \param nm          receives the number of monatomic gases, the electron included
    /// \param nSum        receives the moles of the list
    /// \param nE          receives the moles of free electrons
    /// \param x           receives a new array of mole fractions within the list, the caller's
    /// \param xE          receives the mole fraction of free electrons, at least 1e-10
    /// \param thresholds  lower bounds of the bands, mole fractions in the gas, falling
    /// \param counts      raised by the number of molecules in each band
    /// \param levels      number of bands
    void getInvolvedSpecies(std::vector<Product*>& list, unsigned int& nm, double& nSum, double& nE,
                            double*& x, double& xE, const double* thresholds, double* counts,
                            unsigned int levels) const;
    /// Viscosities and conductivities of the species and of their pairs, from data or estimated.
    /// \param eta     receives the viscosities on its diagonal, the interaction viscosities of the
    ///                pairs beside it, Pa s
    /// \param lambda  receives the conductivities, mW/(cm K)
    void prepareData(const std::vector<Product*>& list, unsigned int nm, unsigned int n,
                     double nSum, double nE, const double* x, double xE, math::matrix::Matrix* eta,
                     math::matrix::RowVector* lambda, double atT) const;
    /// The properties without reactions.
    void calculateTransportPropertiesFr(const std::vector<Product*>& list, unsigned int n,
                                        double nSum, double nE, const double* x, double xE,
                                        const math::matrix::Matrix* eta,
                                        const math::matrix::RowVector* lambda, double atT);
    /// The share of the reactions.
    /// \throws math::matrix::Exception if the reactions depend on each other
    void calculateTransportPropertiesR(const std::vector<Product*>& list, unsigned int nm,
                                       unsigned int n, double nSum, double nE, const double* x,
                                       double xE, const math::matrix::Matrix* eta,
                                       const math::matrix::RowVector* lambda, double atT);

private:
    struct InvolvedGases;
    static constexpr double leastElectrons = 1e-10; // mole fraction that shields a neutral gas

    bool isConstantVolume() const;
    bool isPersistent() const;
    double temperature() const;
    double gasMoles() const;
    void solveHeatCapacities(const math::matrix::ColumnVector& xT);
    void solveDensities();
    InvolvedGases involve(const double* thresholds, unsigned int levels, double atT) const;
    bool solveReactions(const InvolvedGases& gases, double atT);
    void recoverReactions(double atT);
    void printTransport(const report::Table& table) const;

    Equilibrium* equilibrium = nullptr; // borrowed, may be null
    // Shared with the copies of this object; the two below point to products of the first.
    std::shared_ptr<ReactingMixture> mixture;
    std::shared_ptr<thermo::Mixture> resultingMixture;
    std::shared_ptr<thermo::GasMixture> gasMixture;
    double T = 0.0; // K, without an equilibrium
    double p = 0.0; // Pa
    double N = 0.0; // mol, of merged phases by default only the first

    double Cp = 0.0, Cv = 0.0; // J/(mol K)
    double k = 0.0;
    double a = 0.0;                 // m/s
    double rho = 0.0, rhoGas = 0.0; // kg/m^3
    double R_spec = 0.0;            // J/(kg K)
    double gamma = 0.0;
    double Z = 0.0;
    double Cpz_spec = 0.0;
    double d_lnV_d_lnT = 0.0, d_lnV_d_lnp = 0.0, d_lnp_d_lnT = 0.0;
    double alpha_p = 0.0; // 1/K
    double betta_t = 0.0; // 1/Pa
    double gamma_v = 0.0; // 1/K
    double Mm = 0.0;      // kg/mol, of the products
    double Mm2 = 0.0;     // kg/mol, of the gas

    double viscosity = 0.0;                    // Pa s
    double Cfr = 0.0, Cr = 0.0, Ceql = 0.0;    // W/(m K)
    double Cpfr = 0.0, Cpr = 0.0, Cpeql = 0.0; // J/(kg K)
    double Prfr = 0.0, Prr = 0.0, Preql = 0.0;
};

} // namespace reaction
