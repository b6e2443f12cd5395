#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace ketra_test;
using thermo::Database;
using Texts = std::vector<std::string>;

namespace {

class Saving : public testing::Test
{
protected:
    std::string load(const char* name, const std::string& text)
    {
        const std::string path = folder.write(name, text);
        database.loadNASA9(path.c_str());
        return path;
    }

    TemporaryFolder folder;
    TestDatabase database;
    LogCapture capture;
};

const std::string blankLine(80, ' ');

std::string padded(std::string line)
{
    line.resize(80, ' ');
    return line;
}

} // namespace

TEST_F(Saving, WritesHeadRecordsAndMarks)
{
    const std::string path = load("a.inp", speciesText({argonRecord, waterRecord}, {binderRecord}));
    database.saveNASA9(path.c_str(), 0);
    const Texts lines = linesOf(contentOf(path));
    for (const std::string& line : lines) EXPECT_EQ(line.size(), 80u) << line;
    EXPECT_EQ(lines[0], padded("!"));
    EXPECT_EQ(lines[1], padded("!                      SIX-CHARACTER REFERENCE-DATE CODES"));
    EXPECT_EQ(lines[3], padded("!  Letters         Reference                         Numbers"));
    EXPECT_EQ(lines[6],
              padded("!    g      Glenn Research Center              month/year calculated"));
    EXPECT_EQ(lines[22],
              padded("!    srd    Standard Reference Data            year of the journal volume"));
    EXPECT_EQ(lines[23], blankLine);
    EXPECT_EQ(lines[24], padded("thermo"));
    EXPECT_EQ(lines[25], padded("    200.00   1000.00   6000.00  20000."));
    const std::string text = contentOf(path);
    EXPECT_EQ(text.substr(26 * 81), std::string(argonRecord) + waterRecord +
                                        padded("END PRODUCTS") + "\n" + binderRecord +
                                        padded("END REACTANTS") + "\n");
}

TEST_F(Saving, AUsersFileHasAHeadOfItsOwn)
{
    load("a.inp", speciesText({argonRecord}));
    const std::string path = load("b.inp", speciesText({electronRecord}));
    database.saveNASA9(path.c_str(), 1);
    const Texts lines = linesOf(contentOf(path));
    EXPECT_EQ(lines[3],
              "!                             USER-DEFINED DATABASE                             ");
    EXPECT_EQ(lines[4], padded("!    Insert your data with temperature intervals before the line "
                               "\"END PRODUCTS\""));
    EXPECT_EQ(lines[5], padded("!    Insert other data between lines \"END PRODUCTS\" and \"END "
                               "REACTANTS\""));
    EXPECT_EQ(lines[6], blankLine);
    EXPECT_EQ(lines[7], padded("thermo"));
    // The records of the other source are not in it.
    EXPECT_EQ(contentOf(path).find("Ar  "), std::string::npos);
    EXPECT_EQ(lines[9].substr(0, 3), "e- ");
}

TEST_F(Saving, AFixedRecordAmongTheProductsDropsOut)
{
    const std::string path = load("a.inp", speciesText({binderRecord, argonRecord}));
    database.saveNASA9(path.c_str(), -1);
    TestDatabase again;
    again.loadNASA9(path.c_str());
    EXPECT_EQ(again.names(), Texts{"Ar"});
}

TEST_F(Saving, KeepsTheOldFileAsABackup)
{
    const std::string text = speciesText({argonRecord});
    const std::string path = load("a.inp", text);
    database.findForUpdate("Ar")->setDHf298_15(5.0);
    ASSERT_TRUE(database.isNASA9Modified(0));
    database.saveNASA9(path.c_str(), 0);
    EXPECT_FALSE(database.isNASA9Modified(0));
    EXPECT_FALSE(database.find("Ar")->isModified());
    EXPECT_EQ(contentOf(folder.path("a~.inp")), text);
    EXPECT_EQ(folder.names(), (Texts{"a.inp", "a~.inp"}));
    // The next save replaces the backup.
    const std::string second = contentOf(path);
    database.saveNASA9(path.c_str(), 0);
    EXPECT_EQ(contentOf(folder.path("a~.inp")), second);
    EXPECT_EQ(contentOf(path), second);
}

