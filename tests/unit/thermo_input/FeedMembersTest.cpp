#include <ketra/thermo/input/PropellantFeedSystem.h>

#include <unit/thermo_input/MemberRows.h>
#include <unit/thermo_input/Written.h>

#include <gtest/gtest.h>

using ketra_test::expectRow;
using ketra_test::Keys;
using ketra_test::keysOf;
using ketra_test::QuantityRow;
using ketra_test::readMembers;
using ketra_test::ValueRow;
using ketra_test::Written;
using namespace thermo::input;

namespace {

using BoostPump = BoostPumpParameters;
using Branch = BranchParameters;
using GeneratorBranch = GasGeneratorBranchParameters;
using Generator = GasGeneratorParameters;

class Chamber : public ChamberFeedSubsystemParameters
{
public:
    Chamber() : ChamberFeedSubsystemParameters("oxidizerFeedSystem") {}
};

/// A turbine without a connection cannot be read, so this one brings its connection along.
class Turbine : public TurbineParameters
{
public:
    void read(const libconfig::Setting& group) override
    {
        auto& stated = const_cast<libconfig::Setting&>(group);
        if (!stated.exists("ggType"))
            stated.add("ggType", libconfig::Setting::TypeString) = "parallel";
        TurbineParameters::read(group);
    }
};

constexpr auto mpa = Pressure::MPA;
constexpr auto bar = Pressure::BAR;
constexpr auto kelvin = Temperature::K;
constexpr auto radPerS = RotationalSpeed::RAD_PER_S;
constexpr auto rpm = RotationalSpeed::RPM;

// The accessors of a member by the name that they have in common, and the words of the log for the
// absent member and its unit.
// clang-format off
#define QUANTITY(S, X) &S::get##X, &S::get##X, &S::get##X##Unit, &S::set##X
#define OPTIONAL_QUANTITY(S, X) \
    QUANTITY(S, X), &S::is##X##Set, &S::delete##X, "p" #X, "p" #X " unit"
#define UNASKED_QUANTITY(S, X) QUANTITY(S, X), nullptr, nullptr, "p" #X, "p" #X " unit"
#define OPTIONAL_VALUE(S, X) &S::get##X, &S::set##X, &S::is##X##Set, &S::delete##X, "p" #X
#define UNASKED_VALUE(S, X) &S::get##X, &S::set##X, nullptr, nullptr, "p" #X
// The getter with a flag speaks of another member.
#define SPEAKS_OF_COOLING nullptr, false, "pCoolingDp"

const QuantityRow<Chamber, Pressure> chamberPressures[] = {
    // key, initial value and unit
    {"inletPressure",        0.3, mpa, QUANTITY(Chamber, InletPressure)},
    {"valvePressureDrop",    0.0, mpa, OPTIONAL_QUANTITY(Chamber, ValveDp)},
    {"coolingPressureDrop",  0.0, mpa, OPTIONAL_QUANTITY(Chamber, CoolingDp)},
    {"injectorPressureDrop", 0.0, mpa, OPTIONAL_QUANTITY(Chamber, InjectorDp), SPEAKS_OF_COOLING},
};
const QuantityRow<Chamber, Velocity> chamberVelocity =
    {"inletVelocity", 5.0, Velocity::M_PER_S, QUANTITY(Chamber, InletVelocity)};
const QuantityRow<Chamber, Temperature> chamberTemperature =
    {"coolingTemperatureRise", 0.0, kelvin, OPTIONAL_QUANTITY(Chamber, CoolingDt)};
const ValueRow<Chamber, double> chamberNumbers[] = {
    // key, initial value, another one
    {"pumpEfficiency",          0.7, 0.65, OPTIONAL_VALUE(Chamber, PumpEta)},
    {"injectorFlowCoefficient", 0.0, 0.8,  OPTIONAL_VALUE(Chamber, InjectorMu)},
};

const QuantityRow<BoostPump, Pressure> boostPressures[] = {
    {"inletPressure",     0.3, mpa, QUANTITY(BoostPump, InletPressure)},
    {"dischargePressure", 1.5, mpa, QUANTITY(BoostPump, DischargePressure)},
};
const QuantityRow<BoostPump, RotationalSpeed> boostSpeed =
    {"rotationalSpeed", 0.0, radPerS, OPTIONAL_QUANTITY(BoostPump, RotationalSpeed),
     SPEAKS_OF_COOLING};
const ValueRow<BoostPump, double> boostNumbers[] = {
    {"pumpEfficiency",       0.7, 0.65, OPTIONAL_VALUE(BoostPump, PumpEta)},
    {"turbinePressureRatio", 5.0, 4.5,  OPTIONAL_VALUE(BoostPump, TurbinePi)},
    {"turbineEfficiency",    0.7, 0.6,  OPTIONAL_VALUE(BoostPump, TurbineEta)},
};
const ValueRow<BoostPump, bool> boostFlag =
    {"hydraulicTurbine", true, false, OPTIONAL_VALUE(BoostPump, HydraulicTurbine)};

// A branch of a gas generator has all members of a branch.
template <class S> const QuantityRow<S, Pressure> branchPressures[] = {
    {"dischargePressure",   0.0, mpa, OPTIONAL_QUANTITY(S, DischargePressure)},
    {"valvePressureDrop",   0.0, mpa, OPTIONAL_QUANTITY(S, ValveDp)},
    {"coolingPressureDrop", 0.0, mpa, OPTIONAL_QUANTITY(S, CoolingDp)},
    {"fixedPressureDrop",   0.0, mpa, OPTIONAL_QUANTITY(S, FixedDp)},
};
template <class S> const QuantityRow<S, Temperature> branchTemperature =
    {"coolingTemperatureRise", 0.0, kelvin, OPTIONAL_QUANTITY(S, CoolingDt)};
template <class S> const ValueRow<S, double> branchNumbers[] = {
    {"flowrate",           0.0, 3.5,  OPTIONAL_VALUE(S, Mdot)},
    {"areaRatio",          0.0, 1.5,  OPTIONAL_VALUE(S, Abar)},
    {"pumpEfficiency",     0.7, 0.65, OPTIONAL_VALUE(S, PumpEta)},
    {"fixedPressureRatio", 0.0, 2.5,  OPTIONAL_VALUE(S, FixedPi)},
};
template <class S> const ValueRow<S, std::string> branchTexts[] = {
    {"connectTo",   "", "main",   OPTIONAL_VALUE(S, ConnectTo)},
    {"dischargeTo", "", "jacket", OPTIONAL_VALUE(S, DischargeTo)},
};

const QuantityRow<GeneratorBranch, Pressure> generatorBranchPressures[] = {
    {"pipeDp",               0.0, mpa, UNASKED_QUANTITY(GeneratorBranch, PipeDp)},
    {"injectorPressureDrop", 0.0, mpa, UNASKED_QUANTITY(GeneratorBranch, InjectorDp)},
};
const ValueRow<GeneratorBranch, double> generatorBranchNumber =
    {"injectorFlowCoefficient", 0.0, 0.8, UNASKED_VALUE(GeneratorBranch, InjectorMu)};

const QuantityRow<Generator, Pressure> generatorPressure =
    {"pressure", 0.0, mpa, OPTIONAL_QUANTITY(Generator, Pressure)};
const QuantityRow<Generator, Temperature> generatorTemperature =
    {"maxTemperature", 700.0, kelvin, OPTIONAL_QUANTITY(Generator, Tmax)};
const ValueRow<Generator, double> generatorNumber =
    {"sigma", 0.9, 0.95, OPTIONAL_VALUE(Generator, Sigma)};

const QuantityRow<Turbine, RotationalSpeed> turbineSpeed =
    {"rotationalSpeed", 0.0, radPerS, OPTIONAL_QUANTITY(Turbine, RotationalSpeed),
     SPEAKS_OF_COOLING};
const ValueRow<Turbine, double> turbineNumbers[] = {
    {"turbinePressureRatio", 2.0, 1.8, OPTIONAL_VALUE(Turbine, Pi)},
    {"turbineEfficiency",    0.7, 0.6, OPTIONAL_VALUE(Turbine, Eta)},
};
// clang-format on

template <class Table> void expectRows(const Table& table)
{
    for (const auto& row : table) expectRow(row);
}

TEST(ChamberFeedSubsystemParameters, MembersFollowTheTable)
{
    expectRows(chamberPressures);
    expectRow(chamberVelocity);
    expectRow(chamberTemperature);
    expectRows(chamberNumbers);
}

TEST(BoostPumpParameters, MembersFollowTheTable)
{
    expectRows(boostPressures);
    expectRow(boostSpeed);
    expectRows(boostNumbers);
    expectRow(boostFlag);
}

template <class S> void expectBranchRows()
{
    expectRows(branchPressures<S>);
    expectRow(branchTemperature<S>);
    expectRows(branchNumbers<S>);
    expectRows(branchTexts<S>);
}

TEST(BranchParameters, MembersFollowTheTable) { expectBranchRows<Branch>(); }

TEST(GasGeneratorBranchParameters, MembersFollowTheTable)
{
    expectBranchRows<GeneratorBranch>();
    expectRows(generatorBranchPressures);
    expectRow(generatorBranchNumber);
}

TEST(GasGeneratorParameters, MembersFollowTheTable)
{
    expectRow(generatorPressure);
    expectRow(generatorTemperature);
    expectRow(generatorNumber);
}

TEST(TurbineParameters, MembersFollowTheTable)
{
    expectRow(turbineSpeed);
    expectRows(turbineNumbers);
}

TEST(BranchParameters, NameIsItsOwnName)
{
    Branch branch;
    const Node& node = branch;
    EXPECT_EQ(node.getName(), "");
    readMembers(branch, "name = \"main\";");
    EXPECT_EQ(node.getName(), "main");
    branch.setName("coolant");
    EXPECT_EQ(branch.getName(), "coolant");
    EXPECT_STREQ(Written(branch, false).group()["name"], "coolant");
    branch.setName("");
    EXPECT_EQ(branch.getName(), "");
    EXPECT_FALSE(Written(branch, false).group().exists("name"));
    EXPECT_STREQ(Written(branch, true).group()["name"], "");
}

// The valve's coefficient shares the key of the pump's efficiency.

template <class S> class SharedKey : public testing::Test
{
};
using LineClasses = testing::Types<Chamber, Branch, GeneratorBranch>;
TYPED_TEST_SUITE(SharedKey, LineClasses);

TYPED_TEST(SharedKey, ValveCoefficientIsAbsentAtFirst)
{
    TypeParam line;
    EXPECT_FALSE(line.isValveZetaSet());
    ketra_test::expectAbsent([&] { line.getValveZeta(); }, "pValveZeta");
    line.setValveZeta(2.0);
    EXPECT_EQ(line.getValveZeta(), 2.0);
    const TypeParam copy = line;
    line.deleteValveZeta();
    EXPECT_FALSE(line.isValveZetaSet());
    EXPECT_EQ(copy.getValveZeta(), 2.0);
}

TYPED_TEST(SharedKey, ValveCoefficientTakesTheNumberOfThePump)
{
    TypeParam line;
    readMembers(line, "pumpEfficiency = 0.6; valveResistanceCoefficient = 2.0;");
    EXPECT_EQ(line.getValveZeta(), 0.6);
    EXPECT_EQ(line.getPumpEta(), 0.6);
}

TYPED_TEST(SharedKey, ValveCoefficientAloneIsThereWithoutItsNumber)
{
    TypeParam line;
    readMembers(line, "valveResistanceCoefficient = 2.0;");
    EXPECT_TRUE(line.isValveZetaSet());
    EXPECT_EQ(line.getValveZeta(), 0.0);
    EXPECT_FALSE(line.isPumpEtaSet());
}

TYPED_TEST(SharedKey, PumpEfficiencyAloneIsNoValve)
{
    TypeParam line;
    readMembers(line, "pumpEfficiency = 0.6;");
    EXPECT_FALSE(line.isValveZetaSet());
}

TYPED_TEST(SharedKey, ValveCoefficientIsWrittenOverThePump)
{
    TypeParam line, again;
    line.setPumpEta(0.6);
    line.setValveZeta(2.0);
    Written written(line, true);
    EXPECT_EQ(static_cast<double>(written.group()["pumpEfficiency"]), 2.0);
    EXPECT_FALSE(written.group().exists("valveResistanceCoefficient"));
    again.read(written.group());
    EXPECT_EQ(again.getPumpEta(), 2.0);
    EXPECT_FALSE(again.isValveZetaSet());
}

TYPED_TEST(SharedKey, SparseDocumentKeepsThePumpBesideACoefficientOfZero)
{
    TypeParam line;
    line.setPumpEta(0.6);
    line.setValveZeta(0.0);
    Written written(line, false);
    EXPECT_EQ(static_cast<double>(written.group()["pumpEfficiency"]), 0.6);
}

// A temperature of zero or less is not stated.
TYPED_TEST(SharedKey, TemperatureRiseOfZeroIsLeftOut)
{
    TypeParam line;
    line.setCoolingDt(0.0, Temperature::K);
    EXPECT_TRUE(line.isCoolingDtSet());
    EXPECT_FALSE(Written(line, true).group().exists("coolingTemperatureRise"));
}

TEST(ChamberFeedSubsystemParameters, ResetKeepsTheStatedUnits)
{
    Chamber chamber;
    chamber.setInletPressure(7.0, bar, false);
    chamber.setInletVelocity(9.0, Velocity::FT_PER_S, false);
    chamber.setPumpEta(0.6);
    chamber.setValveDp(1.0, bar, false);
    chamber.setValveZeta(2.0);
    chamber.setCoolingDp(1.0, bar, false);
    chamber.setCoolingDt(10.0, Temperature::K);
    chamber.setInjectorDp(1.0, bar, false);
    chamber.setInjectorMu(0.8);
    chamber.reset();
    EXPECT_EQ(chamber.getInletPressureUnit(false), bar);
    EXPECT_EQ(chamber.getInletPressure(false), 3.0);
    EXPECT_EQ(chamber.getInletVelocityUnit(false), Velocity::FT_PER_S);
    EXPECT_DOUBLE_EQ(chamber.getInletVelocity(true), 5.0);
    EXPECT_FALSE(chamber.isPumpEtaSet() || chamber.isValveDpSet() || chamber.isValveZetaSet() ||
                 chamber.isCoolingDpSet() || chamber.isCoolingDtSet() ||
                 chamber.isInjectorDpSet() || chamber.isInjectorMuSet());
}

TEST(ChamberFeedSubsystemParameters, SideIsItsKey)
{
    EXPECT_EQ(ChamberFeedSubsystemParameters("fuelFeedSystem").getName(), "fuelFeedSystem");
    EXPECT_EQ(BoostPump().getName(), "boosterPump");
    EXPECT_EQ(Generator().getName(), "");
    EXPECT_EQ(Turbine().getName(), "");
}

TEST(ChamberFeedSubsystemParameters, InletPressureWithoutUnitIsInPascal)
{
    Chamber chamber;
    readMembers(chamber, "inletPressure = { value = 250000.0; };");
    EXPECT_EQ(chamber.getInletPressure(true), 250000.0);
    EXPECT_EQ(chamber.getInletPressureUnit(false), Pressure::PA);
}

// The order of writing is that of the tables; the pump's key stands where the pump has put it.

template <class S> void fillLine(S& line)
{
    line.setPumpEta(0.6);
    line.setValveDp(1.0, bar, false);
    line.setValveZeta(2.0);
    line.setCoolingDp(1.0, bar, false);
    line.setCoolingDt(10.0, Temperature::K);
}

template <class S> void fillBranch(S& branch)
{
    branch.setName("main");
    branch.setMdot(3.0);
    branch.setDischargePressure(2.0, mpa, false);
    branch.setAbar(1.5);
    fillLine(branch);
    branch.setFixedDp(1.0, mpa, false);
    branch.setFixedPi(2.0);
    branch.setConnectTo("a");
    branch.setDischargeTo("b");
}

const Keys branchKeys = {"name",
                         "flowrate",
                         "dischargePressure",
                         "areaRatio",
                         "pumpEfficiency",
                         "valvePressureDrop",
                         "coolingPressureDrop",
                         "coolingTemperatureRise",
                         "fixedPressureDrop",
                         "fixedPressureRatio",
                         "connectTo",
                         "dischargeTo"};

TEST(OrderOfWriting, ChamberFeed)
{
    Chamber chamber;
    fillLine(chamber);
    chamber.setInjectorDp(1.0, bar, false);
    chamber.setInjectorMu(0.8);
    const Keys order = {"inletPressure",        "inletVelocity",          "pumpEfficiency",
                        "valvePressureDrop",    "coolingPressureDrop",    "coolingTemperatureRise",
                        "injectorPressureDrop", "injectorFlowCoefficient"};
    EXPECT_EQ(keysOf(Written(chamber, true).group()), order);
}

TEST(OrderOfWriting, BoostPump)
{
    BoostPump pump;
    pump.setPumpEta(0.6);
    pump.setHydraulicTurbine(false);
    pump.setTurbinePi(3.0);
    pump.setTurbineEta(0.5);
    pump.setRotationalSpeed(3000.0, rpm, false);
    const Keys order = {"inletPressure",    "dischargePressure",    "pumpEfficiency",
                        "hydraulicTurbine", "turbinePressureRatio", "turbineEfficiency",
                        "rotationalSpeed"};
    EXPECT_EQ(keysOf(Written(pump, true).group()), order);
}

TEST(OrderOfWriting, Branches)
{
    Branch branch;
    fillBranch(branch);
    EXPECT_EQ(keysOf(Written(branch, true).group()), branchKeys);

    GeneratorBranch generatorBranch;
    fillBranch(generatorBranch);
    generatorBranch.setPipeDp(1.0, mpa, false);
    generatorBranch.setInjectorDp(1.0, mpa, false);
    generatorBranch.setInjectorMu(0.7);
    Keys order = branchKeys;
    order.insert(order.end(), {"pipeDp", "injectorPressureDrop", "injectorFlowCoefficient"});
    EXPECT_EQ(keysOf(Written(generatorBranch, true).group()), order);
}

TEST(OrderOfWriting, GasGeneratorAndTurbine)
{
    Generator generator;
    generator.setPressure(5.0, mpa, false);
    generator.setSigma(0.8);
    generator.setTmax(900.0, Temperature::K);
    EXPECT_EQ(keysOf(Written(generator, true).group()),
              (Keys{"ggType", "pressure", "sigma", "maxTemperature"}));

    Turbine turbine;
    turbine.setPi(3.0);
    turbine.setEta(0.5);
    turbine.setRotationalSpeed(3000.0, rpm, false);
    EXPECT_EQ(keysOf(Written(turbine, true).group()),
              (Keys{"ggType", "turbinePressureRatio", "turbineEfficiency", "rotationalSpeed"}));
}

TEST(OrderOfWriting, AbsentMembersAreNotWritten)
{
    EXPECT_EQ(keysOf(Written(Chamber(), true).group()), (Keys{"inletPressure", "inletVelocity"}));
    EXPECT_EQ(keysOf(Written(BoostPump(), true).group()),
              (Keys{"inletPressure", "dischargePressure"}));
    EXPECT_EQ(keysOf(Written(Branch(), true).group()), Keys{"name"});
    EXPECT_EQ(keysOf(Written(GeneratorBranch(), true).group()), Keys{"name"});
    EXPECT_EQ(keysOf(Written(Generator(), true).group()), Keys{"ggType"});
    EXPECT_EQ(keysOf(Written(Turbine(), true).group()), Keys{"ggType"});
}

} // namespace
