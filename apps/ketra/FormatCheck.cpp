#include "FormatCheck.h"
#include "Nearest.h"
#include "Text.h"

#include <algorithm>
#include <string>

namespace host {
namespace {

using libconfig::Setting;

constexpr double currentVersion = 1.2;
constexpr double leastPlausiblePressure = 1000.0; // Pa; a lower one without a unit is a slip

/// What a scalar holds, as the document writes it.
std::string valueText(const Setting& setting)
{
    switch (setting.getType()) {
    case Setting::TypeInt:
    case Setting::TypeInt64:
        return std::to_string(static_cast<long long>(setting));
    case Setting::TypeFloat:
        return realText(setting);
    case Setting::TypeBoolean:
        return static_cast<bool>(setting) ? "true" : "false";
    case Setting::TypeString:
        return std::string("\"") + setting.c_str() + '"';
    case Setting::TypeGroup:
        return "a group { ... }";
    case Setting::TypeArray:
        return "an array [ ... ]";
    case Setting::TypeList:
        return "a list ( ... )";
    default:
        return "nothing";
    }
}

/// How a number would stand where a real one is due.
std::string asReal(const Setting& setting)
{
    if (setting.getType() == Setting::TypeInt || setting.getType() == Setting::TypeInt64)
        return std::to_string(static_cast<long long>(setting)) + ".0";
    return setting.getType() == Setting::TypeFloat ? realText(setting) : "1.0";
}

const char* kindText(Kind kind)
{
    switch (kind) {
    case Kind::BOOLEAN:
        return "true or false";
    case Kind::WHOLE:
        return "a whole number, such as 1";
    case Kind::REAL:
        return "a real number, such as 1.0";
    default:
        return "a text in double quotes";
    }
}

/// What to write for a group that is missing.
std::string mendOf(const std::string& group)
{
    if (group == "nozzleFlow") return " = { calculateNozzleFlow = false; }; for the chamber alone";
    if (group == "propellant")
        return " = { components = { ratio = ...; oxidizer = ( ... ); fuel = ( ... ); }; };";
    return " = { pressure = { value = 7.0; unit = \"MPa\"; }; };";
}

bool isWhole(const Setting& setting)
{
    return setting.getType() == Setting::TypeInt || setting.getType() == Setting::TypeInt64;
}

bool hasKind(const Setting& setting, Kind kind)
{
    switch (kind) {
    case Kind::BOOLEAN:
        return setting.getType() == Setting::TypeBoolean;
    case Kind::WHOLE:
        return setting.getType() == Setting::TypeInt;
    case Kind::REAL:
        return setting.getType() == Setting::TypeFloat;
    default:
        return setting.getType() == Setting::TypeString;
    }
}

} // namespace

void FormatCheck::run()
{
    const Setting& root = document.root();
    for (int i = 0; i < root.getLength(); ++i) {
        const size_t before = findings.errors();
        checkSetting(root[i], documentFormat);
        if (findings.errors() > before) faulty.emplace_back(root[i].getName());
    }
    checkVersion();
    requireGroups();
    checkChamberPressure();
}

bool FormatCheck::isGood(const char* group) const
{
    return std::find(faulty.begin(), faulty.end(), group) == faulty.end();
}

void FormatCheck::checkSetting(const Setting& setting, const Section& section)
{
    if (const Key* key = section.find(setting.getName()))
        checkValue(setting, *key);
    else
        reportUnknown(setting, section);
}

void FormatCheck::checkGroup(const Setting& group, const Section& section)
{
    for (int i = 0; i < group.getLength(); ++i) checkSetting(group[i], section);
    checkAlternatives(group, section);
}

void FormatCheck::checkAlternatives(const Setting& group, const Section& section)
{
    for (const Key& read : section.keys)
        for (const Key& lost : section.keys)
            if (read.either.group != 0 && read.either.group == lost.either.group &&
                read.either.rank < lost.either.rank && group.exists(read.name) &&
                group.exists(lost.name))
                findings.warn(document.place(group[lost.name]),
                              std::string("is not read, because \"") + read.name +
                                  "\" stands beside it. Remove one of the two");
}

void FormatCheck::checkValue(const Setting& setting, const Key& key)
{
    switch (key.kind) {
    case Kind::QUANTITY:
        return checkQuantity(setting, key);
    case Kind::LIST:
        return checkList(setting, key);
    case Kind::GROUP:
        if (setting.isGroup()) return checkGroup(setting, *key.section);
        findings.fail(document.place(setting), valueText(setting) +
                                                   " stands where a group is due. "
                                                   "Write " +
                                                   key.name + " = { ... };");
        return;
    default:
        return checkScalar(setting, key);
    }
}

void FormatCheck::checkScalar(const Setting& setting, const Key& key)
{
    if (!hasKind(setting, key.kind)) return reportKind(setting, key);
    if (key.kind == Kind::WORD) checkWord(setting, *key.words);
}

void FormatCheck::reportKind(const Setting& setting, const Key& key)
{
    const std::string value = valueText(setting);
    std::string what;
    if (key.kind == Kind::REAL && isWhole(setting))
        what = value + " is a whole number; this key holds a real one, and " + value +
               " would not be read at all. Write " + asReal(setting);
    else
        what = value + " stands where " + kindText(key.kind) + " is due, and would not be read";
    findings.fail(document.place(setting), what);
}

void FormatCheck::checkWord(const Setting& setting, const Words& words)
{
    const std::string word = setting.c_str();
    if (words.accepts(word.c_str())) return;
    const std::vector<std::string> all = words.all();
    const std::vector<std::string> near = nearest(word, all, 1);
    findings.fail(document.place(setting),
                  "\"" + word + "\" is no " + words.what + ". " +
                      (near.empty() ? "Write " + quotedChoice(all)
                                    : "Did you mean " + quotedChoice(near) +
                                          "? Upper and lower "
                                          "case count"));
}

void FormatCheck::checkQuantity(const Setting& setting, const Key& key)
{
    if (!setting.isGroup()) {
        const std::string number = setting.isNumber() ? asReal(setting) : "1.0";
        findings.fail(document.place(setting),
                      valueText(setting) + " stands where a value with its unit is due. Write " +
                          key.name + " = { value = " + number + "; unit = \"" +
                          key.words->all().front() + "\"; };");
        return;
    }
    const Key keys[] = {{"value", Kind::REAL}, {"unit", Kind::WORD, key.words}};
    checkGroup(setting, Section{keys});
    if (setting.exists("unit") && !setting.exists("value"))
        findings.warn(document.place(setting), "states a unit but no value, so that the value "
                                               "stays at its default. Add value = ...;");
}

void FormatCheck::checkList(const Setting& setting, const Key& key)
{
    if (!setting.isList()) {
        findings.fail(document.place(setting),
                      valueText(setting) +
                          " stands where a list of groups is due, and would not "
                          "be read. Write " +
                          key.name + " = ( { ... }, { ... } );");
        return;
    }
    for (int i = 0; i < setting.getLength(); ++i) {
        if (setting[i].isGroup())
            checkGroup(setting[i], *key.section);
        else
            findings.fail(document.place(setting[i]),
                          valueText(setting[i]) + " stands where a group { ... } is due");
    }
}

void FormatCheck::reportUnknown(const Setting& setting, const Section& section)
{
    const std::string name = setting.getName();
    const std::vector<std::string> near = nearest(name, section.names(), 1);
    const std::string elsewhere = whereKeyBelongs(name);
    std::string what = "unknown key";
    if (setting.isScalar()) what += " with the value " + valueText(setting);
    what += "; nothing reads it. ";
    if (!near.empty())
        what += "Did you mean " + quotedChoice(near) + "?";
    else if (!elsewhere.empty())
        what += "There is a key " + elsewhere;
    else
        what += "Known here: " + quotedChoice(section.names());
    findings.warn(document.place(setting), what);
}

void FormatCheck::requireGroups()
{
    for (const char* name : {"combustionChamberConditions", "nozzleFlow", "propellant"})
        if (!document.root().exists(name))
            findings.fail(document.placeOfAbsent(document.root(), name),
                          std::string("the group is missing. Add ") + name + mendOf(name));
}

void FormatCheck::checkVersion()
{
    const Setting& root = document.root();
    double version = currentVersion;
    if (root.lookupValue("version", version) && version > currentVersion)
        findings.fail(document.place(root["version"]),
                      "version " + realText(version) + " of the format is newer than " +
                          realText(currentVersion) + ", which this program reads");
}

void FormatCheck::checkChamberPressure()
{
    const Setting& root = document.root();
    if (!root.exists("combustionChamberConditions")) return;
    const Setting& conditions = root["combustionChamberConditions"];
    if (!conditions.isGroup()) return;
    if (!conditions.exists("pressure")) {
        findings.fail(document.placeOfAbsent(conditions, "pressure"),
                      "no chamber pressure is stated. Add pressure = { value = 7.0; unit = "
                      "\"MPa\"; };");
        return;
    }
    const Setting& pressure = conditions["pressure"];
    if (!pressure.isGroup()) return;
    double value = 0.0;
    if (pressure.exists("value") && !pressure["value"].isScalar()) return;
    if (pressure.exists("value") && pressure["value"].getType() != Setting::TypeFloat) return;
    pressure.lookupValue("value", value);
    if (!(value > 0.0))
        findings.fail(document.place(pressure),
                      "the chamber pressure is " + realText(value) + "; it must be above 0");
    else if (!pressure.exists("unit") && value < leastPlausiblePressure)
        findings.warn(document.place(pressure), "no unit is stated, so this is " + realText(value) +
                                                    " Pa. Add the unit, such as \"MPa\"");
}

} // namespace host
