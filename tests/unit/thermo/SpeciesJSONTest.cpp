#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/nasa9/NASA9Polynomial.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

using namespace ketra_test;
using thermo::Database;
using thermo::nasa9::NASA9Species;
using Texts = std::vector<std::string>;

namespace {

constexpr const char* emptyFile = "/*\n"
                                  " * SIX-CHARACTER REFERENCE-DATE CODES\n"
                                  " * Generated in JSON-ready format by Ketra\n"
                                  " */\n"
                                  "\n"
                                  "{[\n"
                                  "]}";

constexpr const char* binderObject =
    " {\n"
    "  'name':\"Binder\", 'descr':\"made-up binder, liquid\", 'ref':'madeup',\n"
    "  'elements':[\n"
    "    {'name':'C', 'number':1.000},\n"
    "    {'name':'H', 'number':2.000}\n"
    "  ],\n"
    "  'condensed':1, 'M':14.0265800, 'dHf298_15':-100000.00000, 'dH298_15_0':0.00000,\n"
    "  'intervals':[],\n"
    "  'dH298_15_0':0.000\n"
    " }";

constexpr const char* electronObject =
    " {\n"
    "  'name':\"e-\", 'descr':\"electron, gas\", 'ref':'g12/98',\n"
    "  'elements':[\n"
    "    {'name':'E', 'number':1.000}\n"
    "  ],\n"
    "  'condensed':0, 'M':0.000548579903, 'dHf298_15':0.00000, 'dH298_15_0':6197.42800,\n"
    "  'intervals':[\n"
    "    {'T1':298.150, 'T2':1000.000, 'exp':[-2.0, -1.0, 0.0, 1.0, 2.0, 3.0, 4.0, 0.0],\n"
    "     'coefficients':[ 0.000000000E+00,  0.000000000E+00,  2.500000000E+00,"
    "  0.000000000E+00,  0.000000000E+00,  0.000000000E+00,  0.000000000E+00,"
    " -7.453750000E+02, -1.172081224E+01]}\n"
    "  ]\n"
    " }";

class SpeciesJSON : public testing::Test
{
protected:
    /// Loads records as a source of their own.
    void load(const char* name, const std::string& text)
    {
        database.loadNASA9(folder.write(name, text).c_str());
        capture.clear();
    }
    std::string saved(int sourceId)
    {
        const std::string path = folder.path("out.json");
        database.saveNASA9AsJSON(path.c_str(), sourceId);
        return contentOf(path);
    }
    std::string object(const char* name, int sourceId = -1)
    {
        std::string text;
        database.find(name)->writeToAsJSON(text, sourceId);
        return text;
    }
    /// The record with a description of its own.
    std::string describedObject(const std::string& descr)
    {
        std::string record = binderRecord;
        load("described.inp", record.replace(18, descr.size(), descr));
        return object("Binder");
    }

    TemporaryFolder folder;
    TestDatabase database;
    LogCapture capture;
};

} // namespace

TEST_F(SpeciesJSON, AnEmptyDatabaseGivesTheCommentAndAnEmptyList)
{
    EXPECT_EQ(saved(-1), emptyFile);
}

TEST_F(SpeciesJSON, AFileIsAsItsReadersKnowIt)
{
    load("a.inp", speciesText({argonRecord, electronRecord, waterRecord}, {binderRecord}));
    const std::string path = folder.path("out.json");
    database.saveNASA9AsJSON(path.c_str(), -1);
    EXPECT_EQ(contentOf(path), contentOf(KETRA_SOURCE_DIR "/tests/data/species.json.txt"));
}

TEST_F(SpeciesJSON, ARecordWithACurve)
{
    load("a.inp", electronRecord);
    EXPECT_EQ(object("e-"), electronObject);
}

TEST_F(SpeciesJSON, AFixedRecordHasNoIntervalsAndItsLastValueTwice)
{
    load("a.inp", binderRecord);
    EXPECT_EQ(object("Binder"), binderObject);
    database.findForUpdate("Binder")->setDH298_15_0(1.23456);
    const std::string text = object("Binder");
    EXPECT_NE(text.find(", 'dH298_15_0':1.23456,\n"), std::string::npos);
    EXPECT_NE(text.find("  'intervals':[],\n  'dH298_15_0':1.235\n }"), std::string::npos);
}

TEST_F(SpeciesJSON, IntervalsAreSeparatedByCommas)
{
    load("a.inp", argonRecord);
    const std::string text = object("Ar");
    EXPECT_NE(text.find(" -7.453750000E+02,  4.379674910E+00]},\n    {'T1':1000.000,"),
              std::string::npos);
    EXPECT_NE(text.find("  4.379180110E+00]}\n  ]\n }"), std::string::npos);
    // In the order a[0] to a[6], b[0], b[1].
    EXPECT_NE(text.find("[ 2.010538475E+01, -5.992661070E-02,  2.750000000E+00,"
                        " -3.992141160E-08,  1.205272140E-11, -1.819015576E-15,"
                        "  1.078576636E-19, -7.449939610E+02,  4.379180110E+00]"),
              std::string::npos);
}

TEST_F(SpeciesJSON, QuotesOfTheDescriptionBecomeSingle)
{
    EXPECT_NE(describedObject("a \"quoted\" word").find("'descr':\"a 'quoted' word"),
              std::string::npos);
    EXPECT_EQ(database.find("Binder")->getDescr().substr(0, 15), "a \"quoted\" word");
    // Everything else stays as it is: "%" is no format here, and "\" no escape.
    EXPECT_NE(describedObject("50 %s \\n").find("'descr':\"50 %s \\n"), std::string::npos);
}

