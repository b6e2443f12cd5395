#pragma once

#include <support/MadeUpSpecies.h>
#include <support/Reactants.h>

#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Polynomial.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <cmath>
#include <deque>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace ketra_test {

/// What the scripted gas does when a solver brings it to a temperature: it fails as told, and
/// otherwise counts.
class Script
{
public:
    void clear() { *this = Script(); }

    /// The next `solve` fails with \p code before its first cycle. A gas that cannot be evaluated
    /// is tried once more as a condensed product would be; the second failure ends the solve.
    void failNextSolve(unsigned int code)
    {
        pending.push_back(std::make_exception_ptr(thermo::Exception(code)));
        pending.push_back(std::make_exception_ptr(thermo::Exception(code)));
    }
    /// The next `solve` fails with an exception of another family; nothing tries again.
    void failNextSolve(const std::exception_ptr& failure) { pending.push_back(failure); }
    /// The evaluation of number \p index and the following one fail with \p code.
    void failAt(unsigned int index, unsigned int code)
    {
        failIndex = index;
        failCode = code;
    }

    unsigned int evaluations() const { return count; }
    bool isDone() const { return pending.empty() && (failIndex == 0 || count > failIndex); }

    void evaluate()
    {
        ++count;
        if (failIndex != 0 && (count == failIndex || count == failIndex + 1))
            throw thermo::Exception(failCode);
        if (pending.empty()) return;
        const std::exception_ptr failure = pending.front();
        pending.pop_front();
        std::rethrow_exception(failure);
    }

private:
    std::deque<std::exception_ptr> pending;
    unsigned int count = 0;
    unsigned int failIndex = 0;
    unsigned int failCode = 0;
};

/// The script of the running test.
inline Script& script()
{
    static Script running;
    return running;
}

/// Constant heat capacity, Cp/R = c, H/R = c T + h, S/R = c ln T + s, under the script.
class ScriptedPolynomial : public thermo::Polynomial
{
public:
    ScriptedPolynomial(double from, double to, double capacity, double enthalpy, double entropy)
        : Polynomial(0, 1, 2), c(capacity), h(enthalpy), s(entropy)
    {
        setT1(from);
        setT2(to);
    }
    bool load(std::string&) override { return true; }
    bool isCompleted() const override { return true; }
    thermo::Polynomial* getCopy() const override { return new ScriptedPolynomial(*this); }
    double Cp0_tilde(double) const override { return c; }
    double H0_tilde(double T) const override { return c + h / T; }
    double S0_tilde(double T) const override { return c * std::log(T) + s; }
    double G0_tilde(double T) const override { return H0_tilde(T) - S0_tilde(T); }
    thermo::StandardState evaluate(const thermo::TemperatureTerms& terms) const override
    {
        script().evaluate();
        return {c, H0_tilde(terms.T), S0_tilde(terms.T), G0_tilde(terms.T)};
    }

private:
    double c, h, s;
};

/// Adds a scripted gas of one element to the database of the process.
inline void addScriptedGas(const std::string& name, const std::string& element, double number,
                           double M, std::unique_ptr<ScriptedPolynomial> interval)
{
    auto species = std::make_unique<thermo::nasa9::NASA9Species>(name + " scripted", false, true);
    thermo::ChemicalFormula formula;
    const thermo::ChemicalElement term(element, number);
    formula.add(&term);
    species->setFormula(&formula);
    species->setM(M);
    species->removeIntervals();
    species->addInterval(interval.release());
    thermo::Database::getInstance()->addNewSpecies(species.get());
    species.release();
}

/// A light gas that comes apart easily, so that both forms are present at any temperature: H2 and
/// the scripted H. Its ions H+ and e- cost little. No other species are known.
inline void useDissociatingHydrogen()
{
    constexpr double from = 200.0, to = 6000.0; // K
    const double lnT0 = std::log(298.15);
    const auto gas = [&](double c, double H0, double S0) {
        return std::vector<Interval>{constantCp(from, to, c, H0 - c * 298.15, S0 - c * lnT0)};
    };
    useSpecies({
        {"e-", {{"E", 1.0}}, 0.000548579903, 0, 0.0, gas(2.5, 0.0, 2.5)},
        {"H2", {{"H", 2.0}}, 2.01588, 0, 0.0, gas(3.5, 0.0, 15.7)},
        {"H+", {{"H", 1.0}, {"E", -1.0}}, 1.00739142, 0, 0.0, gas(2.5, 3000.0, 13.1)},
    });
    addScriptedGas("H", "H", 1.0, 1.00794,
                   std::make_unique<ScriptedPolynomial>(from, to, 2.5, 1500.0 - 2.5 * 298.15,
                                                        13.8 - 2.5 * lnT0));
    script().clear();
}

/// One mole of H2 at 298.15 K.
inline std::unique_ptr<thermo::Mixture> hydrogen()
{
    auto mixture = std::make_unique<thermo::Mixture>();
    mixture->addSpecies("H2", 298.15, 1.0);
    return mixture;
}

} // namespace ketra_test
