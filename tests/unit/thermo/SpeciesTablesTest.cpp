#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/nasa9/NASA9Polynomial.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>

using ketra_test::LogCapture;
using math::interpolation::Interpolation;
using math::interpolation::Interpolation2D;
using thermo::gasConstant;
using thermo::nasa9::NASA9Species;

namespace {

using Texts = std::vector<std::string>;

/// Linear in T and in p, so that interpolated values are closed forms: c + a T + b p/1e6.
Interpolation2D* plane(double c, double a, double b)
{
    const std::array T{280.0, 300.0, 320.0, 360.0};
    const std::array p{2.0e5, 1.0e7};
    std::array<double, 8> v{};
    for (std::size_t i = 0; i < T.size(); ++i)
        for (std::size_t k = 0; k < p.size(); ++k) v[i * 2 + k] = c + a * T[i] + b * p[k] / 1e6;
    return new Interpolation2D(4, T.data(), 2, p.data(), v.data());
}

std::unique_ptr<NASA9Species> speciesOf(const char* record)
{
    thermo::ChemicalElement::initAtoms();
    std::vector<std::string> lines = ketra_test::linesOf(record);
    auto species = std::make_unique<NASA9Species>(lines[0], false, false);
    species->loadHeader(lines[1]);
    for (std::size_t i = 2; i < lines.size(); ++i) species->loadPolynomial(lines[i]);
    return species;
}

/// A liquid of 18.01528 g/mol with Cp = 70 + 0.1 T J/(mol K) and rho = 1200 - T + p/MPa kg/m3.
std::unique_ptr<NASA9Species> liquid()
{
    auto species = speciesOf(ketra_test::waterRecord);
    species->setCpTable(plane(70.0, 0.1, 0.0));
    species->setRhoTable(plane(1200.0, -1.0, 1.0));
    return species;
}

} // namespace

