#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ketra_test {

/// Makes texts of documents at random, out of every key of the format.
class RandomDocuments
{
public:
    explicit RandomDocuments(std::uint64_t seed) : random(seed) {}

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
        maybe(root, "engineSize", [this] { return engineSize(); });
        maybe(root, "chamberCooling", [this] { return chamberCooling(); });
        maybe(root, "propelantFeedSystem", [this] { return feedSystem(); });
        maybe(root, "propellantFeedSystem", [] { return std::string("{ cycle = \"x\"; }"); });
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

    std::string whole() { return pick({"5", "-3", "0", "100", "7.0"}); } // the last is none
    std::string word(std::vector<std::string> words)
    {
        return "\"" + pick(std::move(words)) + "\"";
    }
    std::string length() { return quantity({"mm", "in", "ft", "m"}); }
    std::string velocity() { return quantity({"in/s", "ft/s", "m/s"}); }
    std::string speed() { return quantity({"rad/s", "rpm", "Hz"}); }
    std::string temperature() { return quantity({"K", "C", "F"}); }
    std::string conductivity()
    {
        return quantity({"W/(m K)", "W_over_m_K", "W/(m\xC2\xB7K)", "W/(m-K)", "Btu/(hr ft R)",
                         "Btu_over_hr_ft_R",
                         "Btu/(hr\xC2\xB7"
                         "ft\xC2\xB7R)",
                         "Btu/(hr-ft-R)", "Btu/(s in R)", "Btu_over_s_in_R",
                         "Btu/(s\xC2\xB7in\xC2\xB7R)", "Btu/(s-in-R)"});
    }
    std::string angle()
    {
        return quantity({"radians", "radian", "rad", "r", "degrees", "degree", "deg"});
    }
    std::string material() { return pick({"\"copper\"", "\"copper\"", "\"steel\"", "\"\""}); }
    /// A number that is often one of these defaults.
    std::string numberOr(std::vector<std::string> initial)
    {
        return chance(1, 3) ? pick(std::move(initial)) : number();
    }

    using Make = std::string (RandomDocuments::*)();
    void maybeEach(Members& m, Make make, std::initializer_list<const char*> keys)
    {
        for (const char* key : keys) maybe(m, key, [&] { return (this->*make)(); });
    }

    std::string engineSize()
    {
        Members m;
        const bool none = chance(1, 4);
        if (!none && chance(1, 2)) m.push_back({"thrust", quantity({"kN", "kg", "lbf", "N"})});
        if (!none && chance(1, 2)) m.push_back({"flowrate", quantity({"kg/s", "lbm/s"})});
        if (!none && chance(1, 2)) m.push_back({"throatDiameter", length()});
        maybe(m, "ambientConditions", [this] { return pressure(); });
        maybe(m, "chambersNo", [this] { return whole(); });
        maybe(m, "chamberGeometry", [this] { return geometry(); });
        return group(m);
    }
    std::string geometry()
    {
        Members m;
        maybe(m, "length", [this] { return length(); });
        maybe(m, "characteristicLength", [this] { return flag(); });
        maybeEach(m, &RandomDocuments::number,
                  {"contractionAngle", "R1_to_Rt_ratio", "Rn_to_Rt_ratio", "R2_to_R2max_ratio",
                   "initialAngle", "exitAngle", "Le_to_Lc15"});
        for (const char* key : {"TOC", "TOC_L", "TOC_applyEfficiency"})
            if (chance(1, 3)) m.push_back({key, flag()});
        maybe(m, "Tw_to_T0", [this] { return numberOr({"0.3"}); });
        maybe(m, "Le", [this] { return numberOr({"5.0"}); });
        return group(m);
    }

