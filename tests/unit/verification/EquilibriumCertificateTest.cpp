#include "HandMadeState.h"

#include <ketra/verification/criteria/EquilibriumLimits.h>
#include <ketra/verification/criteria/Grade.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace ketra_test;
using verification::EquilibriumLimits;
using verification::EquilibriumState;
using verification::Grade;
using Kind = EquilibriumState::Kind;
using Target = EquilibriumState::Target;

namespace {

TEST(Grade, LettersAndOrder)
{
    EXPECT_EQ(letter(Grade::A), 'A');
    EXPECT_EQ(letter(Grade::B), 'B');
    EXPECT_EQ(letter(Grade::F), 'F');
    EXPECT_EQ(worse(Grade::A, Grade::B), Grade::B);
    EXPECT_EQ(worse(Grade::F, Grade::B), Grade::F);
    EXPECT_EQ(worse(Grade::A, Grade::A), Grade::A);
}

TEST(EquilibriumLimits, FollowTheToleranceButNeverPassThoseOfB)
{
    const EquilibriumLimits usual = EquilibriumLimits::of(Grade::A, 1e-7);
    EXPECT_DOUBLE_EQ(usual.elementResidual, 1e-8);
    EXPECT_DOUBLE_EQ(usual.optimality, 1e-6);
    EXPECT_DOUBLE_EQ(usual.targetResidual, 1e-6);
    const EquilibriumLimits coarse = EquilibriumLimits::of(Grade::A, 1e-2);
    const EquilibriumLimits b = EquilibriumLimits::of(Grade::B, 1e-2);
    EXPECT_EQ(coarse.optimality, b.optimality);
    EXPECT_EQ(coarse.drivingForce, b.drivingForce);
}

class CertificateOfHandMade : public testing::Test
{
protected:
    void expect(Grade grade)
    {
        const auto certificate = made.judged();
        EXPECT_EQ(letter(certificate.grade), letter(grade)) << certificate.reason;
        EXPECT_EQ(certificate.reason.empty(), grade == Grade::A);
    }
    /// The same, and the species that decides.
    void expect(Grade grade, const char* species)
    {
        expect(grade);
        EXPECT_EQ(made.judged().worstSpecies, species);
    }

