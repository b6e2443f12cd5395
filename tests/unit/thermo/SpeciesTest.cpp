#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/nasa9/NASA9Polynomial.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

using ketra_test::linesOf;
using thermo::gasConstant;
using thermo::nasa9::NASA9Polynomial;
using thermo::nasa9::NASA9Species;

namespace {

std::unique_ptr<NASA9Species> speciesOf(const char* record, bool reactantOnly = false)
{
    thermo::ChemicalElement::initAtoms();
    std::vector<std::string> lines = linesOf(record);
    auto species = std::make_unique<NASA9Species>(lines[0], reactantOnly, false);
    species->loadHeader(lines[1]);
    for (std::size_t i = 2; i < lines.size(); ++i) species->loadPolynomial(lines[i]);
    return species;
}

std::unique_ptr<NASA9Species> argon() { return speciesOf(ketra_test::argonRecord); }

/// The single-temperature record: 298.15 K, -100 kJ/mol.
std::unique_ptr<NASA9Species> binder() { return speciesOf(ketra_test::binderRecord, true); }

/// An interval with a number of its own in every place.
NASA9Polynomial fullInterval()
{
    NASA9Polynomial interval;
    interval.setT1(200.0);
    interval.setT2(6000.0);
    const double a[] = {2.21e4, -3.81e2, 6.08, -8.53e-3, 1.38e-5, -9.6e-9, 2.5e-12};
    for (int i = 0; i < 7; ++i) interval.setA(i, a[i]);
    interval.setB(0, 7.1e2);
    interval.setB(1, -1.07e1);
    return interval;
}

constexpr double eps = std::numeric_limits<double>::epsilon();

} // namespace

TEST(NASA9Polynomial, FunctionsAreTheirSumsOfPowers)
{
    // The sums written out, without nesting; terms of some 10, so that 1e-13 is rounding.
    const NASA9Polynomial p = fullInterval();
    for (const double T : {200.0, 298.15, 1000.0, 1234.5, 6000.0}) {
        SCOPED_TRACE(T);
        const auto a = [&](int i) { return p.getA(i); };
        const double L = std::log(T);
        const double scale = std::fabs(a(6)) * std::pow(T, 4) + 10.0;
        const double cp = a(0) / (T * T) + a(1) / T + a(2) + a(3) * T + a(4) * T * T +
                          a(5) * std::pow(T, 3) + a(6) * std::pow(T, 4);
        const double h = -a(0) / (T * T) + (a(1) * L + p.getB(0)) / T + a(2) + a(3) * T / 2 +
                         a(4) * T * T / 3 + a(5) * std::pow(T, 3) / 4 + a(6) * std::pow(T, 4) / 5;
        const double s = -a(0) / (2 * T * T) - a(1) / T + a(2) * L + a(3) * T + a(4) * T * T / 2 +
                         a(5) * std::pow(T, 3) / 3 + a(6) * std::pow(T, 4) / 4 + p.getB(1);
        EXPECT_NEAR(p.Cp0_tilde(T), cp, 1e-13 * scale);
        EXPECT_NEAR(p.H0_tilde(T), h, 1e-13 * scale);
        EXPECT_NEAR(p.S0_tilde(T), s, 1e-13 * scale);
        EXPECT_NEAR(p.G0_tilde(T), h - s, 1e-13 * scale);
        EXPECT_EQ(p.Cp0(T), p.Cp0_tilde(T) * gasConstant);
        EXPECT_EQ(p.H0(T), p.H0_tilde(T) * gasConstant * T);
        EXPECT_EQ(p.S0(T), p.S0_tilde(T) * gasConstant);
        EXPECT_EQ(p.G0(T), p.G0_tilde(T) * gasConstant * T);
    }
}

TEST(NASA9Polynomial, OnePassGivesTheNumbersOfTheSingleFunctions)
{
    const NASA9Polynomial p = fullInterval();
    for (double T = 200.0; T <= 6000.0; T *= 1.0371) {
        SCOPED_TRACE(T);
        const thermo::StandardState state = p.evaluate(thermo::TemperatureTerms(T));
        EXPECT_EQ(state.Cp, p.Cp0_tilde(T));
        EXPECT_EQ(state.H, p.H0_tilde(T));
        EXPECT_EQ(state.S, p.S0_tilde(T));
        EXPECT_EQ(state.G, p.G0_tilde(T));
    }
}

