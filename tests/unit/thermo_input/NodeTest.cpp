#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/List.h>
#include <ketra/thermo/input/Optional.h>
#include <ketra/thermo/input/Pressure.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/Settings.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

using ketra_test::LogCapture;
using ketra_test::Settings;
using libconfig::Setting;
using thermo::input::DataValue;
using thermo::input::Node;
using thermo::input::Optional;
using thermo::input::Pressure;

namespace {

/// A node that does nothing, with the operations of its base in reach.
struct Probe : Node {
    using Node::createArray;
    using Node::createGroup;
    using Node::createList;
    using Node::createSettings;
    using Node::getSettings;
    using Node::Node;
    void read(const Setting&) override {}
    void write(Setting&, bool) override {}
};

TEST(Node, HasTheNameItWasMadeWith)
{
    std::string text = "text";
    EXPECT_EQ(Probe("literal").getName(), "literal");
    EXPECT_EQ(Probe(text).getName(), "text");
    EXPECT_EQ(Probe(static_cast<const char*>(nullptr)).getName(), "");
}

TEST(Node, CopiesAndAssignsItsName)
{
    const Probe source("source");
    const Probe copy(source);
    Probe target("target");
    target = source;
    EXPECT_EQ(copy.getName(), "source");
    EXPECT_EQ(target.getName(), "source");
}

TEST(Node, RequiresNothingByDefault) { EXPECT_NO_THROW(Probe("a").validate()); }

TEST(Node, FindsTheGroupOfItsNameOrOfAKey)
{
    Settings settings("a = { x = 1; }; b = { y = 2; };");
    const Probe node("a");
    EXPECT_TRUE(node.getSettings(settings.root()).exists("x"));
    EXPECT_TRUE(Probe::getSettings(settings.root(), "b").exists("y"));
}

TEST(Node, MissingGroupRaisesTheNotFoundExceptionOfTheLibrary)
{
    Settings settings("scalar = 1;");
    const Probe node("a");
    EXPECT_THROW(node.getSettings(settings.root()), libconfig::SettingNotFoundException);
    EXPECT_THROW(Probe::getSettings(settings.root(), "b"), libconfig::SettingNotFoundException);
    // A parent that is no group has no groups either.
    EXPECT_THROW(node.getSettings(settings["scalar"]), libconfig::SettingNotFoundException);
}

TEST(Node, CreatesSettingsOnceAndFindsThemAgain)
{
    Settings settings;
    const Probe node("own");
    Setting& own = node.createSettings(settings.root());
    Setting& group = Probe::createGroup(settings.root(), "group");
    Setting& array = Probe::createArray(settings.root(), "array");
    Setting& list = Probe::createList(settings.root(), "list");
    EXPECT_EQ(own.getType(), Setting::TypeGroup);
    EXPECT_EQ(group.getType(), Setting::TypeGroup);
    EXPECT_EQ(array.getType(), Setting::TypeArray);
    EXPECT_EQ(list.getType(), Setting::TypeList);
    EXPECT_EQ(settings.root().getLength(), 4);

    EXPECT_EQ(&node.createSettings(settings.root()), &own);
    EXPECT_EQ(&Probe::createSettings(settings.root(), "own"), &own);
    EXPECT_EQ(&Probe::createGroup(settings.root(), "group"), &group);
    EXPECT_EQ(&Probe::createArray(settings.root(), "array"), &array);
    EXPECT_EQ(&Probe::createList(settings.root(), "list"), &list);
    EXPECT_EQ(settings.root().getLength(), 4);
}

TEST(DataValue, HasATypeCodeForEachType)
{
    EXPECT_EQ(DataValue<int>::typeCode, 0);
    EXPECT_EQ(DataValue<double>::typeCode, 3);
    EXPECT_EQ(DataValue<bool>::typeCode, 4);
    EXPECT_EQ(DataValue<std::string>::typeCode, 5);
}

TEST(DataValue, StartsAtItsDefaultAndKeepsIt)
{
    std::string key = "x";
    DataValue<double> value(key, 2.0);
    value.set(3.0);
    EXPECT_EQ(value.getName(), "x");
    EXPECT_EQ(value.get(), 3.0);
    EXPECT_EQ(value.getDefault(), 2.0);
}

TEST(DataValue, WritesADefaultOnlyOnDemand)
{
    Settings settings;
    DataValue<double> value("x", 0.0);
    value.write(settings.root(), false);
    EXPECT_FALSE(settings.has("x"));

    value.write(settings.root(), true);
    EXPECT_EQ(settings["x"].getType(), Setting::TypeFloat);
    EXPECT_EQ(static_cast<double>(settings["x"]), 0.0);
}

TEST(DataValue, WritesWhatDiffersFromTheDefault)
{
    Settings settings;
    DataValue<double> x("x", 1.0);
    x.set(std::nextafter(1.0, 2.0)); // exact comparison: the smallest step is a difference
    x.write(settings.root(), false);
    EXPECT_EQ(static_cast<double>(settings["x"]), x.get());

    DataValue<std::string> same("same", "text");
    same.set(std::string("te") + "xt"); // by content
    same.write(settings.root(), false);
    EXPECT_FALSE(settings.has("same"));

    DataValue<std::string> other("other", "text");
    other.set("Text");
    other.write(settings.root(), false);
    EXPECT_EQ(static_cast<std::string>(settings["other"]), "Text");

    DataValue<bool> flag("flag", true);
    flag.set(false);
    flag.write(settings.root(), false);
    EXPECT_EQ(settings["flag"].getType(), Setting::TypeBoolean);
    EXPECT_FALSE(static_cast<bool>(settings["flag"]));

    DataValue<int> number("number", 1);
    number.set(-7);
    number.write(settings.root(), false);
    EXPECT_EQ(settings["number"].getType(), Setting::TypeInt);
    EXPECT_EQ(static_cast<int>(settings["number"]), -7);
}

TEST(DataValue, OverwritesAKeyThatIsThere)
{
    Settings settings("x = 5.0; y = 5; z = \"five\";");
    for (const char* key : {"x", "y", "z"}) {
        SCOPED_TRACE(key);
        DataValue<double> value(key, 0.0);
        value.set(2.5);
        value.write(settings.root(), false);
        EXPECT_EQ(settings[key].getType(), Setting::TypeFloat);
        EXPECT_EQ(static_cast<double>(settings[key]), 2.5);
    }
    EXPECT_EQ(settings.root().getLength(), 3);
}

TEST(DataValue, ReadsItsOwnType)
{
    Settings settings("i = 4; d = 4.5; b = false; s = \"four\";");
    DataValue<int> i("i", 0);
    DataValue<double> d("d", 0.0);
    DataValue<bool> b("b", true);
    DataValue<std::string> s("s", "");
    for (Node* node : {static_cast<Node*>(&i), static_cast<Node*>(&d), static_cast<Node*>(&b),
                       static_cast<Node*>(&s)})
        node->read(settings.root());
    EXPECT_EQ(i.get(), 4);
    EXPECT_EQ(d.get(), 4.5);
    EXPECT_FALSE(b.get());
    EXPECT_EQ(s.get(), "four");
}

TEST(DataValue, PassesOverEveryOtherTypeWithoutAWord)
{
    const LogCapture log;
    const char* texts[] = {"x = 3;",  "x = 3L;",    "x = \"3.0\";", "x = true;",
                           "x = {};", "x = [3.0];", "x = (3.0);",   "x = 0x3;"};
    for (const char* text : texts) {
        SCOPED_TRACE(text);
        Settings settings(text);
        DataValue<double> value("x", 7.0);
        value.read(settings.root());
        EXPECT_EQ(value.get(), 7.0);
    }
    for (const char* text : {"x = 3.0;", "x = \"3\";", "x = true;", "x = 3L;"}) {
        SCOPED_TRACE(text);
        Settings settings(text);
        DataValue<int> value("x", 7);
        value.read(settings.root());
        EXPECT_EQ(value.get(), 7);
    }
    for (const char* text : {"x = 0;", "x = 0.0;", "x = \"false\";"}) {
        SCOPED_TRACE(text);
        Settings settings(text);
        DataValue<bool> value("x", true);
        value.read(settings.root());
        EXPECT_TRUE(value.get());
    }
    for (const char* text : {"x = 0;", "x = 0.0;", "x = false;"}) {
        SCOPED_TRACE(text);
        Settings settings(text);
        DataValue<std::string> value("x", "text");
        value.read(settings.root());
        EXPECT_EQ(value.get(), "text");
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(DataValue, KeepsWhatItHasWhenTheKeyIsAbsent)
{
    Settings with("x = 3.0;"), without("y = 4.0;"), scalar("x = 5.0;");
    DataValue<double> value("x", 1.0);
    value.read(with.root());
    value.read(without.root());
    EXPECT_EQ(value.get(), 3.0);
    value.read(scalar["x"]); // no group at all
    EXPECT_EQ(value.get(), 3.0);
}

TEST(Optional, IsMadeInItsInitialState)
{
    Optional<Pressure> pressure("pressure", 2.0, Pressure::BAR);
    EXPECT_FALSE(pressure.isSet());
    EXPECT_EQ(pressure.getKey(), "pressure");
    EXPECT_EQ(pressure.find(), nullptr);

    pressure.create().set(7.0, Pressure::MPA, false);
    EXPECT_EQ(pressure.create().getValue(), 7.0); // there already: left alone
    EXPECT_EQ(pressure.create().getDefault(Pressure::MPA), 2.0);
    pressure.renew();
    EXPECT_EQ(pressure.at("it").getValue(), 2.0);
    EXPECT_EQ(pressure.at("it").getUnit(), Pressure::BAR);

    pressure.reset();
    EXPECT_FALSE(pressure.isSet());
    pressure.reset(); // absent already
    EXPECT_FALSE(pressure.isSet());
}

TEST(Optional, CopiesDeeply)
{
    Optional<DataValue<double>> source("x", 0.0);
    source.create().set(1.0);
    Optional<DataValue<double>> copy(source), assigned("y", 5.0);
    assigned = source;
    source.create().set(2.0);
    EXPECT_EQ(copy.at("x").get(), 1.0);
    EXPECT_EQ(assigned.at("x").get(), 1.0);

    assigned = *&assigned;
    EXPECT_EQ(assigned.at("x").get(), 1.0);
    source.reset();
    assigned = source;
    EXPECT_FALSE(assigned.isSet());
    EXPECT_TRUE(copy.isSet());
}

TEST(Optional, AbsentMemberIsLoggedAndThrown)
{
    const LogCapture log;
    const Optional<DataValue<double>> value("x", 0.0);
    KETRA_EXPECT_THROW_MESSAGE(value.at("the value"), thermo::input::Exception, 2, "NULL pointer");
    EXPECT_EQ(log.errors(), std::vector<std::string>{"Could not obtain the value: NULL pointer\n"});
    EXPECT_EQ(log.tagOf("Could not obtain the value: NULL pointer\n"), "THERMO");
}

TEST(Optional, AbsentMemberCanBeThrownInSilence)
{
    const LogCapture log;
    const Optional<DataValue<double>> value("x", 0.0);
    KETRA_EXPECT_THROW_MESSAGE(value.at(), thermo::input::Exception, 2, "NULL pointer");
    EXPECT_TRUE(log.lines().empty());
}

TEST(List, OwnsItsItemsAndCopiesThem)
{
    thermo::input::List<DataValue<int>> list;
    EXPECT_TRUE(list.isEmpty());
    list.add(std::make_unique<DataValue<int>>("a", 1));
    list.add(std::make_unique<DataValue<int>>("b", 2));
    thermo::input::List<DataValue<int>> copy(list), assigned;
    assigned.add(std::make_unique<DataValue<int>>("c", 3));
    assigned = list;
    list.at(1).set(20);
    list = *&list;
    EXPECT_EQ(list.size(), 2u);
    EXPECT_EQ(list.at(1).get(), 20);
    list.clear();
    EXPECT_EQ(list.size(), 0u);
    EXPECT_EQ(copy.size(), 2u);
    EXPECT_EQ(copy.at(1).get(), 2);
    EXPECT_EQ(assigned.size(), 2u);
    EXPECT_EQ(assigned.at(0).getName(), "a");
    EXPECT_THROW(copy.at(2), std::out_of_range);
}

} // namespace
