#pragma once

#include <ketra/thermo/Constants.h>
#include <ketra/verification/criteria/EquilibriumCertificate.h>
#include <ketra/verification/criteria/EquilibriumState.h>

#include <cmath>
#include <cstddef>
#include <string_view>
#include <vector>

namespace ketra_test {

/// An equilibrium made backwards: from element potentials and amounts to species whose potentials
/// are right, so that the state is exact without any solver. 1500 K and 20 bar; X2, X, XY and a
/// solid Y; element X is 0, element Y is 1.
class HandMadeState
{
public:
    static constexpr double T = 1500.0; // K
    static constexpr double bar = 20.0;
    static constexpr double lambdaX = -12.5; // over R T
    static constexpr double lambdaY = -21.25;

    HandMadeState()
    {
        state.solved = true;
        state.T = T;
        state.p = bar * thermo::referencePressure;
        state.mass = 0.02;
        state.wanted = T;
        state.elements = {0.0, 0.0};
        addGas("X2", 0.6, 12.0, {2.0, 0.0});
        addGas("X", 0.01, 31.0, {1.0, 0.0});
        addGas("XY", 0.3, -5.0, {1.0, 1.0});
        addPhase("Y(s)", 0.2, 3.0, {0.0, 1.0});
        setBalance();
    }

    /// Appends a gas of a given amount that is in equilibrium.
    void addGas(std::string_view name, double n, double H, const std::vector<double>& row)
    {
        verification::EquilibriumState::Candidate c = present(name, n, H);
        state.add(c, row);
        settleGases();
    }
    /// The same of a condensed phase.
    void addPhase(std::string_view name, double n, double H, const std::vector<double>& row)
    {
        verification::EquilibriumState::Candidate c = present(name, n, H);
        c.kind = verification::EquilibriumState::Kind::CONDENSED;
        c.S = c.H - potential(row);
        state.add(c, row);
    }
    /// Appends a condensed phase that is not there, with a driving force of \p force.
    void offerPhase(
        std::string_view name, double force, const std::vector<double>& row,
        verification::EquilibriumState::Kind kind = verification::EquilibriumState::Kind::CONDENSED)
    {
        verification::EquilibriumState::Candidate c = present(name, 0.0, 7.0);
        c.kind = kind;
        c.present = false;
        c.S = c.H - potential(row) + force;
        state.add(c, row);
    }
    /// Appends a gas that is not there and should have the mole fraction \p x.
    void offerGas(std::string_view name, double x, const std::vector<double>& row)
    {
        verification::EquilibriumState::Candidate c = present(name, 0.0, 7.0);
        c.present = false;
        c.S = c.H - potential(row) + std::log(x) + std::log(bar);
        state.add(c, row);
    }

    /// Makes the elements and the moles of gas those of the products.
    void setBalance()
    {
        for (double& element : state.elements) element = 0.0;
        state.Ng = 0.0;
        for (std::size_t j = 0; j < state.candidates.size(); ++j) {
            const auto& c = state.candidates[j];
            if (!c.present) continue;
            if (c.isGas()) state.Ng += c.amount;
            for (std::size_t i = 0; i < state.elements.size(); ++i)
                state.elements[i] += state.row(j)[i] * c.amount;
        }
    }
    void setTarget(verification::EquilibriumState::Target target)
    {
        using Target = verification::EquilibriumState::Target;
        state.target = target;
        state.wanted = 0.0;
        for (const auto& c : state.candidates) {
            if (!c.present) continue;
            const double mixing = c.isGas() ? std::log(c.amount / state.Ng * bar) : 0.0;
            const double RT = thermo::gasConstant * T;
            if (target == Target::ENTHALPY) state.wanted += c.amount * c.H * RT;
            if (target == Target::ENTROPY)
                state.wanted += c.amount * (c.S - mixing) * thermo::gasConstant;
            if (target == Target::ENERGY)
                state.wanted += c.amount * (c.isGas() ? c.H - 1.0 : c.H) * RT;
        }
        if (target == Target::TEMPERATURE) state.wanted = T;
        if (target == Target::ENERGY) { // the same pressure in the same volume
            state.p = 0.0;
            state.V = state.Ng * thermo::gasConstant * T / (bar * thermo::referencePressure);
        }
    }

    verification::EquilibriumState::Candidate& candidate(std::string_view name)
    {
        for (auto& c : state.candidates)
            if (c.name == name) return c;
        return state.candidates.front();
    }
    verification::EquilibriumCertificate judged() const { return verification::judge(state); }

    verification::EquilibriumState state;

private:
    static verification::EquilibriumState::Candidate present(std::string_view name, double n,
                                                             double H)
    {
        verification::EquilibriumState::Candidate c;
        c.name = name;
        c.present = true;
        c.amount = n;
        c.H = H;
        c.Cp = 4.0;
        c.minT = 200.0;
        c.maxT = 6000.0;
        return c;
    }
    static double potential(const std::vector<double>& row)
    {
        return row[0] * lambdaX + row[1] * lambdaY;
    }
    /// The entropy that gives each gas its potential at its mole fraction.
    void settleGases()
    {
        double gas = 0.0;
        for (const auto& c : state.candidates)
            if (c.present && c.isGas()) gas += c.amount;
        for (std::size_t j = 0; j < state.candidates.size(); ++j) {
            auto& c = state.candidates[j];
            if (!c.present || !c.isGas()) continue;
            const double* a = state.row(j);
            c.S = c.H + std::log(c.amount / gas * bar) - (a[0] * lambdaX + a[1] * lambdaY);
        }
    }
};

} // namespace ketra_test