TEST(NASA9Polynomial, TemperaturesOutsideTheIntervalAreRefused)
{
    const NASA9Polynomial p = fullInterval();
    for (const double T : {199.999, 6000.001, std::nan("")}) {
        SCOPED_TRACE(T);
        const char* text = "Invalid temperature";
        KETRA_EXPECT_THROW_MESSAGE(p.Cp0_tilde(T), thermo::Exception, 1, text);
        KETRA_EXPECT_THROW_MESSAGE(p.H0_tilde(T), thermo::Exception, 1, text);
        KETRA_EXPECT_THROW_MESSAGE(p.S0_tilde(T), thermo::Exception, 1, text);
        KETRA_EXPECT_THROW_MESSAGE(p.G0_tilde(T), thermo::Exception, 1, text);
        KETRA_EXPECT_THROW_MESSAGE(p.evaluate(thermo::TemperatureTerms(T)), thermo::Exception, 1,
                                   text);
    }
    EXPECT_NO_THROW(p.Cp0_tilde(200.0));
    EXPECT_NO_THROW(p.Cp0_tilde(6000.0));
}

TEST(NASA9Polynomial, CopiesAreDeep)
{
    auto source = std::make_unique<NASA9Polynomial>(fullInterval());
    NASA9Polynomial copy(*source);
    NASA9Polynomial assigned;
    assigned = *source;
    const std::unique_ptr<thermo::Polynomial> made(source->getCopy());
    source->setA(2, 100.0);
    source.reset();
    for (const thermo::Polynomial* p :
         std::initializer_list<const thermo::Polynomial*>{&copy, &assigned, made.get()}) {
        EXPECT_EQ(p->getA(2), 6.08);
        EXPECT_EQ(p->getB(1), -1.07e1);
        EXPECT_EQ(p->getT2(), 6000.0);
        EXPECT_EQ(p->getNe(), 7);
        EXPECT_EQ(p->getNa(), 7);
        EXPECT_EQ(p->getNb(), 2);
    }
}

TEST(NASA9Polynomial, StartsEmpty)
{
    const std::unique_ptr<NASA9Polynomial> p(NASA9Polynomial::create());
    EXPECT_EQ(p->size(), 0);
    EXPECT_FALSE(p->isCompleted());
    EXPECT_EQ(p->getMinT(), 0.0);
    EXPECT_EQ(p->getMaxT(), 0.0);
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(p->getA(i), 0.0);
        EXPECT_EQ(p->getE(i), 0.0);
    }
    p->setE(0, -2.0);
    EXPECT_EQ(p->getE(0), -2.0);
}

TEST(Species, LowerIntervalWinsAtASharedBound)
{
    const auto species = argon();
    // 2.5 in the lower interval, 2.75 in the upper one.
    EXPECT_DOUBLE_EQ(species->Cp0_tilde(1000.0), 2.5);
    EXPECT_NEAR(species->Cp0_tilde(1000.001), 2.75, 1e-3);
    EXPECT_DOUBLE_EQ(species->evaluate(thermo::TemperatureTerms(1000.0)).Cp, 2.5);
    EXPECT_EQ(species->findInterval(1000.0), species->getInterval(0));
}

