#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/Propellant.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/Facts.h>
#include <unit/thermo_input/Settings.h>

#include <gtest/gtest.h>

#include <stdexcept>

using ketra_test::factsOf;
using ketra_test::LogCapture;
using ketra_test::Settings;
using namespace thermo::input;

namespace {

Propellant propellantOf(const std::string& members)
{
    Settings settings("propellant = { " + members + " };");
    Propellant propellant;
    propellant.read(settings.root());
    return propellant;
}

/// A ratio with the operations of its base in reach.
struct OpenRatio : Ratio {
    using Ratio::getDefault;
    using Ratio::Ratio;
    using Ratio::setRawUnit;
};

TEST(Ratio, SpellingsAndTheirPrintedForm)
{
    for (const char* text : {"km", "Km", "O/F", "o/f"})
        EXPECT_EQ(Ratio::rawToUnit(text), Ratio::KM);
    EXPECT_EQ(Ratio::rawToUnit("alpha"), Ratio::ALPHA);
    for (const char* text : {"optimal", "optimum", "opt"})
        EXPECT_EQ(Ratio::rawToUnit(text), Ratio::OPTIMAL);
    EXPECT_STREQ(Ratio::unitToRaw(Ratio::UNITS(0)), "O/F");
    EXPECT_STREQ(Ratio::unitToRaw(Ratio::UNITS(1)), "alpha");
    EXPECT_STREQ(Ratio::unitToRaw(Ratio::UNITS(2)), "optimal");
    EXPECT_STREQ(Ratio::unitToRaw(Ratio::UNITS(3)), "O/F");
}

TEST(Ratio, UnknownUnitIsLoggedAndThrown)
{
    for (const char* text : {"KM", "Alpha", "", "mixture", "%s"}) {
        SCOPED_TRACE(text);
        const LogCapture log;
        KETRA_EXPECT_THROW_MESSAGE(Ratio::rawToUnit(text), Exception, 4,
                                   "Unknown component ratio unit");
        const std::string message =
            std::string("Could not set component ratio: unknown unit ") + text + "\n";
        EXPECT_EQ(log.errors(), std::vector<std::string>{message});
        EXPECT_EQ(log.tagOf(message), "THERMO");
    }
    KETRA_EXPECT_THROW_CODE(Ratio::rawToUnit(nullptr), Exception, 4);
}

TEST(Ratio, StoresValueAndUnitTogether)
{
    OpenRatio ratio("ratio", 1.0, Ratio::KM);
    EXPECT_EQ(ratio.set(0.8, Ratio::ALPHA), 0.8);
    EXPECT_EQ(ratio.getValue(), 0.8);
    EXPECT_EQ(ratio.getUnit(), Ratio::ALPHA);
    EXPECT_STREQ(ratio.getRawUnit(), "alpha");
    EXPECT_EQ(ratio.getDefault(), 1.0);
    const OpenRatio copy(ratio);
    ratio.setRawUnit("opt");
    EXPECT_EQ(ratio.getUnit(), Ratio::OPTIMAL);
    EXPECT_EQ(copy.getUnit(), Ratio::ALPHA);
    EXPECT_EQ(copy.getValue(), 0.8);
}

TEST(Ratio, ReadsAndWritesItsUnit)
{
    Settings capital("ratio = { value = 4.0; unit = \"Km\"; };"), whole, sparse;
    Ratio ratio("ratio", 0.0, Ratio::ALPHA);
    ratio.read(capital.root());
    EXPECT_EQ(ratio.getUnit(), Ratio::KM);
    ratio.write(whole.root(), true);
    EXPECT_EQ(static_cast<std::string>(whole["ratio.unit"]), "O/F");
    EXPECT_EQ(static_cast<double>(whole["ratio.value"]), 4.0);

    ratio.set(0.9, Ratio::ALPHA);
    ratio.write(sparse.root(), false);
    EXPECT_FALSE(sparse.has("ratio.unit"));
    ratio.read(sparse.root());
    EXPECT_EQ(ratio.getValue(), 0.9);
    EXPECT_EQ(ratio.getUnit(), Ratio::KM); // the unit that is assumed
}

TEST(Ratio, MustBeThereWhenItIsRead)
{
    Settings settings;
    Ratio ratio("ratio", 0.0, Ratio::KM);
    EXPECT_THROW(ratio.read(settings.root()), libconfig::SettingNotFoundException);
}

TEST(Component, ConstructorsFillFromTheLeft)
{
    const Component none;
    EXPECT_EQ(none.getName(), "");
    EXPECT_EQ(none.getMf(), 0.0);
    EXPECT_EQ(none.getT(true), 0.0);
    EXPECT_EQ(none.getTUnit(), Temperature::K);
    EXPECT_EQ(none.getP(true), 101325.0);
    EXPECT_EQ(none.getPUnit(), Pressure::PA);

    EXPECT_EQ(Component("H2").getName(), "H2");
    EXPECT_EQ(Component("H2", 0.5).getMf(), 0.5);
    EXPECT_EQ(Component("H2", 0.5, 300.0).getT(true), 300.0);
    EXPECT_EQ(Component("H2", 0.5, 300.0).getP(true), 101325.0);

    const Component bar("H2", 0.5, 300.0, 2.0, Pressure::BAR);
    EXPECT_EQ(bar.getT(true), 300.0);
    EXPECT_EQ(bar.getP(true), 2e5);
    EXPECT_EQ(bar.getP(false), 2.0);
    EXPECT_EQ(bar.getPUnit(), Pressure::BAR);

    const Component celsius("H2", 0.5, 20.0, Temperature::C, 2.0, Pressure::BAR);
    EXPECT_EQ(celsius.getT(false), 20.0);
    EXPECT_EQ(celsius.getTUnit(), Temperature::C);
    EXPECT_DOUBLE_EQ(celsius.getT(true), 293.15);
    EXPECT_DOUBLE_EQ(celsius.getT(Temperature::F), 68.0);
    EXPECT_EQ(Component(nullptr).getName(), "");
}

TEST(Component, SettersOfTemperatureKeepTheScaleAndThoseOfPressureTakeTheUnit)
{
    Component component("H2");
    component.setMf(0.25);
    component.setT(20.0, Temperature::C);
    component.setP(3.0, Pressure::ATM);
    EXPECT_EQ(component.getMf(), 0.25);
    EXPECT_EQ(component.getTUnit(), Temperature::K);
    EXPECT_DOUBLE_EQ(component.getT(false), 293.15);
    EXPECT_EQ(component.getPUnit(), Pressure::ATM);
    EXPECT_EQ(component.getP(Pressure::PA), 303975.0);
}

TEST(Component, IsNamedByItsSpeciesWhereverANodeIsAsked)
{
    const Component component("CH4");
    const Node& node = component;
    EXPECT_EQ(node.getName(), "CH4");
}

TEST(Component, WorksOnTheGroupItIsGiven)
{
    Settings settings;
    Component component("CH4", 1.0, 111.64);
    component.write(settings.root(), true);
    const char* keys[] = {"name", "massFraction", "T", "p"};
    ASSERT_EQ(settings.root().getLength(), 4);
    for (int i = 0; i < 4; ++i) EXPECT_STREQ(settings.root()[i].getName(), keys[i]);
    Component again;
    again.read(settings.root());
    EXPECT_EQ(factsOf(again), factsOf(component));
}

TEST(Component, WithoutATemperatureLeavesItOut)
{
    Settings settings;
    Component component("CH4", 1.0);
    component.write(settings.root(), true);
    EXPECT_FALSE(settings.has("T"));
    component.read(settings.root());
    EXPECT_EQ(component.getT(true), 0.0);
}

TEST(Component, UnknownUnitsFailTheRead)
{
    const LogCapture log;
    Settings T("T = { value = 1.0; unit = \"Kelvin\"; };"), p("p = { unit = \"mbar\"; };");
    Component component;
    KETRA_EXPECT_THROW_MESSAGE(component.read(T.root()), Exception, 4, "Unknown");
    KETRA_EXPECT_THROW_MESSAGE(component.read(p.root()), Exception, 4, "Unknown");
    const std::vector<std::string> errors{
        "Could convert string to temperature: unknown unit Kelvin\n",
        "Could convert string to pressure: unknown unit mbar\n"};
    EXPECT_EQ(log.errors(), errors);
}

TEST(Propellant, StartsEmptyWithAMassRatio)
{
    const Propellant propellant;
    EXPECT_EQ(propellant.getName(), "propellant");
    EXPECT_EQ(propellant.getRatio(), 0.0);
    EXPECT_EQ(propellant.getRatioType(), Ratio::KM);
    EXPECT_EQ(propellant.getOxidizerListSize(), 0u);
    EXPECT_EQ(propellant.getFuelListSize(), 0u);
    EXPECT_EQ(propellant.getSpeciesListSize(), 0u);
}

TEST(Propellant, ReadsOxidizerAndFuel)
{
    const Propellant p = propellantOf(
        "components = { ratio = { value = 4.83; unit = \"O/F\"; };"
        "oxidizer = ( { name = \"O2(L)\"; massFraction = 0.75; T = { value = 90.17; }; },"
        "             { name = \"F2(L)\"; massFraction = 0.25; p = { value = 2.0; unit = \"atm\"; "
        "}; } );"
        "fuel = ( { name = \"H2(L)\"; massFraction = 1.0; } ); };");
    EXPECT_EQ(p.getRatio(), 4.83);
    EXPECT_EQ(p.getRatioType(), Ratio::KM);
    ASSERT_EQ(p.getOxidizerListSize(), 2u);
    EXPECT_EQ(p.getOxidizer(0)->getName(), "O2(L)");
    EXPECT_EQ(p.getOxidizer(0)->getT(true), 90.17);
    EXPECT_EQ(p.getOxidizer(1)->getMf(), 0.25);
    EXPECT_EQ(p.getOxidizer(1)->getP(true), 202650.0);
    ASSERT_EQ(p.getFuelListSize(), 1u);
    EXPECT_EQ(p.getFuel(0)->getName(), "H2(L)");
    EXPECT_EQ(p.getFuel(0)->getT(true), 0.0);
    EXPECT_EQ(p.getSpeciesListSize(), 0u);
}

TEST(Propellant, ReadsAMixture)
{
    const Propellant p =
        propellantOf("mixture = { species = ( { name = \"N2H4(L)\"; massFraction = 1.0; } ); };");
    EXPECT_EQ(p.getRatioType(), Ratio::UNITS(3));
    EXPECT_EQ(p.getRatio(), 0.0);
    ASSERT_EQ(p.getSpeciesListSize(), 1u);
    EXPECT_EQ(p.getSpecies(0)->getName(), "N2H4(L)");

    const Propellant empty = propellantOf("mixture = { };");
    EXPECT_EQ(empty.getRatioType(), Ratio::MIXTURE);
    EXPECT_EQ(empty.getSpeciesListSize(), 0u);
}

TEST(Propellant, ComponentsWithoutARatioAskForTheOptimum)
{
    const Propellant p = propellantOf("components = { };");
    EXPECT_EQ(p.getRatioType(), Ratio::UNITS(2));
    EXPECT_EQ(p.getRatio(), 0.0);
}

TEST(Propellant, ComponentsWinOverAMixture)
{
    const Propellant p = propellantOf("mixture = { species = ( { name = \"A\"; } ); };"
                                      "components = { fuel = ( { name = \"B\"; } ); };");
    EXPECT_EQ(p.getRatioType(), Ratio::OPTIMAL);
    EXPECT_EQ(p.getFuelListSize(), 1u);
    EXPECT_EQ(p.getSpeciesListSize(), 0u);
}

TEST(Propellant, NeitherComponentsNorMixture)
{
    const LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(propellantOf(""), Exception, 3,
                               "Neither composition ox+fuel nor mixture is defined.");
    const std::string message = "Neither composition ox+fuel nor mixture is defined\n";
    EXPECT_EQ(log.errors(), std::vector<std::string>{message});
    EXPECT_EQ(log.tagOf(message), "THERMO");
}

TEST(Propellant, UnknownRatioUnitFailsTheRead)
{
    const LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(
        propellantOf("components = { ratio = { value = 1.0; unit = \"phi\"; }; };"), Exception, 4,
        "Unknown component ratio unit");
    EXPECT_EQ(log.errors(),
              std::vector<std::string>{"Could not set component ratio: unknown unit phi\n"});
}

TEST(Propellant, ListsThatAreNoListsAreIgnoredAndValidationFails)
{
    Propellant p = propellantOf("components = { oxidizer = { name = \"O2\"; massFraction = 1.0; };"
                                "fuel = ( { name = \"H2\"; } ); };");
    EXPECT_EQ(p.getOxidizerListSize(), 0u);
    const LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(p.validate(), Exception, 7,
                               "Either oxidizer or fuel is not defined within Propellant");
    EXPECT_EQ(log.errors(), std::vector<std::string>{
                                "Either oxidizer or fuel is not defined within Propellant\n"});
    EXPECT_EQ(propellantOf("mixture = { species = [ 1, 2 ]; };").getSpeciesListSize(), 0u);
}

TEST(Propellant, ElementThatIsNoGroupIsAnEmptyComponent)
{
    const Propellant p = propellantOf("components = { fuel = ( 1, \"H2\" ); };");
    ASSERT_EQ(p.getFuelListSize(), 2u);
    EXPECT_EQ(factsOf(*p.getFuel(1)), factsOf(Component()));
}

TEST(Propellant, IsValidWithBothOrWithAMixture)
{
    const LogCapture log;
    for (const Ratio::UNITS type : {Ratio::KM, Ratio::ALPHA, Ratio::OPTIMAL}) {
        Propellant p;
        p.setRatio(1.0, type);
        KETRA_EXPECT_THROW_CODE(p.validate(), Exception, 7);
        p.addOxidizer(new Component("O2"));
        KETRA_EXPECT_THROW_CODE(p.validate(), Exception, 7);
        p.addFuel(new Component("H2"));
        EXPECT_NO_THROW(p.validate());
    }
    Propellant mixture;
    mixture.setRatio(0.0, Ratio::MIXTURE);
    KETRA_EXPECT_THROW_MESSAGE(mixture.validate(), Exception, 7,
                               "Mixture is not defined within Propellant");
    EXPECT_EQ(log.errors().back(), "Mixture is not defined within Propellant\n");
    mixture.addSpecies(new Component("N2H4(L)"));
    EXPECT_NO_THROW(mixture.validate());
}

TEST(Propellant, AppendsWhatItReads)
{
    Settings settings("propellant = { components = { fuel = ( { name = \"B\"; } ); }; };");
    Propellant p;
    p.addFuel(new Component("A"));
    p.read(settings.root());
    ASSERT_EQ(p.getFuelListSize(), 2u);
    EXPECT_EQ(p.getFuel(0)->getName(), "A");
    EXPECT_EQ(p.getFuel(1)->getName(), "B");
}

TEST(Propellant, WritesOnlyTheFormOfItsRatio)
{
    Propellant p;
    p.addOxidizer(new Component("O2"));
    p.addFuel(new Component("H2"));
    p.addSpecies(new Component("N2H4(L)"));
    Settings components, mixture, unknown;
    p.write(components.root(), true);
    EXPECT_TRUE(components.has("propellant.components.ratio.unit"));
    EXPECT_TRUE(components.has("propellant.components.oxidizer.[0].name"));
    EXPECT_TRUE(components.has("propellant.components.fuel.[0].name"));
    EXPECT_FALSE(components.has("propellant.mixture"));

    p.setRatio(0.0, Ratio::MIXTURE);
    p.write(mixture.root(), true);
    EXPECT_TRUE(mixture.has("propellant.mixture.species.[0].name"));
    EXPECT_FALSE(mixture.has("propellant.components"));

    p.setRatio(0.0, Ratio::UNITS(9));
    p.write(unknown.root(), true);
    EXPECT_EQ(unknown["propellant"].getLength(), 0);
    EXPECT_NO_THROW(p.validate());
}

TEST(Propellant, ResetsToAnEmptyMassRatio)
{
    Propellant p;
    p.setRatio(2.0, Ratio::ALPHA);
    p.addOxidizer(new Component("O2"));
    p.addFuel(new Component("H2"));
    p.addSpecies(new Component("N2"));
    p.reset();
    EXPECT_EQ(factsOf(p), factsOf(Propellant()));
}

TEST(Propellant, RefusesANullComponentAndAnIndexBeyondTheList)
{
    const LogCapture log;
    Propellant p;
    KETRA_EXPECT_THROW_MESSAGE(p.addOxidizer(nullptr), Exception, 2, "NULL pointer");
    KETRA_EXPECT_THROW_CODE(p.addFuel(nullptr), Exception, 2);
    KETRA_EXPECT_THROW_CODE(p.addSpecies(nullptr), Exception, 2);
    EXPECT_EQ(log.errors().size(), 3u);
    EXPECT_THROW(p.getOxidizer(0), std::out_of_range);
    EXPECT_THROW(p.getFuel(0), std::out_of_range);
    EXPECT_THROW(p.getSpecies(0), std::out_of_range);
}

} // namespace
