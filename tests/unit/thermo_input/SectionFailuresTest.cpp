#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <gtest/gtest.h>

#include <functional>

using ketra_test::LogCapture;
using namespace thermo::input;

namespace {

constexpr Pressure::UNITS bar = Pressure::BAR;

/// A getter of an absent member, and what the log says about it.
struct AbsentMember {
    const char* getter;
    std::function<void()> call;
    const char* message; // null if nothing is logged
};

template <class S, class Getter> std::function<void()> of(Getter getter)
{
    return [getter] {
        S section;
        getter(section);
    };
}

std::vector<AbsentMember> absentMembers()
{
    using Flow = NozzleFlowOptions;
    using Exit = NozzleSectionConditions;
    return {
        {"freezing pressure ratio", of<FreezingConditions>([](auto& s) { s.getPressureRatio(); }),
         "Could not obtain pressure ratio from freezing conditions"},
        {"freezing expansion ratio", of<FreezingConditions>([](auto& s) { s.getExpansionRatio(); }),
         "Could not obtain area ratio from freezing conditions"},
        {"freezing pressure", of<FreezingConditions>([](auto& s) { s.getPressure(true); }),
         "Could not obtain pressure from freezing conditions"},
        {"freezing pressure in a unit", of<FreezingConditions>([](auto& s) { s.getPressure(bar); }),
         "Could not obtain pressure from freezing conditions"},
        {"freezing pressure unit", of<FreezingConditions>([](auto& s) { s.getPressureUnit(true); }),
         nullptr},
        {"freezing conditions", of<Flow>([](auto& s) { s.getFreezingConditions(); }),
         "Could not obtain freezing conditions"},
        {"inlet conditions", of<Flow>([](auto& s) { s.getNozzleInletConditions(); }),
         "Could not obtain nozzle inlet options"},
        {"exit conditions", of<Flow>([](auto& s) { s.getNozzleExitConditions(); }),
         "Could not obtain nozzle exit options"},
        {"efficiencies", of<Flow>([](auto& s) { s.getEfficiencyFactors(); }),
         "Could not obtain efficiency factors"},
        {"ambient conditions", of<Flow>([](auto& s) { s.getAmbientConditions(); }),
         "Could not obtain ambient conditions"},
        {"constant ambient conditions", of<const Flow>([](auto& s) { s.getAmbientConditions(); }),
         "Could not obtain ambient conditions"},
        {"throttling conditions", of<Flow>([](auto& s) { s.getThrottlingConditions(); }),
         "Could not obtain throttling conditions"},
        {"ambient pressure without conditions",
         of<Flow>([](auto& s) { s.getAmbientPressure(true); }),
         "Could not obtain ambient pressure"},
        {"ambient pressure without a fixed one", of<Flow>([](auto& s) {
             s.setAmbientConditions();
             s.getAmbientPressure(true);
         }),
         "Could not obtain fixed pressure"},
        {"ambient pressure unit without conditions",
         of<Flow>([](auto& s) { s.getAmbientPressureUnit(false); }),
         "Could not obtain ambient pressure unit"},
        {"ambient pressure unit without a fixed one", of<Flow>([](auto& s) {
             s.setAmbientConditions();
             s.getAmbientPressureUnit(true);
         }),
         "Could not obtain fixed pressure unit"},
        {"contraction", of<NozzleInletConditions>([](auto& s) { s.getContractionAreaRatio(); }),
         "Could not obtain contraction area ratio"},
        {"mass flux", of<NozzleInletConditions>([](auto& s) { s.getMassFlux(true); }),
         "Could not obtain mass flux"},
        {"mass flux in a unit",
         of<NozzleInletConditions>([](auto& s) { s.getMassFlux(MassFlux::KG_PER_M2_S); }),
         "Could not obtain mass flux"},
        {"mass flux unit", of<NozzleInletConditions>([](auto& s) { s.getMassFluxUnit(true); }),
         "Could not obtain mass flux units"},
        {"area ratio", of<Exit>([](auto& s) { s.getAreaRatio(); }),
         "Could not obtain area ratio for nozzle section conditions"},
        {"pressure ratio", of<Exit>([](auto& s) { s.getPressureRatio(); }),
         "Could not obtain pressure ratio for nozzle section conditions"},
        {"pressure", of<Exit>([](auto& s) { s.getPressure(false); }),
         "Could not obtain pressure for nozzle section conditions"},
        {"pressure unit", of<Exit>([](auto& s) { s.getPressureUnit(false); }),
         "Could not obtain pressure unit for nozzle section conditions"},
        {"fixed pressure", of<AmbientConditions>([](auto& s) { s.getFixedPressure(true); }),
         "Could not obtain fixed pressure"},
        {"fixed pressure in a unit",
         of<AmbientConditions>([](auto& s) { s.getFixedPressure(bar); }),
         "Could not obtain fixed pressure"},
        {"fixed pressure unit",
         of<AmbientConditions>([](auto& s) { s.getFixedPressureUnit(true); }),
         "Could not obtain fixed pressure unit"},
        {"lower pressure", of<AmbientConditions>([](auto& s) { s.getRangePressureMin(true); }),
         "Could not obtain minimum ambient pressure"},
        {"lower pressure in a unit",
         of<AmbientConditions>([](auto& s) { s.getRangePressureMin(bar); }),
         "Could not obtain minimum ambient pressure"},
        {"lower pressure unit",
         of<AmbientConditions>([](auto& s) { s.getRangePressureMinUnit(true); }),
         "Could not obtain minimum ambient pressure unit"},
        {"upper pressure", of<AmbientConditions>([](auto& s) { s.getRangePressureMax(true); }),
         "Could not obtain maximum ambient pressure"},
        {"upper pressure in a unit",
         of<AmbientConditions>([](auto& s) { s.getRangePressureMax(bar); }),
         "Could not obtain maximum ambient pressure"},
        {"upper pressure unit",
         of<AmbientConditions>([](auto& s) { s.getRangePressureMaxUnit(true); }),
         "Could not obtain maximum ambient pressure unit"},
        {"flow rate", of<ThrottlingConditions>([](auto& s) { s.getFixedFlowrate(); }),
         "Could not obtain flow rate for throttling conditions"},
        {"lower flow rate", of<ThrottlingConditions>([](auto& s) { s.getRangeFlowrateMin(); }),
         "Could not obtain minimum flow rate for throttling conditions"},
        {"upper flow rate", of<ThrottlingConditions>([](auto& s) { s.getRangeFlowrateMax(); }),
         "Could not obtain maximum flow rate for throttling conditions"},
        {"cycle", of<EfficiencyFactors>([](auto& s) { s.getCycleEfficiency(); }),
         "Could not obtain cycle efficiency coefficient"},
        {"reaction", of<EfficiencyFactors>([](auto& s) { s.getReactionEfficiency(); }),
         "Could not obtain reaction efficiency coefficient"},
        {"nozzle", of<EfficiencyFactors>([](auto& s) { s.getNozzleEfficiency(); }),
         "Could not obtain nozzle efficiency coefficient"},
        {"nozzle length", of<EfficiencyFactors>([](auto& s) { s.getNozzleLength(); }),
         "Could not obtain bell nozzle length"},
        {"half angle", of<EfficiencyFactors>([](auto& s) { s.getConeHalfAngle(); }),
         "Could not obtain conical nozzle half angle"},
    };
}

TEST(AbsentMember, IsLoggedInItsOwnWordsAndThrown)
{
    for (const AbsentMember& absent : absentMembers()) {
        SCOPED_TRACE(absent.getter);
        const LogCapture log;
        KETRA_EXPECT_THROW_MESSAGE(absent.call(), Exception, 2, "NULL pointer");
        if (absent.message == nullptr) {
            EXPECT_TRUE(log.lines().empty());
            continue;
        }
        const std::string text = std::string(absent.message) + ": NULL pointer\n";
        EXPECT_EQ(log.errors(), std::vector<std::string>{text});
        EXPECT_EQ(log.lines().size(), 1u);
        EXPECT_EQ(log.tagOf(text), "THERMO");
    }
}

template <class S> void expectInvalid(S& section, const std::string& text)
{
    SCOPED_TRACE(text);
    const LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(section.validate(), Exception, 7, text.c_str());
    EXPECT_EQ(log.errors(), std::vector<std::string>{text + "\n"});
    EXPECT_EQ(log.tagOf(text + "\n"), "THERMO");
}

template <class S> void expectValid(S& section)
{
    const LogCapture log;
    EXPECT_NO_THROW(section.validate());
    EXPECT_TRUE(log.lines().empty());
}

TEST(Validation, FreezingConditions)
{
    const std::string text =
        "Neither expansion ratio nor pressure is defined within FreezingConditions";
    FreezingConditions s;
    expectValid(s);
    s.setCalculate(true);
    expectInvalid(s, text);
    s.setPressureRatio(3.0); // does not do, though the document has the key
    expectInvalid(s, text);
    s.setPressure(1.0, Pressure::BAR, false);
    expectValid(s);
    s.setExpansionRatio(2.0);
    expectValid(s);
}

TEST(Validation, NozzleInletConditions)
{
    NozzleInletConditions s;
    expectInvalid(
        s, "Neither contraction area ratio nor mass flux is defined within NozzleInletConditions");
    s.setContractionAreaRatio(2.0);
    expectValid(s);
    s.setMassFlux(2.0, MassFlux::KG_PER_M2_S, false);
    expectValid(s);
}

TEST(Validation, NozzleSectionConditions)
{
    NozzleSectionConditions s;
    expectInvalid(s, "Neither area ratio, pressure ratio nor pressure is defined within "
                     "NozzleSectionConditions");
    s.setAreaRatio(2.0, true);
    expectValid(s);
    s.setPressureRatio(2.0);
    expectValid(s);
    s.setPressure(2.0, Pressure::PA, false);
    expectValid(s);
}

TEST(Validation, AmbientConditions)
{
    const std::string text = "Neither fixed ambient pressure nor ambient pressure range is defined "
                             "within AmbientConditions";
    AmbientConditions s;
    expectInvalid(s, text);
    s.setRangePressureMin(1.0, Pressure::BAR, false);
    expectInvalid(s, text);
    s.setRangePressureMax(2.0, Pressure::BAR, false);
    expectValid(s);
    s.setFixedPressure(1.0, Pressure::BAR, false);
    expectValid(s);
    s.setRangePressureMax(2.0, Pressure::BAR, false);
    expectInvalid(s, text);
}

TEST(Validation, ThrottlingConditions)
{
    const std::string text =
        "Neither fixed flow rate nor flow rate range is defined within ThrottlingConditions";
    ThrottlingConditions s;
    expectInvalid(s, text);
    s.setRangeFlowrateMin(1.0);
    expectInvalid(s, text);
    s.setRangeFlowrateMax(2.0);
    expectValid(s);
    s.setFixedFlowrate(1.0);
    expectValid(s);
}

TEST(Validation, NozzleFlowNeedsFreezingInletOrExit)
{
    NozzleFlowOptions s;
    s.setEfficiencyFactors();
    s.setAmbientConditions().setFixedPressure(1.0, Pressure::BAR, false);
    s.setSection().setAreaRatio(2.0, true);
    expectInvalid(s, "Neither freezing conditions, nozzle inlet conditions nor nozzle exit "
                     "conditions is defined within NozzleFlowOptions");
    s.setCalculateNozzleFlow(false);
    expectValid(s);

    NozzleFlowOptions freezing, inlet, exit, nothing;
    freezing.setFreezingConditions();
    inlet.setNozzleInletConditions().setContractionAreaRatio(2.0);
    exit.setNozzleExitConditions().setAreaRatio(2.0, true);
    nothing.setCalculateNozzleFlow(false);
    expectValid(freezing);
    expectValid(inlet);
    expectValid(exit);
    expectValid(nothing);
}

// Each step mends the first fault of the order, so that the next one shows.
TEST(Validation, NozzleFlowValidatesItsSectionsInOrder)
{
    NozzleFlowOptions s;
    s.setFreezingConditions().setCalculate(true);
    s.setNozzleInletConditions();
    s.setNozzleExitConditions();
    s.setAmbientConditions();
    s.setThrottlingConditions();
    s.setSection().setAreaRatio(2.0, true);
    s.setSection();
    expectInvalid(s, "Neither expansion ratio nor pressure is defined within FreezingConditions");
    s.getFreezingConditions().setExpansionRatio(2.0);
    expectInvalid(
        s, "Neither contraction area ratio nor mass flux is defined within NozzleInletConditions");
    s.getNozzleInletConditions().setContractionAreaRatio(2.0);
    const std::string section = "Neither area ratio, pressure ratio nor pressure is defined within "
                                "NozzleSectionConditions";
    expectInvalid(s, section);
    s.getNozzleExitConditions().setPressureRatio(5.0);
    expectInvalid(s, "Neither fixed ambient pressure nor ambient pressure range is defined within "
                     "AmbientConditions");
    s.getAmbientConditions().setFixedPressure(1.0, Pressure::ATM, false);
    expectInvalid(
        s, "Neither fixed flow rate nor flow rate range is defined within ThrottlingConditions");
    s.getThrottlingConditions().setFixedFlowrate(1.0);
    expectInvalid(s, section); // the second station
    s.getSection(1).setPressureRatio(5.0);
    expectValid(s);
}

TEST(Validation, SectionsAreValidatedWithoutNozzleFlowToo)
{
    NozzleFlowOptions s;
    s.setCalculateNozzleFlow(false);
    s.setNozzleInletConditions();
    expectInvalid(
        s, "Neither contraction area ratio nor mass flux is defined within NozzleInletConditions");
}

} // namespace