TEST(Species, NothingIsExtrapolated)
{
    const auto species = argon();
    KETRA_EXPECT_THROW_CODE(species->Cp0(199.0), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(species->H0(6000.1), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(species->evaluate(thermo::TemperatureTerms(199.0)), thermo::Exception,
                            1);
    EXPECT_EQ(species->findInterval(199.0), nullptr);
    EXPECT_EQ(species->getMinimalT(), 200.0);
    EXPECT_EQ(species->getMaximalT(), 6000.0);
}

TEST(Species, RunningOutOfRangeIsNotLogged)
{
    ketra_test::LogCapture capture;
    const auto species = argon();
    KETRA_EXPECT_THROW_CODE(species->evaluate(thermo::TemperatureTerms(199.0)), thermo::Exception,
                            1);
    EXPECT_TRUE(capture.lines().empty());
}

TEST(Species, OnePassGivesTheNumbersOfTheSingleFunctions)
{
    const auto species = argon();
    for (double T = 200.0; T <= 6000.0; T *= 1.07) {
        SCOPED_TRACE(T);
        const thermo::StandardState state = species->evaluate(thermo::TemperatureTerms(T));
        EXPECT_EQ(state.Cp, species->Cp0_tilde(T));
        EXPECT_EQ(state.H, species->H0_tilde(T));
        EXPECT_EQ(state.S, species->S0_tilde(T));
        EXPECT_EQ(state.G, species->G0_tilde(T));
    }
}

TEST(Species, FixedTemperatureRecordHasAnEnthalpyAndNoCurve)
{
    const auto species = binder();
    ASSERT_TRUE(species->isFixedTemperature());
    EXPECT_EQ(species->H0(298.15), -100000.0);
    EXPECT_DOUBLE_EQ(species->H0_tilde(298.15), -100000.0 / (298.15 * gasConstant));
    EXPECT_EQ(species->U0(298.15), -100000.0);
    KETRA_EXPECT_THROW_CODE(species->H0(298.2), thermo::Exception, 1);
    EXPECT_EQ(species->getT(298.9), 298.15);
    KETRA_EXPECT_THROW_CODE(species->getT(300.0), thermo::Exception, 1);
    for (const double T : {298.15, 0.0}) {
        SCOPED_TRACE(T);
        KETRA_EXPECT_THROW_CODE(species->Cp0(T), thermo::Exception, 1);
        KETRA_EXPECT_THROW_CODE(species->Cp0_tilde(T), thermo::Exception, 1);
        KETRA_EXPECT_THROW_CODE(species->S0(T), thermo::Exception, 1);
        KETRA_EXPECT_THROW_CODE(species->S0_tilde(T), thermo::Exception, 1);
        KETRA_EXPECT_THROW_CODE(species->G0(T), thermo::Exception, 1);
        KETRA_EXPECT_THROW_CODE(species->G0_tilde(T), thermo::Exception, 1);
        KETRA_EXPECT_THROW_CODE(species->evaluate(thermo::TemperatureTerms(T)), thermo::Exception,
                                1);
    }
    EXPECT_EQ(species->getMaximalT(), 0.0);
    EXPECT_EQ(species->getT0(), 298.15);
}

TEST(Species, FixedTemperatureRecordCanBeMoved)
{
    const auto species = binder();
    species->setT0(250.0);
    EXPECT_EQ(species->H0(250.0), -100000.0);
    KETRA_EXPECT_THROW_CODE(species->H0(298.15), thermo::Exception, 1);
    EXPECT_EQ(species->getT(250.9), 250.0);
    KETRA_EXPECT_THROW_CODE(species->getT(251.0), thermo::Exception, 1);
    EXPECT_EQ(species->getT0(), 250.0);
    EXPECT_EQ(species->getMinimalT(), 250.0);
    KETRA_EXPECT_THROW_CODE(argon()->setT0(250.0), thermo::Exception, 1);
}

TEST(Species, ReferenceTemperatureOfAGasLiesInItsRange)
{
    const auto species = argon();
    EXPECT_EQ(species->getT0(), 298.15);
    species->getInterval(0)->setT1(300.0);
    KETRA_EXPECT_THROW_CODE(species->getT0(), thermo::Exception, 1);
    species->setCondensed(1);
    EXPECT_EQ(species->getT0(), 298.15);
}

TEST(Species, HeatCapacitiesOfAGasDifferByTheirOwnConstants)
{
    const auto gas = argon();
    const auto liquid = speciesOf(ketra_test::waterRecord);
    const double T = 300.0;
    EXPECT_EQ(gas->Cv0(T), gas->Cp0(T) - 298.15);
    EXPECT_EQ(gas->Cv0_tilde(T), gas->Cp0_tilde(T) - 1.0);
    EXPECT_EQ(gas->U0(T), gas->H0(T) - T * gasConstant);
    EXPECT_EQ(gas->U0_tilde(T), gas->H0_tilde(T) - 1.0);
    EXPECT_EQ(liquid->Cv0(T), liquid->Cp0(T));
    EXPECT_EQ(liquid->Cv0_tilde(T), liquid->Cp0_tilde(T));
    EXPECT_EQ(liquid->U0(T), liquid->H0(T));
    EXPECT_EQ(liquid->U0_tilde(T), liquid->H0_tilde(T));
}

TEST(Species, FunctionsWithDimensionAreThoseWithout)
{
    const auto gas = argon();
    for (const double T : {200.0, 1000.0, 3210.0}) {
        EXPECT_EQ(gas->Cp0(T), gas->Cp0_tilde(T) * gasConstant);
        EXPECT_EQ(gas->H0(T), gas->H0_tilde(T) * gasConstant * T);
        EXPECT_EQ(gas->S0(T), gas->S0_tilde(T) * gasConstant);
        EXPECT_EQ(gas->G0(T), gas->G0_tilde(T) * gasConstant * T);
        EXPECT_NEAR(gas->G0_tilde(T), gas->H0_tilde(T) - gas->S0_tilde(T), 64 * eps);
    }
}

TEST(Species, ChargeMakesAnIon)
{
    EXPECT_FALSE(argon()->isIon());
    std::string record = ketra_test::argonRecord;
    record.replace(record.find("AR 1.000") + 8, 8, "E -1.000");
    const auto ion = speciesOf(record.c_str());
    EXPECT_TRUE(ion->isIon());
    EXPECT_EQ(ion->getCharge(), -1.0);
    thermo::ChemicalFormula neutral;
    const thermo::ChemicalElement iron("FE", 1.0);
    neutral.add(&iron);
    ion->setFormula(&neutral);
    EXPECT_FALSE(ion->isIon());
}

TEST(Species, SettersMarkTheRecordAsModified)
{
    const auto species = argon();
    const auto changes = [&](auto change) {
        species->setModified(false);
        change();
        return species->isModified();
    };
    thermo::ChemicalFormula formula;
    EXPECT_TRUE(changes([&] { species->setM(40.0); }));
    EXPECT_TRUE(changes([&] { species->setCondensed(2); }));
    EXPECT_TRUE(changes([&] { species->setDHf298_15(1.0); }));
    EXPECT_TRUE(changes([&] { species->setDH298_15_0(1.0); }));
    EXPECT_TRUE(changes([&] { species->setFormula(&formula); }));
    EXPECT_FALSE(changes([&] { species->setDescr("text"); }));
    EXPECT_FALSE(changes([&] { species->addInterval(NASA9Polynomial::create()); }));
    EXPECT_FALSE(changes([&] { species->removeIntervals(); }));
    EXPECT_EQ(species->getM(), 40.0);
    EXPECT_EQ(species->getCondensed(), 2);
    EXPECT_EQ(species->getDescr(), "text");
    EXPECT_EQ(species->getIntervalSize(), 0);
    EXPECT_EQ(species->size(), 0);
}

TEST(Species, FormulaIsCopiedInAndOut)
{
    const auto species = argon();
    thermo::ChemicalFormula formula;
    const thermo::ChemicalElement hydrogen("H", 2.0);
    const thermo::ChemicalElement oxygen("O", 1.0);
    formula.add(&hydrogen);
    formula.add(&oxygen);
    species->setFormula(&formula);
    formula[0]->setNumber(7.0);
    ASSERT_EQ(species->size(), 2);
    EXPECT_EQ(species->get(0)->getNumber(), 2.0);
    EXPECT_EQ((*species)[1]->getType(), thermo::Atom::O);
    EXPECT_EQ(species->getValence(), 2.0 - 2.0);

    const std::unique_ptr<thermo::ChemicalFormula> copy(species->copyFormula());
    EXPECT_TRUE(*species == *copy);
    (*copy)[0]->setNumber(9.0);
    EXPECT_FALSE(*species == *copy);
    EXPECT_EQ(species->getFormula().size(), 2u);
}

TEST(Species, GasConstantGoesByTheMolarMass)
{
    const auto species = argon();
    EXPECT_DOUBLE_EQ(species->getRm(), 8.314472 / 39.948);
    EXPECT_DOUBLE_EQ(species->getR(), 8314.472 / 39.948);
    EXPECT_EQ(thermo::Species::getP0(), 101325.0);
}

TEST(Species, IdsAreGivenOnce)
{
    const auto species = argon();
    EXPECT_EQ(species->getType(), -1);
    species->setType(5);
    KETRA_EXPECT_THROW_MESSAGE(species->setType(5), thermo::Exception, 4, "Unknown species");
    species->setSourceId(1);
    KETRA_EXPECT_THROW_MESSAGE(species->setSourceId(2), thermo::Exception, 15, "Unknown");
    species->setTableSourceId(3);
    KETRA_EXPECT_THROW_MESSAGE(species->setTableSourceId(3), thermo::Exception, 15, "Unknown");
    EXPECT_EQ(species->getSourceId(), 1);
    species->resetSourceIds();
    EXPECT_EQ(species->getSourceId(), -1);
    EXPECT_EQ(species->getTableSourceId(), -1);
    EXPECT_EQ(species->getType(), 5);
    species->resetIds();
    species->setType(5);
    EXPECT_EQ(species->getType(), 5);
}

TEST(Species, OrderPutsGasesFirstThenPhasesByName)
{
    const auto gas = argon();
    const auto other = argon();
    const auto liquid = speciesOf(ketra_test::waterRecord);
    EXPECT_TRUE(*gas < liquid.get());
    EXPECT_FALSE(*gas > liquid.get());
    EXPECT_TRUE(*liquid > gas.get());
    EXPECT_FALSE(*gas < other.get());
    EXPECT_FALSE(*gas > other.get());
    liquid->setCondensed(0);
    EXPECT_TRUE(*gas < liquid.get()); // Ar before H2O(L)
    EXPECT_TRUE(*gas == std::string("Ar"));
    EXPECT_FALSE(*gas == std::string("ar"));
    EXPECT_TRUE(*gas == other.get()); // neither has an id
    gas->setType(1);
    EXPECT_FALSE(*gas == other.get());
}

TEST(Species, ACopyLeavesItsSourceIntact)
{
    const auto source = argon();
    {
        const NASA9Species copy(*source);
        EXPECT_EQ(copy.getInterval(0), source->getInterval(0)); // shared
        EXPECT_EQ(copy.get(0), source->get(0));
        EXPECT_EQ(copy.H0(300.0), source->H0(300.0));
    }
    EXPECT_DOUBLE_EQ(source->Cp0_tilde(300.0), 2.5);
    EXPECT_EQ(source->get(0)->getType(), thermo::Atom::AR);
}

TEST(Species, ACopyThatIsChangedTakesItsOwnData)
{
    const auto source = binder();
    NASA9Species copy(*source);
    copy.setT0(250.0);
    EXPECT_EQ(copy.getT0(), 250.0);
    EXPECT_EQ(source->getT0(), 298.15);
    NASA9Species bare(*source);
    bare.removeIntervals();
    EXPECT_EQ(source->getIntervalSize(), 1);
    EXPECT_EQ(bare.getMinimalT(), 0.0);
    EXPECT_EQ(bare.getMaximalT(), 0.0);
    KETRA_EXPECT_THROW_CODE(bare.Cp0(298.15), thermo::Exception, 1);
}

TEST(Species, AssignmentFromAnOwnerIsDeep)
{
    auto source = argon();
    NASA9Species target(*binder());
    target = *source;
    EXPECT_NE(target.getInterval(0), source->getInterval(0));
    source.reset();
    EXPECT_EQ(target.getName(), "Ar");
    EXPECT_DOUBLE_EQ(target.Cp0_tilde(300.0), 2.5);
}

TEST(Species, AssignmentFromASharingCopyShares)
{
    const auto source = argon();
    const NASA9Species sharing(*source);
    const auto target = binder();
    *target = sharing;
    EXPECT_EQ(target->getInterval(0), source->getInterval(0));
    // Back into the owner itself: it keeps what it owns.
    *source = sharing;
    EXPECT_DOUBLE_EQ(source->Cp0_tilde(300.0), 2.5);
}
