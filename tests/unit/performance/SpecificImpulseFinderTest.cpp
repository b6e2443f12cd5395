#include <ketra/performance/SpecificImpulseFinder.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/efficiency/CorrectionFactors.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/util/Thread.h>

#include "Engines.h"

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/Reactants.h>
#include <support/ScriptedSpecies.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using ketra_test::engineWithExit;
using performance::SpecificImpulseFinder;
using performance::TheoreticalPerformance;
using performance::efficiency::CorrectionFactors;
using thermo::input::ConfigFile;
using thermo::input::Ratio;

const std::string noExcess = "Could not set oxidizer excess for mixture!";
const std::string cleared = "Could not find specific impulse: the finder is cleared.\r\n";

class ImpulseFinder : public testing::Test
{
protected:
    void SetUp() override { ketra_test::useShippedSpecies(); }

    static SpecificImpulseFinder finderOf(const ConfigFile& document)
    {
        return SpecificImpulseFinder(new ConfigFile(document));
    }

    // What the finder finds, by the road of a single engine.
    static double impulseAt(const ConfigFile& document, double alpha)
    {
        ConfigFile copy(document);
        copy.getPropellant().setRatio(alpha, Ratio::ALPHA);
        copy.getGeneralOptions().setFlowSeparation(false);
        TheoreticalPerformance performance(&copy, false);
        performance.solve(false);
        return performance.getExitSection()->getIs_v(0.0) *
               CorrectionFactors(&performance).getOverallEfficiency();
    }
};

TEST_F(ImpulseFinder, FindsTheEffectiveVacuumImpulse)
{
    const auto document = engineWithExit(30.0);
    SpecificImpulseFinder finder = finderOf(*document);
    for (const double alpha : {0.5, 0.9}) {
        finder.run(alpha);
        EXPECT_TRUE(finder.isValid());
        EXPECT_FALSE(finder.isInvalid());
        EXPECT_EQ(finder.getIs_v(), impulseAt(*document, alpha));
    }
}

TEST_F(ImpulseFinder, StartsFromADocumentThatAsksForTheOptimumToo)
{
    const auto stated = engineWithExit(30.0);
    const auto open = engineWithExit(30.0);
    open->getPropellant().setRatio(0.0, Ratio::OPTIMAL);
    SpecificImpulseFinder finder = finderOf(*open);
    finder.run(0.7);
    EXPECT_EQ(finder.getIs_v(), impulseAt(*stated, 0.7));
    finder.run(0.8); // now with a propellant
    EXPECT_EQ(finder.getIs_v(), impulseAt(*stated, 0.8));
}

TEST_F(ImpulseFinder, SwitchesTheFlowSeparationOfItsDocumentOff)
{
    const auto document = engineWithExit(30.0);
    ketra_test::setAmbientPressure(*document, 1e6);
    auto* own = new ConfigFile(*document);
    ASSERT_TRUE(own->getGeneralOptions().isFlowSeparation());
    SpecificImpulseFinder finder(own);
    EXPECT_FALSE(own->getGeneralOptions().isFlowSeparation());
    EXPECT_TRUE(document->getGeneralOptions().isFlowSeparation());
}

TEST_F(ImpulseFinder, WritesTheCoefficientToItsDocument)
{
    auto* own = new ConfigFile(*engineWithExit(30.0));
    SpecificImpulseFinder finder(own);
    finder.setAlpha(0.75);
    EXPECT_EQ(own->getPropellant().getRatio(), 0.75);
    EXPECT_EQ(own->getPropellant().getRatioType(), Ratio::ALPHA);
}

