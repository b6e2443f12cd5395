#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Species.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace ketra_test;
using Texts = std::vector<std::string>;

namespace {

constexpr double M = 18.01528; // g/mol, of the water record

/// A data line: p MPa, T K, Cp kJ/(kg K), rho kg/m3, mu uPa s, lambda mW/(m K).
std::string data(double p, double T, double cp, double rho, double mu, double lambda)
{
    char line[160];
    std::snprintf(line, sizeof line,
                  "%10.6f     %6.2f         %8.5f       %9.4f      %9.4f      %9.5f", p, T, cp, rho,
                  mu, lambda);
    return line;
}

/// The same with boiling temperature, K, and heat of vaporisation, kJ/kg.
std::string first(const std::string& line, double Ts, double Qs)
{
    char more[80];
    std::snprintf(more, sizeof more, "      %6.2f         %8.4f\n", Ts, Qs);
    return line + more;
}

/// Two pressures and three temperatures, each value telling its place.
std::string table(const char* head)
{
    return std::string(head) + "\n" + first(data(0.1, 300, 4.0, 1000, 800, 600), 310, 2200) +
           data(0.1, 320, 4.1, 990, 700, 610) + "\n" + data(0.1, 340, 4.2, 980, 600, 620) + "\n" +
           first(data(10, 300, 3.9, 1010, 810, 601), 330, 2000) +
           data(10, 320, 4.0, 1000, 710, 611) + "\n" + data(10, 340, 4.1, 990, 610, 621) + "\n";
}

class PropertiesLoading : public testing::Test
{
protected:
    PropertiesLoading()
    {
        database.loadNASA9(folder.write("a.inp", speciesText({argonRecord, waterRecord})).c_str());
        water = database.findForUpdate("H2O(L)");
    }
    void load(const std::string& text)
    {
        database.loadProperties(folder.write("t.inp", text).c_str());
    }
    void expectFailure(const std::string& text)
    {
        SCOPED_TRACE(text);
        capture.clear();
        KETRA_EXPECT_THROW_MESSAGE(load(text), runtime::Exception, 1, "");
        ASSERT_FALSE(capture.errors().empty());
        EXPECT_EQ(capture.errors().back(), "Database: could not load properties database\n");
        EXPECT_EQ(capture.tagOf(capture.errors().back()), "ROOT");
    }

    TemporaryFolder folder;
    TestDatabase database;
    LogCapture capture;
    thermo::Species* water;
};

const std::string version2 = "!Format Version 2\n";

} // namespace

