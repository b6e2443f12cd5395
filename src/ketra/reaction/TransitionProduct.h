#pragma once

#include <ketra/export.h>
#include <ketra/reaction/Product.h>

#include <memory>

namespace reaction {

/// Lets a condensed substance pass smoothly through a phase change: it stands for one phase below
/// or above a narrow band of temperature around the change, or, inside the band, for a blend of the
/// two phases whose weights go linearly from one to the other.
///
/// Three forms, told by the two limits:
///
/// | form       | minT       | maxT       | phase code |
/// |------------|------------|------------|------------|
/// | low phase  | 0          | lower edge | 99         |
/// | blend      | lower edge | upper edge | 100        |
/// | high phase | upper edge | 0          | 101        |
///
/// A low or high phase borrows its phase; a blend owns both. U0, Cv0 and their dimensionless forms
/// are 0 on every transition product: no internal energy is assigned to a substance in transition.
class KETRA_API TransitionProduct : public Product
{
public:
    /// A low or high phase that stands for \p phase, which stays the caller's and must outlive this
    /// object. A limit of 0, K, means none of its own.
    TransitionProduct(Product* phase, double minT, double maxT);
    ~TransitionProduct() override;
    TransitionProduct(const TransitionProduct&) = delete;
    TransitionProduct& operator=(const TransitionProduct&) = delete;

    /// Turns the object into a blend of its phase and the higher \p upper, and takes ownership of
    /// both. The type is multiplied by 10000 and the name's parentheses say "transit".
    void makeTransit(Product* upper);

    /// The limits as given at construction, K; 0: none of its own.
    double getMinT() const { return minT; }
    double getMaxT() const { return maxT; }
    /// True for the blend of two phases.
    bool isBlend() const { return phase2 != nullptr; }
    /// The phase that this product stands for, or the lower one of a blend; not the caller's.
    Product* getPhase1() const { return phase1; }
    /// The higher phase of a blend, else null; not the caller's.
    Product* getPhase2() const { return phase2; }

    /// The temperature of the product moved into the range of the phase, K.
    double phase1T() const;
    double phase2T() const;
    /// The part of the amount that belongs to the phase, mol.
    double phase1N() const;
    double phase2N() const { return weight2 * n(); }
    /// Gives the phase its amount and temperature; returns it (not the caller's), null if there is
    /// no second phase.
    Product* publishPhase1();
    Product* publishPhase2();

    double getT(double T) const override;
    double getMinimalT() const override;
    double getMaximalT() const override;
    double Cp0(double T) const override;
    double Cp0_tilde(double T) const override;
    double H0(double T) const override;
    double H0_tilde(double T) const override;
    double S0(double T) const override;
    double S0_tilde(double T) const override;
    double G0(double T) const override;
    double G0_tilde(double T) const override;
    bool isCondensed() const override { return true; }
    int getCondensed() const override;

    /// \throws thermo::Exception 1 outside the limits; nothing has changed then.
    void setT(double T) override;
    void setT(const thermo::TemperatureTerms& terms) override { setT(terms.T); }
    double G0() const override { return blend(&Product::G0); }
    double G0_tilde() const override { return blend(&Product::G0_tilde); }
    double H0() const override { return blend(&Product::H0); }
    double H0_tilde() const override { return blend(&Product::H0_tilde); }
    double S0() const override { return blend(&Product::S0); }
    double S0_tilde() const override { return blend(&Product::S0_tilde); }
    double Cp0() const override { return blend(&Product::Cp0); }
    double Cp0_tilde() const override { return blend(&Product::Cp0_tilde); }
    ReducedFunctions reduced() const override;

private:
    using Cached = double (Product::*)() const;
    using AtT = double (Product::*)(double) const;

    double blend(Cached function) const;
    double blend(AtT function, double T) const;
    void nameTransit();
    void requireInBand(double T) const;

    double minT; // K, lower limit; 0: none
    double maxT; // K, upper limit; 0: none
    Product* phase1;
    Product* phase2 = nullptr;
    std::unique_ptr<Product> ownedPhase1; // set in a blend
    std::unique_ptr<Product> ownedPhase2;
    double weight1 = 0.5; // share of phase 1 in a blend
    double weight2 = 0.5;
};

} // namespace reaction
