#include <unit/thermo_input/FeedFacts.h>
#include <unit/thermo_input/Settings.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>

using ketra_test::Facts;
using ketra_test::factsOf;
using ketra_test::Settings;
using namespace thermo::input;

namespace {

/// Fills feed systems at random, every member in about two of three.
class Filler
{
public:
    explicit Filler(unsigned int seed) : random(seed) {}

    void fill(PropellantFeedSystem& feed)
    {
        feed.setEstimateDryMass(chance(2));
        if (chance(2))
            fill(feed.setPressurizedFeedSystem(pick<PressurizedFeedSystem::TYPE>(3)));
        else
            fill(feed.setTurbopumpFeedSystem(pick<TurbopumpFeedSystem::CYCLE>(4)));
    }

private:
    using Engine = std::mt19937;

    /// True in one of \p n cases.
    bool chance(unsigned int n) { return random() % n == 0; }
    bool often() { return !chance(3); }
    template <class E> E pick(unsigned int n) { return static_cast<E>(random() % n); }
    double number() { return std::ldexp(static_cast<double>(random()), -20) - 100.0; }
    std::string text() { return "name " + std::to_string(random() % 1000); }
    Pressure::UNITS pressureUnit() { return pick<Pressure::UNITS>(6); }
    RotationalSpeed::UNITS speedUnit()
    {
        return static_cast<RotationalSpeed::UNITS>(1 + random() % 3);
    }

    template <class System> void fillSides(System& system)
    {
        if (often()) {
            auto side = std::make_unique<ChamberFeedSubsystemParameters>("oxidizerFeedSystem");
            fill(*side);
            system.setOxidizerFeedSystem(side.release());
        }
        if (often()) {
            auto side = std::make_unique<ChamberFeedSubsystemParameters>("fuelFeedSystem");
            fill(*side);
            system.setFuelFeedSystem(side.release());
        }
        while (chance(2)) system.addOxidizerBranch(make<BranchParameters>());
        while (chance(2)) system.addFuelBranch(make<BranchParameters>());
    }
    template <class T> T* make()
    {
        auto made = std::make_unique<T>();
        fill(*made);
        return made.release();
    }
    void fill(PressurizedFeedSystem& s) { fillSides(s); }
    void fill(TurbopumpFeedSystem& s)
    {
        fillSides(s);
        if (often()) s.setOxidizerBoostPump(make<BoostPumpParameters>());
        if (often()) s.setFuelBoostPump(make<BoostPumpParameters>());
        if (often()) s.setGG1(make<GasGeneratorParameters>());
        if (often()) s.setOxidizerGGBranch1(make<GasGeneratorBranchParameters>());
        if (often()) s.setFuelGGBranch1(make<GasGeneratorBranchParameters>());
        if (often()) s.setGG2(make<GasGeneratorParameters>());
        if (often()) s.setOxidizerGGBranch2(make<GasGeneratorBranchParameters>());
        if (often()) s.setFuelGGBranch2(make<GasGeneratorBranchParameters>());
        if (often()) s.setTurbine1(make<TurbineParameters>());
        if (often()) s.setTurbine2(make<TurbineParameters>());
    }
    template <class Line> void fillLine(Line& s)
    {
        if (often()) s.setPumpEta(number());
        if (often()) s.setValveDp(number(), pressureUnit(), false);
        if (chance(3)) s.setValveZeta(number());
        if (often()) s.setCoolingDp(number(), pressureUnit(), false);
        if (often()) s.setCoolingDt(number(), Temperature::K);
    }
    void fill(ChamberFeedSubsystemParameters& s)
    {
        s.setInletPressure(number(), pressureUnit(), false);
        s.setInletVelocity(number(), static_cast<Velocity::UNITS>(1 + random() % 3), false);
        fillLine(s);
        if (often()) s.setInjectorDp(number(), pressureUnit(), false);
        if (often()) s.setInjectorMu(number());
    }
    void fill(BoostPumpParameters& s)
    {
        s.setInletPressure(number(), pressureUnit(), false);
        s.setDischargePressure(number(), pressureUnit(), false);
        if (often()) s.setPumpEta(number());
        if (often()) s.setHydraulicTurbine(chance(2));
        if (often()) s.setTurbinePi(number());
        if (often()) s.setTurbineEta(number());
        if (often()) s.setRotationalSpeed(number(), speedUnit(), false);
    }
    void fill(BranchParameters& s)
    {
        s.setName(text().c_str());
        if (often()) s.setMdot(number());
        if (often()) s.setDischargePressure(number(), pressureUnit(), false);
        if (often()) s.setAbar(number());
        fillLine(s);
        if (often()) s.setFixedDp(number(), pressureUnit(), false);
        if (often()) s.setFixedPi(number());
        if (often()) s.setConnectTo(text().c_str());
        if (often()) s.setDischargeTo(text().c_str());
    }
    void fill(GasGeneratorBranchParameters& s)
    {
        fill(static_cast<BranchParameters&>(s));
        if (often()) s.setPipeDp(number(), pressureUnit(), false);
        if (often()) s.setInjectorDp(number(), pressureUnit(), false);
        if (often()) s.setInjectorMu(number());
    }
    void fill(GasGeneratorParameters& s)
    {
        s.setType(pick<GasGeneratorParameters::TYPE>(2));
        if (often()) s.setPressure(number(), pressureUnit(), false);
        if (often()) s.setSigma(number());
        if (often()) s.setTmax(number(), pick<Temperature::UNITS>(3));
    }
    void fill(TurbineParameters& s)
    {
        s.setType(pick<TurbineParameters::TYPE>(4));
        if (often()) s.setPi(number());
        if (often()) s.setEta(number());
        if (often()) s.setRotationalSpeed(number(), speedUnit(), false);
    }

