#include <ketra/reaction/Product.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/nasa9/NASA9Species.h>
#include <ketra/thermo/properties/TransportProperties.h>

#include <support/Failures.h>
#include <support/TransportData.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

using namespace ketra_test;
using thermo::properties::TransportProperties;
using Coefficients = thermo::properties::TransportPropertiesCoefficients;

namespace {

constexpr double relative = 1e-14; // the logarithm and the exponential of a short sum

void expectNear(double value, double expected)
{
    EXPECT_NEAR(value, expected, relative * std::abs(expected));
}

/// A line whose field of 15 columns behind the bounds is \p field.
std::string lineWithA(const std::string& field)
{
    std::string line = transportLine('V', 200.0, 1000.0, 0.0, 1.0, 2.0, 3.0);
    return line.replace(20, 15, field);
}

} // namespace

// One interval

TEST(TransportPropertiesCoefficients, ReadTheirLine)
{
    const Coefficients c(
        " V    200.0   1000.0 0.61205763E+00-0.67714354E+02 0.19040660E+03 0.21588272E+01");
    EXPECT_EQ(c.getT1(), 200.0);
    EXPECT_EQ(c.getMinT(), 200.0);
    EXPECT_EQ(c.getT2(), 1000.0);
    EXPECT_EQ(c.getMaxT(), 1000.0);
    EXPECT_EQ(c.getA(), 0.61205763);
    EXPECT_EQ(c.getB(), -67.714354);
    EXPECT_EQ(c.getC(), 190.40660);
    EXPECT_EQ(c.getD(), 2.1588272);
}

TEST(TransportPropertiesCoefficients, AreTheSumOfTheirTerms)
{
    const Coefficients c(transportLine('V', 300.0, 2000.0, 0.5, -80.0, 900.0, 2.5));
    const double log = 0.5 * std::log(400.0) - 80.0 / 400.0 + 900.0 / 160000.0 + 2.5;
    expectNear(c.getLogValue(400.0), log);
    expectNear(c.getValue(400.0), std::exp(log));
}

TEST(TransportPropertiesCoefficients, HoldTheirBoundsAndNothingBeyond)
{
    const Coefficients c(transportLine('C', 300.0, 2000.0, 0.0, 0.0, 0.0, 2.0));
    EXPECT_EQ(c.getLogValue(300.0), 2.0);
    EXPECT_EQ(c.getLogValue(2000.0), 2.0);
    for (const double T : {299.999, 2000.001, 0.0, -300.0, std::nan("")}) {
        KETRA_EXPECT_THROW_MESSAGE(c.getLogValue(T), thermo::Exception, 1, "Invalid temperature");
        KETRA_EXPECT_THROW_CODE(c.getValue(T), thermo::Exception, 1);
        EXPECT_FALSE(c.holds(T));
    }
}

TEST(TransportPropertiesCoefficients, ABlankInPlaceOfThePlusSignOfAnExponentIsThatSign)
{
    EXPECT_EQ(Coefficients(lineWithA(" 0.67714354E 02")).getA(), 67.714354);
    EXPECT_EQ(Coefficients(lineWithA(" 0.67714354E+02")).getA(), 67.714354);
    EXPECT_EQ(Coefficients(lineWithA("-0.67714354E 02")).getA(), -67.714354);
    EXPECT_EQ(Coefficients(lineWithA(" 0.67714354E 00")).getA(), 0.67714354);
    EXPECT_EQ(Coefficients(lineWithA(" 0.67714354E-02")).getA(), 0.0067714354);
    EXPECT_EQ(Coefficients(lineWithA(" 0.67714354D 02")).getA(), 67.714354);
    EXPECT_EQ(Coefficients(lineWithA("       67.7    ")).getA(), 67.7);
    // All four fields.
    const Coefficients c(
        " V    200.0   1000.0 0.61205763E 00-0.67714354E 02 0.19040660E 03 0.21588272E 01");
    EXPECT_EQ(c.getA(), 0.61205763);
    EXPECT_EQ(c.getB(), -67.714354);
    EXPECT_EQ(c.getC(), 190.40660);
    EXPECT_EQ(c.getD(), 2.1588272);
}