TEST_F(PropertiesLoading, ReadsTheTablesOfASpecies)
{
    load(version2 + table("H2O(L)            2, 3"));
    const auto& cp = *water->getCpTable();
    ASSERT_EQ(cp.getX()->size(), 3u); // temperatures
    ASSERT_EQ(cp.getY()->size(), 2u); // pressures
    EXPECT_EQ(cp.getY()->at(1), 1e7);
    EXPECT_EQ(cp.getX()->at(2), 340.0);
    EXPECT_DOUBLE_EQ(cp.getValues()->at(2, 0), 4.2 * M);
    EXPECT_DOUBLE_EQ(cp.getValues()->at(0, 1), 3.9 * M);
    EXPECT_DOUBLE_EQ(water->getInterpolatedRho(320.0, 1e7, false), 1000.0);
    EXPECT_DOUBLE_EQ(water->getInterpolatedMu(340.0, 1e5, false), 600e-6);
    EXPECT_DOUBLE_EQ(water->getInterpolatedLambda(300.0, 1e7, false), 0.601);
    EXPECT_DOUBLE_EQ(water->getInterpolatedTs(1e5), 310.0);
    EXPECT_DOUBLE_EQ(water->getInterpolatedTs(1e7), 330.0);
    EXPECT_DOUBLE_EQ(water->getInterpolatedQs(310.0), 2.2e6);
    EXPECT_DOUBLE_EQ(water->getInterpolatedQs(320.0), 2.1e6);
    EXPECT_EQ(water->getSourceId(), 0);
    EXPECT_EQ(water->getTableSourceId(), 1);
    EXPECT_FALSE(water->isTableModified());
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(PropertiesLoading, TheFormatVersionSaysHowCpIsKept)
{
    load(table("H2O(L) 2,3"));
    EXPECT_DOUBLE_EQ(water->getCpTable()->getValues()->at(0, 0), 4000.0);
    load("! FORMAT VERSION 1 of it\n" + table("H2O(L) 2,3"));
    EXPECT_DOUBLE_EQ(water->getCpTable()->getValues()->at(0, 0), 4000.0);
    load("!x format version 3\n" + table("H2O(L) 2,3"));
    EXPECT_DOUBLE_EQ(water->getCpTable()->getValues()->at(0, 0), 4.0 * M);
    // A comment that is too short to state a version, and one without a number.
    load("!format version\n" + table("H2O(L) 2,3"));
    EXPECT_DOUBLE_EQ(water->getCpTable()->getValues()->at(0, 0), 4000.0);
    load(version2 + "!format version x\n" + table("H2O(L) 2,3"));
    EXPECT_DOUBLE_EQ(water->getCpTable()->getValues()->at(0, 0), 4000.0);
}

TEST_F(PropertiesLoading, TakesEitherLineEndBlankLinesAndComments)
{
    std::string text = version2;
    for (const std::string& line : linesOf(table("H2O(L)  2 , 3"))) {
        // "2 , 3" is no pair of counts; "2, 3" is.
        text += (line.starts_with("H2O") ? "H2O(L)  2, 3" : line) + "\r\n  \r\n! comment\r\n";
    }
    load(text);
    EXPECT_DOUBLE_EQ(water->getInterpolatedLambda(340.0, 1e7, false), 0.621);
    EXPECT_DOUBLE_EQ(water->getInterpolatedQs(310.0), 2.2e6);
}

TEST_F(PropertiesLoading, ColumnsThatAreMissingAreZero)
{
    load(version2 + "H2O(L) 1,2\n" + data(1, 300, 4, 1000, 5, 6).substr(0, 60) + "\n" +
         data(1, 320, 4, 1000, 5, 6).substr(0, 60) + "\n");
    EXPECT_EQ(water->getInterpolatedMu(300.0, 1e6, false), 0.0);
    EXPECT_EQ(water->getInterpolatedLambda(300.0, 1e6, false), 0.0);
    EXPECT_EQ(water->getInterpolatedTs(1e6), 0.0);
    EXPECT_EQ(water->getInterpolatedRho(310.0, 1e6, false), 1000.0);
}

TEST_F(PropertiesLoading, BoilingTemperaturesAreRepaired)
{
    const auto block = [](double p, double Ts, double Qs) {
        return first(data(p, 300, 4, 1000, 5, 6), Ts, Qs) + data(p, 340, 4, 1000, 5, 6) + "\n";
    };
    load(version2 + "H2O(L) 4,2\n" + block(0.1, 320, 2000) + block(1, 0, 0) + block(2, 0, 0) +
         block(3, 500, 100));
    EXPECT_EQ(water->getInterpolatedTs(0.1e6), 320.0);
    EXPECT_EQ(water->getInterpolatedTs(1e6), 320.0);
    EXPECT_EQ(water->getInterpolatedTs(2e6), 320.0);
    EXPECT_EQ(water->getInterpolatedTs(3e6), 340.0); // the highest T of the table
    load(version2 + "H2O(L) 2,2\n" + block(0.1, 500, 2000) + block(1, 0, 0));
    EXPECT_EQ(water->getInterpolatedTs(0.1e6), 340.0);
    EXPECT_EQ(water->getInterpolatedTs(1e6), 340.0);
}

TEST_F(PropertiesLoading, AnUnknownSpeciesIsPassedOver)
{
    load(version2 + table("Nothing 2,3") + table("H2O(L) 2,3"));
    const Texts expected{"Could not find species Nothing defined in properties file\n"};
    EXPECT_EQ(capture.warnings(), expected);
    EXPECT_EQ(capture.tagOf(expected[0]), "THERMO");
    EXPECT_TRUE(water->hasCpTable());
}

TEST_F(PropertiesLoading, ABadCountStopsTheFile)
{
    for (const char* head :
         {"H2O(L) 0,3", "H2O(L) 2,0", "H2O(L) 1001,1", "H2O(L) 1,1001", "H2O(L) -1,3", "H2O(L) 2",
          "H2O(L) 2 ,3", "H2O(L)", "H2O(L) x,y", "H2O(L) 99999999999,3", "Nothing 0,1"})
        expectFailure(version2 + std::string(head) + "\n" + data(1, 300, 4, 1000, 5, 6) + "\n");
    EXPECT_FALSE(water->hasCpTable());
}

TEST_F(PropertiesLoading, ATableThatCannotBeUsedIsPassedOver)
{
    // A temperature that is not finite, and an axis that neither rises nor falls.
    const std::string infinite = "H2O(L) 1,2\n" + data(1, 300, 4, 1000, 5, 6) + "\n" +
                                 "  1.000000     1e999          4.0            1000.0\n";
    load(version2 + infinite + table("Ar 2,3"));
    const Texts expected{"Ignoring invalid properties of species H2O(L) (line 4)\n"};
    EXPECT_EQ(capture.warnings(), expected);
    EXPECT_EQ(capture.tagOf(expected[0]), "THERMO");
    EXPECT_FALSE(water->hasCpTable());
    EXPECT_TRUE(database.find("Ar")->hasCpTable());
    capture.clear();
    const auto line = [](double T) { return data(1, T, 4, 1000, 5, 6) + "\n"; };
    load(version2 + "H2O(L) 1,3\n" + line(300) + line(320) + line(310));
    EXPECT_EQ(capture.warnings(),
              Texts{"Ignoring invalid properties of species H2O(L) (line 5)\n"});
}

TEST_F(PropertiesLoading, AnInterruptedTableIsPassedOver)
{
    // The head promises a million lines; memory goes by those that are there.
    load(version2 + "H2O(L) 1000,1000\n" + data(1, 300, 4, 1000, 5, 6) + "\n");
    EXPECT_EQ(capture.warnings(),
              Texts{"Ignoring incomplete properties of species H2O(L) (line 3)\n"});
    EXPECT_FALSE(water->hasCpTable());
}

TEST_F(PropertiesLoading, WhatIsSavedReadsBackAndIsStable)
{
    load(version2 + table("H2O(L) 2,3"));
    const std::string path = folder.path("saved.inp");
    database.saveProperties(path.c_str(), -1);
    const Texts lines = linesOf(contentOf(path));
    ASSERT_EQ(lines.size(), 7 + 1 + 6 + 1 + 3u);
    EXPECT_EQ(lines[0], "!" + std::string(119, ' '));
    EXPECT_EQ(lines[1],
              "!                                                 PROPERTIES OF COMPONENTS" +
                  std::string(46, ' '));
    EXPECT_EQ(lines[2], "!Format Version 2" + std::string(103, ' '));
    EXPECT_EQ(lines[3], "!" + std::string(119, '*'));
    EXPECT_EQ(lines[4],
              "!Pressure      Temperature    Cp             Density        Viscosity      "
              "Therm.Cond.    Temp.of Vapor. Heat of Vapor. ");
    EXPECT_EQ(lines[5],
              "!MPa           K              kJ/(kg-K)      kg/m^3         \u00b5Pa-s     "
              "     mW/m-K         Ts(p), K       Qs(Ts), kJ/kg  ");
    EXPECT_EQ(lines[7], "H2O(L)            2, 3");
    EXPECT_EQ(lines[8] + "\n", first(data(0.1, 300, 4.0, 1000, 800, 600), 310, 2200));
    EXPECT_EQ(lines[9], data(0.1, 320, 4.1, 990, 700, 610));
    EXPECT_EQ(lines[14], lines[3]);
    EXPECT_EQ(lines[15], lines[5]);
    EXPECT_EQ(lines[16], lines[4]);
    EXPECT_EQ(lines[17], lines[3]);

    TestDatabase again;
    again.loadNASA9(folder.path("a.inp").c_str());
    again.loadProperties(path.c_str());
    EXPECT_DOUBLE_EQ(again.find("H2O(L)")->getInterpolatedCp(300.0, 1e7, false), 3.9 * M);
    const std::string second = folder.path("second.inp");
    again.saveProperties(second.c_str(), -1);
    EXPECT_EQ(contentOf(second), contentOf(path));
}

TEST_F(PropertiesLoading, OnlyTheTablesOfASourceAreSaved)
{
    load(version2 + table("H2O(L) 2,3"));
    database.loadProperties(folder.write("u.inp", version2 + table("Ar 2,3")).c_str());
    water->setTableModified(true);
    database.findForUpdate("Ar")->setTableModified(true);
    database.saveProperties(folder.path("u.inp").c_str(), 2);
    EXPECT_EQ(contentOf(folder.path("u.inp")).find("H2O"), std::string::npos);
    EXPECT_NE(contentOf(folder.path("u.inp")).find("\nAr"), std::string::npos);
    EXPECT_FALSE(database.find("Ar")->isTableModified());
    EXPECT_TRUE(water->isTableModified());
    EXPECT_FALSE(database.isPropertiesModified(2));
    EXPECT_TRUE(database.isPropertiesModified(1));
    EXPECT_TRUE(std::filesystem::exists(folder.path("u~.inp")));
}
