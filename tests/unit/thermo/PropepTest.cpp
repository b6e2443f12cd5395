#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/util/detail/Format.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <random>

#include <locale.h>

using namespace ketra_test;
using thermo::Database;
using thermo::Species;
using Texts = std::vector<std::string>;

namespace {

constexpr double caloriesToJoules = 4.1868;
constexpr double poundsPerCubicInch = 27679.904710203125; // kg/m3
constexpr double weightC = 12.0107, weightH = 1.00794, weightN = 14.0067, weightO = 15.9994;

/// What a database of one PROPEP file is given up by.
struct Remove {
    void operator()(Database* database) const { Database::remove(database); }
};
using OwnedDatabase = std::unique_ptr<Database, Remove>;

Texts namesOf(Database& database)
{
    Texts names;
    for (unsigned int i = 0; i < database.size(); ++i) names.push_back(database[i]->getName());
    return names;
}

/// The terms of a formula, as "C 1, H 4".
std::string formulaOf(const Species& species)
{
    std::string text;
    for (int i = 0; i < species.size(); ++i)
        text += (i > 0 ? ", " : "") + thermo::ChemicalElement::getName(species[i]->getType()) +
                util::detail::format(" %g", species[i]->getNumber());
    return text;
}

/// A line of an ingredient; \p elements holds the columns [39, 69), \p data the columns [69, 80).
std::string ingredient(const std::string& name, std::string elements,
                       const std::string& data = "-1000  .05")
{
    elements.resize(30, ' ');
    return util::detail::format("%4d%-35s%s%s\n", 1, name.c_str(), elements.c_str(), data.c_str());
}

constexpr const char* methane = "  1C   4H ";
constexpr const char* lastLine = "   9LAST\n"; // its record is never taken

class Propep : public testing::Test
{
protected:
    Propep() { thermo::ChemicalElement::initAtoms(); }

    void load(const std::string& text)
    {
        capture.clear();
        const std::string path = folder.write("ingredients", text);
        database.reset(Database::preloadPROPEPDatabase(path.c_str()));
    }
    /// Loads one ingredient. \returns it, or null if it was dropped.
    const Species* one(const std::string& lines)
    {
        load(lines + lastLine);
        EXPECT_LE(database->size(), 1u);
        return database->size() == 1 ? (*database)[0u] : nullptr;
    }
    void expectDropped(const std::string& lines, const std::string& message)
    {
        SCOPED_TRACE(lines);
        EXPECT_EQ(one(lines), nullptr);
        EXPECT_EQ(capture.errors(), Texts{"Database: could not load PROPEP species " + message});
        for (const std::string& error : capture.errors()) EXPECT_EQ(capture.tagOf(error), "THERMO");
    }

    TemporaryFolder folder;
    OwnedDatabase database;
    LogCapture capture;
};

class SampleFile : public Propep
{
protected:
    SampleFile()
    {
        database.reset(
            Database::preloadPROPEPDatabase(KETRA_SOURCE_DIR "/tests/data/ingredients.propep"));
    }
    const Species& at(const char* name) { return *database->find(name); }
};

} // namespace

TEST_F(SampleFile, HoldsEachIngredientButTheBadOnesAndTheLast)
{
    EXPECT_EQ(namesOf(*database),
              (Texts{"AMMONIUM", "HTPB", "OXYGEN", "ALUMINUM", "NITROCELLULOSE"}));
    EXPECT_EQ(database->find("WATER"), nullptr);
}

TEST_F(SampleFile, TellsWhatItDropped)
{
    EXPECT_EQ(
        capture.errors(),
        (Texts{"Database: could not load PROPEP species MADE-UP COMPOUND: invalid formula.\n",
               "Database: could not load PROPEP species DIBORANE SIX: CEA/Ketra do not support "
               "compounds with more that 5 different elements.\n"}));
    for (const std::string& error : capture.errors()) EXPECT_EQ(capture.tagOf(error), "THERMO");
    EXPECT_TRUE(capture.warnings().empty());
    EXPECT_TRUE(capture.infos().empty()); // a replaced species is named by the singleton alone
}

