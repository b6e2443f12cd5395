#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

using namespace ketra_test;
using thermo::Database;
using thermo::Species;
using thermo::nasa9::NASA9Species;
using Texts = std::vector<std::string>;

namespace {

/// A new species of the caller's.
std::unique_ptr<Species> newSpecies(const char* line)
{
    return std::make_unique<NASA9Species>(line, /*reactantOnly=*/true, /*withPolynomial=*/true);
}

/// The singleton, emptied before and after, in a folder of the test's own.
class Singleton : public testing::Test
{
protected:
    Singleton() : workingFolder(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder.path(""));
        empty();
    }
    ~Singleton() override
    {
        empty();
        std::filesystem::current_path(workingFolder);
    }
    void empty()
    {
        Database::setUsrLocation("");
        Database::loadDatabase(folder.write("empty.inp", "").c_str(), /*clear=*/true);
        capture.clear();
    }
    Database& database() { return *Database::getInstance(); }

    std::filesystem::path workingFolder;
    TemporaryFolder folder;
    LogCapture capture;
};

class OwnDatabase : public testing::Test
{
protected:
    TemporaryFolder folder;
    TestDatabase database;
    LogCapture capture;
};

} // namespace

TEST(Database, FirstIdOfAProcessIsOne)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // runs this statement in a new process
    EXPECT_EXIT(std::exit(Database::getNextSpeciesId() == 1 ? 0 : 1), testing::ExitedWithCode(0),
                "");
    const int id = Database::getNextSpeciesId();
    EXPECT_EQ(Database::getNextSpeciesId(), id + 1);
}

TEST(Database, SingletonIsThereAndCannotBeRemoved)
{
    Database* const instance = Database::getInstance();
    ASSERT_NE(instance, nullptr);
    Database::remove(instance);
    Database::remove(nullptr);
    EXPECT_EQ(Database::getInstance(), instance);
    EXPECT_EQ(instance->find("nothing of that name"), nullptr);
}

TEST_F(OwnDatabase, IsEmptyAtFirst)
{
    EXPECT_EQ(database.size(), 0u);
    EXPECT_EQ(database.find("Ar"), nullptr);
    EXPECT_EQ(database["Ar"], nullptr);
    EXPECT_EQ(database.findForUpdate("Ar"), nullptr);
}

TEST_F(OwnDatabase, NamesAreComparedExactly)
{
    auto added = newSpecies("O2 singlet oxygen");
    Species* const species = added.get();
    database.addNewSpecies(added.release());
    EXPECT_EQ(database.find("O2 singlet"), species);
    EXPECT_EQ(database.findForUpdate("O2 singlet"), species);
    EXPECT_EQ(database[std::string("O2 singlet")], species);
    EXPECT_EQ(database.find("o2 singlet"), nullptr);
    EXPECT_EQ(database.find("O2"), nullptr);
    EXPECT_EQ(database.find("O2 singlet "), nullptr);
}

TEST_F(OwnDatabase, ClearGivesNewHigherIdsAfterwards)
{
    const std::string path = folder.write("a.inp", speciesText({argonRecord}));
    database.loadNASA9(path.c_str());
    const int first = database.find("Ar")->getType();
    database.clear();
    EXPECT_EQ(database.size(), 0u);
    EXPECT_EQ(database.getSource(0), nullptr);
    database.loadNASA9(path.c_str());
    EXPECT_GT(database.find("Ar")->getType(), first);
}

TEST_F(OwnDatabase, SourcesKeepTheirIds)
{
    EXPECT_EQ(database.addSource("a", 0), 0);
    EXPECT_EQ(database.addSource("b", 1), 1);
    EXPECT_EQ(database.addSource("a", 0), 0);
    EXPECT_STREQ(database.getSource(1), "b");
    EXPECT_EQ(database.getSource(2), nullptr);
    EXPECT_EQ(database.getSource(-1), nullptr);
}

