#pragma once

#include <ketra/thermo/input/Element.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/Temperature.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/Settings.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace ketra_test {

/// A temperature keeps its scale: its setter has no word for it.
template <class Quantity>
constexpr bool keepsUnit = std::is_same_v<Quantity, thermo::input::Temperature>;

/// A quantity of the section S as the table of the format has it, and its accessors. What stands
/// after the setter is for members that may be absent; not each of them can be asked or removed.
template <class S, class Quantity> struct QuantityRow {
    using UNITS = typename Quantity::UNITS;
    using Set = std::conditional_t<keepsUnit<Quantity>, void (S::*)(double, UNITS),
                                   void (S::*)(double, UNITS, bool)>;

    const char* key;
    double initial; // value and unit with which the member comes up
    UNITS unit;
    double (S::*get)(bool) const;
    double (S::*getIn)(UNITS) const;
    UNITS (S::*getUnit)(bool) const;
    Set set;
    bool (S::*isSet)() const = nullptr;
    void (S::*remove)() = nullptr;
    const char* absent = nullptr; // what the log calls the missing member, and its unit
    const char* absentUnit = nullptr;

    const char* written = nullptr; // key of a member that the setter brought up, if it is another
    bool ownDefault = false;       // a setter that brings it up gives value and unit of the member
    const char* absentFor = nullptr; // what the log says in the getter with a flag, if not the same
};

/// The same for a number, flag or text without a unit.
template <class S, class T> struct ValueRow {
    using Get = std::conditional_t<std::is_same_v<T, std::string>, const std::string&, T>;
    using Set = Get;

    const char* key;
    T initial;
    T other; // what the test sets
    Get (S::*get)() const;
    void (S::*set)(Set);
    bool (S::*isSet)() const = nullptr;
    void (S::*remove)() = nullptr;
    const char* absent = nullptr;

    void (*prepare)(S&) = nullptr; // what makes the section write the member at all
};

/// Reads \p section out of a group with these members.
template <class S> void readMembers(S& section, const std::string& members)
{
    if constexpr (std::is_base_of_v<thermo::input::Element, S>) {
        Settings settings(members);
        section.read(settings.root());
    } else {
        readText(section, members);
    }
}

/// Path in a document that holds nothing but this section.
template <class S> std::string pathOf(const S& section, const std::string& key)
{
    if constexpr (std::is_base_of_v<thermo::input::Element, S>) return key;
    return section.getName().empty() ? key : section.getName() + "." + key;
}

/// The getter fails, and the log says it in these words; an empty text for a silent log.
inline void expectAbsent(const std::function<void()>& getter, const std::string& words)
{
    SCOPED_TRACE("absent " + words);
    const LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(getter(), thermo::input::Exception, 2, "NULL pointer");
    if (words.empty()) {
        EXPECT_TRUE(log.lines().empty());
        return;
    }
    const std::string text = "Could not obtain " + words + ": NULL pointer\n";
    EXPECT_EQ(log.errors(), std::vector<std::string>{text});
    EXPECT_EQ(log.tagOf(text), "THERMO");
}

template <class S, class Q> void expectAbsent(const S& section, const QuantityRow<S, Q>& row)
{
    if (row.isSet != nullptr) {
        EXPECT_FALSE((section.*row.isSet)());
    }
    for (const bool si : {false, true}) {
        expectAbsent([&] { (section.*row.get)(si); },
                     row.absentFor != nullptr ? row.absentFor : row.absent);
        expectAbsent([&] { (section.*row.getUnit)(si); }, row.absentUnit);
    }
    expectAbsent([&] { (section.*row.getIn)(Q::base); }, row.absent);
}

template <class S, class Q>
void expectQuantity(const S& section, const QuantityRow<S, Q>& row, double value,
                    typename Q::UNITS unit)
{
    EXPECT_EQ((section.*row.get)(false), value);
    EXPECT_EQ((section.*row.getUnit)(false), unit);
    EXPECT_EQ((section.*row.get)(true), Q::convert(value, unit, Q::base));
    EXPECT_EQ((section.*row.getUnit)(true), Q::base);
    for (const auto& wanted : Q::table)
        EXPECT_EQ((section.*row.getIn)(wanted.unit), Q::convert(value, unit, wanted.unit));
    if (row.isSet != nullptr) {
        EXPECT_TRUE((section.*row.isSet)());
    }
}

