// The command line checks documents against a description of the format of its own, since the
// library passes over what it does not know. Both must describe the same format.

#include "DocumentFormat.h"

#include <ketra/thermo/input/ConfigFile.h>

#include <documents/Folder.h>
#include <unit/thermo_input/DocumentFacts.h>

#include <gtest/gtest.h>
#include <libconfig.h++>

#include <filesystem>
#include <functional>
#include <regex>
#include <set>

namespace {

using host::Key;
using host::Kind;
using host::Section;
using ketra_test::Facts;
using ketra_test::Folder;
using libconfig::Setting;

/// A key with the sections above it: the place of a value in a document.
struct Step {
    const Section* section; // that has the key
    const Key* key;
};
using Path = std::vector<Step>;

std::string textOf(const Path& path)
{
    std::string text;
    for (const Step& step : path) text += (text.empty() ? "" : ".") + std::string(step.key->name);
    return text;
}

/// Every value that a document can state.
void visitValues(const Section& section, Path& path, const std::function<void(const Path&)>& visit)
{
    for (const Key& key : section.keys) {
        path.push_back({&section, &key});
        if (key.section)
            visitValues(*key.section, path, visit);
        else
            visit(path);
        path.pop_back();
    }
}

/// Puts one of two values under a key.
void putValue(Setting& group, const Key& key, bool second)
{
    const auto put = [&](const auto& value, Setting::Type type) {
        group.add(key.name, type) = value;
    };
    switch (key.kind) {
    case Kind::TEXT:
        return put(second ? "second" : "first", Setting::TypeString);
    case Kind::WORD: {
        const std::vector<std::string> words = key.words->all();
        return put((second ? words.back() : words.front()).c_str(), Setting::TypeString);
    }
    case Kind::BOOLEAN:
        return put(second, Setting::TypeBoolean);
    case Kind::WHOLE:
        return put(second ? 7 : 5, Setting::TypeInt);
    case Kind::REAL:
        return put(second ? 0.75 : 0.625, Setting::TypeFloat);
    case Kind::QUANTITY: {
        Setting& quantity = group.add(key.name, Setting::TypeGroup);
        quantity.add("value", Setting::TypeFloat) = second ? 0.75 : 0.625;
        quantity.add("unit", Setting::TypeString) = key.words->all().front().c_str();
        return;
    }
    case Kind::GROUP:
    case Kind::LIST:
        break;
    }
    FAIL() << key.name << " holds no value";
}

/// The group in which the last key of a path stands; alternatives of the keys on the way make room.
Setting& groupFor(Setting& root, const Path& path)
{
    Setting* group = &root;
    for (const Step& step : path) {
        for (const Key& other : step.section->keys)
            if (other.either.group != 0 && other.either.group == step.key->either.group &&
                other.either.rank != step.key->either.rank && group->exists(other.name))
                group->remove(other.name);
        if (!step.key->section) break;
        const bool isList = step.key->kind == Kind::LIST;
        if (!group->exists(step.key->name))
            group->add(step.key->name, isList ? Setting::TypeList : Setting::TypeGroup);
        Setting& below = (*group)[step.key->name];
        if (isList && below.getLength() == 0) below.add(Setting::TypeGroup);
        group = isList ? &below[0] : &below;
        // What the library asks of these groups.
        const std::string name = step.key->name;
        if (name == "chamberCooling" && !group->exists("heatTransfer"))
            group->add("heatTransfer", Setting::TypeGroup);
        if (name == "turbines" && !group->exists("ggType"))
            group->add("ggType", Setting::TypeString) = "serial";
    }
    return *group;
}

/// What a document says of the last key of a path.
enum class Stated { NOTHING, FIRST, SECOND };

/// What the library reads of a document that states one value, and what its alternative needs.
Facts factsWith(const Folder& folder, const Path& path, Stated stated)
{
    libconfig::Config document;
    document.readString(ketra_test::smallest);
    Setting& group = groupFor(document.getRoot(), path);
    const Key& key = *path.back().key;
    if (stated != Stated::NOTHING) {
        if (group.exists(key.name)) group.remove(key.name);
        putValue(group, key, stated == Stated::SECOND);
        for (const Key& companion : path.back().section->keys)
            if (key.either.group != 0 && companion.either.group == key.either.group &&
                companion.either.rank == key.either.rank && !companion.section &&
                !group.exists(companion.name))
                putValue(group, companion, /*second=*/false);
    }
    const std::string file = folder.at("document.cfg");
    document.writeFile(file.c_str());
    thermo::input::ConfigFile config(file.c_str());
    config.read(nullptr);
    return ketra_test::factsOf(config);
}

TEST(DocumentFormat, HasNoKeyThatTheLibraryDoesNotRead)
{
    const Folder folder;
    unsigned values = 0;
    Path path;
    visitValues(host::documentFormat, path, [&](const Path& at) {
        SCOPED_TRACE(textOf(at));
        // A document that was read is of the current version; and where a program that fills a
        // document states "amin", a reader looks for "a1".
        const std::string key = at.back().key->name;
        if (key == "version" || key == "amin") return;
        ++values;
        try {
            // A key may count by being there alone.
            const Facts first = factsWith(folder, at, Stated::FIRST);
            EXPECT_TRUE(first != factsWith(folder, at, Stated::SECOND) ||
                        first != factsWith(folder, at, Stated::NOTHING));
        } catch (const libconfig::SettingException& e) {
            ADD_FAILURE() << "a document with it is refused: " << e.getPath();
        } catch (const std::exception& e) {
            ADD_FAILURE() << "a document with it is refused: " << e.what();
        }
    });
    EXPECT_GT(values, 100u);
}

/// The keys by which the members of the library's sections call themselves.
std::set<std::string> keysOfLibrary()
{
    // DataValue<double> version{"version", ...}, and TwoKeyLength amin{"a1", "amin", ...}
    const std::regex member(R"re(^\s+[A-Z][A-Za-z]+(?:<.*>)? \w+\{"(\w+)")re");
    const std::regex second(R"re(TwoKeyLength \w+\{"\w+", "(\w+)")re");
    const std::regex section(R"re((?:Section|Choice|Node)\("(\w+)"\))re");
    std::set<std::string> keys;
    for (const auto& file :
         std::filesystem::directory_iterator(KETRA_SOURCE_DIR "/src/ketra/thermo/input")) {
        if (file.path().extension() != ".h") continue;
        std::ifstream stream(file.path());
        for (std::string line; std::getline(stream, line);) {
            std::smatch match;
            for (const std::regex& kind : {member, second, section})
                if (std::regex_search(line, match, kind)) keys.insert(match[1]);
        }
    }
    return keys;
}

TEST(DocumentFormat, HasEveryKeyOfTheLibrary)
{
    const std::set<std::string> keys = keysOfLibrary();
    EXPECT_GT(keys.size(), 100u);
    for (const std::string& key : keys)
        EXPECT_NE(host::whereKeyBelongs(key), "") << "the library reads \"" << key << "\"";
}

/// Keys that stand in \p group and that \p section does not have.
void findUnknown(const Setting& group, const Section& section, const std::string& where,
                 std::vector<std::string>& unknown)
{
    for (int i = 0; i < group.getLength(); ++i) {
        const Setting& setting = group[i];
        const std::string here = where + "." + setting.getName();
        const Key* const key = section.find(setting.getName());
        if (!key)
            unknown.push_back(here);
        else if (key->kind == Kind::GROUP)
            findUnknown(setting, *key->section, here, unknown);
        else if (key->kind == Kind::LIST)
            for (int k = 0; k < setting.getLength(); ++k)
                findUnknown(setting[k], *key->section, here, unknown);
    }
}

TEST(DocumentFormat, KnowsWhateverTheLibraryWrites)
{
    const Folder folder;
    for (const char* source : {"/tests/cli/every-key.cfg", "/tests/documents/whole.cfg"}) {
        SCOPED_TRACE(source);
        thermo::input::ConfigFile config((std::string(KETRA_SOURCE_DIR) + source).c_str());
        config.read(nullptr);
        const std::string file = folder.at("written.cfg");
        config.write(file.c_str(), /*all=*/true);
        libconfig::Config written;
        written.readFile(file.c_str());
        std::vector<std::string> unknown;
        findUnknown(written.getRoot(), host::documentFormat, "", unknown);
        EXPECT_EQ(unknown, std::vector<std::string>());
    }
}

} // namespace