TEST(SpeciesTables, AreAbsentAtFirst)
{
    const auto species = speciesOf(ketra_test::waterRecord);
    EXPECT_FALSE(species->hasCpTable() || species->hasRhoTable() || species->hasMuTable() ||
                 species->hasLambdaTable() || species->hasTsTable() || species->hasQsTable());
    EXPECT_EQ(species->getCpTable(), nullptr);
    EXPECT_EQ(species->getTsTable(), nullptr);
    EXPECT_FALSE(species->checkCpTable(300.0));
    EXPECT_FALSE(species->checkTsTable(1e6));
    KETRA_EXPECT_THROW_CODE(species->getInterpolatedCp(300.0, 1e6, true), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(species->getInterpolatedTs(1e6), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(species->getInterpolatedQs(300.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_MESSAGE(species->getP(1e6), thermo::Exception, 2, "Invalid pressure");
}

TEST(SpeciesTables, SettingAndRemovingMarksThemAsModified)
{
    const auto species = speciesOf(ketra_test::waterRecord);
    const auto changes = [&](auto change) {
        species->setTableModified(false);
        change();
        return species->isTableModified();
    };
    const std::array x{1.0, 2.0};
    const auto line = [&] { return new Interpolation(2, x.data(), x.data()); };
    EXPECT_TRUE(changes([&] { species->setCpTable(plane(1, 0, 0)); }));
    EXPECT_TRUE(changes([&] { species->setRhoTable(plane(1, 0, 0)); }));
    EXPECT_TRUE(changes([&] { species->setMuTable(plane(1, 0, 0)); }));
    EXPECT_TRUE(changes([&] { species->setLambdaTable(plane(1, 0, 0)); }));
    EXPECT_TRUE(changes([&] { species->setTsTable(line()); }));
    EXPECT_TRUE(changes([&] { species->setQsTable(line()); }));
    EXPECT_TRUE(species->hasCpTable() && species->hasRhoTable() && species->hasMuTable() &&
                species->hasLambdaTable() && species->hasTsTable() && species->hasQsTable());
    EXPECT_TRUE(changes([&] { species->removeCpTable(); }));
    EXPECT_TRUE(changes([&] { species->removeRhoTable(); }));
    EXPECT_TRUE(changes([&] { species->removeMuTable(); }));
    EXPECT_TRUE(changes([&] { species->removeLambdaTable(); }));
    EXPECT_TRUE(changes([&] { species->removeTsTable(); }));
    EXPECT_TRUE(changes([&] { species->removeQsTable(); }));
    EXPECT_FALSE(species->hasCpTable() || species->hasQsTable());
    EXPECT_FALSE(species->isModified());
}

TEST(SpeciesTables, ReplacingATableFreesTheOldOne)
{
    const auto species = liquid();
    species->setCpTable(plane(5.0, 0.0, 0.0));
    EXPECT_DOUBLE_EQ(species->getInterpolatedCp(300.0, 1e6, false), 5.0);
}

TEST(SpeciesTables, ChecksCoverTheirRanges)
{
    const auto species = liquid();
    species->setMuTable(plane(1, 0, 0));
    species->setLambdaTable(plane(1, 0, 0));
    EXPECT_TRUE(species->checkCpTable(280.0));
    EXPECT_TRUE(species->checkCpTable(360.0));
    EXPECT_FALSE(species->checkCpTable(279.9));
    EXPECT_TRUE(species->checkRhoTable(300.0, 1.0e7, false));
    EXPECT_FALSE(species->checkRhoTable(300.0, 1.1e7, false));
    EXPECT_TRUE(species->checkRhoTable(300.0, 1.1e7, true)); // any pressure
    EXPECT_FALSE(species->checkRhoTable(400.0, 1.0e6, true));
    EXPECT_FALSE(species->checkCpTable(300.0, 1.0e5, false));
    EXPECT_TRUE(species->checkMuTable(300.0));
    EXPECT_FALSE(species->checkMuTable(300.0, 1.0e5, false));
    EXPECT_TRUE(species->checkLambdaTable(300.0, 1.0e5, true));
    EXPECT_FALSE(species->checkLambdaTable(1.0));
    EXPECT_EQ(species->getP(1e6), 1e6);
    KETRA_EXPECT_THROW_CODE(species->getP(1e5), thermo::Exception, 2);
    species->removeCpTable();
    EXPECT_EQ(species->getP(1e6), 1e6); // by the density alone
}

TEST(SpeciesTables, PressureIsClampedOnlyWhenAsked)
{
    const auto species = liquid();
    EXPECT_DOUBLE_EQ(species->getInterpolatedRho(300.0, 5.0e7, true), 910.0);
    EXPECT_DOUBLE_EQ(species->getInterpolatedRho(300.0, 1.0e5, true), 900.2);
    KETRA_EXPECT_THROW_MESSAGE(species->getInterpolatedRho(300.0, 5.0e7, false), thermo::Exception,
                               1, "Invalid temperature");
    KETRA_EXPECT_THROW_CODE(species->getInterpolatedRho(400.0, 1e6, true), thermo::Exception, 1);
    species->setMuTable(plane(2, 0, 0));
    species->setLambdaTable(plane(3, 0, 0));
    EXPECT_DOUBLE_EQ(species->getInterpolatedMu(300.0, 5.0e7, true), 2.0);
    EXPECT_DOUBLE_EQ(species->getInterpolatedLambda(300.0, 5.0e7, true), 3.0);
    KETRA_EXPECT_THROW_CODE(species->getInterpolatedMu(300.0, 5.0e7, false), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(species->getInterpolatedLambda(300.0, 5e7, false), thermo::Exception,
                            1);
}

TEST(SpeciesTables, BoilingLineIsClampedAlways)
{
    const auto species = speciesOf(ketra_test::waterRecord);
    const std::array p{1e5, 1e6}, Ts{300.0, 340.0}, Qs{2e6, 1e6};
    species->setTsTable(new Interpolation(2, p.data(), Ts.data()));
    species->setQsTable(new Interpolation(2, Ts.data(), Qs.data()));
    EXPECT_DOUBLE_EQ(species->getInterpolatedTs(5.5e5), 320.0);
    EXPECT_DOUBLE_EQ(species->getInterpolatedTs(1.0), 300.0);
    EXPECT_DOUBLE_EQ(species->getInterpolatedQs(320.0), 1.5e6);
    EXPECT_DOUBLE_EQ(species->getInterpolatedQs(500.0), 1e6);
    EXPECT_TRUE(species->checkTsTable(1e6));
    EXPECT_FALSE(species->checkTsTable(2e6));
    EXPECT_TRUE(species->checkQsTable(300.0));
    EXPECT_FALSE(species->checkQsTable(299.0));
}

TEST(SpeciesTables, AFixedRecordAnswersForTheTemperaturesOfItsTable)
{
    const auto species = speciesOf(ketra_test::binderRecord);
    KETRA_EXPECT_THROW_CODE(species->getT(320.0), thermo::Exception, 1);
    species->setCpTable(plane(70.0, 0.1, 0.0));
    EXPECT_EQ(species->getT(320.0), 320.0);
    EXPECT_EQ(species->getT(298.9), 298.9); // the table comes before the nearness
    KETRA_EXPECT_THROW_CODE(species->getT(361.0), thermo::Exception, 1);
}

TEST(EnthalpyOfHeating, IsTheSumOfFullTrapezoidsBeforeTheEnd)
{
    const auto species = liquid();
    // From T1 the grid has the points T1 + 0.1 k below T2. With Cp linear the trapezoids are exact,
    // so the sum is the integral up to the last grid point.
    const auto integral = [](double a, double b) {
        return 70.0 * (b - a) + 0.05 * (b * b - a * a);
    };
    EXPECT_NEAR(species->getDeltaH_Cp(300.0, 310.05, 1e6), integral(300.0, 310.0), 1e-7);
    EXPECT_NEAR(species->getDeltaH_Cp(310.05, 300.0, 1e6), integral(310.05, 300.05), 1e-7);
}

TEST(EnthalpyOfHeating, IsZeroWithinAStepOrWithoutATable)
{
    LogCapture capture;
    EXPECT_EQ(liquid()->getDeltaH_Cp(300.0, 300.05, 1e6), 0.0);
    EXPECT_EQ(speciesOf(ketra_test::waterRecord)->getDeltaH_Cp(300.0, 340.0, 1e6), 0.0);
    EXPECT_TRUE(capture.lines().empty());
}

TEST(EnthalpyOfHeating, TakesTheStandardPressureForOneOutsideTheTable)
{
    // Cp = 70 + p/MPa; the table begins above the standard pressure, so its first line counts.
    const auto species = speciesOf(ketra_test::waterRecord);
    species->setCpTable(plane(70.0, 0.0, 1.0));
    EXPECT_NEAR(species->getDeltaH_Cp(300.0, 310.05, 5e7), 10.0 * 70.2, 1e-7);
    EXPECT_NEAR(species->getDeltaH_Cp(300.0, 310.05, 5e6), 10.0 * 75.0, 1e-7);
}

TEST(EnthalpyOfHeating, OutsideTheTableItWarnsAndIsZero)
{
    LogCapture capture;
    EXPECT_EQ(liquid()->getDeltaH_Cp(300.0, 400.0, 1e6), 0.0);
    const Texts expected{"Could not calculate temperature-caused enthalpy addition for given "
                         "temperature and pressure: 400.0000K  1.0000MPa\n"};
    EXPECT_EQ(capture.warnings(), expected);
    EXPECT_EQ(capture.tagOf(expected[0]), "THERMO");
    EXPECT_EQ(liquid()->getDeltaH_Cp(200.0, 300.0, 1e6), 0.0);
    EXPECT_EQ(capture.warnings().size(), 2u);
}

TEST(EnthalpyOfPressure, OfAGasIsThatOfCompression)
{
    const auto gas = speciesOf(ketra_test::argonRecord);
    EXPECT_EQ(gas->getDeltaH_rho(298.15, 300.0, 100000.0), 0.0);
    EXPECT_EQ(gas->getDeltaH_rho(298.15, 300.0, 50000.0), 0.0);
    EXPECT_DOUBLE_EQ(gas->getDeltaH_rho(298.15, 300.0, 1e6), 300.0 * 8.314472 * std::log(10.0));
    EXPECT_EQ(gas->getDeltaH_rho(298.15, 300.0, 0.0), 0.0);
}

TEST(EnthalpyOfPressure, OfASolidIsZero)
{
    LogCapture capture;
    std::string record = ketra_test::waterRecord;
    record.replace(record.find("(L)"), 3, "(s)");
    record.replace(record.find("liquid"), 6, "solid ");
    EXPECT_EQ(speciesOf(record.c_str())->getDeltaH_rho(298.15, 300.0, 1e7), 0.0);
    EXPECT_TRUE(capture.lines().empty());
}

TEST(EnthalpyOfPressure, OfALiquidIsTheWorkAtTheMeanDensity)
{
    LogCapture capture;
    const double M = 18.01528e-3;
    EXPECT_DOUBLE_EQ(liquid()->getDeltaH_rho(300.0, 320.0, 5e6),
                     (5e6 - 1e5) * 2.0 * M / (905.0 + 885.0));
    EXPECT_TRUE(capture.lines().empty());
}

TEST(EnthalpyOfPressure, WarnsOfAPressureOutsideTheTable)
{
    LogCapture capture;
    const double M = 18.01528e-3;
    EXPECT_DOUBLE_EQ(liquid()->getDeltaH_rho(300.0, 320.0, 2e7),
                     (2e7 - 1e5) * 2.0 * M / (910.0 + 890.0));
    const Texts expected{"H2O(L): using density at pressure 10.0000 MPa while calculating "
                         "pressure-caused enthalpy addition for temperature and pressure "
                         "320.0000K 20.0000MPa\n"};
    EXPECT_EQ(capture.warnings(), expected);
    EXPECT_EQ(capture.tagOf(expected[0]), "THERMO");
}

TEST(EnthalpyOfPressure, OutsideTheTemperaturesItGoesByTheReferenceDensity)
{
    LogCapture capture;
    const double M = 18.01528e-3;
    EXPECT_DOUBLE_EQ(liquid()->getDeltaH_rho(300.0, 400.0, 5e6), (5e6 - 1e5) * M / 905.0);
    EXPECT_DOUBLE_EQ(liquid()->getDeltaH_rho(300.0, 400.0, 2e7), (2e7 - 1e5) * M / 910.0);
    const Texts expected{
        "H2O(L): using density at temperature 300.0000K  5.0000 MPa while calculating "
        "pressure-caused enthalpy addition for temperature and pressure 400.0000K  5.0000MPa\n",
        "H2O(L): using density at temperature 300.0000K and pressure 10.0000 MPa while calculating "
        "pressure-caused enthalpy addition for temperature and pressure 400.0000K 20.0000MPa\n"};
    EXPECT_EQ(capture.warnings(), expected);
}

TEST(EnthalpyOfPressure, WithoutAReferenceDensityItWarnsAndIsZero)
{
    LogCapture capture;
    const std::string expected =
        "H2O(L): could not calculate pressure-caused enthalpy addition for given temperature and "
        "pressure: 320.0000K  5.0000MPa\n";
    EXPECT_EQ(liquid()->getDeltaH_rho(250.0, 320.0, 5e6), 0.0);
    EXPECT_EQ(speciesOf(ketra_test::waterRecord)->getDeltaH_rho(300.0, 320.0, 5e6), 0.0);
    EXPECT_EQ(capture.warnings(), (Texts{expected, expected}));
    EXPECT_EQ(capture.tagOf(expected), "THERMO");
}

TEST(SpeciesTables, ACopySharesThemUntilItIsChanged)
{
    const auto source = liquid();
    NASA9Species copy(*source);
    EXPECT_EQ(copy.getCpTable(), source->getCpTable());
    copy.removeCpTable();
    EXPECT_TRUE(source->hasCpTable());
    EXPECT_NE(copy.getRhoTable(), source->getRhoTable());
    EXPECT_EQ(copy.getInterpolatedRho(300.0, 1e6, false),
              source->getInterpolatedRho(300.0, 1e6, false));
}

TEST(SpeciesTables, AreWrittenInColumns)
{
    const auto species = liquid();
    species->setMuTable(plane(1e-3, 0.0, 0.0));
    std::string text;
    species->writePropertiesTo(text, -1);
    const Texts lines = ketra_test::linesOf(text);
    ASSERT_EQ(lines.size(), 1 + 8 + 1u);
    EXPECT_EQ(lines[0], "H2O(L)            2, 4");
    // Cp/M at 280 K is 98/18.01528; missing tables give 0.
    EXPECT_EQ(lines[1], "  0.200000     280.00          5.43983        920.2000      1000.0000"
                        "        0.00000        0.00           0.0000");
    EXPECT_EQ(lines[2], "  0.200000     300.00          5.55084        900.2000      1000.0000"
                        "        0.00000");
    EXPECT_EQ(lines[9], "!" + std::string(119, '*'));
    text.clear();
    species->writePropertiesTo(text, 3); // the tables of another file
    EXPECT_EQ(text, "");
    speciesOf(ketra_test::waterRecord)->writePropertiesTo(text, -1);
    EXPECT_EQ(text, "");
}

TEST(SpeciesTables, AValueThatDoesNotFitItsColumnIsRefused)
{
    LogCapture capture;
    const auto species = liquid();
    species->setRhoTable(plane(1.0e10, 0.0, 0.0));
    std::string text;
    KETRA_EXPECT_THROW_CODE(species->writePropertiesTo(text, -1), runtime::Exception, 0);
    EXPECT_EQ(capture.errors(), Texts{"Database: could not write species H2O(L): a density does "
                                      "not fit its column: 10000000000.0000\n"});
    species->removeCpTable();
    KETRA_EXPECT_THROW_CODE(species->writePropertiesTo(text, -1), runtime::Exception, 0);
    EXPECT_EQ(capture.errors().back(), "Database: could not write properties of species H2O(L): it "
                                       "has no table of specific heat\n");
}