TEST_F(OwnDatabase, AFileThatCannotBeOpenedIsAnError)
{
    KETRA_EXPECT_THROW_MESSAGE(database.loadNASA9("no/such.inp"), runtime::Exception, 0, "");
    EXPECT_EQ(capture.errors(),
              Texts{"Database: could not load thermodynamic database no/such.inp\n"});
    EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
    capture.clear();
    KETRA_EXPECT_THROW_MESSAGE(database.loadProperties("no/such.inp"), runtime::Exception, 0, "");
    EXPECT_EQ(capture.errors(),
              Texts{"Database: could not load properties database no/such.inp\n"});
    EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
    EXPECT_EQ(database.getSource(0), nullptr);
}

TEST_F(OwnDatabase, AFolderIsNoFile)
{
    const std::string path = folder.path("");
    KETRA_EXPECT_THROW_CODE(database.loadNASA9(path.c_str()), runtime::Exception, 0);
    KETRA_EXPECT_THROW_CODE(database.loadProperties(path.c_str()), runtime::Exception, 0);
}

namespace {

/// A stream whose device fails.
class FailingStream : public std::ifstream
{
public:
    FailingStream() { std::ios::rdbuf(&buffer); }

private:
    struct Buffer : std::filebuf {
        std::streamsize xsgetn(char*, std::streamsize) override { throw std::ios::failure("disk"); }
    };
    Buffer buffer;
};

} // namespace

TEST_F(OwnDatabase, ALoadThatFailsAsAWholeIsAnError)
{
    FailingStream stream;
    KETRA_EXPECT_THROW_MESSAGE(database.loadNASA9(stream, 0), runtime::Exception, 1, "");
    EXPECT_EQ(capture.errors(), Texts{"Database: could not load thermodynamic database\n"});
    EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
    // The lock is free again: another thread gets it.
    std::thread([&] { database.find("Ar"); }).join();
}

TEST_F(OwnDatabase, ANewSpeciesGoesToTheUsersFiles)
{
    auto species = newSpecies("X made up");
    Species* const x = species.get();
    database.addNewSpecies(species.release());
    EXPECT_GT(x->getType(), 0);
    EXPECT_STREQ(database.getSource(x->getSourceId()), "resources/usr_thermo.inp");
    EXPECT_STREQ(database.getSource(x->getTableSourceId()), "resources/usr_properties.inp");
    EXPECT_TRUE(database.isNASA9Modified(x->getSourceId()));
    EXPECT_TRUE(database.isPropertiesModified(x->getTableSourceId()));
    EXPECT_FALSE(database.isNASA9Modified(x->getTableSourceId())); // a table source never is
    EXPECT_FALSE(database.isPropertiesModified(x->getSourceId()));
    EXPECT_TRUE(database.isUserDefinedSpecies(x));
    EXPECT_EQ(database.find("X"), x);
}

TEST_F(Singleton, UserLocationStandsInFrontOfThePath)
{
    for (const auto& [location, path] : {std::pair{"dir", "dir/resources/usr_thermo.inp"},
                                         std::pair{"dir/", "dir/resources/usr_thermo.inp"},
                                         std::pair{"", "resources/usr_thermo.inp"}}) {
        SCOPED_TRACE(location);
        Database::setUsrLocation(location);
        auto species = newSpecies("X made up");
        Species* const x = species.get();
        database().addNewSpecies(species.release());
        EXPECT_TRUE(database().isUserDefinedSpecies(x));
        // The path shows in the message of the saver.
        capture.clear();
        Database::saveDatabase("/no/such/folder/x.inp", 2); // neither species nor tables: nothing
        EXPECT_TRUE(capture.lines().empty());
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        Database::saveDatabase(x->getSourceId(), true);
        EXPECT_EQ(capture.infos(),
                  Texts{"Database: updating thermodynamic database " + std::string(path) + "\n"});
        EXPECT_TRUE(std::filesystem::exists(path));
        database().remove("X", true);
    }
}

TEST_F(OwnDatabase, ASpeciesThatIsInADatabaseIsLeftAlone)
{
    auto species = newSpecies("X made up");
    Species* const x = species.get();
    database.addNewSpecies(species.release());
    const int type = x->getType();
    database.addNewSpecies(x);
    EXPECT_EQ(database.size(), 1u);
    EXPECT_EQ(x->getType(), type);
}