    std::string chamberCooling()
    {
        Members heat;
        maybe(heat, "relationsType", [this] {
            return word(
                {"Ievlev", "ievlev", "Iewlew", "iewlew", "Bartz", "bartz", "combined", "Combined"});
        });
        maybe(heat, "applyBLC", [this] { return flag(); });
        maybe(heat, "numberOfStations", [this] { return whole(); });
        maybe(heat, "radiationHeatTransfer", [this] {
            Members m;
            maybe(m, "hotSideWallSurfaceEmissivity", [this] { return number(); });
            return group(m);
        });
        maybe(heat, "wallLayerHeight", [this] { return number(); });
        Members m = {{"heatTransfer", group(heat)}};
        maybe(m, "chamberCoolingSections",
              [this] { return list(4, [this] { return coolingSection(); }); });
        maybe(m, "filmSlots", [this] {
            return list(3, [this] {
                Members slot;
                maybe(slot, "location", [this] { return length(); });
                maybe(slot, "flowrate", [this] { return number(); });
                maybe(slot, "coolant", [this] { return components(); });
                return group(slot);
            });
        });
        return group(m);
    }
    std::string coolingSection()
    {
        Members m;
        const std::size_t design = below(4);
        if (design == 0 || chance(1, 20)) m.push_back({"tubularJacketDesign", tubes()});
        if (design == 1 || chance(1, 20)) m.push_back({"channelJacketDesign", channels()});
        if (design == 2 || chance(1, 20)) {
            Members slot = coolant();
            maybe(slot, "height", [this] { return length(); });
            m.push_back({"slotJacketDesign", group(slot)});
        }
        if (design == 3) {
            Members wall = coolingWall();
            maybe(wall, "coldSideWallSurfaceEmissivity", [this] { return number(); });
            m.push_back({"radiationCooling", group(wall)});
        }
        return group(m);
    }
    Members coolingWall()
    {
        Members m;
        maybe(m, "id", [this] { return text(); });
        maybeEach(m, &RandomDocuments::length,
                  {"location", "length", "wallThickness", "thermalInsulationThickness"});
        maybeEach(m, &RandomDocuments::conductivity,
                  {"wallConductivity", "thermalInsulationConductivity"});
        if (chance(1, 3)) m.push_back({"wallMaterial", material()});
        return m;
    }
    Members coolant()
    {
        Members m = coolingWall();
        if (chance(1, 3)) m.push_back({"coolant", components()});
        maybe(m, "coolantFrom", [this] { return text(); });
        maybe(m, "flowrate", [this] { return number(); });
        maybe(m, "oppositeFlow", [this] { return flag(); });
        maybe(m, "twoPass", [this] { return flag(); });
        return m;
    }
    std::string channels()
    {
        Members m = coolant();
        maybeEach(m, &RandomDocuments::length,
                  {"height1", "height_min", "height2", "amin", "a2", "b1", "bmin", "b2"});
        if (chance(1, 4))
            m.push_back(
                {"a1", pick({"{ value = 2.0; }", "{ value = 1.0; }", "{ unit = \"in\"; }"})});
        else
            maybe(m, "a1", [this] { return length(); });
        if (chance(1, 3)) m.push_back({"n", whole()});
        maybe(m, "gamma", [this] { return angle(); });
        if (chance(1, 3)) m.push_back({"ribsMaterial", material()});
        maybe(m, "ribsConductivity", [this] { return conductivity(); });
        return group(m);
    }
    std::string tubes()
    {
        Members m = coolant();
        maybeEach(m, &RandomDocuments::length, {"d", "dmin", "d2"});
        maybe(m, "n", [this] { return whole(); });
        maybe(m, "helix", [this] { return flag(); });
        return group(m);
    }

