#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>

#include <documents/Folder.h>
#include <unit/thermo_input/Facts.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <functional>
#include <random>
#include <vector>

using ketra_test::exact;
using ketra_test::Facts;
using ketra_test::factsOf;
using ketra_test::Folder;
using namespace thermo::input;

namespace {

/// Makes texts of documents at random, out of every key of the format.
class Generator
{
public:
    explicit Generator(std::uint64_t seed) : random(seed) {}

    std::string document()
    {
        Members root;
        maybe(root, "version", [this] { return pick({"1.2", "1.1", "0.5", "2"}); });
        maybe(root, "name", [this] { return text(); });
        maybe(root, "info", [this] { return text(); });
        maybe(root, "generalOptions", [this] {
            Members m;
            for (const char* key : {"multiphase", "ions", "flowSeparation"})
                maybe(m, key, [this] { return flag(); });
            return group(m);
        });
        root.push_back({"combustionChamberConditions", [this] {
                            Members m;
                            maybe(m, "pressure", [this] { return pressure(); });
                            return group(m);
                        }()});
        root.push_back({"nozzleFlow", nozzleFlow()});
        root.push_back({"propellant", propellant()});
        maybe(root, "engineSize", [this] { return group({{"thrust", quantity({"kN", "N"})}}); });
        maybe(root, "propelantFeedSystem", [] { return std::string("{ cycle = \"x\"; }"); });
        return members(root);
    }

private:
    using Members = std::vector<std::pair<std::string, std::string>>;

    std::size_t below(std::size_t n) { return random() % n; }
    bool chance(std::size_t one, std::size_t of) { return below(of) < one; }
    std::string pick(std::vector<std::string> choices) { return choices[below(choices.size())]; }

    template <class Make> void maybe(Members& m, const char* key, Make make)
    {
        if (chance(2, 3)) m.push_back({key, make()});
    }

    std::string members(Members m)
    {
        std::shuffle(m.begin(), m.end(), random);
        std::string result;
        for (const auto& [key, value] : m)
            result += pick({"", " ", "\n", "\r\n", "# c\n", "/* c */", "// \"\n"}) + key +
                      pick({" = ", ":", "=\n"}) + value + pick({";", ",", "; "});
        return result;
    }
    std::string group(const Members& m) { return "{" + members(m) + "}"; }
    std::string list(std::size_t longest, const std::function<std::string()>& item)
    {
        std::string result = "(";
        const std::size_t size = below(longest + 1);
        for (std::size_t i = 0; i < size; ++i) result += (i == 0 ? "" : ", ") + item();
        return result + ")";
    }

    std::string flag() { return pick({"true", "false", "TRUE", "False", "1"}); }

    std::string number()
    {
        switch (below(8)) {
        case 0:
            return "0.0";
        case 1:
            return pick({"5", "-3", "0"}); // integers, which no float key takes
        case 2:
            return pick({"1.0", ".5", "-2.", "+7.25", "1.0e3", "101325.0", "-0.0"});
        case 3: { // any bits at all that are a finite number
            double x = std::bit_cast<double>(random());
            while (!(std::abs(x) < 1e308)) x = std::bit_cast<double>(random());
            return digits(x);
        }
        default:
            return digits((static_cast<double>(below(2000000)) - 200000.0) /
                          static_cast<double>(1 + below(9999)));
        }
    }
    static std::string digits(double x)
    {
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.17e", x);
        return buffer;
    }

    std::string text()
    {
        std::string result = "\"";
        const std::size_t size = below(12);
        for (std::size_t i = 0; i < size; ++i)
            result += pick({"a", "Z", " ", "\\n", "\\\"", "\\\\", "\\t", "\\x41", "\xC3\xA9", "{",
                            "#", "\\r", "%d", "O2(L)", "\n"});
        return result + "\"";
    }

    std::string quantity(std::vector<std::string> units)
    {
        Members m;
        maybe(m, "value", [this] { return number(); });
        if (chance(3, 4)) m.push_back({"unit", "\"" + pick(std::move(units)) + "\""});
        return group(m);
    }
    std::string pressure()
    {
        return quantity({"MPa", "atm", "bar", "psi", "psia", "Pa", "kg/cm2", "at"});
    }

    std::string sectionConditions()
    {
        Members m;
        maybe(m, "areaRatio", [this] { return number(); });
        maybe(m, "supersonic", [this] { return flag(); });
        maybe(m, "pressureRatio", [this] { return number(); });
        maybe(m, "pressure", [this] { return pressure(); });
        return group(m);
    }

