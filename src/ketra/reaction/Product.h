#pragma once

#include <ketra/export.h>
#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/thermo/Species.h>

#include <memory>

namespace reaction {

/// The dimensionless standard-state functions of a product at its temperature: what the solver
/// reads of a product in each of its cycles.
struct ReducedFunctions {
    double H;  ///< H0/(R T)
    double U;  ///< U0/(R T)
    double G;  ///< G0/(R T)
    double S;  ///< S0/R
    double Cp; ///< Cp0/R
    double Cv; ///< Cv0/R
};

/// A species that takes part in an equilibrium: beside the species data it carries its amount, the
/// logarithm of the amount, its stoichiometric numbers and all thermodynamic functions at the
/// temperature of the last `setT`, so that the sums of the solver evaluate no polynomial.
///
/// A product shares the polynomials of the species it was made from, which must outlive it. It
/// belongs to one thread at a time.
class KETRA_API Product : public thermo::Species
{
public:
    /// A product of \p species with no amount, no stoichiometric numbers and empty caches.
    explicit Product(const thermo::Species& species);
    /// Copies everything but the mark of exclusion; the copy has stoichiometric numbers of its own.
    Product(const Product& other);
    Product& operator=(const Product& other);
    ~Product() override;

    /// Takes ownership of the stoichiometric numbers: entry i is the number of atoms of element i
    /// of the mixture in one formula of this species.
    void assignA(math::matrix::ColumnVector* numbers) { stoichiometry.reset(numbers); }
    /// Number of atoms of element \p i; not checked.
    double a(unsigned int i) const { return stoichiometry->at(i); }

    /// Amount, moles per mole of initial mixture.
    double n() const { return amount; }
    /// Natural logarithm of the amount of a gas; the solver keeps 0 here for a condensed product.
    double ln_n() const { return lnAmount; }
    /// Stores the amount and a logarithm that need not agree with it.
    virtual void setN(double n, double ln_n);
    /// Stores the amount and its logarithm; the logarithm of no amount counts as 0.
    virtual void setN(double n);

    /// Marks the product for a host; no calculation of the library looks at the mark.
    void exclude(bool exclude) { excluded = exclude; }
    bool isExcluded() const { return excluded; }

    // The functions at a temperature of the caller's; the caches stay as they are.
    double Cp0(double T) const override { return Species::Cp0(T); }
    double Cp0_tilde(double T) const override { return Species::Cp0_tilde(T); }
    double Cv0(double T) const override { return Species::Cv0(T); }
    double Cv0_tilde(double T) const override { return Species::Cv0_tilde(T); }
    double H0(double T) const override { return Species::H0(T); }
    double H0_tilde(double T) const override { return Species::H0_tilde(T); }
    double U0(double T) const override { return Species::U0(T); }
    double U0_tilde(double T) const override { return Species::U0_tilde(T); }
    double S0(double T) const override { return Species::S0(T); }
    double S0_tilde(double T) const override { return Species::S0_tilde(T); }
    double G0(double T) const override { return Species::G0(T); }
    double G0_tilde(double T) const override { return Species::G0_tilde(T); }

    /// Evaluates all functions at \p T, K, into the caches.
    /// \throws thermo::Exception 1 outside the range of the species; the caches keep what they
    /// held,
    ///         the temperature is stored all the same.
    virtual void setT(double T);
    /// Temperature of the last `setT`, K.
    virtual double T() const { return temperature; }

    // The caches: J/mol, J/(mol K), and the dimensionless forms.
    virtual double G0() const { return functions.G0; }
    virtual double G0_tilde() const { return reducedFunctions.G; }
    virtual double H0() const { return functions.H0; }
    virtual double H0_tilde() const { return reducedFunctions.H; }
    virtual double U0() const { return functions.U0; }
    virtual double U0_tilde() const { return reducedFunctions.U; }
    virtual double S0() const { return functions.S0; }
    virtual double S0_tilde() const { return reducedFunctions.S; }
    virtual double Cp0() const { return functions.Cp0; }
    virtual double Cp0_tilde() const { return reducedFunctions.Cp; }
    virtual double Cv0() const { return functions.Cv0; }
    virtual double Cv0_tilde() const { return reducedFunctions.Cv; }

    /// `setT` with the terms of a temperature that many products share.
    virtual void setT(const thermo::TemperatureTerms& terms);
    /// The six dimensionless functions at once, with the values of the operations above.
    virtual ReducedFunctions reduced() const { return reducedFunctions; }

protected:
    /// Stores the temperature and touches no cache.
    void storeT(double T) { temperature = T; }

private:
    struct Functions {
        double G0, H0, U0, S0, Cp0, Cv0; // J/mol, J/(mol K)
    };

    std::unique_ptr<math::matrix::ColumnVector> stoichiometry; // atoms of each element
    double amount = 0.0;                                       // mol per mole of initial mixture
    double lnAmount = 0.0;
    double temperature = 0.0; // K, of the caches
    Functions functions{};
    ReducedFunctions reducedFunctions{};
    bool excluded = false;
};

} // namespace reaction
