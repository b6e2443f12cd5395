#include <ketra/api/ketra.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include "TemporaryFolder.h"
#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <support/MadeUpSpecies.h>
#include <support/Reactants.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using ketra_test::constantCp;
using ketra_test::Record;
using ketra_test::SpeciesFile;
using thermo::Database;

Record gas(const std::string& name, const char* element)
{
    return {name, {{element, 2.0}}, 2.0, 0, 0.0, {constantCp(200.0, 6000.0, 3.5, 0.0, 10.0)}};
}

class DatabaseFunctions : public testing::Test
{
protected:
    void TearDown() override { ketra_test::shippedSpeciesLoaded() = false; }
};

TEST_F(DatabaseFunctions, LoadSpeciesAndTheAtomsTheyNeed)
{
    const SpeciesFile file({gas("H2", "H")});
    loadThermodynamicsDatabase(file.path.c_str(), true);
    std::string symbol = "H";
    EXPECT_TRUE(thermo::ChemicalElement::isValid(symbol));
    ASSERT_EQ(Database::getInstance()->size(), 1U);
    ASSERT_NE(Database::getInstance()->find("H2"), nullptr);
    EXPECT_EQ(Database::getInstance()->find("H2")->size(), 1);
}

TEST_F(DatabaseFunctions, KeepOrDropTheSpeciesOfEarlierFiles)
{
    {
        const SpeciesFile file({gas("H2", "H")});
        loadThermodynamicsDatabase(file.path.c_str(), true);
    }
    const SpeciesFile other({gas("O2", "O")});
    loadThermodynamicsDatabase(other.path.c_str(), false);
    EXPECT_EQ(Database::getInstance()->size(), 2U);
    loadThermodynamicsDatabase(other.path.c_str(), true);
    EXPECT_EQ(Database::getInstance()->size(), 1U);
    EXPECT_EQ(Database::getInstance()->find("H2"), nullptr);
}

TEST_F(DatabaseFunctions, SayWhichFileCannotBeOpened)
{
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_CODE(loadThermodynamicsDatabase("/nowhere/thermo.inp", false),
                            runtime::Exception, 0);
    const std::string message =
        "Database: could not load thermodynamic database /nowhere/thermo.inp\n";
    ASSERT_FALSE(capture.errors().empty());
    EXPECT_EQ(capture.errors()[0], message);
    capture.clear();
    KETRA_EXPECT_THROW_CODE(loadPropertiesDatabase("/nowhere/properties.inp"), runtime::Exception,
                            0);
    ASSERT_FALSE(capture.errors().empty());
    EXPECT_NE(capture.errors()[0].find("/nowhere/properties.inp"), std::string::npos);
}

TEST_F(DatabaseFunctions, LoadTablesIntoTheSpeciesLoadedBefore)
{
    loadThermodynamicsDatabase(KETRA_SOURCE_DIR "/resources/thermo.inp", true);
    const thermo::Species* water = Database::getInstance()->find("H2O(L)");
    ASSERT_NE(water, nullptr);
    EXPECT_FALSE(water->hasRhoTable());
    loadPropertiesDatabase(KETRA_SOURCE_DIR "/resources/properties.inp");
    EXPECT_TRUE(water->hasRhoTable());
}

TEST_F(DatabaseFunctions, LoadTransportPropertiesIntoTheSpeciesLoadedBefore)
{
    ketra_test::LogCapture capture;
    loadThermodynamicsDatabase(KETRA_SOURCE_DIR "/resources/thermo.inp", true);
    const thermo::Species* nitrogen = Database::getInstance()->find("N2");
    ASSERT_NE(nitrogen, nullptr);
    EXPECT_FALSE(nitrogen->isTransportPropertiesAvailable());
    loadTransportPropertiesDatabase(KETRA_SOURCE_DIR "/resources/trans.inp");
    EXPECT_TRUE(nitrogen->isTransportPropertiesAvailable());
    EXPECT_TRUE(capture.lines().empty()) << "the shipped file names no unknown species";
    KETRA_EXPECT_THROW_CODE(loadTransportPropertiesDatabase("/nowhere/trans.inp"),
                            runtime::Exception, 0);
    EXPECT_EQ(capture.errors(),
              std::vector<std::string>{
                  "Database: could not load transport properties database /nowhere/trans.inp\n"});
}

TEST_F(DatabaseFunctions, SetTheFolderOfTheUsersFiles)
{
    const ketra_test::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "resources");
    const SpeciesFile file({gas("H2", "H")});
    loadThermodynamicsDatabase(file.path.c_str(), true);
    setDatabaseUsrLocation(folder.path().c_str());
    auto species = ketra_test::makeSpecies(gas("X2", "H"), 0);
    species->resetIds();
    Database::getInstance()->addNewSpecies(species.get());
    species.release();
    Database::saveDatabase(-1, true);
    setDatabaseUsrLocation("");
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "resources" / "usr_thermo.inp"));
    loadThermodynamicsDatabase(file.path.c_str(), true);
}

} // namespace