    std::string nozzleFlow()
    {
        Members m;
        maybe(m, "calculateNozzleFlow", [this] { return flag(); });
        maybe(m, "freezingConditions", [this] {
            Members s;
            maybe(s, "calculate", [this] { return flag(); });
            if (chance(1, 3)) s.push_back({"expansionRatio", number()});
            maybe(s, "pressure", [this] { return pressure(); });
            maybe(s, "pressureRatio", [this] { return number(); });
            return group(s);
        });
        maybe(m, "nozzleInletConditions", [this] {
            Members s;
            if (chance(1, 2)) s.push_back({"contractionAreaRatio", number()});
            maybe(s, "massFlux", [this] {
                return quantity({"kg/(m2-s)", "kg/(m2\xC2\xB7s)", "lbm/(ft2-s)", "lbm/(s-ft2)"});
            });
            return group(s);
        });
        maybe(m, "nozzleExitConditions", [this] { return sectionConditions(); });
        maybe(m, "efficiencies", [this] {
            Members s;
            maybe(s, "apply", [this] { return flag(); });
            for (const char* key :
                 {"cycle", "reaction", "nozzle", "nozzleLength", "nozzleHalfAngle"})
                maybe(s, key, [this] { return number(); });
            return group(s);
        });
        maybe(m, "ambientConditions", [this] {
            Members s;
            if (chance(1, 3)) s.push_back({"pressure", pressure()});
            maybe(s, "minPressure", [this] { return pressure(); });
            maybe(s, "maxPressure", [this] { return pressure(); });
            maybe(s, "calculateDeliveredPerformance", [this] { return flag(); });
            return group(s);
        });
        maybe(m, "throttlingConditions", [this] {
            Members s;
            if (chance(1, 3)) s.push_back({"flowrate", number()});
            maybe(s, "minFlowrate", [this] { return number(); });
            maybe(s, "maxFlowrate", [this] { return number(); });
            maybe(s, "calculateDeliveredPerformance", [this] { return flag(); });
            return group(s);
        });
        maybe(m, "nozzleStations", [this] {
            return list(3, [this] { return group({{"stationConditions", sectionConditions()}}); });
        });
        return group(m);
    }

    std::string component()
    {
        Members m;
        maybe(m, "name", [this] { return text(); });
        maybe(m, "massFraction", [this] { return number(); });
        maybe(m, "T", [this] { return quantity({"K", "C", "F"}); });
        maybe(m, "p", [this] { return pressure(); });
        return group(m);
    }
    std::string components()
    {
        return list(3, [this] { return component(); });
    }

    std::string propellant()
    {
        Members m;
        const bool mixture = chance(1, 3);
        if (!mixture || chance(1, 10)) {
            Members c;
            maybe(c, "ratio", [this] {
                return quantity({"km", "Km", "O/F", "o/f", "alpha", "optimal", "optimum", "opt"});
            });
            maybe(c, "oxidizer", [this] { return components(); });
            maybe(c, "fuel", [this] { return components(); });
            m.push_back({"components", group(c)});
        }
        if (mixture) {
            Members s;
            maybe(s, "species", [this] { return components(); });
            m.push_back({"mixture", group(s)});
        }
        return group(m);
    }

