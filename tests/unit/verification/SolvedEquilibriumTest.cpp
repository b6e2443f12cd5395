#include <support/Reactants.h>

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Constants.h>
#include <ketra/verification/criteria/EquilibriumState.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

using namespace ketra_test;
using reaction::Equilibrium;
using verification::EquilibriumState;
using verification::Grade;

namespace {

constexpr double p = 7e6; // Pa

std::unique_ptr<Equilibrium> solvedChamber(thermo::Mixture& charge, bool ions = false)
{
    auto problem = std::make_unique<Equilibrium>(charge, true, ions);
    problem->setPH(p, charge.H());
    problem->solve(false);
    return problem;
}

/// The state with its functions at another temperature, to the first order.
EquilibriumState atOtherT(EquilibriumState state, double factor)
{
    const double dlnT = factor - 1.0;
    for (auto& c : state.candidates) {
        c.H = (c.H + c.Cp * dlnT) / factor;
        c.S += c.Cp * std::log(factor);
    }
    state.T *= factor;
    return state;
}

double molesOf(const EquilibriumState& state)
{
    double total = 0.0;
    for (const auto& c : state.candidates) total += c.amount;
    return total;
}

class SolvedEquilibrium : public testing::Test
{
protected:
    SolvedEquilibrium() { useShippedSpecies(); }
};

// Each type of problem on the state that the chamber gave.
TEST_F(SolvedEquilibrium, OfEveryTypeIsA)
{
    const auto charge = loxKerosene(2.6);
    const auto chamber = solvedChamber(*charge);
    const double T = chamber->getT();
    const double v = chamber->getNg() * thermo::gasConstant * T / (p * charge->mm());
    for (const auto type : {Equilibrium::PH, Equilibrium::PS, Equilibrium::PT, Equilibrium::VU,
                            Equilibrium::VS, Equilibrium::VT}) {
        SCOPED_TRACE(type);
        Equilibrium problem(*charge, true, false);
        switch (type) {
        case Equilibrium::PH:
            problem.setPHspec(p, chamber->getHspec());
            break;
        case Equilibrium::PS:
            problem.setPSspec(p, chamber->getSspec());
            break;
        case Equilibrium::PT:
            problem.setPT(p, T);
            break;
        case Equilibrium::VU:
            problem.setVUspec(v, chamber->getUspec());
            break;
        case Equilibrium::VS:
            problem.setVSspec(v, chamber->getSspec());
            break;
        case Equilibrium::VT:
            problem.setVT(v, T);
            break;
        }
        problem.solve(false);
        const auto certificate = problem.certificate();
        EXPECT_EQ(certificate.grade, Grade::A) << certificate.reason;
        EXPECT_LT(certificate.elementResidual, 1e-11);
        EXPECT_LT(certificate.targetResidual, 1e-9);
    }
}

TEST_F(SolvedEquilibrium, WithCondensedProductsIsA)
{
    const auto charge = aluminisedSolid(0.18);
    const auto certificate = solvedChamber(*charge)->certificate();
    EXPECT_EQ(certificate.grade, Grade::A) << certificate.reason;
    EXPECT_FALSE(certificate.blended);
}

TEST_F(SolvedEquilibrium, WithIonsIsA)
{
    const auto air = mixtureOf({{"Air", 298.15, 1.0}});
    for (const double T : {600.0, 1500.0, 3000.0, 8000.0, 15000.0}) {
        SCOPED_TRACE(T);
        Equilibrium problem(*air, true, true);
        problem.setPT(1e5, T);
        problem.solve(false);
        EXPECT_EQ(problem.certificate().grade, Grade::A) << problem.certificate().reason;
    }
}

// Hydrogen and oxygen of water alone go together: what of the free elements there is, is a trace
// that says little.
TEST_F(SolvedEquilibrium, WithDependentElementsIsA)
{
    const auto steam = mixtureOf({{"N2", 298.15, 0.5}, {"H2O", 298.15, 0.5}});
    for (const double T : {420.0, 600.0, 1000.0, 3000.0}) {
        SCOPED_TRACE(T);
        Equilibrium problem(*steam, true, false);
        problem.setPT(1e5, T);
        problem.solve(false);
        EXPECT_EQ(problem.certificate().grade, Grade::A) << problem.certificate().reason;
    }
}

TEST_F(SolvedEquilibrium, InABandIsBForItsBlend)
{
    const auto damp = mixtureOf({{"N2", 298.15, 0.8}, {"H2O", 400.0, 0.2}});
    for (const double T : {257.0, 268.0, 280.0, 290.0}) {
        SCOPED_TRACE(T);
        Equilibrium problem(*damp, true, false);
        problem.setPT(1e5, T);
        problem.solve(false);
        const auto certificate = problem.certificate();
        EXPECT_EQ(certificate.grade, Grade::B) << certificate.reason;
        EXPECT_TRUE(certificate.blended);
        EXPECT_EQ(certificate.worstSpecies, "H2O(transit)");
        EXPECT_GT(std::abs(certificate.hiddenForce), 0.1);
        EXPECT_LT(std::abs(certificate.hiddenForce), 1.3);
    }
}

TEST_F(SolvedEquilibrium, IsFBeforeItIsSolved)
{
    const auto charge = loxHydrogen(6.0);
    Equilibrium problem(*charge);
    problem.setPH(p, charge->H());
    EXPECT_EQ(problem.certificate().grade, Grade::F);
    problem.solve(false);
    EXPECT_EQ(problem.certificate().grade, Grade::A);
}

// The solution that stands answers another problem than the one that is posed now.
TEST_F(SolvedEquilibrium, IsFOnceItIsPosedAnew)
{
    const auto charge = loxHydrogen(6.0);
    const auto chamber = solvedChamber(*charge);
    chamber->setPH(p / 2.0, charge->H());
    EXPECT_EQ(chamber->certificate().grade, Grade::F);
}

TEST_F(SolvedEquilibrium, ChecksItsOwnTolerance)
{
    const auto charge = loxKerosene(2.6);
    Equilibrium problem(*charge);
    problem.setRelativeTolerance(100.0);
    problem.setPH(p, charge->H());
    problem.solve(false);
    EXPECT_NE(problem.certificate().grade, Grade::F) << problem.certificate().reason;
}

// Whatever is changed in a solved state, its grade falls.
class Mutation : public SolvedEquilibrium
{
protected:
    Mutation() : charge(aluminisedSolid(0.18)), chamber(solvedChamber(*charge)) {}
    EquilibriumState state() const { return chamber->describe(); }