TEST_F(Saving, BackupNameGoesByTheFilesNameAlone)
{
    load("a.inp", speciesText({argonRecord}));
    for (const auto& [name, backup] :
         {std::pair{"v1.2/plain", "v1.2/plain~"}, std::pair{"v1.2/x.inp", "v1.2/x~.inp"},
          std::pair{"v1.2/a.b.inp", "v1.2/a~.b.inp"}, std::pair{"v1.2/end.", "v1.2/end.~"},
          std::pair{"v1.2/.hidden", "v1.2/~.hidden"}}) {
        SCOPED_TRACE(name);
        const std::string path = folder.write(name, "old");
        database.saveNASA9(path.c_str(), -1);
        EXPECT_EQ(contentOf(folder.path(backup)), "old");
        EXPECT_EQ(contentOf(path).substr(0, 1), "!");
    }
}

TEST_F(Saving, KeepsThePermissionsOfTheFile)
{
    const std::string path = load("a.inp", speciesText({argonRecord}));
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    database.saveNASA9(path.c_str(), 0);
    struct stat now = {};
    ASSERT_EQ(::stat(path.c_str(), &now), 0);
    EXPECT_EQ(now.st_mode & 07777u, 0640u);
}

TEST_F(Saving, ATargetThatCannotBeWrittenChangesNothing)
{
    const std::string path = load("a.inp", speciesText({argonRecord}));
    database.findForUpdate("Ar")->setDHf298_15(5.0);
    const std::string target = folder.path("none/a.inp");
    KETRA_EXPECT_THROW_MESSAGE(database.saveNASA9(target.c_str(), 0), runtime::Exception, 0, "");
    EXPECT_EQ(capture.errors(),
              Texts{"Database: could not save thermodynamic database " + target + "\n"});
    EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
    EXPECT_TRUE(database.find("Ar")->isModified());
    EXPECT_TRUE(database.isNASA9Modified(0));
    capture.clear();
    KETRA_EXPECT_THROW_CODE(database.saveProperties(target.c_str(), 0), runtime::Exception, 0);
    EXPECT_EQ(capture.errors(),
              Texts{"Database: could not save properties database " + target + "\n"});
    EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
}

TEST_F(Saving, WithoutABackupNothingIsOverwritten)
{
    const std::string text = speciesText({argonRecord});
    const std::string path = load("a.inp", text);
    folder.write("a~.inp/in-the-way", ""); // a folder bears the backup's name
    KETRA_EXPECT_THROW_CODE(database.saveNASA9(path.c_str(), 0), runtime::Exception, 0);
    EXPECT_EQ(capture.errors(),
              Texts{"Database: could not save thermodynamic database " + path + "\n"});
    EXPECT_EQ(contentOf(path), text);
    EXPECT_EQ(folder.names(), (Texts{"a.inp", "a~.inp"})); // nothing is left over
}

TEST_F(Saving, AValueThatDoesNotFitLeavesTheFileAsItWas)
{
    const std::string text = speciesText({argonRecord});
    const std::string path = load("a.inp", text);
    database.findForUpdate("Ar")->setM(1e9);
    KETRA_EXPECT_THROW_CODE(database.saveNASA9(path.c_str(), 0), runtime::Exception, 0);
    EXPECT_EQ(
        capture.errors(),
        (Texts{"Database: could not write species Ar: the molar mass does not fit its column: "
               "1000000000.0000000\n",
               "Database: could not save thermodynamic database " + path + "\n"}));
    EXPECT_EQ(contentOf(path), text);
    EXPECT_EQ(folder.names(), Texts{"a.inp"});
    EXPECT_TRUE(database.isNASA9Modified(0));
}