TEST_F(SpeciesJSON, LightSpeciesHaveTwelveDecimals)
{
    load("a.inp", binderRecord);
    thermo::Species& species = *database.findForUpdate("Binder");
    species.setM(0.01);
    EXPECT_NE(object("Binder").find("'M':0.010000000000, "), std::string::npos);
    species.setM(0.0100001);
    EXPECT_NE(object("Binder").find("'M':0.0100001, "), std::string::npos);
    species.setM(0.0);
    EXPECT_NE(object("Binder").find("'M':0.000000000000, "), std::string::npos);
}

TEST_F(SpeciesJSON, SymbolsAreInCapitalsAndNumbersHaveThreeDecimals)
{
    load("a.inp", binderRecord);
    thermo::ChemicalFormula formula;
    const thermo::ChemicalElement chlorine("CL", 1.5), electron("E", -1.0);
    formula.add(&chlorine);
    formula.add(&electron);
    database.findForUpdate("Binder")->setFormula(&formula);
    EXPECT_NE(object("Binder").find("  'elements':[\n    {'name':'CL', 'number':1.500},\n"
                                    "    {'name':'E', 'number':-1.000}\n  ],\n"),
              std::string::npos);
    const thermo::ChemicalFormula none;
    database.findForUpdate("Binder")->setFormula(&none);
    EXPECT_NE(object("Binder").find("  'elements':[\n  ],\n"), std::string::npos);
}

TEST_F(SpeciesJSON, ExponentsHaveTwoDigitsAtLeast)
{
    load("a.inp", electronRecord);
    database.findForUpdate("e-")->getInterval(0)->setA(0, 1.5e-101);
    EXPECT_NE(object("e-").find("[1.500000000E-101, "), std::string::npos);
    database.findForUpdate("e-")->getInterval(0)->setA(0, -1.5e12);
    EXPECT_NE(object("e-").find("[-1.500000000E+12, "), std::string::npos);
}

TEST_F(SpeciesJSON, ARecordIsWrittenForItsOwnSourceOnly)
{
    load("a.inp", binderRecord); // source 0
    EXPECT_EQ(object("Binder", 1), "");
    EXPECT_EQ(object("Binder", 0), binderObject);
    EXPECT_EQ(object("Binder", -5), binderObject);
    std::string text = "before";
    database.find("Binder")->writeToAsJSON(text, 0);
    EXPECT_EQ(text, std::string("before") + binderObject);
}

TEST_F(SpeciesJSON, SpeciesOfAnotherKindWriteNothing)
{
    class Other : public thermo::Species
    {
    };
    std::string text = "before";
    Other().writeToAsJSON(text, -1);
    EXPECT_EQ(text, "before");
}

TEST_F(SpeciesJSON, ASourceLeavesOutTheOthersAndKeepsTheCommas)
{
    const auto argonLike = [](std::string name) {
        std::string record = argonRecord;
        return record.replace(0, name.size(), name);
    };
    load("zero.inp", argonLike("A0"));
    load("one.inp", std::string(electronRecord) + argonLike("A1"));
    load("two.inp", argonLike("A2"));
    load("three.inp", binderRecord);
    // Source 3 among others, source 1 with two, in whatever order they stand.
    const std::string head = std::string(emptyFile).substr(0, std::string(emptyFile).size() - 3);
    EXPECT_EQ(saved(3), head + "\n" + binderObject + "\n]}");
    EXPECT_EQ(saved(1), head + "\n" + electronObject + ",\n" + object("A1") + "\n]}");
    EXPECT_EQ(saved(7), emptyFile);
    const std::string all = saved(-1);
    EXPECT_EQ(all, head + "\n" + object("A0") + ",\n" + electronObject + ",\n" + object("A1") +
                       ",\n" + object("A2") + ",\n" + binderObject + "\n]}");
}

TEST_F(SpeciesJSON, ReactantsStandAmongTheOthersAndFixedProductsToo)
{
    load("a.inp", speciesText({binderRecord, argonRecord}));
    const std::string text = saved(-1);
    EXPECT_LT(text.find("\"Binder\""), text.find("\"Ar\""));
}

TEST_F(SpeciesJSON, WhatWasModifiedStaysSo)
{
    load("a.inp", speciesText({argonRecord}));
    database.findForUpdate("Ar")->setDHf298_15(5.0);
    database.remove("e-", true);
    saved(0);
    saved(-1);
    EXPECT_TRUE(database.find("Ar")->isModified());
    EXPECT_TRUE(database.isNASA9Modified(0));
    database.findForUpdate("Ar")->setModified(false);
    database.addSource(folder.path("a.inp").c_str(), 0);
    load("b.inp", electronRecord);
    database.remove("e-", true);
    saved(1);
    EXPECT_TRUE(database.isNASA9Modified(1)); // by what was removed
}

TEST_F(SpeciesJSON, KeepsTheOldFileAsABackup)
{
    const std::string path = folder.write("out.json", "old");
    load("a.inp", binderRecord);
    EXPECT_NE(saved(-1), "old");
    EXPECT_EQ(contentOf(folder.path("out~.json")), "old");
    EXPECT_EQ(folder.names(), (Texts{"a.inp", "out.json", "out~.json"}));
}

TEST_F(SpeciesJSON, ATargetThatCannotBeWrittenIsReported)
{
    const std::string path = folder.path("none/out.json");
    KETRA_EXPECT_THROW_MESSAGE(database.saveNASA9AsJSON(path.c_str(), -1), runtime::Exception, 0,
                               "");
    EXPECT_EQ(capture.errors(),
              Texts{"Database: could not save thermodynamic database " + path + "\n"});
    EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
}