TEST(TransportPropertiesCoefficients, TheLetterOfTheLineDoesNotMatter)
{
    for (const char letter : {'V', 'C', '?', ' '})
        EXPECT_EQ(Coefficients(transportLine(letter, 300.0, 500.0, 0.0, 0.0, 0.0, 1.0)).getD(),
                  1.0);
}

TEST(TransportPropertiesCoefficients, NeedALowerBoundThatIsATemperature)
{
    for (const char* bound : {"      0.0", "     -1.0", "  20000.1", "         ", "      abc",
                              "      nan", "      inf", "    1E999", "   -1E999"}) {
        SCOPED_TRACE(bound);
        std::string line = transportLine('V', 200.0, 1000.0, 0.0, 0.0, 0.0, 1.0);
        line.replace(2, 9, bound);
        KETRA_EXPECT_THROW_CODE(Coefficients{line}, runtime::Exception, 1);
    }
    EXPECT_EQ(Coefficients(transportLine('V', 20000.0, 30000.0, 0.0, 0.0, 0.0, 1.0)).getT1(),
              20000.0);
    EXPECT_EQ(Coefficients(transportLine('V', 0.1, 1.0, 0.0, 0.0, 0.0, 1.0)).getT1(), 0.1);
}

TEST(TransportPropertiesCoefficients, NeedFiniteNumbers)
{
    const std::string good = transportLine('V', 200.0, 1000.0, 0.1, 0.2, 0.3, 0.4);
    const std::pair<std::size_t, std::size_t> fields[] = {
        {11, 9}, {20, 15}, {35, 15}, {50, 15}, {65, 15}};
    for (const auto& [from, width] : fields) {
        for (const std::string value : {"1E999", "-1E999", "inf", "nan"}) {
            SCOPED_TRACE(value + " in column " + std::to_string(from));
            std::string line = good;
            line.replace(from, width, std::string(width - value.size(), ' ') + value);
            KETRA_EXPECT_THROW_CODE(Coefficients{line}, runtime::Exception, 1);
        }
    }
}

TEST(TransportPropertiesCoefficients, OfAShortLineAreZeroWhereItEnds)
{
    const std::string line = transportLine('V', 200.0, 1000.0, 0.5, 1.0, 2.0, 3.0);
    const Coefficients c(line.substr(0, 35));
    EXPECT_EQ(c.getA(), 0.5);
    EXPECT_EQ(c.getB(), 0.0);
    EXPECT_EQ(c.getC(), 0.0);
    EXPECT_EQ(c.getD(), 0.0);
    EXPECT_FALSE(Coefficients(line.substr(0, 11)).holds(500.0)) << "without an upper bound";
    for (std::size_t length = 0; length <= 6; ++length)
        KETRA_EXPECT_THROW_CODE(Coefficients{line.substr(0, length)}, runtime::Exception, 1);
}

TEST(TransportPropertiesCoefficients, CanBeSetAndCopied)
{
    Coefficients c(transportLine('V', 200.0, 1000.0, 0.0, 0.0, 0.0, 0.0));
    c.setT1(300.0);
    c.setT2(400.0);
    c.setA(1.0);
    c.setB(2.0);
    c.setC(3.0);
    c.setD(4.0);
    Coefficients assigned(transportLine('V', 200.0, 1000.0, 0.0, 0.0, 0.0, 0.0));
    assigned = c;
    for (const Coefficients& copy : {Coefficients(c), assigned}) {
        EXPECT_EQ(copy.getT1(), 300.0);
        EXPECT_EQ(copy.getT2(), 400.0);
        EXPECT_EQ(copy.getA(), 1.0);
        EXPECT_EQ(copy.getB(), 2.0);
        EXPECT_EQ(copy.getC(), 3.0);
        EXPECT_EQ(copy.getD(), 4.0);
    }
    std::string line = transportLine('V', 500.0, 600.0, 7.0, 0.0, 0.0, 0.0);
    EXPECT_TRUE(c.load(line));
    EXPECT_EQ(c.getT1(), 500.0);
    EXPECT_EQ(c.getA(), 7.0);
}

// The intervals of a species