TEST_F(OwnDatabase, ANewSpeciesTakesThePlaceOfItsNamesake)
{
    database.addNewSpecies(newSpecies("X old").release());
    database.addNewSpecies(newSpecies("Y other").release());
    const int type = database.find("X")->getType();
    database.addNewSpecies(newSpecies("X new").release());
    ASSERT_EQ(database.names(), (Texts{"X", "Y"}));
    EXPECT_EQ(database.find("X")->getDescr(), "new");
    EXPECT_EQ(database.find("X")->getType(), type);
    EXPECT_EQ(database.find("X"), database[0u]);
    EXPECT_TRUE(capture.lines().empty()); // only the singleton reports this
}

TEST_F(Singleton, ReportsReplacingAndRemoving)
{
    database().addNewSpecies(newSpecies("X old").release());
    database().addNewSpecies(newSpecies("X new").release());
    const Texts replacing{"Replacing existing species X with new one\n"};
    EXPECT_EQ(capture.infos(), replacing);
    EXPECT_EQ(capture.tagOf(replacing[0]), "THERMO");
    capture.clear();
    database().remove("X", true);
    const Texts removing{"Removing species X\n"};
    EXPECT_EQ(capture.infos(), removing);
    EXPECT_EQ(capture.tagOf(removing[0]), "THERMO");
}

TEST_F(OwnDatabase, ASpeciesOfAnotherIdIsRefused)
{
    database.addNewSpecies(newSpecies("X old").release());
    const auto other = newSpecies("X new");
    other->setType(database.find("X")->getType() + 1000);
    KETRA_EXPECT_THROW_MESSAGE(database.addNewSpecies(other.get()), thermo::Exception, 4,
                               "Unknown species");
    EXPECT_EQ(database.find("X")->getDescr(), "old");
    // A new name with an id of its own: refused as well, and not in the tables.
    const auto stranger = newSpecies("Z new");
    stranger->setType(7);
    KETRA_EXPECT_THROW_CODE(database.addNewSpecies(stranger.get()), thermo::Exception, 4);
    EXPECT_EQ(database.names(), Texts{"X"});
    EXPECT_EQ(database.find("Z"), nullptr);
}

TEST_F(OwnDatabase, TheVerySameSpeciesStays)
{
    auto species = newSpecies("X made up");
    Species* const x = species.get();
    database.addNewSpecies(species.release());
    x->resetSourceIds(); // so that it is looked at again
    database.addNewSpecies(x);
    EXPECT_EQ(database.size(), 1u);
    EXPECT_EQ(database.find("X"), x);
    EXPECT_EQ(x->getSourceId(), 0);
}

TEST_F(OwnDatabase, RemovingGivesTheSpeciesBackWithoutIds)
{
    database.loadNASA9(folder.write("a.inp", speciesText({argonRecord, electronRecord})).c_str());
    const int source = database.find("Ar")->getSourceId();
    EXPECT_FALSE(database.isNASA9Modified(source));
    const std::unique_ptr<Species> argon(database.remove("Ar", false));
    ASSERT_NE(argon, nullptr);
    EXPECT_EQ(argon->getType(), -1);
    EXPECT_EQ(argon->getSourceId(), -1);
    EXPECT_EQ(database.find("Ar"), nullptr);
    EXPECT_EQ(database.names(), Texts{"e-"});
    EXPECT_TRUE(database.isNASA9Modified(source));
    EXPECT_EQ(database.remove("e-", true), nullptr);
    EXPECT_EQ(database.size(), 0u);
    EXPECT_EQ(database.remove("e-", false), nullptr);
}

TEST_F(OwnDatabase, ASourceIsModifiedWithItsSpecies)
{
    database.loadNASA9(folder.write("a.inp", speciesText({argonRecord})).c_str());
    database.loadNASA9(folder.write("b.inp", speciesText({electronRecord})).c_str());
    EXPECT_FALSE(database.isNASA9Modified(0));
    database.findForUpdate("e-")->setDHf298_15(1.0);
    EXPECT_FALSE(database.isNASA9Modified(0));
    EXPECT_TRUE(database.isNASA9Modified(1));
    EXPECT_FALSE(database.isPropertiesModified(1));
    EXPECT_FALSE(database.isNASA9Modified(17));
    EXPECT_FALSE(database.isNASA9Modified(-1));
}

