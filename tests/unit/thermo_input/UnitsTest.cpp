#include <ketra/thermo/input/Angle.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/Force.h>
#include <ketra/thermo/input/Length.h>
#include <ketra/thermo/input/MassFlowRate.h>
#include <ketra/thermo/input/MassFlux.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/RotationalSpeed.h>
#include <ketra/thermo/input/Temperature.h>
#include <ketra/thermo/input/ThermalConductivity.h>
#include <ketra/thermo/input/Velocity.h>
#include <ketra/thermo/input/VolumetricMassDensity.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/Settings.h>

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>
#include <vector>

using ketra_test::LogCapture;
using ketra_test::Settings;
using libconfig::Setting;
using namespace thermo::input;

namespace {

constexpr double exactly = 4e-16; // relative, one rounding of a product and one of a quotient

struct Row {
    int unit;
    double factor; // base units in it, 0 without meaning
    std::vector<const char*> spellings;
};

/// What the format lays down for a dimension.
struct Dimension {
    int base;
    const char* words; // of the unknown-unit message
    std::vector<Row> rows;
};

template <class T> Dimension dimension();

template <> Dimension dimension<Pressure>()
{
    return {4,
            "pressure",
            {{0, 1e6, {"MPa"}},
             {1, 101325.0, {"atm"}},
             {2, 1e5, {"bar"}},
             {3, 6894.75729316836, {"psi", "psia"}},
             {4, 1.0, {"Pa"}},
             {5, 98066.5, {"kg/cm2", "at"}}}};
}
template <> Dimension dimension<Temperature>()
{
    return {0, "temperature", {{0, 0.0, {"K"}}, {1, 0.0, {"C"}}, {2, 0.0, {"F"}}}};
}
template <> Dimension dimension<MassFlux>()
{
    return {0,
            "mass flux",
            {{0, 1.0, {"kg/(m2-s)", "kg/(m2\xC2\xB7s)", "kg/(s\xC2\xB7m2)", "kg/(s-m2)"}},
             {1,
              4.88242763638305,
              {"lbm/(ft2-s)", "lbm/(ft2\xC2\xB7s)",
               "lbm/(s\xC2\xB7"
               "ft2)",
               "lbm/(s-ft2)"}}}};
}
template <> Dimension dimension<MassFlowRate>()
{
    return {0, "mass flow rate", {{0, 1.0, {"kg/s"}}, {1, 0.45359237, {"lbm/s"}}}};
}
template <> Dimension dimension<Force>()
{
    return {3,
            "force",
            {{0, 1000.0, {"kN"}},
             {1, 9.80665, {"kg"}},
             {2, 4.4482216152605, {"lbf"}},
             {3, 1.0, {"N"}}}};
}
template <> Dimension dimension<Length>()
{
    return {3,
            "length",
            {{0, 0.001, {"mm"}}, {1, 0.0254, {"in"}}, {2, 0.3048, {"ft"}}, {3, 1.0, {"m"}}}};
}
template <> Dimension dimension<Velocity>()
{
    return {3, "velocity", {{1, 0.0254, {"in/s"}}, {2, 0.3048, {"ft/s"}}, {3, 1.0, {"m/s"}}}};
}
template <> Dimension dimension<RotationalSpeed>()
{
    return {
        1,
        "RotationalSpeed",
        {{1, 1.0, {"rad/s"}}, {2, 0.10471975511965977, {"rpm"}}, {3, 6.283185307179586, {"Hz"}}}};
}
template <> Dimension dimension<ThermalConductivity>()
{
    return {0,
            "thermal conductivity",
            {{0, 1.0, {"W/(m K)", "W_over_m_K", "W/(m\xC2\xB7K)", "W/(m-K)"}},
             {1,
              0.9615192590952172,
              {"Btu/(hr ft R)", "Btu_over_hr_ft_R",
               "Btu/(hr\xC2\xB7"
               "ft\xC2\xB7R)",
               "Btu/(hr-ft-R)"}},
             {2,
              41537.63199291339,
              {"Btu/(s in R)", "Btu_over_s_in_R", "Btu/(s\xC2\xB7in\xC2\xB7R)", "Btu/(s-in-R)"}}}};
}
template <> Dimension dimension<Angle>()
{
    return {1,
            "angle",
            {{0, 57.29577951308232, {"radians", "radian", "rad", "r"}},
             {1, 1.0, {"degrees", "degree", "deg"}}}};
}
template <> Dimension dimension<VolumetricMassDensity>()
{
    return {0,
            "volumetric mass density",
            {{0, 1.0, {"kg/m^3", "kg_over_m^3", "kg/m3"}},
             {1, 1000.0, {"g/cm3", "g/cm^3", "g_over_cm^3"}},
             {2, 16.018463373960138, {"lbm/ft^3", "lbm_over_ft^3", "lbm/ft3"}},
             {3, 27679.904710203125, {"lbm/in^3", "lbm_over_in^3", "lbm/in3"}}}};
}

template <class T> constexpr bool hasFactors = !std::is_same_v<T, Temperature>;

template <class T> class Units : public testing::Test
{
public:
    using UNITS = typename T::UNITS;
    static UNITS unit(int number) { return static_cast<UNITS>(number); }

    const Dimension format = dimension<T>();
    const UNITS base = unit(format.base);
};

using UnitClasses =
    testing::Types<Pressure, Temperature, MassFlux, MassFlowRate, Force, Length, Velocity,
                   RotationalSpeed, ThermalConductivity, Angle, VolumetricMassDensity>;
TYPED_TEST_SUITE(Units, UnitClasses);

TYPED_TEST(Units, AreThirtyTwoBitsWide)
{
    static_assert(sizeof(typename TypeParam::UNITS) == 4);
    const TypeParam value("x", 1.0, this->base);
    EXPECT_EQ(sizeof(value.getUnit()), 4u);
}

TYPED_TEST(Units, EverySpellingIsReadAndTheFirstIsPrinted)
{
    for (const Row& row : this->format.rows) {
        const auto unit = this->unit(row.unit);
        EXPECT_STREQ(TypeParam::unitToRaw(unit), row.spellings[0]);
        for (const char* spelling : row.spellings) {
            SCOPED_TRACE(spelling);
            EXPECT_EQ(TypeParam::rawToUnit(spelling), unit);

            Settings settings("x = { value = 2.5; unit = \"" + std::string(spelling) + "\"; };");
            TypeParam value("x", 1.0, this->base);
            value.read(settings.root());
            EXPECT_EQ(value.getUnit(), unit);
            EXPECT_EQ(value.getValue(), 2.5);
            EXPECT_STREQ(value.getRawUnit(), row.spellings[0]);

            TypeParam set("x", 1.0, this->base);
            set.setRawUnit(spelling);
            EXPECT_EQ(set.getUnit(), unit);
            EXPECT_EQ(set.getValue(), 1.0);
        }
    }
}

TYPED_TEST(Units, UnknownSpellingIsLoggedAndThrown)
{
    for (const char* text : {"furlong", "", "MPA", "k", "M", "mPa", " m", "K "}) {
        SCOPED_TRACE(text);
        const LogCapture log;
        KETRA_EXPECT_THROW_MESSAGE(TypeParam::rawToUnit(text), Exception, 4, "Unknown");
        const std::string message = std::string("Could convert string to ") + this->format.words +
                                    ": unknown unit " + text + "\n";
        EXPECT_EQ(log.errors(), std::vector<std::string>{message});
        EXPECT_EQ(log.tagOf(message), "THERMO");
    }
}

TYPED_TEST(Units, UnknownSpellingFailsTheRead)
{
    const LogCapture log;
    Settings settings("x = { value = 2.5; unit = \"%s furlong\"; };");
    TypeParam value("x", 1.0, this->base);
    KETRA_EXPECT_THROW_MESSAGE(value.read(settings.root()), Exception, 4, "Unknown");
    KETRA_EXPECT_THROW_CODE(value.setRawUnit("furlong"), Exception, 4);
    KETRA_EXPECT_THROW_CODE(value.setRawUnit(nullptr), Exception, 4);
    ASSERT_EQ(log.errors().size(), 3u);
    EXPECT_EQ(log.errors()[0], std::string("Could convert string to ") + this->format.words +
                                   ": unknown unit %s furlong\n");
}

TYPED_TEST(Units, ConvertByTheFactorsOfTheTable)
{
    if constexpr (hasFactors<TypeParam>) {
        for (const Row& from : this->format.rows) {
            EXPECT_EQ(TypeParam::getConversionFactor(this->unit(from.unit)), from.factor);
            const TypeParam value("x", 2.5, this->unit(from.unit));
            EXPECT_DOUBLE_EQ(value.get(this->base), 2.5 * from.factor);
            for (const Row& to : this->format.rows) {
                SCOPED_TRACE(std::string(from.spellings[0]) + " to " + to.spellings[0]);
                const double expected = 2.5 * from.factor / to.factor;
                EXPECT_EQ(TypeParam::convert(2.5, this->unit(from.unit), this->unit(to.unit)),
                          expected);
                EXPECT_EQ(value.get(this->unit(to.unit)), expected);
            }
        }
    } else {
        // Fixed points of the scales: freezing and boiling water, absolute zero.
        EXPECT_DOUBLE_EQ(TypeParam::convert(0.0, Temperature::C, Temperature::K), 273.15);
        EXPECT_DOUBLE_EQ(TypeParam::convert(212.0, Temperature::F, Temperature::C), 100.0);
        EXPECT_DOUBLE_EQ(TypeParam::convert(671.67, Temperature::R, Temperature::F), 212.0);
    }
}

TYPED_TEST(Units, GroupWithoutAUnitIsInTheAssumedOne)
{
    for (const Row& row : this->format.rows) {
        Settings settings("x = { value = 2.5; };");
        TypeParam value("x", 1.0, this->unit(row.unit));
        value.read(settings.root());
        EXPECT_EQ(value.getUnit(), this->base);
        EXPECT_EQ(value.getValue(), 2.5);
    }
}

TYPED_TEST(Units, AbsentGroupChangesNothingAndAnEmptyOneTheUnit)
{
    const auto last = this->unit(this->format.rows.back().unit);
    Settings settings("y = { value = 2.5; };"), empty("x = {};"), bare("x = 2.5;");
    TypeParam value("x", 1.0, last);
    value.read(settings.root());
    EXPECT_EQ(value.getUnit(), last);
    EXPECT_EQ(value.getValue(), 1.0);

    value.read(empty.root());
    EXPECT_EQ(value.getUnit(), this->base);
    EXPECT_EQ(value.getValue(), 1.0);

    value.read(bare.root()); // a number is no group
    EXPECT_EQ(value.getValue(), 1.0);
}

TYPED_TEST(Units, IntegerValueIsPassedOver)
{
    Settings settings("x = { value = 3; };");
    TypeParam value("x", 1.0, this->base);
    value.read(settings.root());
    EXPECT_EQ(value.getValue(), 1.0);
}

TYPED_TEST(Units, WholeDocumentIsReadBackAsItWas)
{
    for (const Row& row : this->format.rows) {
        SCOPED_TRACE(row.spellings[0]);
        Settings settings;
        TypeParam value("x", 2.5, this->unit(row.unit)); // also its default
        value.write(settings.root(), true);
        EXPECT_EQ(static_cast<double>(settings["x.value"]), 2.5);
        EXPECT_EQ(static_cast<std::string>(settings["x.unit"]), row.spellings[0]);

        TypeParam again("x", 0.0, this->base);
        again.read(settings.root());
        EXPECT_EQ(again.getValue(), 2.5);
        EXPECT_EQ(again.getUnit(), this->unit(row.unit));
    }
}

TYPED_TEST(Units, SparseDocumentHoldsABareNumber)
{
    for (const Row& row : this->format.rows) {
        SCOPED_TRACE(row.spellings[0]);
        Settings settings;
        TypeParam value("x", 2.5, this->unit(row.unit));
        value.write(settings.root(), false);
        EXPECT_TRUE(settings.has("x"));
        EXPECT_EQ(settings["x"].getLength(), 0); // at its default

        value.multiply(2.0);
        value.write(settings.root(), false);
        EXPECT_EQ(static_cast<double>(settings["x.value"]), 5.0);
        EXPECT_FALSE(settings.has("x.unit"));

        TypeParam again("x", 2.5, this->unit(row.unit));
        again.read(settings.root());
        EXPECT_EQ(again.getValue(), 5.0);
        EXPECT_EQ(again.getUnit(), this->base);
    }
}

TYPED_TEST(Units, CopiesEverything)
{
    const auto last = this->unit(this->format.rows.back().unit);
    std::string key = "x";
    TypeParam value(key, 2.0, last);
    value.multiply(3.0);
    const TypeParam copy(value);
    TypeParam assigned("y", 0.0, this->base);
    assigned = value;
    value.multiply(10.0);
    for (const TypeParam& same : {copy, assigned}) {
        EXPECT_EQ(same.getName(), "x");
        EXPECT_EQ(same.getValue(), 6.0);
        EXPECT_EQ(same.getUnit(), last);
        EXPECT_EQ(same.getDefault(last), TypeParam::convert(2.0, last, last));
    }
}

TYPED_TEST(Units, SetAddAndMultiplyReturnTheNewValueInTheBaseUnit)
{
    for (const Row& stated : this->format.rows)
        for (const Row& given : this->format.rows) {
            SCOPED_TRACE(std::string(stated.spellings[0]) + ", " + given.spellings[0]);
            const auto unit = this->unit(stated.unit), in = this->unit(given.unit);
            TypeParam value("x", 2.0, unit);
            const double added = value.add(3.0, in);
            EXPECT_EQ(value.getUnit(), unit);
            EXPECT_DOUBLE_EQ(value.getValue(), 2.0 + TypeParam::convert(3.0, in, unit));
            EXPECT_EQ(added, value.get(this->base));
            const double before = value.getValue();
            const double multiplied = value.multiply(-1.5);
            EXPECT_EQ(value.getValue(), before * -1.5);
            EXPECT_EQ(multiplied, value.get(this->base));
            EXPECT_EQ(value.getDefault(this->base), TypeParam::convert(2.0, unit, this->base));
        }
}

TYPED_TEST(Units, SetKeepsOrTakesTheUnit)
{
    for (const Row& stated : this->format.rows)
        for (const Row& given : this->format.rows) {
            SCOPED_TRACE(std::string(stated.spellings[0]) + ", " + given.spellings[0]);
            const auto unit = this->unit(stated.unit), in = this->unit(given.unit);
            const double kept = stated.unit == given.unit ? 3.0 : TypeParam::convert(3.0, in, unit);
            TypeParam keeping("x", 2.0, unit);
            double result = 0.0;
            if constexpr (hasFactors<TypeParam>) {
                result = keeping.set(3.0, in, true);
                TypeParam taking("x", 2.0, unit);
                EXPECT_EQ(taking.set(3.0, in, false), TypeParam::convert(3.0, in, this->base));
                EXPECT_EQ(taking.getValue(), 3.0);
                EXPECT_EQ(taking.getUnit(), in);
            } else {
                result = keeping.set(3.0, in);
            }
            EXPECT_EQ(keeping.getUnit(), unit);
            EXPECT_EQ(keeping.getValue(), kept);
            EXPECT_EQ(result, keeping.get(this->base));
            EXPECT_NEAR(result, TypeParam::convert(3.0, in, this->base),
                        300.0 * exactly * 10.0 + std::abs(result) * exactly);
        }
}

TYPED_TEST(Units, StatedOrBaseUnitOnDemand)
{
    const auto last = this->unit(this->format.rows.back().unit);
    const TypeParam value("x", 2.0, last);
    EXPECT_EQ(value.valueFor(false), 2.0);
    EXPECT_EQ(value.unitFor(false), last);
    EXPECT_EQ(value.valueFor(true), value.get(this->base));
    EXPECT_EQ(value.unitFor(true), this->base);
}

TEST(Pressure, StatedInBar)
{
    Pressure p("p", 0.0, Pressure::BAR);
    p.set(5.0, Pressure::BAR, true);
    EXPECT_DOUBLE_EQ(p.get(Pressure::UNITS(0)), 0.5);
    EXPECT_EQ(p.get(Pressure::UNITS(4)), 500000.0);
    Settings settings;
    p.write(settings.root(), true);
    EXPECT_EQ(static_cast<double>(settings["p.value"]), 5.0);
    EXPECT_EQ(static_cast<std::string>(settings["p.unit"]), "bar");
}

TEST(Pressure, SetInMegapascalOnABarValue)
{
    Pressure keeping("p", 5.0, Pressure::BAR), taking("p", 5.0, Pressure::BAR);
    EXPECT_EQ(keeping.set(1.0, Pressure::MPA, true), 1000000.0);
    EXPECT_EQ(keeping.getValue(), 10.0);
    EXPECT_EQ(keeping.getUnit(), Pressure::BAR);
    EXPECT_EQ(taking.set(1.0, Pressure::MPA, false), 1000000.0);
    EXPECT_EQ(taking.getValue(), 1.0);
    EXPECT_EQ(taking.getUnit(), Pressure::MPA);
}

TEST(Pressure, AbsolutePsiIsWrittenBackAsPsi)
{
    Settings settings("p = { value = 14.7; unit = \"psia\"; };"), written;
    Pressure p("p", 0.0, Pressure::PA);
    p.read(settings.root());
    EXPECT_EQ(p.getUnit(), Pressure::PSI);
    p.write(written.root(), true);
    EXPECT_EQ(static_cast<std::string>(written["p.unit"]), "psi");
}

TEST(Pressure, TechnicalAtmosphereIsKilogramPerSquareCentimetre)
{
    EXPECT_EQ(Pressure::rawToUnit("at"), Pressure::KG_PER_CM2);
    EXPECT_EQ(Pressure("p", 1.0, Pressure::KG_PER_CM2).get(Pressure::PA), 98066.5);
}

TEST(Pressure, DefaultIsTakenToBeInTheStatedUnit)
{
    Pressure p("p", 5.0, Pressure::BAR);
    p.set(1.0, Pressure::MPA, false);
    EXPECT_EQ(p.getDefault(Pressure::PA), 5e6);
}

TEST(Angle, RadiansToDegrees)
{
    EXPECT_EQ(Angle("a", 1.0, Angle::RADIANS).get(Angle::DEGREES), 57.29577951308232);
}

TEST(UnnamedUnit, BehavesLikeTheBaseUnit)
{
    Velocity w("w", 3.0, Velocity::UNITS(0));
    EXPECT_STREQ(w.getRawUnit(), "m/s");
    EXPECT_EQ(w.get(Velocity::M_PER_S), 3.0);
    EXPECT_EQ(Velocity::getConversionFactor(Velocity::UNITS(0)), 1.0);
    RotationalSpeed n("n", 3.0, RotationalSpeed::UNITS(0));
    EXPECT_STREQ(n.getRawUnit(), "rad/s");
    EXPECT_EQ(n.get(RotationalSpeed::RAD_PER_S), 3.0);
}

struct ScalePair {
    Temperature::UNITS from, to;
    double x, expected;
};

// Each expectation is the formula of its pair, written out.
TEST(Temperature, ConvertsBetweenAllScales)
{
    using T = Temperature;
    const double x = 351.7;
    const ScalePair pairs[] = {
        {T::K, T::K, x, x},
        {T::K, T::C, x, x - 273.15},
        {T::K, T::F, x, (x - 273.15) * 9 / 5 + 32},
        {T::K, T::R, x, x * 9 / 5},
        {T::C, T::K, x, x + 273.15},
        {T::C, T::C, x, x},
        {T::C, T::F, x, x * 9 / 5 + 32},
        {T::C, T::R, x, (x + 273.15) * 9 / 5},
        {T::F, T::K, x, (x - 32) * 5 / 9 + 273.15},
        {T::F, T::C, x, (x - 32) * 5 / 9},
        {T::F, T::F, x, x},
        {T::F, T::R, x, x + 459.67},
        {T::R, T::K, x, x * 5 / 9},
        {T::R, T::C, x, (x - 491.67) * 5 / 9},
        {T::R, T::F, x, x - 459.67},
        {T::R, T::R, x, x},
    };
    for (const ScalePair& pair : pairs) {
        SCOPED_TRACE(std::to_string(pair.from) + " to " + std::to_string(pair.to));
        EXPECT_EQ(T::convert(pair.x, pair.from, pair.to), pair.expected);
    }
}

TEST(Temperature, AddsAnAbsoluteTemperature)
{
    Temperature T("T", 100.0, Temperature::K);
    EXPECT_DOUBLE_EQ(T.add(10.0, Temperature::C), 383.15);
    EXPECT_EQ(T.getUnit(), Temperature::K);
}

TEST(Temperature, ZeroOrLessIsLeftOut)
{
    for (const double x : {0.0, -0.0, -5.0}) {
        for (const bool all : {true, false}) {
            Settings settings;
            Temperature T("T", 0.0, Temperature::C);
            T.set(x, Temperature::C);
            T.write(settings.root(), all);
            EXPECT_FALSE(settings.has("T")) << x;
        }
    }
}

TEST(Temperature, RankineIsWrittenWithTheTextOfTheKelvin)
{
    Settings settings;
    Temperature T("T", 500.0, Temperature::UNITS(3));
    T.write(settings.root(), true);
    EXPECT_EQ(static_cast<double>(settings["T.value"]), 500.0);
    EXPECT_EQ(static_cast<std::string>(settings["T.unit"]), "K");
    T.read(settings.root());
    EXPECT_EQ(T.getUnit(), Temperature::K);
}

} // namespace