    HandMadeState made;
};

TEST_F(CertificateOfHandMade, AnExactStateIsA)
{
    for (const Target target :
         {Target::TEMPERATURE, Target::ENTHALPY, Target::ENTROPY, Target::ENERGY}) {
        SCOPED_TRACE(static_cast<int>(target));
        HandMadeState state;
        state.setTarget(target);
        const auto certificate = state.judged();
        EXPECT_EQ(certificate.grade, Grade::A) << certificate.reason;
        EXPECT_LT(certificate.elementResidual, 1e-14);
        EXPECT_LT(certificate.optimality, 1e-12);
        EXPECT_LT(certificate.targetResidual, 1e-13);
        EXPECT_TRUE(certificate.amountsValid);
        EXPECT_TRUE(certificate.temperatureInRange);
    }
}

TEST_F(CertificateOfHandMade, WithoutASolutionIsF)
{
    made.state.solved = false;
    expect(Grade::F);
}

TEST_F(CertificateOfHandMade, AnElementOffIsF)
{
    made.state.elements[1] *= 1.0 + 1e-4;
    expect(Grade::F);
    EXPECT_NEAR(made.judged().elementResidual, 0.5e-4 / 1.51, 1e-7);
}

TEST_F(CertificateOfHandMade, AnElementSlightlyOffIsB)
{
    made.state.elements[1] += 1e-6;
    expect(Grade::B);
}

TEST_F(CertificateOfHandMade, APotentialOffIsF)
{
    made.candidate("X").S += 1e-2;
    expect(Grade::F, "X");
    EXPECT_NEAR(made.judged().optimality, 1e-2, 2e-4); // X2 is abundant and holds its potential
}

TEST_F(CertificateOfHandMade, APhaseOffTheGasIsF)
{
    made.candidate("Y(s)").S += 1e-2;
    expect(Grade::F);
}

TEST_F(CertificateOfHandMade, APhaseThatWantsInIsF)
{
    made.offerPhase("XY(s)", 1e-3, {1.0, 1.0});
    expect(Grade::F, "XY(s)");
    EXPECT_NEAR(made.judged().drivingForce, 1e-3, 1e-10);
}

TEST_F(CertificateOfHandMade, APhaseThatStaysOutIsNoMatter)
{
    made.offerPhase("XY(s)", -1e-3, {1.0, 1.0});
    expect(Grade::A);
    EXPECT_NEAR(made.judged().drivingForce, -1e-3, 1e-10);
}

TEST_F(CertificateOfHandMade, AGasThatWantsInIsF)
{
    made.offerGas("Y2", 1e-5, {0.0, 2.0});
    expect(Grade::F, "Y2");
    EXPECT_NEAR(made.judged().missingFraction, 1e-5 * 0.91 / 1.11, 1e-12);
}

TEST_F(CertificateOfHandMade, AGasThatIsRareStaysOut)
{
    made.offerGas("Y2", 1e-12, {0.0, 2.0});
    expect(Grade::A);
}

TEST_F(CertificateOfHandMade, AGasThatHasWitheredInTheListIsF)
{
    made.offerGas("Y2", 1e-2, {0.0, 2.0});
    made.candidate("Y2").present = true;
    made.candidate("Y2").amount = 1e-30;
    expect(Grade::F, "Y2");
}

TEST_F(CertificateOfHandMade, CandidatesOutsideTheirDataAreNotJudged)
{
    made.offerPhase("XY(s)", 5.0, {1.0, 1.0});
    made.candidate("XY(s)").maxT = 1000.0;
    made.offerGas("Y2", 0.5, {0.0, 2.0});
    made.candidate("Y2").minT = 2000.0;
    expect(Grade::A);
}

TEST_F(CertificateOfHandMade, NegativeAndBrokenAmountsAreF)
{
    for (const double amount : {-1e-3, std::numeric_limits<double>::quiet_NaN(),
                                std::numeric_limits<double>::infinity()}) {
        SCOPED_TRACE(amount);
        made.candidate("XY").amount = amount;
        expect(Grade::F, "XY");
        EXPECT_FALSE(made.judged().amountsValid);
    }
}

TEST_F(CertificateOfHandMade, ATemperatureOutsideTheRangeOfAProductIsF)
{
    made.candidate("XY").maxT = HandMadeState::T - 1.0;
    expect(Grade::F, "XY");
    EXPECT_FALSE(made.judged().temperatureInRange);
}

TEST_F(CertificateOfHandMade, AMissedTargetIsF)
{
    for (const Target target : {Target::ENTHALPY, Target::ENTROPY, Target::ENERGY}) {
        SCOPED_TRACE(static_cast<int>(target));
        HandMadeState state;
        state.setTarget(target);
        state.state.wanted *= 1.001;
        EXPECT_EQ(state.judged().grade, Grade::F);
    }
    made.setTarget(Target::TEMPERATURE);
    made.state.wanted *= 1.001;
    expect(Grade::F);
}

TEST_F(CertificateOfHandMade, TheTargetIsMeasuredInTemperature)
{
    made.setTarget(Target::ENTHALPY);
    // 1.11 mol with Cp = 4 R: 3e-5 of T.
    made.state.wanted += 3e-5 * 1.11 * 4.0 * thermo::gasConstant * HandMadeState::T;
    EXPECT_NEAR(made.judged().targetResidual, 3e-5, 1e-12);
    expect(Grade::B);
}

TEST_F(CertificateOfHandMade, MolesOfGasThatDisagreeAreF)
{
    made.state.Ng *= 1.001;
    expect(Grade::F);
}

TEST_F(CertificateOfHandMade, ABlendIsBUnlessItStandsAtTheChangeItself)
{
    made.candidate("Y(s)").kind = Kind::BLEND;
    made.offerPhase("Y(low)", 0.2, {0.0, 1.0}, Kind::HIDDEN_PHASE);
    expect(Grade::B, "Y(s)");
    EXPECT_TRUE(made.judged().blended);

    HandMadeState above;
    above.candidate("Y(s)").kind = Kind::BLEND;
    above.offerPhase("Y(high)", -0.2, {0.0, 1.0}, Kind::HIDDEN_PHASE);
    EXPECT_EQ(above.judged().grade, Grade::B);

    HandMadeState change;
    change.candidate("Y(s)").kind = Kind::BLEND;
    change.offerPhase("Y(low)", 0.0, {0.0, 1.0}, Kind::HIDDEN_PHASE);
    change.offerPhase("Y(high)", 0.0, {0.0, 1.0}, Kind::HIDDEN_PHASE);
    EXPECT_EQ(change.judged().grade, Grade::A);
}

TEST_F(CertificateOfHandMade, ABlendOutsideItsBandIsF)
{
    auto& blend = made.candidate("Y(s)");
    blend.kind = Kind::BLEND;
    blend.minT = 1540.0;
    blend.maxT = 1580.0;
    expect(Grade::F, "Y(s)");
}

TEST_F(CertificateOfHandMade, ABlendThatWantsInIsF)
{
    made.offerPhase("XY(transit)", 0.1, {1.0, 1.0}, Kind::BLEND);
    expect(Grade::F, "XY(transit)");
}

TEST_F(CertificateOfHandMade, APhaseThatItsBlendHidesIsBWhileTheBlendCanHideIt)
{
    made.offerPhase("XY(transit)", -0.1, {1.0, 1.0}, Kind::BLEND);
    made.offerPhase("XY(L)", 0.3, {1.0, 1.0}, Kind::HIDDEN_PHASE);
    expect(Grade::B, "XY(L)");
    made.offerPhase("XY(s)", 3.0, {1.0, 1.0}, Kind::HIDDEN_PHASE);
    expect(Grade::F, "XY(s)");
}

// The electron: ions of which none is abundant do not fix its potential.
class CertificateWithIons : public CertificateOfHandMade
{
protected:
    CertificateWithIons()
    {
        made.state.elements.push_back(0.0);
        made.state.electron = 2;
        std::vector<double> atoms;
        for (std::size_t j = 0; j < made.state.candidates.size(); ++j) {
            atoms.insert(atoms.end(), {made.state.atoms[2 * j], made.state.atoms[2 * j + 1], 0.0});
        }
        made.state.atoms = atoms;
    }
    /// An ion that should have the fraction \p x where the potential of the electron is 0.
    void offerIon(const char* name, double x, double charge)
    {
        made.offerGas(name, x, {1.0, 0.0, -charge});
        made.candidate(name).charge = charge;
        made.candidate(name).present = true;
        made.candidate(name).amount = 1e-40;
    }
};

TEST_F(CertificateWithIons, TracesOfIonsAreNoMatterHoweverUneven)
{
    offerIon("X+", 1e-3, 1.0); // e+ and e- together: 1e-20 each
    offerIon("X-", 1e-37, -1.0);
    expect(Grade::A);
}

TEST_F(CertificateWithIons, IonsThatShouldBeThereAreMissed)
{
    offerIon("X+", 1e-2, 1.0);
    offerIon("X-", 1e-4, -1.0);
    expect(Grade::F);
    EXPECT_NEAR(made.judged().missingFraction, 1e-3 * 0.91 / 1.11, 1e-8);
}

TEST_F(CertificateWithIons, NetChargeIsF)
{
    offerIon("X+", 1e-20, 1.0);
    made.candidate("X+").amount = 1e-4;
    made.setBalance();
    EXPECT_NEAR(made.judged().charge, 1e-4 / 1.1101, 1e-12);
    EXPECT_EQ(made.judged().grade, Grade::F);
}

// A mixture in which two elements go together everywhere: their potentials are not known, and need
// not be.
TEST(ElementsInFixedProportion, AreJudgedByWhatTheirPotentialsGiveTogether)
{
    HandMadeState made;
    made.state.candidates.clear();
    made.state.atoms.clear();
    made.addGas("X2Y", 0.7, 4.0, {2.0, 1.0});
    made.addGas("X4Y2", 0.1, 9.0, {4.0, 2.0});
    made.setBalance();
    EXPECT_EQ(made.judged().grade, Grade::A) << made.judged().reason;
    made.offerPhase("X2Y(s)", 1e-3, {2.0, 1.0});
    EXPECT_EQ(made.judged().grade, Grade::F);
    HandMadeState off = made;
    off.state.candidates.pop_back();
    off.candidate("X4Y2").S += 1e-3;
    EXPECT_EQ(off.judged().grade, Grade::F);
}

// An element that one species alone carries has the potential that this species gives it: only the
// balance can tell that its amount is wrong.
TEST(AnElementOfASingleSpecies, IsJudgedByItsBalance)
{
    HandMadeState made;
    made.state.candidates.clear();
    made.state.atoms.clear();
    made.addGas("X2", 0.7, 4.0, {2.0, 0.0});
    made.addGas("Y", 0.1, 9.0, {0.0, 1.0});
    made.setBalance();
    EXPECT_EQ(made.judged().grade, Grade::A) << made.judged().reason;
    made.candidate("Y").amount *= 1.0 + 1e-6;
    EXPECT_NE(made.judged().grade, Grade::A);
}

TEST(AnElementThatIsNotThere, AsksForNoSpecies)
{
    HandMadeState made;
    made.state.candidates.clear();
    made.state.atoms.clear();
    made.addGas("X2", 0.7, 4.0, {2.0, 0.0});
    made.addGas("X", 0.1, 9.0, {1.0, 0.0});
    made.setBalance();
    made.offerPhase("Y(s)", 5.0, {0.0, 1.0});
    EXPECT_EQ(made.judged().grade, Grade::A) << made.judged().reason;
}

TEST(AMixtureWithoutGas, WantsOneWhereItsFractionsReachOne)
{
    HandMadeState made;
    made.state.candidates.clear();
    made.state.atoms.clear();
    made.addPhase("X(s)", 0.7, 4.0, {1.0, 0.0});
    made.addPhase("Y(s)", 0.1, 9.0, {0.0, 1.0});
    made.setBalance();
    made.offerGas("X2", 0.4, {2.0, 0.0});
    EXPECT_EQ(made.judged().grade, Grade::A) << made.judged().reason;
    made.offerGas("Y2", 0.7, {0.0, 2.0});
    EXPECT_EQ(made.judged().grade, Grade::F);
    EXPECT_NEAR(made.judged().drivingForce, std::log(1.1), 1e-9);
}

} // namespace