    Engine random;
};

bool startsWith(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void loseBelow(Facts& facts, const std::string& start)
{
    std::erase_if(facts, [&](const auto& fact) { return startsWith(fact.first, start); });
}

/// A part of the section that is written only beside another one.
struct Dependence {
    const char* part;
    const char* on; // a fact of the other one
};
const Dependence dependences[] = {
    {"gas/oxidizer/", "gas/oxidizer/feed/side"},   {"gas/fuel/", "gas/fuel/feed/side"},
    {"pump/oxidizer/", "pump/oxidizer/feed/side"}, {"pump/fuel/", "pump/fuel/feed/side"},
    {"pump/GG1/", "pump/GG1/self/type"},           {"pump/GG2/", "pump/GG1/self/type"},
    {"pump/GG2/", "pump/GG2/self/type"},           {"pump/turbine2/", "pump/turbine1/type"},
};

/// What a document can hold of these facts.
Facts writable(Facts facts)
{
    for (const Dependence& d : dependences)
        if (facts.count(d.on) == 0) loseBelow(facts, d.part);
    // A temperature of zero or less is not stated.
    const Facts all = facts;
    for (const auto& [path, value] : all) {
        const std::string quantity = path.substr(0, path.rfind('/') + 1);
        const bool isTemperature =
            endsWith(path, "coolingDt/value") || endsWith(path, "Tmax/value");
        if (isTemperature && std::stod(value) <= 0.0) loseBelow(facts, quantity);
        // The valve's coefficient takes the place of the pump's efficiency, and is not read again.
        if (endsWith(path, "valveZeta")) {
            const std::string line = path.substr(0, path.rfind('/') + 1);
            if (facts.erase(path) != 0) facts[line + "pumpEta"] = value;
        }
    }
    return facts;
}

TEST(FeedRoundTrip, WholeDocumentIsReadBackButForWhatTheFormatLoses)
{
    constexpr unsigned int cases = 2000;
    unsigned int complete = 0, lossy = 0;
    for (unsigned int seed = 0; seed < cases; ++seed) {
        SCOPED_TRACE(seed);
        PropellantFeedSystem feed, again, third;
        Filler(seed).fill(feed);
        Settings settings, second;
        feed.write(settings.root(), true);
        again.read(settings.root());
        const Facts before = factsOf(feed), expected = writable(before), after = factsOf(again);
        ASSERT_EQ(after, expected);
        ++(before == after ? complete : lossy);

        again.write(second.root(), true); // what was read is kept as it is
        third.read(second.root());
        ASSERT_EQ(factsOf(third), after);
    }
    EXPECT_GT(complete, 0u);
    EXPECT_GT(lossy, 0u);
}

TEST(FeedRoundTrip, CopiesAreDeep)
{
    for (unsigned int seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        auto feed = std::make_unique<PropellantFeedSystem>();
        Filler(seed).fill(*feed);
        const Facts before = factsOf(*feed);
        const PropellantFeedSystem copy(*feed);
        PropellantFeedSystem assigned;
        Filler(seed + 1).fill(assigned);
        assigned = *feed;
        const PropellantFeedSystem& self = assigned;
        assigned = self;
        {
            PropellantFeedSystem shortLived(*feed);
            shortLived.clear();
        }
        EXPECT_EQ(factsOf(*feed), before);
        feed.reset();
        EXPECT_EQ(factsOf(copy), before);
        EXPECT_EQ(factsOf(assigned), before);
    }
}

} // namespace