TEST_F(SampleFile, NameIsTheFirstWordAndDescriptionTheRest)
{
    EXPECT_EQ(at("AMMONIUM").getDescr(), "PERCHLORATE (AP) PROPEP");
    EXPECT_EQ(at("NITROCELLULOSE").getDescr(), "PROPEP");
}

TEST_F(SampleFile, ContinuationsLengthenTheNameTo65Characters)
{
    // The 65th character is the blank behind "IN".
    EXPECT_EQ(at("HTPB").getDescr(),
              "R-45M WITHOUT ITS CURING AGENT AND WITHOUT ANYTHING ELSE IN  PROPEP");
    EXPECT_EQ(std::string("HTPB ").size() + at("HTPB").getDescr().size(),
              65 + std::string(" PROPEP").size());
}

TEST_F(SampleFile, OfTwoWithTheSameFirstWordTheLaterOneStays)
{
    EXPECT_EQ(at("ALUMINUM").getDescr(), "OXIDE PROPEP");
    EXPECT_EQ(formulaOf(at("ALUMINUM")), "AL 2, O 3");
}

TEST_F(SampleFile, AnIngredientIsAReactantOfOneTemperature)
{
    const double M = 35.453 + 4 * weightH + weightN + 4 * weightO;
    const Species& perchlorate = at("AMMONIUM");
    EXPECT_EQ(formulaOf(perchlorate), "CL 1, H 4, N 1, O 4");
    EXPECT_NEAR(perchlorate.getM(), M, 1e-12 * M);
    EXPECT_DOUBLE_EQ(perchlorate.getDHf298_15(), -602.0 * caloriesToJoules * perchlorate.getM());
    EXPECT_EQ(perchlorate.H0(298.15), perchlorate.getDHf298_15());
    EXPECT_TRUE(perchlorate.isFixedTemperature());
    EXPECT_TRUE(perchlorate.isReactantOnly());
    EXPECT_TRUE(perchlorate.isCompleted());
    EXPECT_EQ(perchlorate.getIntervalSize(), 1);
    EXPECT_EQ(perchlorate.getMinimalT(), 298.15);
    EXPECT_EQ(perchlorate.getMaximalT(), 0.0);
    EXPECT_EQ(perchlorate.getT0(), 298.15);
    KETRA_EXPECT_THROW_CODE(perchlorate.H0(298.2), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(perchlorate.Cp0(298.15), thermo::Exception, 1);
}

TEST_F(SampleFile, DensityHoldsOverTheTable)
{
    const Species& perchlorate = at("AMMONIUM");
    // Single precision: seven digits of the figure in the file.
    const double rho = static_cast<double>(static_cast<float>(0.0704 * poundsPerCubicInch));
    for (const double T : {298.15, 300.0, 305.5, 308.15})
        EXPECT_DOUBLE_EQ(perchlorate.getInterpolatedRho(T, 101325.0, false), rho) << T;
    KETRA_EXPECT_THROW_CODE(perchlorate.getInterpolatedRho(308.2, 101325.0, false),
                            thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(perchlorate.getInterpolatedRho(300.0, 2e5, false), thermo::Exception,
                            1);
    EXPECT_DOUBLE_EQ(perchlorate.getInterpolatedRho(300.0, 2e5, true), rho);
    EXPECT_EQ(perchlorate.getInterpolatedCp(300.0, 101325.0, false), 0.0);
    for (const auto* table : {perchlorate.getCpTable(), perchlorate.getRhoTable()}) {
        EXPECT_EQ(table->getX()->size(), 2u);
        EXPECT_EQ(table->getY()->size(), 1u);
        EXPECT_EQ(table->getMinX(), 298.15);
        EXPECT_EQ(table->getMaxX(), 308.15);
        EXPECT_EQ(table->getMinY(), 101325.0);
    }
    EXPECT_FALSE(perchlorate.hasMuTable() || perchlorate.hasLambdaTable() ||
                 perchlorate.hasTsTable() || perchlorate.hasQsTable());
    // With a table of specific heat the record takes a temperature of it as it is.
    EXPECT_EQ(perchlorate.getT(300.0), 300.0);
}

TEST_F(SampleFile, GasIsWhatItsNameCallsSo)
{
    EXPECT_EQ(at("OXYGEN").getCondensed(), 0);
    EXPECT_FALSE(at("OXYGEN").isCondensed());
    for (const char* name : {"AMMONIUM", "HTPB", "ALUMINUM", "NITROCELLULOSE"})
        EXPECT_EQ(at(name).getCondensed(), 1) << name;
}

TEST_F(SampleFile, AnElementStatedTwiceIsOneTermAndNoneIsPassedOver)
{
    EXPECT_EQ(formulaOf(at("NITROCELLULOSE")), "C 9, H 8, O 9");
    const double M = 9 * weightC + 8 * weightH + 9 * weightO;
    EXPECT_NEAR(at("NITROCELLULOSE").getM(), M, 1e-12 * M);
}

TEST_F(SampleFile, SpeciesBelongToTheUsersSourcesOfTheirDatabase)
{
    Texts ids;
    for (const std::string& name : namesOf(*database)) {
        const Species& species = at(name.c_str());
        EXPECT_TRUE(database->isUserDefinedSpecies(&species)) << name;
        EXPECT_GT(species.getType(), 0);
        EXPECT_TRUE(database->isNASA9Modified(species.getSourceId()));
        EXPECT_TRUE(database->isPropertiesModified(species.getTableSourceId()));
        ids.push_back(std::to_string(species.getType()));
    }
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(std::unique(ids.begin(), ids.end()), ids.end());
}

TEST_F(SampleFile, LeavesTheSingletonAlone)
{
    Database& singleton = *Database::getInstance();
    EXPECT_NE(database.get(), &singleton);
    EXPECT_EQ(singleton.size(), 0u);
    EXPECT_EQ(singleton.find("AMMONIUM"), nullptr);
}

TEST_F(SampleFile, SavedSpeciesComeBackAsTheyAre)
{
    const std::string species = folder.path("species.inp");
    const std::string tables = folder.path("tables.inp");
    database->saveNASA9(species.c_str(), -1);
    database->saveProperties(tables.c_str(), -1);
    TestDatabase again;
    again.loadNASA9(species.c_str());
    again.loadProperties(tables.c_str());
    ASSERT_EQ(again.names(), namesOf(*database));
    for (const std::string& name : again.names()) {
        SCOPED_TRACE(name);
        const Species& one = at(name.c_str());
        const Species& other = *again.find(name);
        EXPECT_NEAR(other.H0(298.15), one.H0(298.15), 5.1e-6);
        EXPECT_NEAR(other.getM(), one.getM(), 5.1e-8);
        EXPECT_EQ(formulaOf(other), formulaOf(one));
        EXPECT_EQ(other.getCondensed(), one.getCondensed());
        EXPECT_NEAR(other.getInterpolatedRho(300.0, 101325.0, false),
                    one.getInterpolatedRho(300.0, 101325.0, false), 5.1e-5);
    }
}

TEST_F(Propep, TheLastRecordIsTakenOnlyBeforeAnotherLineOfARecord)
{
    const std::string record = ingredient("METHANE", methane);
    load(record);
    EXPECT_EQ(database->size(), 0u);
    load(record + "+        MORE\n* comment\n\n");
    EXPECT_EQ(database->size(), 0u);
    load(record + "x\n");
    EXPECT_EQ(namesOf(*database), Texts{"METHANE"});
    // A record that is dropped itself lets the one before it pass.
    load(record + ingredient("BAD", "  1QQ"));
    EXPECT_EQ(namesOf(*database), Texts{"METHANE"});
    load("");
    EXPECT_EQ(database->size(), 0u);
}

TEST_F(Propep, ColumnsAreThoseOfTheFormat)
{
    // Every field filled to its last column.
    const std::string line = "1234ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHI"
                             "100C 101H 102N 103O 104CL"
                             "  0XX"
                             "-12.5.12345";
    ASSERT_EQ(line.size(), 80u);
    const Species* const species = one(line + "67890\n");
    ASSERT_NE(species, nullptr);
    EXPECT_EQ(species->getName(), "ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHI");
    EXPECT_EQ(formulaOf(*species), "C 100, H 101, N 102, O 103, CL 104");
    EXPECT_DOUBLE_EQ(species->getDHf298_15(), -12.5 * caloriesToJoules * species->getM());
    EXPECT_DOUBLE_EQ(species->getInterpolatedRho(300.0, 101325.0, false),
                     static_cast<double>(static_cast<float>(0.12345 * poundsPerCubicInch)));
    EXPECT_TRUE(capture.errors().empty());
}

TEST_F(Propep, DataAreOfSinglePrecision)
{
    const Species* const species = one(ingredient("METHANE", methane, "-0.10.12345"));
    ASSERT_NE(species, nullptr);
    const double heat = static_cast<double>(-0.1f);
    ASSERT_NE(heat, -0.1);
    EXPECT_EQ(species->getDHf298_15(), heat * caloriesToJoules * species->getM());
}

TEST_F(Propep, CountsAreCutToWholeNumbers)
{
    const Species* const species = one(ingredient("FUEL", "1.9C .99QQ2.0H -5QQ"));
    ASSERT_NE(species, nullptr);
    EXPECT_EQ(formulaOf(*species), "C 1, H 2");
}

TEST_F(Propep, AnUnknownSymbolIsRefusedInAnyOfFiveElements)
{
    for (int place = 0; place < 5; ++place) {
        std::string elements;
        for (int i = 0; i < 5; ++i) elements += i == place ? "  1XX" : "  1H ";
        expectDropped(ingredient("FUEL OIL", elements), "FUEL OIL: invalid formula.\n");
    }
    expectDropped(ingredient("FUEL", "  1he"), "FUEL: invalid formula.\n"); // capitals only
    expectDropped(ingredient("FUEL", "  1  "), "FUEL: invalid formula.\n");
}

TEST_F(Propep, ASixthElementIsRefusedWhateverItIs)
{
    const std::string five = "  1C   1H   1N   1O   1F ";
    const std::string message = ": CEA/Ketra do not support compounds with more that 5 different "
                                "elements.\n";
    expectDropped(ingredient("FUEL", five + "  1CL"), "FUEL" + message);
    expectDropped(ingredient("FUEL", five + "  1QQ"), "FUEL" + message);
    expectDropped(ingredient("FUEL", five + "  1C "), "FUEL" + message);
    // It is the sixth field that counts, not how many are filled, and it is named first.
    expectDropped(ingredient("FUEL", "  1QQ  0    0    0    0    1H "), "FUEL" + message);
    expectDropped(ingredient("FUEL", five + " -1CL"), "FUEL: invalid formula.\n");
    EXPECT_NE(one(ingredient("FUEL", five + "0.9CL")), nullptr);
    EXPECT_NE(one(ingredient("FUEL", five + "   QQ")), nullptr);
}

TEST_F(Propep, CountsOfZeroWithBlankSymbolsArePassedOver)
{
    const Species* const species = one(ingredient("FUEL", "  0    1C   0  000    4H "));
    ASSERT_NE(species, nullptr);
    EXPECT_EQ(formulaOf(*species), "C 1, H 4");
}

TEST_F(Propep, TheWordGasMakesAGasBehindTheStartOfTheName)
{
    EXPECT_EQ(one(ingredient("METHANE (GAS)", methane))->getCondensed(), 0);
    EXPECT_EQ(one(ingredient("METHANE(GASEOUS)", methane))->getCondensed(), 0);
    EXPECT_EQ(one(ingredient("(GAS) METHANE", methane))->getCondensed(), 1);
    EXPECT_EQ(one(ingredient("METHANE (gas)", methane))->getCondensed(), 1);
    EXPECT_EQ(one(ingredient("METHANE GAS", methane))->getCondensed(), 1);
    EXPECT_EQ(one(ingredient("METHANE", methane) + "+        (GAS)\n")->getCondensed(), 0);
}

TEST_F(Propep, AContinuationIsReadFromItsColumnsAlone)
{
    const Species* const species =
        one(ingredient("FUEL", methane) + "+12345678  OIL AND MORE OF IT THAN IS SEEN OF IT\n");
    ASSERT_NE(species, nullptr);
    EXPECT_EQ(species->getDescr(), "OIL AND MORE OF IT THAN IS S PROPEP");
}

TEST_F(Propep, AContinuationWithoutARecordIsPassedOver)
{
    load("+        FIRST\n" + ingredient("METHANE", methane) + lastLine);
    EXPECT_EQ(namesOf(*database), Texts{"METHANE"});
    EXPECT_EQ((*database)[0u]->getDescr(), "PROPEP");
    load(ingredient("METHANE", methane) + ingredient("BAD", "  1QQ") + "+        OF THE BAD ONE\n" +
         lastLine);
    EXPECT_EQ((*database)[0u]->getDescr(), "PROPEP");
}

TEST_F(Propep, OnlyAsteriskAndPlusInTheFirstColumnAreMarks)
{
    load(" * not a comment\n" + ingredient("METHANE", methane) + lastLine);
    EXPECT_EQ(namesOf(*database), (Texts{"ot", "METHANE"}));
    EXPECT_EQ(capture.warnings(), Texts{"PROPEP species ot a comment has no elements (line 1)\n"});
}

TEST_F(Propep, ARecordWithoutElementsIsTakenWithAWarning)
{
    const Species* const species = one("   1FILLER\n");
    ASSERT_NE(species, nullptr);
    EXPECT_EQ(species->size(), 0);
    EXPECT_EQ(species->getM(), 0.0);
    EXPECT_EQ(species->H0(298.15), 0.0);
    EXPECT_EQ(capture.warnings(), Texts{"PROPEP species FILLER has no elements (line 1)\n"});
}

TEST_F(Propep, ARecordWithoutANameIsDropped)
{
    EXPECT_EQ(one(ingredient("", methane)), nullptr);
    EXPECT_EQ(capture.warnings(), Texts{"Ignoring PROPEP record without a name (line 1)\n"});
    EXPECT_EQ(one("x\n"), nullptr);
}

TEST_F(Propep, NumbersThatNoRecordHoldsDropIt)
{
    for (const char* count : {"9e9", "inf", "nan"})
        expectDropped(ingredient("FUEL", std::string(count) + "C "), "FUEL: invalid formula.\n");
    EXPECT_NE(one(ingredient("FUEL", "-9eC ")), nullptr); // minus nine: passed over
    expectDropped(ingredient("FUEL", "  1C   0    0    0    0  9e9C "),
                  "FUEL: CEA/Ketra do not support compounds with more that 5 different "
                  "elements.\n");
    for (const char* data : {"1e99   .05", "nan    .05", "-1000 1e99 ", "-1000  inf", "1e39   .05"})
        expectDropped(ingredient("FUEL", methane, data),
                      "FUEL: invalid heat of formation or density.\n");
}

TEST_F(Propep, LinesMayEndInCrLf)
{
    const std::string text =
        contentOf(KETRA_SOURCE_DIR "/tests/data/ingredients.propep") + "   9LAST";
    load(text);
    const Texts names = namesOf(*database);
    ASSERT_EQ(names.size(), 6u);
    std::vector<double> heats;
    for (const std::string& name : names) heats.push_back(database->find(name)->getDHf298_15());
    load(withLineEnds(text, "\r\n"));
    ASSERT_EQ(namesOf(*database), names);
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(database->find(names[i])->getDHf298_15(), heats[i]);
    // Short lines end in the columns of other fields.
    EXPECT_EQ(one("   1FUEL\r\n")->getDescr(), "PROPEP");
    EXPECT_EQ(one(ingredient("FUEL", methane, "-1000\r"))->size(), 2);
}

TEST_F(Propep, AFileThatDoesNotOpenIsReported)
{
    const std::string path = folder.path("none");
    KETRA_EXPECT_THROW_MESSAGE(Database::preloadPROPEPDatabase(path.c_str()), runtime::Exception, 0,
                               "");
    EXPECT_EQ(capture.errors(), Texts{"Database: could not load PROPEP database " + path + "\n"});
    EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
    capture.clear();
    KETRA_EXPECT_THROW_CODE(Database::preloadPROPEPDatabase(nullptr), runtime::Exception, 0);
    const std::string folderPath = folder.path("");
    KETRA_EXPECT_THROW_CODE(Database::preloadPROPEPDatabase(folderPath.c_str()), runtime::Exception,
                            0);
}

TEST_F(Propep, BytesOfARecordMayBeAnything)
{
    const std::string record = ingredient("METHANE", methane);
    std::mt19937 engine(11);
    for (std::size_t i = 0; i < record.size(); ++i) {
        std::string damaged = record;
        damaged[i] = static_cast<char>(engine() & 0xffu);
        load(ingredient("BEFORE", methane) + damaged + "\n" + ingredient("BEHIND", methane) +
             lastLine);
        EXPECT_NE(database->find("BEFORE"), nullptr) << i;
        EXPECT_NE(database->find("BEHIND"), nullptr) << i;
    }
}

TEST_F(Propep, AnyLineMayEndAnywhere)
{
    const std::string record = ingredient("METHANE (GAS)", methane);
    for (std::size_t length = 0; length < record.size(); ++length)
        load(record.substr(0, length) + "\n" + lastLine);
    const std::string zeros(500, '\0');
    load(zeros + "\n" + zeros + "\n+" + zeros + "\n" + ingredient("METHANE", methane) + lastLine);
    EXPECT_NE(database->find("METHANE"), nullptr);
    load(record + std::string(3000000, 'x') + "\n+" + std::string(3000000, 'y') + "\n" + lastLine);
    load(withLineEnds(record + lastLine, "\r"));
    EXPECT_EQ(database->size(), 0u);
    EXPECT_EQ(capture.warnings(), Texts{"Ignoring PROPEP file whose lines have no line feeds\n"});
}

TEST_F(Propep, NoiseIsNoReasonToFail)
{
    for (const unsigned int seed : {1u, 2u, 3u}) {
        std::mt19937 engine(seed);
        std::string bytes(200000, ' ');
        for (char& c : bytes) c = static_cast<char>(engine() & 0xffu);
        load(bytes);
        for (unsigned int i = 0; i < database->size(); ++i)
            EXPECT_FALSE((*database)[i]->getName().empty() && (*database)[i]->getDescr().empty());
    }
}

TEST_F(Propep, TheLocaleOfTheThreadDoesNotCountAndStays)
{
    const locale_t other = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
    const locale_t before = uselocale(other);
    const Species* const species = one(ingredient("METHANE", methane, "-12.5.12345"));
    EXPECT_EQ(uselocale(before), other);
    freelocale(other);
    EXPECT_DOUBLE_EQ(species->getDHf298_15(), -12.5 * caloriesToJoules * species->getM());
    KETRA_EXPECT_THROW_CODE(Database::preloadPROPEPDatabase("none"), runtime::Exception, 0);
    EXPECT_EQ(uselocale(nullptr), before);
}

TEST_F(Propep, RemoveGivesUpAllButTheSingleton)
{
    Database::remove(nullptr);
    Database* const singleton = Database::getInstance();
    Database::remove(singleton);
    EXPECT_EQ(Database::getInstance(), singleton);
    EXPECT_EQ(singleton->size(), 0u); // still there to be asked
}
