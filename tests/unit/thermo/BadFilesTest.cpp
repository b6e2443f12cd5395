#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <support/CapturingLogger.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

using namespace ketra_test;
using Texts = std::vector<std::string>;

namespace {

std::string shipped(const char* name)
{
    return contentOf(std::string(KETRA_SOURCE_DIR "/resources/") + name);
}

/// Bytes of all kinds, the same in every run.
std::string noise(std::size_t size, unsigned int seed)
{
    std::mt19937 engine(seed);
    std::string bytes(size, ' ');
    for (char& c : bytes) c = static_cast<char>(engine() & 0xffu);
    return bytes;
}

class BadFiles : public testing::Test
{
protected:
    void loadSpecies(const std::string& text)
    {
        database.loadNASA9(folder.write("bad.inp", text).c_str());
    }
    /// Loads tables for water. \returns false after the failure of a file as a whole.
    bool loadTables(const std::string& text)
    {
        database.loadNASA9(folder.write("good.inp", waterRecord).c_str());
        capture.clear();
        try {
            database.loadProperties(folder.write("bad.inp", text).c_str());
            return true;
        } catch (const runtime::Exception& e) {
            EXPECT_EQ(e.getType(), 1u);
            EXPECT_EQ(capture.errors().back(), "Database: could not load properties database\n");
            return false;
        }
    }
    /// All species can be looked at, whatever state they are in.
    void touchAll()
    {
        for (unsigned int i = 0; i < database.size(); ++i) {
            const thermo::Species& s = *database[i];
            EXPECT_EQ(database.find(s.getName()), &s);
            EXPECT_LE(s.getMinimalT(), 20000.0);
            EXPECT_EQ(s.findInterval(-1.0), nullptr);
        }
    }

    TemporaryFolder folder;
    TestDatabase database;
    LogCapture capture;
};

} // namespace

TEST_F(BadFiles, AnEmptyFileHoldsNothing)
{
    loadSpecies("");
    EXPECT_EQ(database.size(), 0u);
    EXPECT_TRUE(loadTables(""));
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(BadFiles, ATruncatedSpeciesFileGivesItsWholeRecords)
{
    // Cut in the middle of a number of the 21st record.
    const std::string text = shipped("thermo.inp").substr(0, 20000);
    loadSpecies(text);
    ASSERT_GT(database.size(), 10u);
    for (unsigned int i = 0; i + 1 < database.size(); ++i)
        EXPECT_TRUE(database[i]->isCompleted()) << database[i]->getName();
    EXPECT_TRUE(capture.warnings().empty());
    touchAll();
}

TEST_F(BadFiles, ATruncatedPropertiesFileIsReported)
{
    database.loadNASA9(KETRA_SOURCE_DIR "/resources/thermo.inp");
    capture.clear();
    const std::string text = shipped("properties.inp").substr(0, 4000);
    database.loadProperties(folder.write("cut.inp", text).c_str());
    ASSERT_EQ(capture.warnings().size(), 1u);
    EXPECT_EQ(capture.warnings()[0].substr(0, 41), "Ignoring incomplete properties of species");
}

TEST_F(BadFiles, BinaryFilesAreReportedRecordByRecord)
{
    for (const unsigned int seed : {1u, 2u, 3u}) {
        SCOPED_TRACE(seed);
        capture.clear();
        loadSpecies(noise(200000, seed));
        EXPECT_FALSE(capture.warnings().empty());
        touchAll();
        EXPECT_FALSE(loadTables(noise(200000, seed)));
    }
}

TEST_F(BadFiles, BytesOfARecordMayBeAnything)
{
    // Each byte of a record in turn becomes another one; no record may break the next.
    const std::string text = std::string(argonRecord);
    std::mt19937 engine(7);
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string damaged = text;
        damaged[i] = static_cast<char>(engine() & 0xffu);
        database.clear();
        loadSpecies(damaged + "\n" + electronRecord);
        ASSERT_NE(database.find("e-"), nullptr) << i;
        touchAll();
    }
}

TEST_F(BadFiles, AnOversizedLineIsCut)
{
    const std::string line(5000000, 'a');
    loadSpecies(line + "\n\n" + electronRecord);
    EXPECT_EQ(capture.warnings()[0], "Cutting line 1 of 5000000 characters\n");
    EXPECT_EQ(database.names(), Texts{"e-"});
    loadSpecies("structure " + line + "\n\n" + argonRecord);
    EXPECT_NE(database.find("Ar"), nullptr);
    EXPECT_EQ(database.size(), 2u);
    EXPECT_FALSE(loadTables(line));
}

TEST_F(BadFiles, OversizedNumbersDropTheirRecord)
{
    std::string record = argonRecord;
    record.insert(81 + 65, std::string(2000000, '1')); // the heat of formation
    loadSpecies(record + "\n" + electronRecord);
    EXPECT_EQ(database.find("Ar"), nullptr);
    EXPECT_NE(database.find("e-"), nullptr);
    ASSERT_FALSE(capture.warnings().empty());
    EXPECT_EQ(capture.warnings()[0], "Ignoring invalid species Ar gas, atom (line 2)\n");
}

TEST_F(BadFiles, CarriageReturnsAloneAreNoLineEnds)
{
    loadSpecies(withLineEnds("! title\n" + std::string(argonRecord), "\r"));
    EXPECT_EQ(database.size(), 0u);
    EXPECT_EQ(capture.warnings(), Texts{"Ignoring species file whose lines have no line feeds\n"});
    EXPECT_TRUE(loadTables(withLineEnds(shipped("properties.inp"), "\r")));
    EXPECT_EQ(capture.warnings(),
              Texts{"Ignoring properties file whose lines have no line feeds\n"});
}

TEST_F(BadFiles, ATextOfAnotherKindHoldsNoSpecies)
{
    loadSpecies("{\n  \"species\": [\n    \"H2\",\n    \"O2\"\n  ]\n}\n");
    EXPECT_FALSE(capture.warnings().empty());
    touchAll();
    EXPECT_FALSE(loadTables("{\n  \"species\": 1\n}\n"));
}