namespace {

class SavingTheSingleton : public testing::Test
{
protected:
    void SetUp() override
    {
        thermoFile = folder.write("thermo.inp", speciesText({argonRecord, waterRecord}));
        tableFile =
            folder.write("tables.inp", "!Format Version 2\n"
                                       "H2O(L) 1,2\n"
                                       "  0.101325     298.15          4.18131        997.0476\n"
                                       "  0.101325     350.00          4.19000        970.0000\n");
        thermo::ChemicalElement::initAtoms();
        Database::loadDatabase(thermoFile.c_str(), true);
        Database::loadPropertiesDatabase(tableFile.c_str());
        capture.clear();
    }
    Database& database() { return *Database::getInstance(); }

    TemporaryFolder folder;
    LogCapture capture;
    std::string thermoFile, tableFile;
};

} // namespace

TEST_F(SavingTheSingleton, WritesBackOnlyWhatChanged)
{
    const std::string before = contentOf(thermoFile);
    Database::saveDatabase(-1, true);
    EXPECT_TRUE(capture.lines().empty());
    database().findForUpdate("H2O(L)")->setTableModified(true);
    Database::saveDatabase(-1, true);
    EXPECT_EQ(capture.infos(), Texts{"Database: updating properties database " + tableFile + "\n"});
    EXPECT_EQ(capture.tagOf(capture.infos()[0]), "THERMO");
    EXPECT_EQ(contentOf(thermoFile), before);
    EXPECT_FALSE(database().isPropertiesModified(1));
    capture.clear();
    database().findForUpdate("Ar")->setModified(true);
    Database::saveDatabase(1, true); // the other source
    EXPECT_TRUE(capture.lines().empty());
    Database::saveDatabase(0, true);
    EXPECT_EQ(capture.infos(),
              Texts{"Database: updating thermodynamic database " + thermoFile + "\n"});
    EXPECT_EQ(capture.tagOf(capture.infos()[0]), "THERMO");
}

TEST_F(SavingTheSingleton, DoesNothingUnlessAsked)
{
    database().findForUpdate("Ar")->setModified(true);
    Database::saveDatabase(-1, false);
    Database::savePropertiesDatabase(folder.path("x.inp").c_str(), -1);
    EXPECT_EQ(folder.names(), (Texts{"tables.inp", "thermo.inp"}));
    EXPECT_TRUE(database().find("Ar")->isModified());
}

TEST_F(SavingTheSingleton, WritesAllToAFile)
{
    const std::string species = folder.path("all.inp");
    const std::string tables = folder.path("all-tables.inp");
    Database::saveDatabase(species.c_str(), 0);
    Database::saveDatabase(tables.c_str(), 1);
    TestDatabase again;
    again.loadNASA9(species.c_str());
    again.loadProperties(tables.c_str());
    EXPECT_EQ(again.names(), (Texts{"Ar", "H2O(L)"}));
    EXPECT_DOUBLE_EQ(again.find("H2O(L)")->getInterpolatedRho(298.15, 101325.0, true), 997.0476);
    Database::saveDatabase(folder.path("none").c_str(), 2);
    EXPECT_FALSE(std::filesystem::exists(folder.path("none")));
}

TEST_F(SavingTheSingleton, AFailureIsReportedWithItsPath)
{
    const std::string path = folder.path("none/x.inp");
    KETRA_EXPECT_THROW_MESSAGE(Database::saveDatabase(path.c_str(), 0), thermo::Exception, 0,
                               ("Could not save thermodynamic database " + path).c_str());
    EXPECT_EQ(capture.errors().back(),
              "Database: could not save thermodynamic database " + path + "\n");
    EXPECT_EQ(capture.lines().back().tag, "THERMO");
    KETRA_EXPECT_THROW_CODE(Database::saveDatabase(path.c_str(), 1), thermo::Exception, 0);
}

TEST_F(SavingTheSingleton, AFailureToWriteBackIsReported)
{
    database().findForUpdate("Ar")->setM(1e9);
    KETRA_EXPECT_THROW_MESSAGE(Database::saveDatabase(-1, true), thermo::Exception, 0,
                               "Could not save thermodynamic database");
    EXPECT_EQ(capture.errors().back(), "Database: could not save thermodynamic database");
    EXPECT_EQ(capture.lines().back().tag, "THERMO");
}