template <class S, class Q> void expectReading(const QuantityRow<S, Q>& row)
{
    const std::string key = row.key;
    for (const char* group : {"{}", "{ value = 7; }", "{ value = \"7.0\"; }"}) {
        SCOPED_TRACE(group); // none of them states a value
        S section;
        readMembers(section, key + " = " + group + ";");
        expectQuantity(section, row, row.initial, Q::base);
    }
    for (const auto& unit : Q::table)
        for (const char* spelling : unit.spellings) {
            if (spelling == nullptr || Q::rawToUnit(spelling) != unit.unit) continue;
            S section;
            readMembers(section, key + " = { value = 7.25; unit = \"" + spelling + "\"; };");
            expectQuantity(section, row, 7.25, unit.unit);
        }
    const LogCapture log;
    S section;
    KETRA_EXPECT_THROW_MESSAGE(readMembers(section, key + " = { unit = \"furlong\"; };"),
                               thermo::input::Exception, 4, "Unknown");
    ASSERT_EQ(log.errors().size(), 1u);
    EXPECT_EQ(log.errors()[0],
              std::string("Could convert string to ") + Q::what + ": unknown unit furlong\n");
}

template <class S, class Q>
void expectWritten(S& section, const QuantityRow<S, Q>& row, double value, typename Q::UNITS unit)
{
    Settings whole, sparse;
    section.write(whole.root(), true);
    section.write(sparse.root(), false);
    const std::string path =
        pathOf(section, row.written != nullptr && row.isSet != nullptr ? row.written : row.key);
    ASSERT_TRUE(whole.has((path + ".value").c_str())) << path;
    EXPECT_EQ(static_cast<double>(whole[(path + ".value").c_str()]), value);
    EXPECT_STREQ(whole[(path + ".unit").c_str()].c_str(), Q::unitToRaw(unit));
    ASSERT_TRUE(sparse.has((path + ".value").c_str())) << path;
    EXPECT_EQ(static_cast<double>(sparse[(path + ".value").c_str()]), value);
    EXPECT_FALSE(sparse.has((path + ".unit").c_str()));
    if (row.written != nullptr) return; // and is not found again

    S again;
    again.read(whole.root());
    expectQuantity(again, row, value, unit);
}

/// The setter, with both words for the stated unit.
template <class S, class Q>
void expectSetting(S& section, const QuantityRow<S, Q>& row, typename Q::UNITS other)
{
    if constexpr (keepsUnit<Q>) {
        (section.*row.set)(3.0, other);
        expectQuantity(section, row, Q::convert(3.0, other, row.unit), row.unit);
        expectWritten(section, row, Q::convert(3.0, other, row.unit), row.unit);
        (section.*row.set)(row.initial, row.unit);
    } else {
        (section.*row.set)(3.0, other, /*keepUnit=*/true);
        if (row.ownDefault)
            expectQuantity(section, row, 3.0, other);
        else
            expectQuantity(section, row, Q::convert(3.0, other, row.unit), row.unit);
        (section.*row.set)(-4.5, other, /*keepUnit=*/false);
        expectQuantity(section, row, -4.5, other);
        (section.*row.set)(2.5, row.unit, /*keepUnit=*/true);
        expectQuantity(section, row, Q::convert(2.5, row.unit, other), other);
        (section.*row.set)(6.5, other, /*keepUnit=*/false);
        expectWritten(section, row, 6.5, other);
        (section.*row.set)(row.initial, row.unit, /*keepUnit=*/false);
    }
    if (row.ownDefault) return;
    Settings sparse;
    section.write(sparse.root(), false);
    EXPECT_FALSE(sparse.has(pathOf(section, row.key + std::string(".value")).c_str()))
        << "the initial value is the default";
}

/// What holds for every quantity of every section.
template <class S, class Q> void expectRow(const QuantityRow<S, Q>& row)
{
    SCOPED_TRACE(row.key);
    const bool optional = row.absent != nullptr;
    const typename Q::UNITS other =
        row.unit == Q::table[0].unit ? Q::table[1].unit : Q::table[0].unit;
    S section;
    if (optional)
        expectAbsent(section, row);
    else
        expectQuantity(section, row, row.initial, row.unit);
    expectReading(row);
    expectSetting(section, row, other);
    if (row.remove == nullptr) return;
    for (int twice = 0; twice < 2; ++twice) {
        (section.*row.remove)();
        expectAbsent(section, row);
    }
    Settings settings;
    section.write(settings.root(), true);
    EXPECT_FALSE(settings.has(pathOf(section, row.key).c_str()) && row.written == nullptr);
}

