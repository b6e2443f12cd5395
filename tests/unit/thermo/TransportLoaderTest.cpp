#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/properties/TransportProperties.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/TransportData.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>
#include <string>

using namespace ketra_test;
using Texts = std::vector<std::string>;

namespace {

const std::string title = "transport property coefficients\n";
const char* const failure = "Database: could not load transport properties database\n";

/// A line on which the quantity is constant.
std::string constant(char quantity, double T1, double T2, double value)
{
    return transportLine(quantity, T1, T2, 0.0, 0.0, 0.0, std::log(value)) + "\n";
}

std::string head(const std::string& first, const std::string& second, int V, int C)
{
    return transportHead(first, second, V, C) + "\n";
}

/// Two viscosities and two conductivities of argon.
std::string argonBlock()
{
    return head("Ar", "", 2, 2) + constant('V', 200.0, 1000.0, 300.0) +
           constant('V', 1000.0, 5000.0, 800.0) + constant('C', 200.0, 1000.0, 250.0) +
           constant('C', 1000.0, 5000.0, 600.0);
}

class TransportLoading : public testing::Test
{
protected:
    TransportLoading()
    {
        database.loadNASA9(
            folder.write("a.inp", speciesText({argonRecord, electronRecord})).c_str());
        argon = database.findForUpdate("Ar");
        electron = database.findForUpdate("e-");
        capture.clear();
    }
    void load(const std::string& text)
    {
        database.loadTransportProperties(folder.write("trans.inp", text).c_str());
    }
    /// The load stops with the message of a bad file.
    void expectFailure(const std::string& text)
    {
        capture.clear();
        KETRA_EXPECT_THROW_CODE(load(text), runtime::Exception, 1);
        ASSERT_FALSE(capture.errors().empty());
        EXPECT_EQ(capture.errors().back(), failure);
        EXPECT_EQ(capture.tagOf(failure), "ROOT");
    }
    /// Argon's data are those of its block.
    void expectArgon()
    {
        EXPECT_NEAR(argon->getViscosity(200.0), 300e-7, 1e-12);
        EXPECT_NEAR(argon->getViscosity(1000.0), 300e-7, 1e-12);
        EXPECT_NEAR(argon->getViscosity(1000.1), 800e-7, 1e-12);
        EXPECT_NEAR(argon->getConductivity(999.9), 0.25, 1e-8);
        EXPECT_NEAR(argon->getConductivity(5000.0), 0.6, 1e-8);
    }

    LogCapture capture;
    TemporaryFolder folder;
    TestDatabase database;
    thermo::Species* argon;
    thermo::Species* electron;
};

} // namespace

TEST_F(TransportLoading, ABlockCoversTheWholeRange)
{
    load(title + argonBlock() + "end\n");
    expectArgon();
    EXPECT_TRUE(capture.lines().empty());
    EXPECT_FALSE(electron->isTransportPropertiesAvailable());
}

TEST_F(TransportLoading, ABlockOfOneAndNoneIsOneViscosity)
{
    load(title + head("Ar", "", 1, 0) + constant('V', 200.0, 1000.0, 300.0) + argonBlock() +
         head("e-", "", 0, 1) + constant('V', 200.0, 1000.0, 20.0));
    expectArgon(); // the second block of a name replaces the first
    EXPECT_EQ(electron->getViscosity(500.0), 0.0);
    EXPECT_NEAR(electron->getConductivity(500.0), 0.02, 1e-9)
        << "the place decides, not the letter";
}