TEST_F(ImpulseFinder, MultipliesByTheUsersEfficiencies)
{
    const auto document = engineWithExit(30.0);
    auto& factors = document->getNozzleFlowOptions().setEfficiencyFactors();
    factors.setNozzleEfficiency(1.0);
    factors.setReactionEfficiency(1.0);
    SpecificImpulseFinder finder = finderOf(*document);
    finder.run(0.8);
    const double ideal = finder.getIs_v();
    factors.setNozzleEfficiency(0.9);
    factors.setReactionEfficiency(0.8);
    SpecificImpulseFinder real = finderOf(*document);
    real.run(0.8);
    EXPECT_DOUBLE_EQ(real.getIs_v(), 0.9 * 0.8 * ideal);
}

TEST_F(ImpulseFinder, HasNoImpulseBeforeARunAndWithoutANozzleExit)
{
    SpecificImpulseFinder unsolved = finderOf(*engineWithExit(30.0));
    EXPECT_EQ(unsolved.getIs_v(), 0.0);
    SpecificImpulseFinder chamberOnly = finderOf(*ketra_test::engineDocument());
    chamberOnly.run(0.8);
    EXPECT_TRUE(chamberOnly.isValid());
    EXPECT_EQ(chamberOnly.getIs_v(), 0.0);
}

TEST_F(ImpulseFinder, CountsAFailedRunAsOneWithoutImpulseAndGoesOn)
{
    const auto document = engineWithExit(30.0);
    auto* own = new ConfigFile(*document);
    SpecificImpulseFinder finder(own);
    finder.run(0.8);
    const double impulse = finder.getIs_v();
    ASSERT_GT(impulse, 0.0);

    auto& exit = own->getNozzleFlowOptions().getNozzleExitConditions();
    exit.setPressureRatio(0.5);
    exit.deleteAreaRatio();
    ketra_test::LogCapture capture;
    finder.run(0.8);
    EXPECT_TRUE(finder.isInvalid());
    EXPECT_FALSE(finder.isValid());
    EXPECT_EQ(finder.getIs_v(), 0.0);

    exit.setAreaRatio(30.0, true);
    exit.deletePressureRatio();
    finder.run(0.8); // the propellant is built anew, from the document
    EXPECT_TRUE(finder.isValid());
    EXPECT_EQ(finder.getIs_v(), impulse);
}

TEST_F(ImpulseFinder, OfAMixtureSaysSoAndFindsTheSameEachTime)
{
    SpecificImpulseFinder finder = finderOf(*ketra_test::premixedEngine(30.0));
    ketra_test::LogCapture capture;
    finder.run(0.5);
    const double first = finder.getIs_v();
    EXPECT_GT(first, 0.0);
    finder.run(1.5);
    EXPECT_EQ(finder.getIs_v(), first);
    EXPECT_EQ(capture.errors(), (std::vector<std::string>{noExcess, noExcess}));
    EXPECT_EQ(capture.tagOf(noExcess), "THERMO");
}

// Species besides oxidizer and fuel: the propellant takes the coefficient, the document does not.
TEST_F(ImpulseFinder, SetsThePropellantThatIsThereAlsoBesideAListOfSpecies)
{
    const auto document = engineWithExit(30.0);
    const double expected = impulseAt(*document, 0.8);
    document->getPropellant().addSpecies(ketra_test::componentOf({"N2", 1.0}));
    auto* own = new ConfigFile(*document);
    SpecificImpulseFinder finder(own);
    ketra_test::LogCapture capture;
    finder.run(0.8);
    EXPECT_EQ(finder.getIs_v(), expected);
    EXPECT_EQ(capture.errors(), std::vector<std::string>{noExcess});
    EXPECT_EQ(own->getPropellant().getRatioType(), Ratio::KM);
}

TEST_F(ImpulseFinder, HasATolerance)
{
    SpecificImpulseFinder finder = finderOf(*engineWithExit(30.0));
    EXPECT_EQ(finder.getRelativeTolerance(), 1.0);
    finder.setRelativeTolerance(-0.25);
    EXPECT_EQ(finder.getRelativeTolerance(), 0.25);
}

