#include <support/Failures.h>
#include <support/MadeUpSpecies.h>

#include <ketra/reaction/TransitionProduct.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

using ketra_test::constantCp;
using ketra_test::makeSpecies;
using ketra_test::Record;
using reaction::Product;
using reaction::TransitionProduct;
using thermo::gasConstant;

namespace {

const Record lowRecord{"Y(cr)", {{"AL", 1.0}}, 26.98,
                       1,       0.0,           {constantCp(200.0, 1020.0, 3.0, -5000.0, -12.0)}};
const Record highRecord{"Y(L)", {{"AL", 1.0}}, 26.98,
                        2,      0.0,           {constantCp(1020.0, 3000.0, 4.0, -4500.0, -17.0)}};

/// A product that tells when it is destroyed.
class Watched : public Product
{
public:
    Watched(const thermo::Species& species, int& newAlive) : Product(species), alive(newAlive)
    {
        ++alive;
    }
    ~Watched() override { --alive; }

private:
    int& alive;
};

/// A blend between 1000 and 1040 K of phases that end and begin at 1020 K.
class TransitionProductTest : public testing::Test
{
protected:
    TransitionProductTest()
    {
        auto lower = std::make_unique<Watched>(*lowSpecies, alive);
        phase1 = lower.get();
        blend = std::make_unique<TransitionProduct>(phase1, 1000.0, 1040.0);
        auto upper = std::make_unique<Watched>(*highSpecies, alive);
        phase2 = upper.get();
        lower.release(); // both are the blend's now
        blend->makeTransit(upper.release());
    }

    int alive = 0;
    std::unique_ptr<thermo::Species> lowSpecies = makeSpecies(lowRecord, 11);
    std::unique_ptr<thermo::Species> highSpecies = makeSpecies(highRecord, 12);
    std::unique_ptr<TransitionProduct> blend;
    Product* phase1 = nullptr;
    Product* phase2 = nullptr;
};

} // namespace

TEST_F(TransitionProductTest, WeightsGoLinearlyAcrossTheBand)
{
    blend->setN(1.0);
    const auto expectWeights = [&](double T, double lower, double upper) {
        SCOPED_TRACE(T);
        blend->setT(T);
        EXPECT_DOUBLE_EQ(blend->phase1N(), lower);
        EXPECT_NEAR(blend->phase2N(), upper, 1e-15);
    };
    expectWeights(1000.0, 1.0, 0.0);
    expectWeights(1010.0, 0.75, 0.25);
    expectWeights(1040.0, 0.0, 1.0);
}

TEST_F(TransitionProductTest, WeightsAreHalvesBeforeTheFirstTemperature)
{
    blend->setN(2.0);
    EXPECT_DOUBLE_EQ(blend->phase1N(), 1.0);
    EXPECT_DOUBLE_EQ(blend->phase2N(), 1.0);
}