TEST_F(OwnDatabase, TheUsersRecordOverridesTheStandardOne)
{
    std::string users = argonRecord;
    users.replace(users.find("gas, atom"), 9, "the user's");
    database.loadNASA9(
        folder.write("thermo.inp", speciesText({argonRecord, electronRecord})).c_str());
    const int type = database.find("Ar")->getType();
    database.loadNASA9(folder.write("resources/usr_thermo.inp", users).c_str());
    EXPECT_EQ(database.names(), (Texts{"Ar", "e-"}));
    EXPECT_EQ(database.find("Ar")->getSourceId(), 1);
    EXPECT_EQ(database.find("Ar")->getType(), type);
    EXPECT_TRUE(database.isUserDefinedSpecies(database.find("Ar")));
    EXPECT_FALSE(database.isUserDefinedSpecies(database.find("e-")));
}

TEST_F(OwnDatabase, PreloadedDatabaseStandsAlone)
{
    const std::string path = folder.write("a.inp", speciesText({argonRecord}));
    Database* const loaded = Database::preloadDatabase(path.c_str());
    EXPECT_EQ(loaded->size(), 1u);
    EXPECT_NE(loaded, Database::getInstance());
    Database::remove(loaded);
    KETRA_EXPECT_THROW_CODE(Database::preloadDatabase("no/such.inp"), runtime::Exception, 0);
    const Texts expected{"Database: could not load thermodynamic database no/such.inp\n",
                         "Database: could not load thermodynamic database no/such.inp\n"};
    EXPECT_EQ(capture.errors(), expected);
    EXPECT_EQ(capture.lines()[0].tag, "ROOT");
    EXPECT_EQ(capture.lines()[1].tag, "THERMO");
}

TEST_F(Singleton, LoadDatabaseReportsTheFileItCouldNotLoad)
{
    KETRA_EXPECT_THROW_CODE(Database::loadDatabase("no.inp", false), runtime::Exception, 0);
    ASSERT_EQ(capture.errors().size(), 2u);
    EXPECT_EQ(capture.lines()[1].tag, "THERMO");
    EXPECT_EQ(capture.lines()[1].text, "Database: could not load thermodynamic database no.inp\n");
    std::thread([&] { database().find("Ar"); }).join(); // the lock is free
}

TEST_F(Singleton, LoadDatabaseClearsWhenAsked)
{
    const std::string a = folder.write("a.inp", speciesText({argonRecord}));
    const std::string b = folder.write("b.inp", speciesText({electronRecord}));
    Database::loadDatabase(a.c_str(), true);
    Database::loadDatabase(b.c_str(), false);
    EXPECT_EQ(database().size(), 2u);
    Database::loadDatabase(b.c_str(), true);
    EXPECT_EQ(database().size(), 1u);
}

namespace {

const char* const waterTable =
    "!Format Version 2\n"
    "H2O(L) 1,1\n"
    "  0.101325     298.15          4.18131        997.0476       890.0225      606.51608\n";

} // namespace

TEST_F(Singleton, LoadsTheStandardFilesOfTheWorkingFolder)
{
    folder.write("resources/thermo.inp", speciesText({argonRecord, waterRecord}));
    folder.write("resources/properties.inp", waterTable);
    Database::loadStdDatabase(false, nullptr);
    EXPECT_EQ(database().size(), 2u);
    EXPECT_TRUE(database().find("H2O(L)")->hasRhoTable());
    folder.write("resources/usr_thermo.inp", speciesText({electronRecord}));
    folder.write("resources/usr_properties.inp", "");
    Database::loadStdDatabase(true, nullptr);
    EXPECT_EQ(database().size(), 3u);
    folder.write("mine/resources/usr_thermo.inp", speciesText({}, {binderRecord}));
    folder.write("mine/resources/usr_properties.inp", "");
    Database::loadStdDatabase(true, "mine");
    EXPECT_NE(database().find("Binder"), nullptr);
    EXPECT_EQ(database().find("e-"), nullptr);
    EXPECT_TRUE(database().isUserDefinedSpecies(database().find("Binder")));
}

