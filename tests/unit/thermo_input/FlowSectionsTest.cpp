#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>

#include <unit/thermo_input/Facts.h>
#include <unit/thermo_input/Settings.h>

#include <gtest/gtest.h>

using ketra_test::factsOf;
using ketra_test::readText;
using ketra_test::Settings;
using namespace thermo::input;

namespace {

TEST(GeneralOptions, ConsidersEverythingByDefault)
{
    const GeneralOptions options;
    EXPECT_TRUE(options.isMultiphase());
    EXPECT_TRUE(options.isIons());
    EXPECT_TRUE(options.isFlowSeparation());
}

TEST(CombustionChamberConditions, PressureStartsInMegapascal)
{
    CombustionChamberConditions chamber;
    EXPECT_EQ(chamber.getPressure(false), 0.0);
    EXPECT_EQ(chamber.getPressureUnit(false), Pressure::MPA);
    EXPECT_EQ(chamber.getPressureUnit(true), Pressure::PA);
    chamber.setPressure(2e6, Pressure::PA, true);
    EXPECT_EQ(chamber.getPressure(false), 2.0);
    EXPECT_EQ(chamber.getPressure(true), 2e6);
    EXPECT_EQ(chamber.getPressure(Pressure::BAR), 20.0);
    EXPECT_NO_THROW(chamber.validate());
}

TEST(FreezingConditions, FirstAlternativeOfTheDocumentWins)
{
    FreezingConditions all, later;
    readText(all, "pressureRatio = 3.0; pressure = { value = 2.0; }; expansionRatio = 1.5;");
    EXPECT_EQ(all.getExpansionRatio(), 1.5);
    EXPECT_FALSE(all.isPressureSet());
    EXPECT_FALSE(all.isPressureRatioSet());

    readText(later, "pressureRatio = 3.0; pressure = { value = 2.0; };");
    EXPECT_EQ(later.getPressure(true), 2.0);
    EXPECT_FALSE(later.isPressureRatioSet());
}

TEST(FreezingConditions, SettingOneDropsTheOthers)
{
    FreezingConditions s;
    s.setExpansionRatio(2.0);
    s.setPressure(1.0, Pressure::BAR, false);
    EXPECT_FALSE(s.isExpansionRatioSet());
    s.setPressureRatio(3.0);
    EXPECT_FALSE(s.isPressureSet());
    s.setExpansionRatio(2.0);
    EXPECT_FALSE(s.isPressureRatioSet());
    EXPECT_EQ(s.getExpansionRatio(), 2.0);
    s.deleteExpansionRatio();
    s.deletePressure();
    s.deletePressureRatio();
    EXPECT_FALSE(s.isExpansionRatioSet() || s.isPressureSet() || s.isPressureRatioSet());
    EXPECT_FALSE(s.isCalculate());
}

TEST(FreezingConditions, CreatedPressureKeepsTheUnitOfTheFormat)
{
    FreezingConditions s;
    s.setPressure(1.0, Pressure::BAR, true);
    EXPECT_EQ(s.getPressure(false), 1e5);
    EXPECT_EQ(s.getPressureUnit(false), Pressure::PA);
    EXPECT_EQ(s.getPressure(Pressure::BAR), 1.0);
    s.setPressure(1.0, Pressure::BAR, false);
    EXPECT_EQ(s.getPressureUnit(false), Pressure::BAR);
    EXPECT_EQ(s.getPressureUnit(true), Pressure::PA);
}

TEST(NozzleInletConditions, FirstAlternativeOfTheDocumentWins)
{
    NozzleInletConditions s;
    readText(s, "massFlux = { value = 2.0; }; contractionAreaRatio = 1.5;");
    EXPECT_EQ(s.getContractionAreaRatio(), 1.5);
    EXPECT_FALSE(s.isMassFluxSet());
}

TEST(NozzleInletConditions, SettingOneDropsTheOther)
{
    NozzleInletConditions s;
    s.setContractionAreaRatio(2.0);
    s.setMassFlux(1.0, MassFlux::LBM_PER_FT2_S, true);
    EXPECT_FALSE(s.isContractionAreaRatioSet());
    EXPECT_EQ(s.getMassFlux(true), 4.88242763638305);
    EXPECT_EQ(s.getMassFluxUnit(false), MassFlux::KG_PER_M2_S);
    EXPECT_DOUBLE_EQ(s.getMassFlux(MassFlux::LBM_PER_FT2_S), 1.0);
    s.setContractionAreaRatio(2.0);
    EXPECT_FALSE(s.isMassFluxSet());
    s.deleteContractionAreaRatio();
    s.deleteMassFlux();
    EXPECT_FALSE(s.isContractionAreaRatioSet());
}

TEST(NozzleSectionConditions, FirstAlternativeOfTheDocumentWins)
{
    NozzleSectionConditions all, later;
    readText(all, "pressure = { value = 2.0; }; pressureRatio = 3.0; areaRatio = 4.0;");
    EXPECT_EQ(all.getAreaRatio(), 4.0);
    EXPECT_FALSE(all.isPressure() || all.isPressureRatio());
    readText(later, "pressure = { value = 2.0; }; pressureRatio = 3.0;");
    EXPECT_EQ(later.getPressureRatio(), 3.0);
    EXPECT_FALSE(later.isPressure() || later.isAreaRatio());
}

TEST(NozzleSectionConditions, AreaRatioIsSupersonicUnlessItSaysOtherwise)
{
    NozzleSectionConditions silent, subsonic, without;
    EXPECT_TRUE(without.isSuperSonicAreaRatio());
    silent.setAreaRatio(3.0, false);
    EXPECT_FALSE(silent.isSuperSonicAreaRatio());
    readText(silent, "areaRatio = 4.0;");
    EXPECT_TRUE(silent.isSuperSonicAreaRatio());
    readText(subsonic, "areaRatio = 4.0; supersonic = false;");
    EXPECT_FALSE(subsonic.isSuperSonicAreaRatio());
    readText(without, "pressureRatio = 4.0; supersonic = false;");
    EXPECT_TRUE(without.isSuperSonicAreaRatio());
}

TEST(NozzleSectionConditions, SettingOneDropsTheOthers)
{
    NozzleSectionConditions s;
    s.setAreaRatio(3.0, false);
    s.setPressureRatio(5.0);
    EXPECT_FALSE(s.isAreaRatio());
    EXPECT_TRUE(s.isSuperSonicAreaRatio());
    s.setPressure(1.0, Pressure::ATM, false);
    EXPECT_FALSE(s.isPressureRatio());
    EXPECT_EQ(s.getPressure(true), 101325.0);
    EXPECT_EQ(s.getPressure(Pressure::ATM), 1.0);
    EXPECT_EQ(s.getPressureUnit(false), Pressure::ATM);
    s.setAreaRatio(3.0, false);
    EXPECT_FALSE(s.isPressure());
    s.deleteAreaRatio();
    EXPECT_TRUE(s.isSuperSonicAreaRatio());
    s.setPressure(1.0, Pressure::ATM, false);
    s.deletePressure();
    s.setPressureRatio(1.0);
    s.deletePressureRatio();
    EXPECT_FALSE(s.isAreaRatio() || s.isPressure() || s.isPressureRatio());
}

TEST(NozzleSectionConditions, SideOfTheThroatIsWrittenBesideAnAreaRatioOnly)
{
    NozzleSectionConditions area("exit"), pressure("exit");
    Settings settings, other;
    area.setAreaRatio(3.0, true);
    area.write(settings.root(), true);
    EXPECT_TRUE(settings.has("exit.supersonic"));
    pressure.setPressureRatio(3.0);
    pressure.write(other.root(), true);
    EXPECT_FALSE(other.has("exit.supersonic"));
}

TEST(AmbientConditions, OnePressureWinsOverTheRange)
{
    AmbientConditions s, range;
    readText(s, "minPressure = { value = 1.0; }; maxPressure = { value = 2.0; }; "
                "pressure = { value = 3.0; }; calculateDeliveredPerformance = false;");
    EXPECT_EQ(s.getFixedPressure(true), 3.0);
    EXPECT_FALSE(s.isRangePressureSet());
    EXPECT_FALSE(s.isDeliveredPerformance());
    readText(range, "minPressure = { value = 1.0; }; maxPressure = { value = 2.0; }; "
                    "calculateDeliveredPerformance = false;");
    EXPECT_TRUE(range.isRangePressureSet());
    EXPECT_EQ(range.getRangePressureMin(true), 1.0);
    EXPECT_EQ(range.getRangePressureMax(true), 2.0);
    EXPECT_FALSE(range.isDeliveredPerformance());
}

TEST(AmbientConditions, OnePressureAndTheRangeDropEachOther)
{
    AmbientConditions s;
    s.setFixedPressure(1.0, Pressure::BAR, false);
    s.setRangePressureMin(0.5, Pressure::BAR, false);
    EXPECT_FALSE(s.isFixedPressureSet());
    EXPECT_FALSE(s.isRangePressureSet()); // one end is no range
    s.setRangePressureMax(0.9, Pressure::BAR, true);
    EXPECT_TRUE(s.isRangePressureSet());
    EXPECT_EQ(s.getRangePressureMin(Pressure::BAR), 0.5);
    EXPECT_EQ(s.getRangePressureMinUnit(false), Pressure::BAR);
    EXPECT_EQ(s.getRangePressureMax(Pressure::BAR), 0.9);
    EXPECT_EQ(s.getRangePressureMaxUnit(false), Pressure::PA);
    s.setFixedPressure(1.0, Pressure::BAR, false);
    EXPECT_FALSE(s.isRangePressureSet());
    EXPECT_EQ(s.getFixedPressure(Pressure::PA), 1e5);
    EXPECT_EQ(s.getFixedPressureUnit(false), Pressure::BAR);
    s.setRangePressureMax(1.0, Pressure::BAR, false);
    EXPECT_FALSE(s.isFixedPressureSet());
    s.deleteFixedPressure();
    s.deleteRangePressure();
    EXPECT_TRUE(s.isDeliveredPerformance());
}

TEST(ThrottlingConditions, FixedFlowRateDropsTheRangeAndTheOtherWayRound)
{
    ThrottlingConditions s, document;
    s.setRangeFlowrateMin(0.5);
    s.setRangeFlowrateMax(1.5);
    EXPECT_TRUE(s.isRangeFlowrateSet());
    s.setFixedFlowrate(1.0);
    EXPECT_FALSE(s.isRangeFlowrateSet());
    EXPECT_THROW(s.getRangeFlowrateMin(), Exception);
    EXPECT_THROW(s.getRangeFlowrateMax(), Exception);
    s.setRangeFlowrateMax(1.5);
    EXPECT_FALSE(s.isFixedFlowrateSet());
    EXPECT_FALSE(s.isRangeFlowrateSet());
    s.setFixedFlowrate(1.0);
    s.setRangeFlowrateMin(1.5);
    EXPECT_FALSE(s.isFixedFlowrateSet());
    s.deleteRangeFlowrate();
    s.deleteFixedFlowrate();

    readText(document, "minFlowrate = 0.5; maxFlowrate = 0.7; flowrate = 1.0;");
    EXPECT_EQ(document.getFixedFlowrate(), 1.0);
    EXPECT_FALSE(document.isRangeFlowrateSet());
}

TEST(ThrottlingConditions, DeliveredPerformanceIsWrittenOnlyIfItIsOff)
{
    ThrottlingConditions s;
    s.setFixedFlowrate(0.0);
    Settings on, off;
    s.write(on.root(), true);
    EXPECT_TRUE(on.has("throttlingConditions.flowrate"));
    EXPECT_FALSE(on.has("throttlingConditions.calculateDeliveredPerformance"));
    s.setDeliveredPerformance(false);
    s.write(off.root(), true);
    EXPECT_TRUE(off.has("throttlingConditions.calculateDeliveredPerformance"));
}

TEST(EfficiencyFactors, FactorsAreIndependent)
{
    EfficiencyFactors s;
    EXPECT_TRUE(s.isApplyEfficiencyFactors());
    s.setCycleEfficiency(0.1);
    s.setReactionEfficiency(0.2);
    s.setNozzleEfficiency(0.3);
    s.setNozzleLength(0.4);
    s.setConeHalfAngle(0.5);
    EXPECT_EQ(s.getCycleEfficiency(), 0.1);
    EXPECT_EQ(s.getReactionEfficiency(), 0.2);
    EXPECT_EQ(s.getNozzleEfficiency(), 0.3);
    EXPECT_EQ(s.getNozzleLength(), 0.4);
    EXPECT_EQ(s.getConeHalfAngle(), 0.5);
    s.deleteCycleEfficiency();
    s.deleteReactionEfficiency();
    s.deleteNozzleEfficiency();
    s.deleteNozzleLength();
    s.deleteConeHalfAngle();
    EXPECT_EQ(factsOf(s), factsOf(EfficiencyFactors()));
    EXPECT_NO_THROW(s.validate());
}

} // namespace