TEST_F(TransitionProductTest, ATemperatureOutsideTheBandIsRefusedAndChangesNothing)
{
    blend->setT(1010.0);
    KETRA_EXPECT_THROW_CODE(blend->setT(999.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->setT(1041.0), thermo::Exception, 1);
    EXPECT_EQ(blend->T(), 1010.0);
    blend->setN(1.0);
    EXPECT_DOUBLE_EQ(blend->phase1N(), 0.75);
    KETRA_EXPECT_THROW_CODE(blend->getT(999.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->getT(1041.0), thermo::Exception, 1);
    EXPECT_EQ(blend->getT(1000.0), 1000.0);
    EXPECT_EQ(blend->getT(1040.0), 1040.0);
    KETRA_EXPECT_THROW_CODE(blend->Cp0(999.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->Cp0_tilde(999.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->H0(999.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->H0_tilde(1041.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->S0(1041.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->S0_tilde(1041.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->G0(1041.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(blend->G0_tilde(999.0), thermo::Exception, 1);
}

TEST_F(TransitionProductTest, ABlendIsTheWeightedMeanOfPhasesHeldInTheirRanges)
{
    // At 1010 K the lower phase stands at 1010 K, the upper one, which begins at 1020 K, at 1020 K.
    blend->setT(1010.0);
    EXPECT_EQ(blend->phase1T(), 1010.0);
    EXPECT_EQ(blend->phase2T(), 1020.0);
    EXPECT_EQ(phase1->T(), 1010.0);
    EXPECT_EQ(phase2->T(), 1020.0);
    const auto mean = [](double lower, double upper) { return 0.75 * lower + 0.25 * upper; };
    EXPECT_DOUBLE_EQ(blend->H0_tilde(),
                     mean(lowSpecies->H0_tilde(1010.0), highSpecies->H0_tilde(1020.0)));
    EXPECT_DOUBLE_EQ(blend->H0(), mean(lowSpecies->H0(1010.0), highSpecies->H0(1020.0)));
    EXPECT_DOUBLE_EQ(blend->S0_tilde(),
                     mean(lowSpecies->S0_tilde(1010.0), highSpecies->S0_tilde(1020.0)));
    EXPECT_DOUBLE_EQ(blend->S0(), mean(lowSpecies->S0(1010.0), highSpecies->S0(1020.0)));
    EXPECT_DOUBLE_EQ(blend->G0_tilde(),
                     mean(lowSpecies->G0_tilde(1010.0), highSpecies->G0_tilde(1020.0)));
    EXPECT_DOUBLE_EQ(blend->G0(), mean(lowSpecies->G0(1010.0), highSpecies->G0(1020.0)));
    EXPECT_DOUBLE_EQ(blend->Cp0_tilde(), mean(3.0, 4.0));
    EXPECT_DOUBLE_EQ(blend->Cp0(), mean(3.0, 4.0) * gasConstant);

    const reaction::ReducedFunctions reduced = blend->reduced();
    EXPECT_EQ(reduced.H, blend->H0_tilde());
    EXPECT_EQ(reduced.G, blend->G0_tilde());
    EXPECT_EQ(reduced.S, blend->S0_tilde());
    EXPECT_EQ(reduced.Cp, blend->Cp0_tilde());
    EXPECT_EQ(reduced.U, 0.0);
    EXPECT_EQ(reduced.Cv, 0.0);
}

TEST_F(TransitionProductTest, FunctionsAtATemperatureKeepTheWeightsOfTheLastSetT)
{
    blend->setT(1010.0);
    const auto mean = [](double lower, double upper) { return 0.75 * lower + 0.25 * upper; };
    EXPECT_DOUBLE_EQ(blend->H0_tilde(1030.0),
                     mean(lowSpecies->H0_tilde(1020.0), highSpecies->H0_tilde(1030.0)));
    EXPECT_DOUBLE_EQ(blend->H0(1030.0), mean(lowSpecies->H0(1020.0), highSpecies->H0(1030.0)));
    EXPECT_DOUBLE_EQ(blend->S0_tilde(1030.0),
                     mean(lowSpecies->S0_tilde(1020.0), highSpecies->S0_tilde(1030.0)));
    EXPECT_DOUBLE_EQ(blend->S0(1030.0), mean(lowSpecies->S0(1020.0), highSpecies->S0(1030.0)));
    EXPECT_DOUBLE_EQ(blend->G0_tilde(1030.0),
                     mean(lowSpecies->G0_tilde(1020.0), highSpecies->G0_tilde(1030.0)));
    EXPECT_DOUBLE_EQ(blend->G0(1030.0), mean(lowSpecies->G0(1020.0), highSpecies->G0(1030.0)));
    EXPECT_DOUBLE_EQ(blend->Cp0_tilde(1030.0), mean(3.0, 4.0));
    EXPECT_DOUBLE_EQ(blend->Cp0(1030.0), mean(3.0, 4.0) * gasConstant);
    EXPECT_EQ(blend->T(), 1010.0);
}

TEST_F(TransitionProductTest, InternalEnergyAndCvAreZeroInEveryForm)
{
    TransitionProduct low(phase1, 0.0, 1000.0);
    low.setT(900.0);
    TransitionProduct high(phase2, 1040.0, 0.0);
    high.setT(1100.0);
    blend->setT(1010.0);
    for (const Product* product :
         {static_cast<const Product*>(&low), static_cast<const Product*>(&high),
          static_cast<const Product*>(blend.get())}) {
        EXPECT_EQ(product->U0(), 0.0);
        EXPECT_EQ(product->U0_tilde(), 0.0);
        EXPECT_EQ(product->Cv0(), 0.0);
        EXPECT_EQ(product->Cv0_tilde(), 0.0);
        EXPECT_NE(product->H0_tilde(), 0.0);
    }
}

TEST_F(TransitionProductTest, ALowPhaseHasNoLowerLimitOfItsOwn)
{
    TransitionProduct low(phase1, 0.0, 1000.0);
    EXPECT_EQ(low.getCondensed(), 99);
    EXPECT_TRUE(low.isCondensed());
    EXPECT_EQ(low.getMinimalT(), 200.0); // of its phase
    EXPECT_EQ(low.getMaximalT(), 1000.0);
    low.setT(1000.0);
    EXPECT_DOUBLE_EQ(low.H0_tilde(), lowSpecies->H0_tilde(1000.0));
    KETRA_EXPECT_THROW_CODE(low.setT(1000.5), thermo::Exception, 1);
    low.setT(100.0); // below the phase: held at the phase's lower end
    EXPECT_EQ(low.T(), 100.0);
    EXPECT_EQ(phase1->T(), 200.0);
    EXPECT_DOUBLE_EQ(low.H0_tilde(), lowSpecies->H0_tilde(200.0));
    EXPECT_EQ(low.getT(900.0), 900.0); // validated by the phase
    EXPECT_EQ(low.getT(1010.0), 1010.0);
    KETRA_EXPECT_THROW_CODE(low.getT(1021.0), thermo::Exception, 1);
    EXPECT_EQ(low.getName(), "Y(cr)");
    EXPECT_TRUE(low == lowSpecies.get());
}

TEST_F(TransitionProductTest, AHighPhaseHasNoUpperLimitOfItsOwn)
{
    TransitionProduct high(phase2, 1040.0, 0.0);
    EXPECT_EQ(high.getCondensed(), 101);
    EXPECT_EQ(high.getMinimalT(), 1040.0);
    EXPECT_EQ(high.getMaximalT(), 3000.0);
    high.setT(1040.0);
    EXPECT_DOUBLE_EQ(high.G0_tilde(), highSpecies->G0_tilde(1040.0));
    KETRA_EXPECT_THROW_CODE(high.setT(1039.0), thermo::Exception, 1);
    EXPECT_EQ(high.getName(), "Y(L)");
    // One phase alone is evaluated where it is asked, not held in its range.
    KETRA_EXPECT_THROW_CODE(high.H0(3001.0), thermo::Exception, 1);
}

TEST_F(TransitionProductTest, ABlendHasATypeAndANameOfItsOwn)
{
    EXPECT_EQ(blend->getType(), 110000);
    EXPECT_EQ(blend->getName(), "Y(transit)");
    EXPECT_EQ(blend->getCondensed(), 100);
    EXPECT_TRUE(blend->isCondensed());
    EXPECT_EQ(blend->getMinimalT(), 1000.0);
    EXPECT_EQ(blend->getMaximalT(), 1040.0);
    EXPECT_FALSE(*blend == lowSpecies.get());
}

TEST_F(TransitionProductTest, PublishingCutsTheAmountByTheWeights)
{
    blend->setN(0.4);
    blend->setT(1010.0);
    EXPECT_EQ(blend->publishPhase1(), phase1);
    EXPECT_EQ(blend->publishPhase2(), phase2);
    EXPECT_DOUBLE_EQ(phase1->n(), 0.3);
    EXPECT_DOUBLE_EQ(phase2->n(), 0.1);
    EXPECT_EQ(phase1->T(), 1010.0);
    EXPECT_EQ(phase2->T(), 1020.0);

    TransitionProduct low(phase1, 0.0, 1000.0);
    low.setN(0.7);
    low.setT(950.0);
    EXPECT_EQ(low.publishPhase1(), phase1);
    EXPECT_DOUBLE_EQ(phase1->n(), 0.7);
    EXPECT_EQ(phase1->T(), 950.0);
    EXPECT_EQ(low.publishPhase2(), nullptr);
}

TEST_F(TransitionProductTest, OnlyTheBlendOwnsItsPhases)
{
    ASSERT_EQ(alive, 2);
    {
        const TransitionProduct low(phase1, 0.0, 1000.0);
        const TransitionProduct high(phase2, 1040.0, 0.0);
    }
    EXPECT_EQ(alive, 2);
    blend.reset();
    EXPECT_EQ(alive, 0);
}