TEST_F(ImpulseFinder, NeedsADocumentWithKnownSpecies)
{
    KETRA_EXPECT_THROW_CODE(SpecificImpulseFinder(nullptr), thermo::Exception, 0);
    auto document =
        ketra_test::bipropellantDocument({"O2", 1.0}, {"Nonsensium", 1.0}, 1.0, Ratio::ALPHA);
    // The document is deleted with the finder that was not made.
    KETRA_EXPECT_THROW_CODE(SpecificImpulseFinder(document.release()), thermo::Exception, 4);
}

TEST_F(ImpulseFinder, CannotBeUsedOnceItIsCleared)
{
    SpecificImpulseFinder finder = finderOf(*engineWithExit(30.0));
    finder.run(0.8);
    finder.clear();
    finder.clear();
    EXPECT_EQ(finder.getIs_v(), 0.0);
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(finder.run(), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(finder.run(0.8), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(finder.setRelativeTolerance(1.0), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(finder.getRelativeTolerance(), thermo::Exception, 0);
    EXPECT_EQ(capture.errors(), std::vector<std::string>(4, cleared));
}

TEST_F(ImpulseFinder, WorksOnAThreadOfItsOwn)
{
    static_assert(std::is_base_of_v<util::Thread, SpecificImpulseFinder>);
    const auto document = engineWithExit(30.0);
    SpecificImpulseFinder lean = finderOf(*document), rich = finderOf(*document);
    lean.start(1.1);
    rich.start(0.6);
    lean.join();
    rich.join();
    EXPECT_EQ(lean.getIs_v(), impulseAt(*document, 1.1));
    EXPECT_EQ(rich.getIs_v(), impulseAt(*document, 0.6));
    lean.restart(0.9);
    lean.join();
    EXPECT_EQ(lean.getIs_v(), impulseAt(*document, 0.9));
    // At the coefficient that was set before.
    rich.start();
    rich.join();
    EXPECT_EQ(rich.getIs_v(), impulseAt(*document, 0.6));
}

// A run that waits until it is let go.
class Waiting : public SpecificImpulseFinder
{
public:
    using SpecificImpulseFinder::run;
    using SpecificImpulseFinder::SpecificImpulseFinder;
    ~Waiting() override { wait(); }
    void run() override
    {
        ++runs;
        while (!free) std::this_thread::yield();
    }
    std::atomic<bool> free{false};
    std::atomic<int> runs{0};
};

TEST_F(ImpulseFinder, KeepsItsCoefficientWhileItRuns)
{
    auto* own = new ConfigFile(*engineWithExit(30.0));
    Waiting finder(own);
    finder.start(0.8);
    KETRA_EXPECT_THROW_MESSAGE(finder.start(0.5), runtime::Exception, 0, "Thread is running");
    KETRA_EXPECT_THROW_MESSAGE(finder.restart(0.5), runtime::Exception, 0, "Thread is running");
    EXPECT_EQ(own->getPropellant().getRatio(), 0.8);
    finder.free = true;
    finder.join();
    EXPECT_EQ(finder.runs, 1);
}

TEST_F(ImpulseFinder, RunsWhatASubclassRuns)
{
    Waiting finder(new ConfigFile(*engineWithExit(30.0)));
    finder.free = true;
    finder.run(0.8);
    EXPECT_EQ(finder.runs, 1);
}

TEST(ImpulseFinderOfAFailingGas, PassesExceptionsOfOtherFamiliesOn)
{
    ketra_test::useDissociatingHydrogen();
    const auto document = ketra_test::mixtureDocument({{"H2", 1.0, 2000.0}}, 1.0);
    SpecificImpulseFinder finder(new ConfigFile(*document));
    const auto other = std::make_exception_ptr(std::runtime_error("made up"));
    ketra_test::script().failNextSolve(other);
    ketra_test::script().failNextSolve(other);
    EXPECT_THROW(finder.run(), std::runtime_error);
    ketra_test::script().clear();
    finder.run();
    EXPECT_TRUE(finder.isValid());
}

} // namespace