    std::mt19937_64 random;
};

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool isZero(const std::string& value) { return value == exact(0.0) || value == exact(-0.0); }

/// How often each thing that a document can lose was lost.
using Losses = std::map<std::string, int>;

void change(std::string& fact, const std::string& to, Losses& losses, const char* reason)
{
    if (fact != to) ++losses[reason];
    fact = to;
}

/// What a document says after a whole one was written and read: everything but two things.
Facts afterWhole(const Facts& facts, Losses& losses)
{
    Facts expected;
    for (auto [path, value] : facts) {
        if (path.find("/efficiencies/") != std::string::npos && isZero(value)) {
            ++losses["efficiency of 0"]; // the factors are written as in a sparse document
            continue;
        }
        expected[path] = value;
    }
    for (auto& [path, value] : expected) {
        if (!endsWith(path, "/T/value") || !(std::strtod(value.c_str(), nullptr) <= 0.0)) continue;
        // A temperature of 0 or less on its scale is left out.
        change(value, exact(0.0), losses, "temperature");
        const std::string unit = path.substr(0, path.size() - 5) + "unit";
        change(expected[unit], "0", losses, "scale of a temperature");
    }
    return expected;
}

/// The unit that a quantity has when none is stated; pascal, kelvin, kg/(m2 s) and the mass ratio.
const char* assumedUnit(const std::string& path)
{
    return endsWith(path, "/T/unit") || endsWith(path, "/massFlux/unit") ||
                   endsWith(path, "/ratio/unit")
               ? "0"
               : "4";
}

/// The same for a sparse document.
Facts afterSparse(const Facts& facts, Losses& losses)
{
    Facts expected;
    for (auto [path, value] : afterWhole(facts, losses)) {
        const bool mixture = facts.at("propellant/ratio/unit") == "3";
        const char* optional[] = {"/expansionRatio", "/pressureRatio", "/contractionAreaRatio",
                                  "/areaRatio",      "/flowrate",      "/minFlowrate",
                                  "/maxFlowrate"};
        if (std::any_of(std::begin(optional), std::end(optional),
                        [&path = path](const char* key) { return endsWith(path, key); }) &&
            isZero(value)) {
            ++losses["optional number of 0"]; // at its default, and presence is a key
            continue;
        }
        if (endsWith(path, "/unit") && !(mixture && path == "propellant/ratio/unit"))
            change(value, assumedUnit(path), losses, "unit");
        // Both zeros are the default, of everything but the pressure of a component.
        if (value == exact(-0.0) && !endsWith(path, "/p/value"))
            change(value, exact(0.0), losses, "sign of 0");
        expected[path] = value;
    }
    // The side of the throat stands beside an area ratio only.
    for (auto& [path, value] : expected)
        if (endsWith(path, "/supersonic") &&
            !expected.contains(path.substr(0, path.size() - 10) + "areaRatio"))
            change(value, "true", losses, "side of the throat");
    return expected;
}

constexpr int documents = 1200;
constexpr std::uint64_t seed = 2112; // the same documents every time

void roundTrips(bool all, Facts (*after)(const Facts&, Losses&), Losses& losses,
                std::map<std::string, int>& seen)
{
    const Folder folder;
    Generator generator(seed);
    for (int i = 0; i < documents; ++i) {
        SCOPED_TRACE("document " + std::to_string(i));
        const std::string text = generator.document();
        ConfigFile first(folder.write("a.cfg", text).c_str()), second(folder.at("b.cfg").c_str());
        ASSERT_NO_THROW(first.read(nullptr)) << text;
        first.write(folder.at("b.cfg").c_str(), all);
        ASSERT_NO_THROW(second.read(nullptr)) << folder.read("b.cfg");
        const Facts expected = after(factsOf(first), losses);
        ASSERT_EQ(factsOf(second), expected) << text << "\n\n" << folder.read("b.cfg");
        for (const auto& [path, value] : expected) ++seen[path.substr(path.rfind('/') + 1)];

        // What was written once is written again as it is.
        second.write(folder.at("c.cfg").c_str(), all);
        ConfigFile third(folder.at("c.cfg").c_str());
        third.read(nullptr);
        ASSERT_EQ(factsOf(third), factsOf(second));
    }
}

TEST(GeneratedDocuments, WholeOnesLoseNothingButColdTemperaturesAndEfficienciesOfZero)
{
    Losses losses;
    std::map<std::string, int> seen;
    roundTrips(true, afterWhole, losses, seen);
    EXPECT_EQ(losses.size(), 3u);
    for (const char* loss : {"efficiency of 0", "temperature", "scale of a temperature"})
        EXPECT_GT(losses[loss], 20) << loss;
    // Every key of the format came up, and often.
    for (const char* key : {"name",
                            "info",
                            "multiphase",
                            "ions",
                            "flowSeparation",
                            "calculateNozzleFlow",
                            "calculate",
                            "expansionRatio",
                            "pressureRatio",
                            "contractionAreaRatio",
                            "areaRatio",
                            "supersonic",
                            "apply",
                            "cycle",
                            "reaction",
                            "nozzle",
                            "nozzleLength",
                            "nozzleHalfAngle",
                            "flowrate",
                            "minFlowrate",
                            "maxFlowrate",
                            "calculateDeliveredPerformance",
                            "massFraction",
                            "value",
                            "unit"})
        EXPECT_GT(seen[key], 40) << key;
}

TEST(GeneratedDocuments, SparseOnesLoseUnitsAndWhatStandsAtItsDefault)
{
    Losses losses;
    std::map<std::string, int> seen;
    roundTrips(false, afterSparse, losses, seen);
    for (const char* loss : {"efficiency of 0", "temperature", "optional number of 0", "unit",
                             "side of the throat", "sign of 0"})
        EXPECT_GT(losses[loss], 20) << loss;
    EXPECT_EQ(losses.size(), 7u);
}

} // namespace