TEST_F(TransportLoading, TitlesBlankLinesAndCommentsArePassedOver)
{
    std::string text = title + "\n   \n! remark\n";
    for (const std::string& line : linesOf(argonBlock())) text += line + "\n!V x\n\n  \t\n" + title;
    load(text);
    expectArgon();
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(TransportLoading, NothingBehindTheEndIsRead)
{
    load(title + argonBlock() + "end of the data\n" + head("e-", "", 1, 0) + "nonsense\n");
    expectArgon();
    EXPECT_FALSE(electron->isTransportPropertiesAvailable());
}

TEST_F(TransportLoading, AnUnknownSpeciesIsPassedOverWithItsLines)
{
    load(title + head("CCLF3", "", 1, 1) + constant('V', 300.0, 1000.0, 1.0) + "any line\n" +
         argonBlock());
    expectArgon();
    EXPECT_EQ(capture.warnings(),
              Texts{"Could not find species CCLF3 defined in properties file\n"});
    EXPECT_EQ(capture.tagOf(capture.warnings()[0]), "THERMO");
}

TEST_F(TransportLoading, AnUnknownSpeciesWithoutLinesLeavesTheNextBlockAlone)
{
    load(title + head("CCLF3", "", 0, 0) + argonBlock());
    expectArgon();
    EXPECT_EQ(capture.warnings().size(), 1u);
}

TEST_F(TransportLoading, APairGoesToTheFirstSpecies)
{
    load(title + head("Ar", "e-", 1, 0) + constant('V', 200.0, 1000.0, 500.0) +
         head("e-", "nothing", 1, 1) + constant('V', 200.0, 1000.0, 5.0) +
         constant('C', 200.0, 1000.0, 6.0));
    EXPECT_NEAR(argon->getViscosity(electron, 500.0), 500e-7, 1e-12);
    EXPECT_FALSE(argon->isTransportPropertiesAvailable());
    EXPECT_TRUE(electron->isTransportIPropertiesAvailable());
    EXPECT_TRUE(capture.lines().empty()) << "the second name is not looked up";
}

TEST_F(TransportLoading, APairOfAnUnknownFirstSpeciesIsPassedOver)
{
    load(title + head("nothing", "Ar", 1, 0) + constant('V', 200.0, 1000.0, 500.0) + argonBlock());
    expectArgon();
    EXPECT_EQ(capture.warnings(),
              Texts{"Could not find species nothing defined in properties file\n"});
}

TEST_F(TransportLoading, AHeadWithoutCountsIsABlockWithoutData)
{
    for (const std::string& line :
         {head("Ar", "", 0, 0), std::string("Ar\n"), std::string("Ar                  \n"),
          std::string("Ar                                V C \n"),
          std::string("Ar                                VxC-\n")}) {
        SCOPED_TRACE(line);
        load(title + line + head("e-", "", 1, 0) + constant('V', 200.0, 1000.0, 5.0));
        EXPECT_FALSE(argon->isTransportPropertiesAvailable());
        EXPECT_NEAR(electron->getViscosity(500.0), 5e-7, 1e-14);
        electron->setTransportProperties(nullptr);
    }
    load(title + argonBlock() + head("Ar", "", 0, 0));
    expectArgon(); // such a block takes nothing away
}

TEST_F(TransportLoading, LettersOfTheHeadDoNotMatter)
{
    std::string text = title + argonBlock();
    text.replace(text.find("V2C2"), 4, "a2b2");
    load(text);
    expectArgon();
}

TEST_F(TransportLoading, LineEndsMayBeThoseOfDos)
{
    load(withLineEnds(title + "\n" + argonBlock() + "end\n" + "nonsense\n", "\r\n"));
    expectArgon();
    load(withLineEnds(title + head("Ar", "", 1, 0) +
                          transportLine('V', 200.0, 1000.0, 0.0, 0.0, 0.0, 1.0).substr(0, 30) +
                          "\nend\n",
                      "\r\n"));
    EXPECT_NEAR(argon->getViscosity(500.0), 1e-7, 1e-14) << "ln f = 0";
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(TransportLoading, BareCarriageReturnsAreNoLineEnds)
{
    load(withLineEnds(title + argonBlock(), "\r"));
    EXPECT_EQ(capture.warnings(),
              Texts{"Ignoring transport file whose lines have no line feeds\n"});
    EXPECT_FALSE(argon->isTransportPropertiesAvailable());
}

TEST_F(TransportLoading, AnUnfinishedBlockIsDropped)
{
    load(title + head("e-", "", 1, 0) + constant('V', 200.0, 1000.0, 5.0) + head("Ar", "", 1, 1) +
         constant('V', 200.0, 1000.0, 300.0) + "end\n");
    EXPECT_TRUE(electron->isTransportPropertiesAvailable());
    EXPECT_FALSE(argon->isTransportPropertiesAvailable());
    EXPECT_EQ(capture.warnings(),
              Texts{"Ignoring incomplete transport properties of species Ar (line 6)\n"});
}

TEST_F(TransportLoading, ABadLineStopsTheFile)
{
    expectFailure(title + argonBlock() + head("e-", "", 1, 0) + constant('V', 0.0, 1000.0, 5.0) +
                  argonBlock());
    expectArgon(); // what stood before it holds
    EXPECT_FALSE(electron->isTransportPropertiesAvailable());
    expectFailure(title + head("Ar", "", 1, 0) + constant('V', 20000.1, 30000.0, 5.0));
    expectFailure(title + head("Ar", "", 1, 0) + "short\n");
    expectFailure(title + head("Ar", "", 2, 0) + constant('V', 200.0, 1000.0, 5.0) +
                  head("e-", "", 1, 0));
    std::string infinite = argonBlock();
    infinite.replace(infinite.find(" V    200") + 20, 15, "          1E999");
    expectFailure(title + infinite);
}

TEST_F(TransportLoading, AFileThatDoesNotOpenIsNamed)
{
    for (const char* path : {"/nowhere/trans.inp", "/"}) {
        capture.clear();
        KETRA_EXPECT_THROW_CODE(database.loadTransportProperties(path), runtime::Exception, 0);
        EXPECT_EQ(capture.errors(),
                  Texts{std::string("Database: could not load transport properties database ") +
                        path + "\n"});
        EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
    }
    KETRA_EXPECT_THROW_CODE(database.loadTransportProperties(nullptr), runtime::Exception, 0);
}

TEST_F(TransportLoading, AStreamCanBeGiven)
{
    std::ifstream stream(folder.write("trans.inp", title + argonBlock()));
    database.loadTransportProperties(stream, 0);
    expectArgon();
}

TEST_F(TransportLoading, LeavesTheSourcesOfTheSpeciesAlone)
{
    load(title + argonBlock());
    EXPECT_EQ(argon->getSourceId(), 0);
    EXPECT_EQ(argon->getTableSourceId(), -1);
    EXPECT_FALSE(argon->isModified());
    EXPECT_FALSE(argon->isTableModified());
    EXPECT_STREQ(database.getSource(1), folder.path("trans.inp").c_str());
    EXPECT_FALSE(database.isNASA9Modified(1));
    EXPECT_FALSE(database.isPropertiesModified(1));
}

// A transport file counts among the files of tables, and a reload takes it for one.
TEST_F(TransportLoading, IsNotRepeatedByAReload)
{
    load(title + argonBlock());
    capture.clear();
    database.reload();
    EXPECT_FALSE(database.find("Ar")->isTransportPropertiesAvailable());
    EXPECT_EQ(capture.errors(), (Texts{"Database: could not load properties database\n",
                                       "Database: could not reload database file " +
                                           folder.path("trans.inp") + "\n"}));
}

TEST_F(TransportLoading, BothFormsOfExponentsReadToTheSameValues)
{
    std::string shipped = contentOf(KETRA_SOURCE_DIR "/resources/trans.inp");
    database.loadNASA9(KETRA_SOURCE_DIR "/resources/thermo.inp");
    capture.clear();
    load(shipped);
    EXPECT_TRUE(capture.lines().empty());
    TestDatabase other;
    other.loadNASA9(KETRA_SOURCE_DIR "/resources/thermo.inp");
    std::size_t blanks = 0;
    for (std::size_t at = 0; (at = shipped.find("E+", at)) != std::string::npos; ++blanks)
        shipped[at + 1] = ' ';
    EXPECT_EQ(blanks, 1424u);
    other.loadTransportProperties(folder.write("blanks.inp", shipped).c_str());

    unsigned int gases = 0, values = 0;
    for (unsigned int i = 0; i < database.size(); ++i) {
        const thermo::Species& one = *database[i];
        const thermo::Species& two = *other.find(one.getName());
        ASSERT_EQ(one.isTransportPropertiesAvailable(), two.isTransportPropertiesAvailable());
        gases += one.isTransportPropertiesAvailable();
        for (double T = 200.0; T <= 15000.0; T += 200.0) {
            EXPECT_EQ(one.findViscosity(T), two.findViscosity(T)) << one.getName() << ' ' << T;
            EXPECT_EQ(one.findConductivity(T), two.findConductivity(T)) << one.getName();
            values += one.findViscosity(T) > 0.0;
        }
    }
    EXPECT_EQ(gases, 61u);
    EXPECT_GT(values, 61u * 15u);
}

TEST_F(TransportLoading, AnyBytesLoadOrFail)
{
    const std::string good = title + argonBlock() + "end\n";
    std::mt19937 engine(6);
    int loaded = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string text = good;
        for (unsigned int k = engine() % 8; k > 0; --k)
            text[engine() % text.size()] = static_cast<char>(engine() & 0xffu);
        text.resize(engine() % (text.size() + 1));
        capture.clear();
        try {
            load(text);
            ++loaded;
        } catch (const runtime::Exception& e) {
            EXPECT_EQ(e.getType(), 1u);
            EXPECT_EQ(capture.errors().back(), failure);
        }
        argon->findViscosity(500.0);
    }
    EXPECT_GT(loaded, 100);
    EXPECT_LT(loaded, 1999);
}
