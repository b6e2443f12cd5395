#include <ketra/thermo/Database.h>
#include <ketra/thermo/nasa9/NASA9Loader.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <support/CapturingLogger.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

using namespace ketra_test;
using Texts = std::vector<std::string>;

namespace {

class NASA9Loading : public testing::Test
{
protected:
    void load(const std::string& text, int repeat = 1)
    {
        const std::string path = folder.write("species.inp", text);
        for (int i = 0; i < repeat; ++i) database.loadNASA9(path.c_str());
    }

    TemporaryFolder folder;
    TestDatabase database;
    LogCapture capture;
};

std::string lineOf(const char* record, std::size_t line) { return linesOf(record)[line] + "\n"; }

} // namespace

TEST_F(NASA9Loading, ReadsProductsAndReactants)
{
    load(speciesText({electronRecord, argonRecord, waterRecord}, {binderRecord}));
    EXPECT_EQ(database.names(), (Texts{"e-", "Ar", "H2O(L)", "Binder"}));
    EXPECT_FALSE(database.find("Ar")->isReactantOnly());
    EXPECT_TRUE(database.find("Binder")->isReactantOnly());
    EXPECT_TRUE(database.find("H2O(L)")->isCondensed());
    EXPECT_EQ(database.find("Ar")->getIntervalSize(), 2);
    EXPECT_EQ(database.find("e-")->getCharge(), 1.0);
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(NASA9Loading, TakesEitherLineEnd)
{
    const std::string text = speciesText({electronRecord, argonRecord}, {binderRecord});
    load(withLineEnds(text, "\r\n"));
    EXPECT_EQ(database.names(), (Texts{"e-", "Ar", "Binder"}));
    EXPECT_EQ(database.find("Ar")->getDescr(), "gas, atom");
    EXPECT_EQ(database.find("Ar")->getInterval(1)->getB(1), 4.37918011);
    EXPECT_EQ(database.find("Binder")->getDHf298_15(), -100000.0);
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(NASA9Loading, TakesTheLayoutOfThePublishedFile)
{
    // Ranges and date behind "thermo", comments, a name with a comment behind it, an eighth
    // coefficient, exponents of the letter E, a reactant of one line.
    load("! Comment\n"
         "thermo                                                               \n"
         "    200.00   1000.00   6000.00  20000.      9/09/04\n"
         "! between\n"
         "CO                Gurvich,1979 pt1 p25 pt2 p29.\n"
         " 1 tpis79 C   1.00O   1.00    0.00    0.00    0.00 0   28.0101000    -110535.196\n"
         "    200.000   1000.0007 -2.0 -1.0  0.0  1.0  2.0  3.0  4.0  0.0         8671.104\n"
         " 1.489045326E+04-2.922285939E+02 5.724527170E+00-8.176235030E-03 1.456903469E-05\n"
         "-1.087746302E-08 3.027941827E-12 0.000000000E+00-1.303131878E+04-7.859241350E+00\n"
         "END PRODUCTS\n"
         "O2(L)             Liquid. Wagman,1965.\n"
         " 0 g 6/01 O   2.00    0.00    0.00    0.00    0.00 1   31.9988000     -12979.000\n"
         "     90.170      0.0000  0.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0            0.000\n"
         "END REACTANTS\n");
    ASSERT_EQ(database.names(), (Texts{"CO", "O2(L)"}));
    const thermo::Species& co = *database.find("CO");
    EXPECT_EQ(co.getDHf298_15(), -110535.196);
    EXPECT_EQ(co.getDH298_15_0(), 8671.104);
    EXPECT_EQ(co.getInterval(0)->getB(0), -13031.31878);
    EXPECT_EQ(database.find("O2(L)")->getT0(), 90.17);
    // "Liquid" stands at the very beginning of the comment; the name says it.
    EXPECT_TRUE(database.find("O2(L)")->isLiquid());
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(NASA9Loading, ARecordEndsWithItsLastInterval)
{
    // Three intervals take 1 + 1 + 3 * 3 lines; what follows is a new record without any mark.
    std::string record = argonRecord;
    record.replace(record.find(" 2 g 3/98"), 2, " 3");
    record += lineOf(argonRecord, 5) + lineOf(argonRecord, 6) + lineOf(argonRecord, 7);
    load(record + electronRecord);
    EXPECT_EQ(database.names(), (Texts{"Ar", "e-"}));
    EXPECT_EQ(database.find("Ar")->getIntervalSize(), 3);
    EXPECT_EQ(linesOf(record).size(), 11u);
}

TEST_F(NASA9Loading, ALineOfBlanksAndTextBetweenRecordsIsANewRecord)
{
    load(std::string(argonRecord) + "    a line between\n\n" + electronRecord);
    EXPECT_EQ(capture.warnings(), Texts{"Ignoring incomplete species  a line between (line 10)\n"});
    EXPECT_EQ(database.names(), (Texts{"Ar", "e-"}));
}

TEST_F(NASA9Loading, ALineOfBlanksAndTextBeforeTheFirstRecordIsSkipped)
{
    load("    a line before\n" + std::string(argonRecord));
    EXPECT_EQ(database.names(), Texts{"Ar"});
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(NASA9Loading, CommentsStandAnywhere)
{
    std::string text;
    for (const std::string& line : linesOf(argonRecord)) text += line + "\n! a comment\n";
    load(text);
    EXPECT_EQ(database.names(), Texts{"Ar"});
    EXPECT_TRUE(database.find("Ar")->isCompleted());
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(NASA9Loading, ThermoBeginsTheProductsAgain)
{
    load("END PRODUCTS\n" + std::string(argonRecord) + "thermo\n" + electronRecord);
    EXPECT_TRUE(database.find("Ar")->isReactantOnly());
    EXPECT_FALSE(database.find("e-")->isReactantOnly());
}

TEST_F(NASA9Loading, ALaterRecordTakesThePlaceOfAnEarlierOne)
{
    std::string second = argonRecord;
    second.replace(second.find("gas, atom"), 9, "newer    ");
    load(std::string(argonRecord) + electronRecord);
    const int type = database.find("Ar")->getType();
    load(second);
    EXPECT_EQ(database.names(), (Texts{"Ar", "e-"}));
    EXPECT_EQ(database.find("Ar")->getDescr(), "newer");
    EXPECT_EQ(database.find("Ar")->getType(), type);
    EXPECT_EQ(database.find("Ar"), database[0u]);
    const Texts expected{"Replacing existing species Ar with new one Ar newer (line 1)\n"};
    EXPECT_EQ(capture.infos(), expected);
    EXPECT_EQ(capture.tagOf(expected[0]), "THERMO");
}

TEST_F(NASA9Loading, LoadingTwiceKeepsNumberAndIds)
{
    const std::string text = speciesText({electronRecord, argonRecord}, {binderRecord});
    load(text);
    std::vector<int> types;
    for (unsigned int i = 0; i < database.size(); ++i) types.push_back(database[i]->getType());
    load(text);
    ASSERT_EQ(database.size(), 3u);
    for (unsigned int i = 0; i < 3; ++i) EXPECT_EQ(database[i]->getType(), types[i]);
    EXPECT_EQ(capture.infos().size(), 3u);
    EXPECT_EQ(capture.infos()[1],
              "Replacing existing species Ar with new one Ar gas, atom (line 8)\n");
}

TEST_F(NASA9Loading, AnInvalidRecordIsDroppedAndTheRestRead)
{
    std::string bad = argonRecord;
    bad.replace(bad.find("AR 1.000"), 8, "AR 0.000");
    load(speciesText({bad.substr(0, 2 * 81), electronRecord}));
    EXPECT_EQ(capture.warnings(), Texts{"Ignoring invalid species Ar gas, atom (line 4)\n"});
    EXPECT_EQ(capture.tagOf(capture.warnings()[0]), "THERMO");
    EXPECT_EQ(database.names(), Texts{"e-"});
}

TEST_F(NASA9Loading, ABadLowerTemperatureDropsTheRecord)
{
    for (const char* T1 : {"      0.000", "  20000.001", "        inf"}) {
        SCOPED_TRACE(T1);
        capture.clear();
        std::string bad(argonRecord, 3 * 81);
        bad.replace(2 * 81, 11, T1);
        load(bad + electronRecord);
        EXPECT_EQ(capture.warnings(), Texts{"Ignoring invalid species Ar gas, atom (line 3)\n"});
        EXPECT_EQ(database.find("Ar"), nullptr);
        EXPECT_NE(database.find("e-"), nullptr);
    }
}

TEST_F(NASA9Loading, AnInvalidNewRecordTakesTheOldOneWithIt)
{
    load(argonRecord);
    std::string bad = argonRecord;
    bad.replace(bad.find("AR 1.000"), 8, "AR 0.000");
    load(bad.substr(0, 2 * 81));
    EXPECT_EQ(database.size(), 0u);
    EXPECT_EQ(database.find("Ar"), nullptr);
}

TEST_F(NASA9Loading, ABlankLineInsideARecordDropsIt)
{
    for (const char* blank : {"\n", "  \t \r\n"}) {
        capture.clear();
        load(std::string(argonRecord, 4 * 81) + blank + electronRecord);
        EXPECT_EQ(capture.warnings(), Texts{"Ignoring incomplete species Ar gas, atom (line 5)\n"});
        EXPECT_EQ(capture.tagOf(capture.warnings()[0]), "THERMO");
        EXPECT_EQ(database.find("Ar"), nullptr);
        EXPECT_NE(database.find("e-"), nullptr);
    }
}

TEST_F(NASA9Loading, BlankLinesBetweenRecordsDoNotMatter)
{
    load(std::string(argonRecord) + "\n   \n" + electronRecord + "\n");
    EXPECT_EQ(database.names(), (Texts{"Ar", "e-"}));
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(NASA9Loading, AnInterruptedLastRecordStaysAsItIs)
{
    for (std::size_t lines = 1; lines <= 8; ++lines) {
        SCOPED_TRACE(lines);
        database.clear();
        load(std::string(argonRecord, lines * 81));
        ASSERT_EQ(database.names(), Texts{"Ar"});
        EXPECT_EQ(database.find("Ar")->isCompleted(), lines == 8);
        EXPECT_EQ(database.find("Ar")->getMinimalT(), lines < 3 ? 0.0 : 200.0);
    }
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(NASA9Loading, ASpeciesWithoutAKnownElementIsReported)
{
    std::string record = argonRecord;
    record.replace(record.find("AR 1.000"), 8, "XX 1.000");
    load(record);
    EXPECT_EQ(capture.warnings(), Texts{"Species Ar gas, atom has no known element and takes no "
                                        "part in reactions (line 2)\n"});
    ASSERT_NE(database.find("Ar"), nullptr);
    EXPECT_EQ(database.find("Ar")->size(), 0);
    EXPECT_TRUE(database.find("Ar")->isCompleted());
}

TEST_F(NASA9Loading, SpeciesBearTheSourceOfTheirFile)
{
    load(argonRecord);
    const int source = database.find("Ar")->getSourceId();
    EXPECT_EQ(source, 0);
    EXPECT_EQ(database.getSource(source), folder.path("species.inp"));
    EXPECT_FALSE(database.find("Ar")->isModified());
}

namespace {

struct RemovingLoader : thermo::nasa9::NASA9Loader {
    using NASA9Loader::NASA9Loader;
    using NASA9Loader::removeSpecies;
};

} // namespace

TEST(NASA9Loader, RemovesIncompleteSpeciesOnly)
{
    thermo::SpeciesMap map;
    thermo::SpeciesList list;
    const auto add = [&](const char* line, bool complete) {
        list.push_back(std::make_unique<thermo::nasa9::NASA9Species>(line, false, complete));
        map[list.back()->getName()] = list.back().get();
        return list.back().get();
    };
    thermo::Species* const complete = add("A x", true);
    thermo::Species* const incomplete = add("B x", false);
    RemovingLoader loader(&map, &list);
    loader.removeSpecies(nullptr);
    loader.removeSpecies(complete);
    EXPECT_EQ(list.size(), 2u);
    loader.removeSpecies(incomplete);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].get(), complete);
    EXPECT_EQ(map.count("B"), 0u);
    EXPECT_EQ(map.count("A"), 1u);
}