/// The text of a document for a value.
inline std::string literal(const std::string& text) { return "\"" + text + "\""; }
inline std::string literal(bool flag) { return flag ? "true" : "false"; }
inline std::string literal(int n) { return std::to_string(n); }
inline std::string literal(double x) { return std::to_string(x); }

/// What holds for every value of every section.
template <class S, class T> void expectRow(const ValueRow<S, T>& row)
{
    SCOPED_TRACE(row.key);
    ASSERT_NE(row.initial, row.other);
    const bool optional = row.absent != nullptr;
    const auto expect = [&](const S& section, const T& value) {
        EXPECT_EQ((section.*row.get)(), value);
        if (optional && row.isSet != nullptr) {
            EXPECT_TRUE((section.*row.isSet)());
        }
    };
    const auto expectNone = [&](const S& section) {
        if (!optional) return expect(section, row.initial);
        if (row.isSet != nullptr) {
            EXPECT_FALSE((section.*row.isSet)());
        }
        expectAbsent([&] { (section.*row.get)(); }, row.absent);
    };
    S section;
    if (row.prepare != nullptr) row.prepare(section);
    expectNone(section);
    for (const std::string wrong : {"{}", "( 1 )", "[ 1 ]"}) {
        SCOPED_TRACE(wrong); // present, but no value of this type
        S read;
        readMembers(read, row.key + (" = " + wrong + ";"));
        expect(read, row.initial);
    }
    S read;
    readMembers(read, std::string(row.key) + " = " + literal(row.other) + ";");
    expect(read, row.other);

    (section.*row.set)(row.other);
    expect(section, row.other);
    Settings whole, sparse;
    section.write(whole.root(), true);
    section.write(sparse.root(), false);
    const std::string path = pathOf(section, row.key);
    for (Settings* settings : {&whole, &sparse}) {
        ASSERT_TRUE(settings->has(path.c_str())) << path;
        S again;
        again.read(settings->root());
        expect(again, row.other);
    }
    (section.*row.set)(row.initial);
    expect(section, row.initial);
    Settings bare;
    section.write(bare.root(), false);
    EXPECT_FALSE(bare.has(path.c_str()));
    section.write(bare.root(), true);
    EXPECT_TRUE(bare.has(path.c_str()));
    if (!optional) return;
    for (int twice = 0; twice < 2 && row.remove != nullptr; ++twice) {
        (section.*row.remove)();
        expectNone(section);
    }
}

/// A member that a setter brings up, and the names of those that its setter drops.
template <class S> struct Alternative {
    const char* name;
    std::function<void(S&)> set;
    std::function<bool(const S&)> isSet;
    std::vector<std::string> drops;
};

/// Each setter drops what its row says, and nothing else.
template <class S> void expectExclusions(const std::vector<Alternative<S>>& members)
{
    for (const Alternative<S>& setter : members) {
        for (const std::string& dropped : setter.drops)
            EXPECT_TRUE(std::any_of(members.begin(), members.end(), [&](const auto& member) {
                return member.name == dropped;
            })) << dropped;
        for (const Alternative<S>& member : members) {
            if (&member == &setter) continue;
            SCOPED_TRACE(std::string(setter.name) + " after " + member.name);
            S section;
            member.set(section);
            ASSERT_TRUE(member.isSet(section));
            ASSERT_FALSE(setter.isSet(section));
            setter.set(section);
            EXPECT_TRUE(setter.isSet(section));
            EXPECT_EQ(member.isSet(section), std::find(setter.drops.begin(), setter.drops.end(),
                                                       member.name) == setter.drops.end());
        }
    }
}

/// The keys that a section read from \p members writes, in their order.
template <class S> std::vector<std::string> keysWritten(const std::string& members, bool all = true)
{
    S section;
    readMembers(section, members);
    Settings settings;
    section.write(settings.root(), all);
    const libconfig::Setting& group =
        section.getName().empty() ? settings.root() : settings[section.getName().c_str()];
    std::vector<std::string> keys;
    for (int i = 0; i < group.getLength(); ++i) keys.emplace_back(group[i].getName());
    return keys;
}

} // namespace ketra_test
