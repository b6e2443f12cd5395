#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Polynomial.h>

#include <string>
#include <string_view>

namespace thermo::nasa9 {

/// One interval of the NASA Glenn form: seven coefficients a[0..6] for the exponents -2 to 4 of
/// temperature and two integration constants b[0..1] [McBride2002]. The exponents of the file are
/// kept but not used.
class KETRA_API NASA9Polynomial : public Polynomial
{
public:
    NASA9Polynomial() : Polynomial(7, 7, 2) {}
    NASA9Polynomial(const NASA9Polynomial&) = default;
    NASA9Polynomial& operator=(const NASA9Polynomial&) = default;
    ~NASA9Polynomial() override;
    /// \returns a new, empty interval, the caller's.
    static NASA9Polynomial* create();

    /// Reads the next of the three lines of the interval. \returns true after the third.
    /// \throws runtime::Exception 1 if the lower temperature is not above 0 and at most 20000 K, or
    /// a number is not finite.
    bool load(std::string& line) override;
    bool isCompleted() const override { return lines == 3; }
    Polynomial* getCopy() const override;
    double Cp0_tilde(double T) const override;
    double H0_tilde(double T) const override;
    double S0_tilde(double T) const override;
    double G0_tilde(double T) const override;
    StandardState evaluate(const TemperatureTerms& terms) const override;

    /// Lines read so far, 0 to 3.
    int size() const { return lines; }

private:
    void readExponents(std::string_view field);
    void requireInRange(double T) const;

    int lines = 0;
};

} // namespace thermo::nasa9