TEST_F(Singleton, EachMissingStandardFileHasItsMessage)
{
    const auto lastMessage = [&] {
        KETRA_EXPECT_THROW_CODE(Database::loadStdDatabase(true, nullptr), runtime::Exception, 0);
        EXPECT_EQ(capture.lines().back().tag, "THERMO");
        std::thread([&] { database().find("Ar"); }).join(); // the lock is free
        return capture.errors().back();
    };
    EXPECT_EQ(lastMessage(), "Database: could not load standard thermodynamic database "
                             "resources/thermo.inp\n");
    folder.write("resources/thermo.inp", speciesText({argonRecord}));
    EXPECT_EQ(lastMessage(),
              "Database: could not load properties database resources/properties.inp\n");
    folder.write("resources/properties.inp", "");
    EXPECT_EQ(lastMessage(), "Database: could not load user thermodynamic database usr thermo\n");
    folder.write("resources/usr_thermo.inp", "");
    EXPECT_EQ(lastMessage(), "Database: could not load user properties database usr properties\n");
    folder.write("resources/usr_properties.inp", "");
    EXPECT_NO_THROW(Database::loadStdDatabase(true, nullptr));
}

TEST_F(Singleton, ReloadDropsWhatWasChangedInMemory)
{
    const std::string a = folder.write("a.inp", speciesText({argonRecord, waterRecord}));
    const std::string tables = folder.write("t.inp", waterTable);
    Database::loadDatabase(a.c_str(), true);
    Database::loadPropertiesDatabase(tables.c_str());
    database().remove("Ar", true);
    database().findForUpdate("H2O(L)")->removeRhoTable();
    database().reload();
    EXPECT_NE(database().find("Ar"), nullptr);
    EXPECT_TRUE(database().find("H2O(L)")->hasRhoTable());
    EXPECT_EQ(database().find("Ar")->getSourceId(), 0);
    EXPECT_EQ(database().find("H2O(L)")->getTableSourceId(), 1);
}

TEST_F(OwnDatabase, ReloadGoesOnAfterAFileThatIsGone)
{
    const std::string a = folder.write("a.inp", speciesText({argonRecord}));
    const std::string b = folder.write("b.inp", speciesText({electronRecord}));
    const std::string c = folder.path("c.inp");
    database.loadNASA9(a.c_str());
    database.loadNASA9(b.c_str());
    database.addSource(c.c_str(), 0);
    std::filesystem::remove(a);
    // It exists but cannot be read as a file.
    std::filesystem::remove(b);
    std::filesystem::create_symlink("/proc/self/mem", b);
    folder.write("c.inp", speciesText({waterRecord}));
    capture.clear();
    database.reload();
    EXPECT_EQ(capture.warnings(), Texts{"Database: could not reload database file " + a +
                                        " because it does not exist.\n"});
    EXPECT_EQ(capture.tagOf(capture.warnings()[0]), "ROOT");
    ASSERT_FALSE(capture.errors().empty());
    EXPECT_EQ(capture.errors().back(), "Database: could not reload database file " + b + "\n");
    EXPECT_EQ(capture.tagOf(capture.errors().back()), "ROOT");
    EXPECT_EQ(database.names(), Texts{"H2O(L)"});
}

TEST_F(OwnDatabase, LookUpsOfManyThreadsDoNotDisturbALoad)
{
    const std::string path = folder.write("a.inp", speciesText({argonRecord, electronRecord}));
    database.loadNASA9(path.c_str());
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            for (int k = 0; k < 200; ++k) EXPECT_EQ(database.find("nothing"), nullptr);
        });
    for (int k = 0; k < 20; ++k) database.loadNASA9(path.c_str());
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(database.size(), 2u);
}
