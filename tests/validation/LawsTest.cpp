#include <support/LawStatistics.h>

#include <gtest/gtest.h>

#include <string>

// Laws of equilibrium over random charges and states with fixed seeds: conservation, minimality,
// consistency, and the six types of problem closing on each other.

using namespace ketra_test;
using reaction::Equilibrium;

namespace {

constexpr int statesPerPart = 300; // four parts each of propellants and of random elements

std::string listOf(const LawStatistics& statistics)
{
    std::string text;
    for (const std::string& line : statistics.lines) text += line + "\n";
    return text;
}

/// What must hold of every solution, whatever the charge.
void expectLaws(const LawStatistics& s)
{
    EXPECT_EQ(s.states, statesPerPart);
    EXPECT_LE(s.worst.balance, 1e-8);
    EXPECT_LE(s.worst.charge, 1e-8);
    EXPECT_GE(s.worst.leastAmount, 0.0);
    EXPECT_GE(s.worst.descent, -1e-11); // rounding of the sum of the Gibbs energy
    EXPECT_LE(s.worst.energies, 1e-9);
    EXPECT_GE(s.grades.at('A'), s.solved); // five more problems follow from each state
}

class PropellantLaws : public testing::TestWithParam<unsigned>
{
};

class ElementLaws : public testing::TestWithParam<unsigned>
{
};

} // namespace

TEST_P(PropellantLaws, HoldAtEveryState)
{
    const LawStatistics s = examinePropellants(GetParam(), statesPerPart);
    expectLaws(s);
    EXPECT_EQ(s.missingPhases, 0);
    EXPECT_EQ(s.notClosing, 0);
    EXPECT_EQ(s.grades.count('F'), 0u);
    // An iteration that converges slowly leaves traces whose potentials are off by a few 1e-6.
    EXPECT_LE(s.unblendedB, 5);
    EXPECT_LE(s.worstClosing, 5e-5);
    EXPECT_LE(s.worstBlendClosing, 1e-2);
    // docs/verification.md tells why these do not converge: the polymers of HF at given
    // temperature.
    int failures = 0;
    for (const auto& [kind, count] : s.failures) {
        EXPECT_EQ(kind.substr(0, 2), "PT") << kind;
        failures += count;
    }
    for (const std::string& line : s.lines)
        EXPECT_NE(line.find("F2(L)"), std::string::npos) << line;
    EXPECT_LE(failures, 1);
    if (HasFailure()) ADD_FAILURE() << listOf(s);
}

TEST_P(ElementLaws, HoldAtEveryState)
{
    const LawStatistics s = examineElements(GetParam(), statesPerPart);
    expectLaws(s);
    EXPECT_LE(s.worstClosing, 5e-5);
    // Charges of bare metals are far from what the start of the iteration is made for. These are
    // the numbers of docs/verification.md, captured from this library, and guard against change.
    int failures = 0;
    for (const auto& [kind, count] : s.failures) failures += count;
    EXPECT_LE(failures, 140);
    EXPECT_LE(s.missingPhases, 10);
    EXPECT_LE(s.notClosing, 22);
}

INSTANTIATE_TEST_SUITE_P(Seeds, PropellantLaws, testing::Values(1u, 2u, 3u, 4u));
INSTANTIATE_TEST_SUITE_P(Seeds, ElementLaws, testing::Values(11u, 12u, 13u, 14u));

TEST(Laws, TheOrderOfTheComponentsDoesNotMatter)
{
    useShippedSpecies();
    StateGenerator random(21);
    for (int i = 0; i < 150; ++i) {
        const RandomState state = random.propellant();
        SCOPED_TRACE(describe(state));
        std::vector<Reactant> reversed(state.reactants.rbegin(), state.reactants.rend());
        const auto charge = mixtureOf(state.reactants), turned = mixtureOf(reversed);
        EXPECT_NEAR(charge->H(), turned->H(), 1e-9 * std::abs(charge->H()));
        Equilibrium one(*charge, true, state.ions), other(*turned, true, state.ions);
        one.setPH(state.p, charge->H());
        other.setPH(state.p, turned->H());
        one.solve(expectsCondensed(state));
        other.solve(expectsCondensed(state));
        EXPECT_NEAR(one.getT(), other.getT(), 1e-6 * one.getT());
        EXPECT_NEAR(one.getGspec(), other.getGspec(), 1e-6 * std::abs(one.getGspec()));
        std::vector<std::string> first, second;
        one.getAllSpeciesNames(&first, 1e-6);
        other.getAllSpeciesNames(&second, 1e-6);
        EXPECT_EQ(first, second);
    }
}
