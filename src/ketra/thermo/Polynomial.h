#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/StandardState.h>

#include <memory>
#include <string>

namespace thermo {

/// The standard-state functions of a species over one interval of temperature, given by exponents,
/// coefficients and integration constants. What they mean is laid down by the derived class.
///
/// The functions are const and keep no cache: polynomials are read by many threads at once.
class KETRA_API Polynomial
{
public:
    virtual ~Polynomial();

    /// Reads one line of a file. \returns true if it was the last line of the interval.
    /// \throws runtime::Exception 1 if a number of the line cannot be used.
    virtual bool load(std::string& line) = 0;
    virtual bool isCompleted() const = 0;
    /// \returns a new copy, the caller's.
    virtual Polynomial* getCopy() const = 0;
    /// Cp/R. \throws thermo::Exception 1 for a temperature outside the interval; likewise below.
    virtual double Cp0_tilde(double T) const = 0;
    /// H/(R T).
    virtual double H0_tilde(double T) const = 0;
    /// S/R.
    virtual double S0_tilde(double T) const = 0;
    /// G/(R T).
    virtual double G0_tilde(double T) const = 0;
    /// All four functions at once; the same numbers as the single functions give.
    /// \throws thermo::Exception 1 for a temperature outside the interval.
    virtual StandardState evaluate(const TemperatureTerms& terms) const;

    /// Lower and upper bound of the interval, K. The upper one is 0 in a record of a single
    /// temperature.
    double getT1() const { return T1; }
    double getMinT() const { return T1; }
    double getT2() const { return T2; }
    double getMaxT() const { return T2; }
    void setT1(double T) { T1 = T; }
    void setT2(double T) { T2 = T; }
    /// Both bounds belong to the interval.
    bool holds(double T) const { return T1 <= T && T <= T2; }

    /// Numbers of exponents, coefficients and integration constants.
    int getNe() const { return Ne; }
    int getNa() const { return Na; }
    int getNb() const { return Nb; }
    /// Exponents, coefficients and integration constants; the index is not checked.
    double getE(int i) const { return E[i]; }
    double getA(int i) const { return A[i]; }
    double getB(int i) const { return B[i]; }
    void setE(int i, double value) { E[i] = value; }
    void setA(int i, double value) { A[i] = value; }
    void setB(int i, double value) { B[i] = value; }

    /// Heat capacity, J/(mol K).
    double Cp0(double T) const { return Cp0_tilde(T) * gasConstant; }
    /// Enthalpy, J/mol.
    double H0(double T) const { return H0_tilde(T) * gasConstant * T; }
    /// Entropy, J/(mol K).
    double S0(double T) const { return S0_tilde(T) * gasConstant; }
    /// Gibbs energy, J/mol.
    double G0(double T) const { return G0_tilde(T) * gasConstant * T; }

protected:
    /// All numbers are 0.
    Polynomial(unsigned int ne, unsigned int na, unsigned int nb);
    Polynomial(const Polynomial& other);
    /// A deep copy, like the copy constructor.
    Polynomial& operator=(const Polynomial& other);

    double T1 = 0.0; // K
    double T2 = 0.0; // K

private:
    void allocate(int ne, int na, int nb);
    void copyNumbers(const Polynomial& other);

    int Ne = 0;
    int Na = 0;
    int Nb = 0;
    std::unique_ptr<double[]> numbers; // E, A and B in one piece

protected:
    double* A = nullptr; // Na coefficients
    double* B = nullptr; // Nb integration constants
    double* E = nullptr; // Ne exponents
};

} // namespace thermo
