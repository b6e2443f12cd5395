#include <validation/published/Atmosphere.h>
#include <validation/published/DeliveredEngines.h>
#include <validation/published/Flames.h>
#include <validation/published/Gases.h>
#include <validation/published/StandardStates.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>
#include <string>
#include <vector>

// Figures of the literature: standard states, gases, the standard atmosphere, engines as built. The
// tables of docs/verification.md show the same figures.

namespace ketra_test {

namespace {

void expectWithinLimits(const std::vector<PublishedFigure>& figures, std::size_t least)
{
    EXPECT_GE(figures.size(), least);
    for (const PublishedFigure& figure : figures) {
        SCOPED_TRACE(figure.subject + ": " + figure.quantity + ' ' + figure.text + " [" +
                     figure.source + "], found " + std::to_string(figure.found));
        if (figure.reason.empty())
            EXPECT_LE(std::abs(figure.error()), figure.limit);
        else
            EXPECT_GT(std::abs(figure.error()), figure.limit) << "is within its limit now";
    }
}

TEST(KeyValues, AreWithinTheirUncertainties) { expectWithinLimits(keyValues(), 100); }

TEST(StandardStates, AreWithinTheirLimits) { expectWithinLimits(standardStates(), 200); }

TEST(PureGases, AgreeWithMeasurements) { expectWithinLimits(gasFigures(), 100); }

TEST(Flames, AreAsHotAsPublished) { expectWithinLimits(flameFigures(), 10); }

TEST(Flames, AreCertified)
{
    for (const auto& row : referenceRows("flames.csv")) {
        const auto certificate = solvedFlame(row.at(0), numberOf(row.at(1)))->certificate();
        EXPECT_EQ(certificate.grade, verification::Grade::A)
            << row[0] << ": " << certificate.reason;
    }
}

TEST(Atmosphere, AgreesWithItsTables) { expectWithinLimits(atmosphereFigures(), 100); }

TEST(DeliveredImpulses, AreNearTheCorrectedOnes) { expectWithinLimits(engineFigures(), 8); }

// The published table itself: a figure that was read wrong breaks -(G - H298)/T = S - (H - H298)/T.
TEST(StandardStates, AreConsistentAsPublished)
{
    unsigned rows = 0;
    for (const auto& row : referenceRows("standard-states.csv")) {
        if (row.at(3).empty() || row.at(4).empty() || row.at(5).empty()) continue;
        SCOPED_TRACE(row.at(0) + ' ' + row.at(1));
        ++rows;
        const double S = numberOf(row[3]);
        const double H = 1000.0 * numberOf(row[4]);
        EXPECT_NEAR(S - H / numberOf(row[1]), numberOf(row[5]), 2.1e-3); // half a digit of each
    }
    EXPECT_GT(rows, 30u);
}

TEST(StandardStates, AreThoseOfAtLeastTwentySpecies)
{
    std::set<std::string> species;
    for (const auto& row : referenceRows("standard-states.csv")) species.insert(row.at(0));
    EXPECT_GE(species.size(), 20u);
}

class DeliveredEngines : public testing::TestWithParam<DeliveredEngine>
{
};

// No engine delivers what the ideal one does, and none that was built well loses more than a tenth.
TEST_P(DeliveredEngines, DeliverLessThanTheIdealImpulse)
{
    const FoundImpulse found = impulseOf(GetParam());
    const double ratio = GetParam().delivered() / found.ideal;
    EXPECT_GT(ratio, 0.90);
    EXPECT_LT(ratio, 0.985);
    EXPECT_LT(found.corrected, found.ideal);
    EXPECT_NE(found.grade, verification::Grade::F);
}

std::string engineName(const testing::TestParamInfo<DeliveredEngine>& info)
{
    std::string name = info.param.name;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(AsBuilt, DeliveredEngines, testing::ValuesIn(deliveredEngines()),
                         engineName);

} // namespace

} // namespace ketra_test