    std::unique_ptr<thermo::Mixture> charge;
    std::unique_ptr<Equilibrium> chamber;
};

TEST_F(Mutation, NoneLeavesA) { EXPECT_EQ(judge(state()).grade, Grade::A); }

TEST_F(Mutation, OfTheTemperature)
{
    EXPECT_NE(judge(atOtherT(state(), 1.0 + 1e-5)).grade, Grade::A);
    EXPECT_NE(judge(atOtherT(state(), 1.0 - 1e-5)).grade, Grade::A);
    EXPECT_EQ(judge(atOtherT(state(), 1.0 + 1e-3)).grade, Grade::F);
    EXPECT_EQ(judge(atOtherT(state(), 1.0 - 1e-3)).grade, Grade::F);
}

// In equilibrium at another temperature: only the target tells.
TEST_F(Mutation, OfTheTemperatureInEquilibrium)
{
    for (const auto& [factor, grade] :
         {std::pair(1.0 + 1e-5, Grade::B), std::pair(1.001, Grade::F)}) {
        SCOPED_TRACE(factor);
        Equilibrium other(*charge);
        other.setPT(p, chamber->getT() * factor);
        other.solve(false);
        ASSERT_EQ(other.certificate().grade, Grade::A);
        EquilibriumState moved = other.describe();
        moved.target = EquilibriumState::Target::ENTHALPY;
        moved.wanted = charge->H();
        EXPECT_EQ(judge(moved).grade, grade) << judge(moved).reason;
    }
}

TEST_F(Mutation, OfEveryAmount)
{
    const EquilibriumState solved = state();
    const double total = molesOf(solved);
    int changed = 0;
    for (std::size_t j = 0; j < solved.candidates.size(); ++j) {
        if (!solved.candidates[j].present || solved.candidates[j].amount < 1e-9 * total) continue;
        SCOPED_TRACE(solved.candidates[j].name);
        EquilibriumState other = solved;
        other.candidates[j].amount *= 1.0 + 1e-5;
        EXPECT_NE(judge(other).grade, Grade::A);
        other.candidates[j].amount = solved.candidates[j].amount * 1.01;
        EXPECT_EQ(judge(other).grade, Grade::F);
        ++changed;
    }
    EXPECT_GT(changed, 40);
}

TEST_F(Mutation, ByRemovingASpecies)
{
    const EquilibriumState solved = state();
    const double total = molesOf(solved);
    for (std::size_t j = 0; j < solved.candidates.size(); ++j) {
        if (!solved.candidates[j].present || solved.candidates[j].amount < 1e-5 * total) continue;
        SCOPED_TRACE(solved.candidates[j].name);
        EquilibriumState other = solved;
        other.candidates[j].present = false;
        other.candidates[j].amount = 0.0;
        EXPECT_EQ(judge(other).grade, Grade::F);
    }
}

// The gas alone, in equilibrium with itself: nothing but the driving force tells.
TEST_F(Mutation, ByLeavingAPhaseOut)
{
    Equilibrium gas(*charge, /*multiphase=*/false, false);
    gas.setPT(p, chamber->getT());
    gas.solve(false);
    ASSERT_EQ(gas.certificate().grade, Grade::A);
    EquilibriumState lacking = gas.describe();
    const EquilibriumState full = state();
    for (std::size_t j = 0; j < full.candidates.size(); ++j) {
        if (full.candidates[j].isGas()) continue;
        lacking.candidates.push_back(full.candidates[j]);
        lacking.candidates.back().present = false;
        lacking.candidates.back().amount = 0.0;
        lacking.atoms.insert(lacking.atoms.end(), full.row(j), full.row(j) + full.elements.size());
    }
    const auto certificate = judge(lacking);
    EXPECT_EQ(certificate.grade, Grade::F);
    EXPECT_GT(certificate.drivingForce, 1.0);
    EXPECT_EQ(certificate.worstSpecies, "AL2O3(L)");
}

// A phase that would hold 1e-4 of the mass: carbon just beyond the edge where it appears.
TEST_F(Mutation, ByLeavingALittleOfAPhaseOut)
{
    const double T = 900.0;
    const auto carbonIn = [&](double methane, Equilibrium** solved,
                              std::unique_ptr<thermo::Mixture>& mixture,
                              std::unique_ptr<Equilibrium>& problem) {
        mixture = mixtureOf({{"CH4", 298.15, methane}, {"O2", 298.15, 1.0 - methane}});
        problem = std::make_unique<Equilibrium>(*mixture, true, false);
        problem->setPT(1e5, T);
        problem->solve(false);
        *solved = problem.get();
        const EquilibriumState s = problem->describe();
        for (const auto& c : s.candidates)
            if (c.present && c.name == "C(gr)") return c.amount * 0.0120107 / s.mass;
        return 0.0;
    };
    std::unique_ptr<thermo::Mixture> mixture;
    std::unique_ptr<Equilibrium> problem;
    Equilibrium* solved = nullptr;
    double low = 0.3;
    double high = 0.5;
    for (int i = 0; i < 40; ++i) {
        const double middle = 0.5 * (low + high);
        (carbonIn(middle, &solved, mixture, problem) > 1e-4 ? high : low) = middle;
    }
    ASSERT_NEAR(carbonIn(high, &solved, mixture, problem), 1e-4, 1e-9);

    Equilibrium gas(*mixture, /*multiphase=*/false, false);
    gas.setPT(1e5, T);
    gas.solve(false);
    EquilibriumState lacking = gas.describe();
    const EquilibriumState full = solved->describe();
    for (std::size_t j = 0; j < full.candidates.size(); ++j) {
        if (full.candidates[j].name != "C(gr)") continue;
        lacking.candidates.push_back(full.candidates[j]);
        lacking.candidates.back().present = false;
        lacking.candidates.back().amount = 0.0;
        lacking.atoms.insert(lacking.atoms.end(), full.row(j), full.row(j) + full.elements.size());
    }
    EXPECT_EQ(judge(lacking).grade, Grade::F);
    EXPECT_EQ(judge(lacking).worstSpecies, "C(gr)");
}

} // namespace