TEST(TransportProperties, WithoutIntervalsAreZeroAtAnyTemperature)
{
    const TransportProperties none;
    for (const double T : {0.0, 300.0, 1e9}) {
        EXPECT_EQ(none.getV(T), 0.0);
        EXPECT_EQ(none.getC(T), 0.0);
        EXPECT_EQ(none.findV(T), nullptr);
        EXPECT_EQ(none.findC(T), nullptr);
    }
}

TEST(TransportProperties, FirstIntervalAnswersAtASharedBound)
{
    TransportProperties both;
    both.addV(newConstant(1000.0, 5000.0, 20.0));
    both.addV(newConstant(300.0, 1000.0, 10.0));
    both.addC(newConstant(300.0, 1000.0, 30.0));
    both.addC(newConstant(1000.0, 5000.0, 40.0));
    expectNear(both.getV(999.0), 10.0);
    expectNear(both.getV(1000.0), 20.0); // the first in the list
    expectNear(both.getC(1000.0), 30.0);
    expectNear(both.getC(5000.0), 40.0);
}

TEST(TransportProperties, OutsideAllIntervalsAreAnError)
{
    TransportProperties transport;
    transport.addV(newConstant(300.0, 1000.0, 10.0));
    transport.addV(newConstant(2000.0, 5000.0, 20.0));
    for (const double T : {299.9, 1500.0, 5000.1}) {
        KETRA_EXPECT_THROW_MESSAGE(transport.getV(T), thermo::Exception, 1, "Invalid temperature");
        EXPECT_EQ(transport.findV(T), nullptr);
    }
    EXPECT_EQ(transport.getC(1500.0), 0.0) << "there is no conductivity at all";
    transport.addC(newConstant(300.0, 1000.0, 10.0));
    KETRA_EXPECT_THROW_CODE(transport.getC(1500.0), thermo::Exception, 1);
}

TEST(TransportProperties, CopiesAreDeep)
{
    auto source = std::make_unique<TransportProperties>();
    source->addV(newConstant(300.0, 1000.0, 10.0));
    source->addC(newConstant(300.0, 1000.0, 30.0));
    const TransportProperties copy(*source);
    TransportProperties assigned;
    assigned.addV(newConstant(300.0, 1000.0, 99.0));
    assigned = *source;
    const TransportProperties& same = assigned;
    assigned = same;
    source.reset();
    for (const TransportProperties* each : {&copy, &same}) {
        expectNear(each->getV(500.0), 10.0);
        expectNear(each->getC(500.0), 30.0);
    }
}

// What a species gives out

namespace {

class SpeciesTransport : public testing::Test
{
protected:
    SpeciesTransport()
    {
        database.loadNASA9(
            folder.write("a.inp", speciesText({argonRecord, electronRecord})).c_str());
        argon = database.findForUpdate("Ar");
        electron = database.findForUpdate("e-");
    }

    TemporaryFolder folder;
    TestDatabase database;
    thermo::Species* argon;
    thermo::Species* electron;
};

} // namespace

TEST_F(SpeciesTransport, WithoutDataIsAnInvalidState)
{
    EXPECT_FALSE(argon->isTransportPropertiesAvailable());
    EXPECT_FALSE(argon->isTransportIPropertiesAvailable());
    KETRA_EXPECT_THROW_MESSAGE(argon->getViscosity(500.0), thermo::Exception, 0, "Invalid state");
    KETRA_EXPECT_THROW_MESSAGE(argon->getConductivity(500.0), thermo::Exception, 0,
                               "Invalid state");
    KETRA_EXPECT_THROW_MESSAGE(argon->getViscosity(electron, 500.0), thermo::Exception, 0,
                               "Invalid state");
    EXPECT_EQ(argon->findViscosity(500.0), 0.0);
    EXPECT_EQ(argon->findConductivity(500.0), 0.0);
    EXPECT_EQ(argon->findViscosity(electron, 500.0), 0.0);
}

