#pragma once

#include <ketra/export.h>
#include <ketra/reaction/Product.h>

#include <vector>

namespace reaction {

/// All condensed phases of one formula as one product, for the derivatives of an equilibrium, whose
/// matrix two phases of one formula would make singular. Its functions are the means over the
/// phases by amount.
class KETRA_API QuasiProduct : public Product
{
public:
    /// The first phase; its amount begins the total.
    explicit QuasiProduct(const Product& first) : Product(first), totalN(first.n()) {}
    ~QuasiProduct() override;

    /// Merges another phase in, which stays the caller's and must outlive this object.
    void addMember(Product* phase);
    /// Amount of all phases, mol.
    double getTotalN() const { return totalN; }
    /// The merged phases beside the first.
    const std::vector<Product*>& getMembers() const { return members; }

    void setT(double T) override;
    void setT(const thermo::TemperatureTerms& terms) override;
    double G0() const override { return mean(&Product::G0, Product::G0()); }
    double G0_tilde() const override { return mean(&Product::G0_tilde, Product::G0_tilde()); }
    double H0() const override { return mean(&Product::H0, Product::H0()); }
    double H0_tilde() const override { return mean(&Product::H0_tilde, Product::H0_tilde()); }
    double S0() const override { return mean(&Product::S0, Product::S0()); }
    double S0_tilde() const override { return mean(&Product::S0_tilde, Product::S0_tilde()); }
    double Cp0() const override { return mean(&Product::Cp0, Product::Cp0()); }
    double Cp0_tilde() const override { return mean(&Product::Cp0_tilde, Product::Cp0_tilde()); }
    ReducedFunctions reduced() const override;

private:
    double mean(double (Product::*function)() const, double own) const;

    double totalN; // mol, the own amount included
    std::vector<Product*> members;
};

} // namespace reaction