    std::string feedSystem()
    {
        Members m;
        const bool gas = chance(1, 2);
        if (gas) m.push_back({"gasPressurizedFeedSystem", pressurized()});
        if (!gas || chance(1, 10)) m.push_back({"turbopumpFeedSystem", turbopump()});
        maybe(m, "estimateDryMass", [this] { return flag(); });
        return group(m);
    }
    std::string pressurized()
    {
        Members m;
        maybe(m, "type", [this] {
            return word({"by stored gas", "byStoredGas", "by_stored_gas", "by vaporized propellant",
                         "byVaporizedPropellant", "by_vaporized_propellant",
                         "by chemically generated gas", "byChemicallyGeneratedGas",
                         "by_chemically_generated_gas"});
        });
        maybeEach(m, &RandomDocuments::feedSide, {"oxidizerFeedSystem", "fuelFeedSystem"});
        return group(m);
    }
    std::string turbopump()
    {
        Members m;
        maybe(m, "cycle", [this] {
            return word({"gas generator", "gasGenerator", "gas_generator", "GG",
                         "staged combustion", "stagedCombustion", "staged_combustion", "SC",
                         "full-flow staged combustion", "fullFlowstagedCombustion",
                         "full_flow_staged_combustion", "FFSC", "expander"});
        });
        maybeEach(m, &RandomDocuments::feedSide, {"oxidizerFeedSystem", "fuelFeedSystem"});
        maybe(m, "branches", [this] { return branches(); }); // of no side, and so of no one
        maybe(m, "gasGenerators", [this] { return list(3, [this] { return gasGenerator(); }); });
        maybe(m, "turbines", [this] { return list(3, [this] { return turbine(); }); });
        return group(m);
    }
    Members feedLine()
    {
        Members m;
        maybe(m, "pumpEfficiency", [this] { return numberOr({"0.7", "0.0"}); });
        maybeEach(m, &RandomDocuments::pressure, {"valvePressureDrop", "coolingPressureDrop"});
        if (chance(1, 3)) m.push_back({"valveResistanceCoefficient", number()});
        maybe(m, "coolingTemperatureRise", [this] { return temperature(); });
        return m;
    }
    std::string feedSide()
    {
        Members m = feedLine();
        maybeEach(m, &RandomDocuments::pressure, {"inletPressure", "injectorPressureDrop"});
        maybe(m, "inletVelocity", [this] { return velocity(); });
        maybe(m, "injectorFlowCoefficient", [this] { return number(); });
        maybe(m, "branches", [this] { return branches(); });
        if (chance(1, 2)) m.push_back({"boosterPump", boosterPump()});
        return group(m);
    }
    std::string boosterPump()
    {
        Members m;
        maybeEach(m, &RandomDocuments::pressure, {"inletPressure", "dischargePressure"});
        maybe(m, "pumpEfficiency", [this] { return numberOr({"0.7"}); });
        maybe(m, "hydraulicTurbine", [this] { return flag(); });
        maybe(m, "turbinePressureRatio", [this] { return numberOr({"5.0"}); });
        maybe(m, "turbineEfficiency", [this] { return numberOr({"0.7"}); });
        maybe(m, "rotationalSpeed", [this] { return speed(); });
        return group(m);
    }
    Members branchMembers()
    {
        Members m = feedLine();
        maybeEach(m, &RandomDocuments::text, {"name", "connectTo", "dischargeTo"});
        maybeEach(m, &RandomDocuments::number, {"flowrate", "areaRatio", "fixedPressureRatio"});
        maybeEach(m, &RandomDocuments::pressure, {"dischargePressure", "fixedPressureDrop"});
        return m;
    }
    std::string branches()
    {
        return list(2, [this] { return group(branchMembers()); });
    }
    std::string generatorBranch()
    {
        Members m = branchMembers();
        maybeEach(m, &RandomDocuments::pressure, {"pipeDp", "injectorPressureDrop"});
        maybe(m, "injectorFlowCoefficient", [this] { return number(); });
        return group(m);
    }
    std::string gasGenerator()
    {
        Members m;
        maybe(m, "ggType", [this] {
            return word({"oxidizer-rich", "oxidizerRich", "fuel-rich", "fuelRich"});
        });
        maybe(m, "pressure", [this] { return pressure(); });
        maybe(m, "sigma", [this] { return numberOr({"0.9"}); });
        maybe(m, "maxTemperature", [this] { return temperature(); });
        maybeEach(m, &RandomDocuments::generatorBranch, {"oxidizerFeedSystem", "fuelFeedSystem"});
        return group(m);
    }
    std::string turbine()
    {
        Members m = {{"ggType", word({"serial", "serial,auto", "serial,ox-fuel", "serial,fuel-ox",
                                      "parallel"})}}; // without it the document is refused
        maybe(m, "turbinePressureRatio", [this] { return numberOr({"2.0"}); });
        maybe(m, "turbineEfficiency", [this] { return numberOr({"0.7"}); });
        maybe(m, "rotationalSpeed", [this] { return speed(); });
        return group(m);
    }

    std::mt19937_64 random;
};

} // namespace ketra_test