TEST_F(SpeciesTransport, IsTheFilesInOtherUnits)
{
    auto data = std::make_unique<TransportProperties>();
    data->addV(newConstant(300.0, 1000.0, 250.0));
    data->addC(newConstant(300.0, 1000.0, 180.0));
    argon->setTransportProperties(data.release());
    EXPECT_TRUE(argon->isTransportPropertiesAvailable());
    EXPECT_FALSE(argon->isTransportIPropertiesAvailable());
    expectNear(argon->getViscosity(500.0), 250e-7);   // micropoise, Pa s
    expectNear(argon->getConductivity(500.0), 0.180); // microwatt/(cm K), mW/(cm K)
    EXPECT_EQ(argon->findViscosity(500.0), argon->getViscosity(500.0));
    EXPECT_EQ(argon->findConductivity(500.0), argon->getConductivity(500.0));
    KETRA_EXPECT_THROW_CODE(argon->getViscosity(1000.1), thermo::Exception, 1);
    KETRA_EXPECT_THROW_CODE(argon->getConductivity(299.9), thermo::Exception, 1);
    EXPECT_EQ(argon->findViscosity(1000.1), 0.0);
    EXPECT_EQ(argon->findConductivity(299.9), 0.0);
    // New data take the place of the old.
    argon->setTransportProperties(newTransport(1e-5, 0.0));
    expectNear(argon->getViscosity(500.0), 1e-5);
    EXPECT_EQ(argon->getConductivity(500.0), 0.0);
}

TEST_F(SpeciesTransport, OfAPairGoesByTheNameOfTheOther)
{
    argon->setTransportProperties("e-", newTransport(3e-5, 0.1));
    EXPECT_TRUE(argon->isTransportIPropertiesAvailable());
    EXPECT_FALSE(argon->isTransportPropertiesAvailable());
    expectNear(argon->getViscosity(electron, 500.0), 3e-5);
    EXPECT_EQ(argon->findViscosity(electron, 500.0), argon->getViscosity(electron, 500.0));
    KETRA_EXPECT_THROW_CODE(argon->getViscosity(electron, 100.0), thermo::Exception, 1);
    EXPECT_EQ(argon->findViscosity(electron, 100.0), 0.0);
    KETRA_EXPECT_THROW_CODE(argon->getViscosity(argon, 500.0), thermo::Exception, 0);
    KETRA_EXPECT_THROW_CODE(electron->getViscosity(argon, 500.0), thermo::Exception, 0);
    std::string other = "e-";
    argon->setTransportProperties(other, newTransport(4e-5, 0.1));
    expectNear(argon->getViscosity(electron, 500.0), 4e-5);
}

TEST_F(SpeciesTransport, InteractionConductivitiesAreNotGivenOut)
{
    KETRA_EXPECT_THROW_MESSAGE(argon->getConductivity(electron, 500.0), thermo::Exception, 0,
                               "Invalid state");
    argon->setTransportProperties(newTransport(3e-5, 0.1));
    argon->setTransportProperties("e-", newTransport(3e-5, 0.1));
    KETRA_EXPECT_THROW_MESSAGE(argon->getConductivity(electron, 500.0), thermo::Exception, 0,
                               "Invalid state");
}

TEST_F(SpeciesTransport, IsSharedByProducts)
{
    const reaction::Product before(*argon);
    argon->setTransportProperties(newTransport(3e-5, 0.1));
    argon->setTransportProperties("e-", newTransport(5e-5, 0.0));
    reaction::Product product(*argon);
    for (const reaction::Product* each :
         std::initializer_list<const reaction::Product*>{&before, &product}) {
        expectNear(each->getViscosity(500.0), 3e-5);
        expectNear(each->getViscosity(electron, 500.0), 5e-5);
    }
    // A change is the product's own.
    product.setTransportProperties(newTransport(7e-5, 0.1));
    expectNear(product.getViscosity(500.0), 7e-5);
    expectNear(product.getViscosity(electron, 500.0), 5e-5);
    expectNear(argon->getViscosity(500.0), 3e-5);
    expectNear(before.getViscosity(500.0), 3e-5);
}

TEST_F(SpeciesTransport, IsCopiedByAssignment)
{
    argon->setTransportProperties(newTransport(3e-5, 0.1));
    argon->setTransportProperties("e-", newTransport(5e-5, 0.0));
    auto& source = dynamic_cast<thermo::nasa9::NASA9Species&>(*argon);
    std::string line = "Copy";
    thermo::nasa9::NASA9Species copy(line, false, true);
    copy = source;
    delete database.remove("Ar", /*deleteSpecies=*/false);
    expectNear(copy.getViscosity(500.0), 3e-5);
    expectNear(copy.getViscosity(electron, 500.0), 5e-5);
}
