// The life of a performance: what a failure leaves behind, who owns the document, what a copy is.

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include "Documents.h"
#include <support/ScriptedSpecies.h>

#include <support/Failures.h>
#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace {

using ketra_test::bipropellantDocument;
using ketra_test::mixtureDocument;
using ketra_test::script;
using performance::TheoreticalPerformance;
using thermo::input::ConfigFile;
using thermo::input::Ratio;

std::unique_ptr<ConfigFile> methaneOxygen(double alpha)
{
    return bipropellantDocument({"O2", 1.0}, {"CH4", 1.0}, alpha, Ratio::ALPHA);
}

// A performance on a copy of another's document, as the searches of a mixture ratio need it.
class OwnCopy : public TheoreticalPerformance
{
public:
    explicit OwnCopy(TheoreticalPerformance* source) : TheoreticalPerformance(source) {}
};

// Failures on demand, from a scripted gas.
class FailedSolving : public testing::Test
{
protected:
    void SetUp() override
    {
        ketra_test::useDissociatingHydrogen();
        document = mixtureDocument({{"H2", 1.0, 2000.0}}, 1.0);
    }
    void TearDown() override { script().clear(); }

    std::unique_ptr<ConfigFile> document;
};

TEST_F(FailedSolving, LeavesAnInvalidObjectWithoutResultsAndCanBeRepeated)
{
    TheoreticalPerformance performance(document.get(), false);
    performance.solve(false);
    ASSERT_TRUE(performance.isValid());
    script().failNextSolve(5);
    // A new exception of the same code: its text is the table's.
    KETRA_EXPECT_THROW_MESSAGE(performance.solve(false), thermo::Exception, 5,
                               "Invalid mass fraction");
    EXPECT_TRUE(performance.isInvalid());
    EXPECT_EQ(performance.getEquilibrium(), nullptr);
    EXPECT_EQ(performance.getDerivatives(), nullptr);
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
    EXPECT_NE(performance.getDerivatives(), nullptr);
}

TEST_F(FailedSolving, IsForgottenByAClearForRestart)
{
    TheoreticalPerformance performance(document.get(), false);
    script().failNextSolve(5);
    KETRA_EXPECT_THROW_CODE(performance.solve(false), thermo::Exception, 5);
    performance.clearForRestart(false);
    EXPECT_FALSE(performance.isInvalid());
}

TEST_F(FailedSolving, GoesThroughTheRecoveryOfACombustor)
{
    TheoreticalPerformance performance(document.get(), false);
    script().failNextSolve(8);
    script().failNextSolve(8);
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
    EXPECT_EQ(performance.getEquilibrium()->getMaxCycles(), 500U);
}

TEST_F(FailedSolving, PassesExceptionsOfOtherFamiliesOn)
{
    TheoreticalPerformance performance(document.get(), false);
    const auto other = std::make_exception_ptr(std::runtime_error("made up"));
    script().failNextSolve(other);
    script().failNextSolve(other);
    EXPECT_THROW(performance.solve(false), std::runtime_error);
    EXPECT_EQ(performance.getDerivatives(), nullptr);
    performance.solve(false);
    EXPECT_TRUE(performance.isValid());
}

// Ownership is checked by the address sanitizer: nothing is freed twice, nothing is left.
class Ownership : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }
};

TEST_F(Ownership, OfTheDocumentIsTakenOverWhenTold)
{
    TheoreticalPerformance performance(methaneOxygen(1.0).release(), true);
    ASSERT_NE(performance.getData(), nullptr);
    performance.clear(true);
    EXPECT_EQ(performance.getData(), nullptr);
    EXPECT_EQ(performance.getPropellant(), nullptr);
}

TEST_F(Ownership, OfTheDocumentIsTakenOverAlsoByAConstructorThatThrows)
{
    auto document = mixtureDocument({{"Nonsensium", 1.0}});
    KETRA_EXPECT_THROW_CODE(TheoreticalPerformance(document.release(), true), thermo::Exception, 4);
}

TEST_F(Ownership, OfABorrowedDocumentStaysWithTheCaller)
{
    const auto document = methaneOxygen(1.0);
    {
        TheoreticalPerformance performance(document.get(), false);
        performance.clear(true);
        EXPECT_EQ(performance.getData(), document.get());
        performance.solve(false); // builds everything anew
        EXPECT_TRUE(performance.isValid());
    }
    EXPECT_EQ(document->getPropellant().getRatio(), 1.0);
}

TEST_F(Ownership, OfTheDocumentIsKeptByAClearOfTheResults)
{
    TheoreticalPerformance performance(methaneOxygen(1.0).release(), true);
    performance.solve(false);
    performance.clear(false);
    ASSERT_NE(performance.getData(), nullptr);
    EXPECT_EQ(performance.getEquilibrium(), nullptr);
    EXPECT_EQ(performance.getDerivatives(), nullptr);
    EXPECT_EQ(performance.getPropellant(), nullptr);
    performance.clear(true);
    performance.clear(true);
}

TEST_F(Ownership, OfACopyIsItsOwnDocument)
{
    const auto document = methaneOxygen(1.0);
    TheoreticalPerformance source(document.get(), false);
    source.setRelativeTolerance(0.25);
    OwnCopy copy(&source);
    EXPECT_NE(copy.getData(), document.get());
    EXPECT_EQ(copy.getRelativeTolerance(), 0.25);
    EXPECT_FALSE(copy.isOptimized());
    ASSERT_NE(copy.getPropellant(), nullptr);
    EXPECT_NE(copy.getPropellant(), source.getPropellant());
    copy.getData()->getPropellant().setRatio(0.5, Ratio::ALPHA);
    EXPECT_EQ(document->getPropellant().getRatio(), 1.0);
    copy.solve(false);
    EXPECT_TRUE(copy.isValid());
    EXPECT_EQ(source.getEquilibrium(), nullptr);
}

} // namespace
