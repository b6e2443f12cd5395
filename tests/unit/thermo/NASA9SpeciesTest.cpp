#include <ketra/runtime/Exception.h>
#include <ketra/thermo/nasa9/NASA9Polynomial.h>
#include <ketra/thermo/nasa9/NASA9Species.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include "DataFiles.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <memory>
#include <ostream>

using ketra_test::linesOf;
using ketra_test::LogCapture;
using thermo::nasa9::NASA9Polynomial;
using thermo::nasa9::NASA9Species;
using Texts = std::vector<std::string>;

namespace {

std::unique_ptr<NASA9Species> headed(const std::string& header)
{
    thermo::ChemicalElement::initAtoms();
    auto species = std::make_unique<NASA9Species>("X  made up", false, false);
    species->loadHeader(header);
    return species;
}

std::unique_ptr<NASA9Species> speciesOf(const std::string& record)
{
    thermo::ChemicalElement::initAtoms();
    std::vector<std::string> lines = linesOf(record);
    auto species = std::make_unique<NASA9Species>(lines[0], false, false);
    species->loadHeader(lines[1]);
    for (std::size_t i = 2; i < lines.size(); ++i) species->loadPolynomial(lines[i]);
    return species;
}

std::string written(const NASA9Species& species, int sourceId = -1)
{
    std::string text;
    species.writeTo(text, sourceId);
    return text;
}

/// A header line whose fields can be changed.
std::string header(const char* intervals, const char* formula, const char* rest)
{
    std::string line = std::string(intervals) + " madeup " + formula;
    line.resize(50, ' ');
    return line + rest;
}

struct Naming {
    const char* line;
    const char* name;
    bool liquid;
};
void PrintTo(const Naming& naming, std::ostream* out) { *out << naming.line; }

class RecordNames : public testing::TestWithParam<Naming>
{
};

} // namespace

TEST_P(RecordNames, ComeFromNameAndDescription)
{
    const NASA9Species species(GetParam().line, false, false);
    EXPECT_EQ(species.getName(), GetParam().name);
    EXPECT_EQ(species.isLiquid(), GetParam().liquid);
}

INSTANTIATE_TEST_SUITE_P(
    NASA9Species, RecordNames,
    testing::Values(Naming{"O2                gas", "O2", false},
                    Naming{"O2 singlet oxygen", "O2 singlet", false},
                    Naming{"O2 a Triplet state", "O2 triplet", false},
                    Naming{"OH  EXCITED state", "OH excited", false},
                    Naming{"C3H6 excited singlet", "C3H6 excited singlet", false},
                    // The first word behind "structure", blanks in the middle included.
                    Naming{"SiO2 the structure beta one", "SiO2 beta", false},
                    Naming{"SiO2 STRUCTURE alpha, low", "SiO2 alpha,", false},
                    // Without a match the whole description is appended.
                    Naming{"SiO2 Structure", "SiO2Structure", false},
                    Naming{"H2O(L)  water", "H2O(L)", true}, Naming{"H2O(l) water", "H2O(l)", true},
                    Naming{"H2O  pure (L) water", "H2O", true},
                    Naming{"liquidH2 x", "liquidH2", false}, Naming{"Aliquid x", "Aliquid", true},
                    Naming{"H2O  a liquid", "H2O", true},
                    // A match at the very beginning does not count.
                    Naming{"H2O  liquid", "H2O", false}, Naming{"H2O  (L)", "H2O", false}));

TEST(NASA9Species, ALineWithoutABlankIsNameAndDescription)
{
    const NASA9Species species("Argon", false, false);
    EXPECT_EQ(species.getName(), "Argon");
    EXPECT_EQ(species.getDescr(), "Argon");
    EXPECT_FALSE(species.isEmpty());
}

TEST(NASA9Species, NameEndsAtTheFirstBlankWhateverTheColumn)
{
    const NASA9Species species("A_name_of_more_than_sixteen \t a comment \r", true, false);
    EXPECT_EQ(species.getName(), "A_name_of_more_than_sixteen");
    EXPECT_EQ(species.getDescr(), "a comment");
    EXPECT_TRUE(species.isReactantOnly());
    EXPECT_FALSE(species.isCompleted());
    EXPECT_EQ(species.getNumberOfIntervals(), -1);
}

TEST(NASA9Species, CanBeMadeCompleteForItsSetters)
{
    const std::unique_ptr<NASA9Species> species(NASA9Species::create("X made up", true, true));
    EXPECT_TRUE(species->isCompleted());
    EXPECT_EQ(species->getNumberOfIntervals(), 0);
    EXPECT_EQ(species->getIntervalSize(), 1);
    EXPECT_TRUE(species->isFixedTemperature());
}

TEST(NASA9Species, ReadsItsHeader)
{
    const auto species = headed(
        " 3 g10/97 AG 1.000E -1.000    0.00    0.00    0.00 0  107.8676514  1022093.73000\r");
    EXPECT_EQ(species->getNumberOfIntervals(), 3);
    EXPECT_FALSE(species->isSingleLine());
    EXPECT_EQ(species->getRef(), "g10/97");
    ASSERT_EQ(species->size(), 2);
    EXPECT_EQ(species->get(0)->getType(), thermo::Atom::AG);
    EXPECT_EQ(species->get(1)->getNumber(), -1.0);
    EXPECT_EQ(species->getCharge(), -1.0);
    EXPECT_FALSE(species->isCondensed());
    EXPECT_EQ(species->getM(), 107.8676514);
    EXPECT_EQ(species->getDHf298_15(), 1022093.73);
}

TEST(NASA9Species, ZeroIntervalsDeclareASingleLine)
{
    const auto species = speciesOf(ketra_test::binderRecord);
    EXPECT_TRUE(species->isSingleLine());
    EXPECT_TRUE(species->isCompleted());
    EXPECT_EQ(species->getIntervalSize(), 1);
    EXPECT_EQ(species->getMinimalT(), 298.15);
    EXPECT_EQ(species->getInterval(0)->getT2(), 0.0);
}

TEST(NASA9Species, AGasIsNeverLiquid)
{
    thermo::ChemicalElement::initAtoms();
    NASA9Species species("H2O(L) water", false, false);
    ASSERT_TRUE(species.isLiquid());
    species.loadHeader(header(" 1", "H   2.00O   1.00", " 0   18.0152800  -285830.00000"));
    EXPECT_FALSE(species.isLiquid());
}

TEST(NASA9Species, UnknownSymbolsAreSkippedSilently)
{
    LogCapture capture;
    const auto species = headed(header(" 1", "XX  1.00h   2.00", " 0   18.01528  0.0"));
    EXPECT_EQ(species->size(), 1);
    EXPECT_EQ(species->get(0)->getType(), thermo::Atom::H); // symbols in lower case count too
    EXPECT_TRUE(capture.lines().empty());
}

TEST(NASA9Species, AnElementOfNumberZeroIsReported)
{
    LogCapture capture;
    const auto species = headed(header(" 1", "H   2.00O   0.00", " 0   18.01528  0.0"));
    EXPECT_EQ(species->size(), 1);
    const Texts expected{"Could not load unknown element O from the formula H   2.00O   0.00       "
                         "                 \n"};
    EXPECT_EQ(capture.warnings(), expected);
    EXPECT_EQ(capture.tagOf(expected[0]), "ROOT");
}

class InvalidHeaders : public testing::TestWithParam<std::string>
{
};

TEST_P(InvalidHeaders, AreRefused)
{
    KETRA_EXPECT_THROW_MESSAGE(headed(GetParam()), runtime::Exception, 1, "");
}

INSTANTIATE_TEST_SUITE_P(NASA9Species, InvalidHeaders,
                         testing::Values("", "too short",
                                         header(" 1", "H   0.00", " 0   1.00794  0.0"),
                                         header(" 1", "H  -1.00", " 0   1.00794  0.0"),
                                         header(" 1", "H    1e9", " 0   1.00794  0.0"),
                                         header(" 1", "H    nan", " 0   1.00794  0.0"),
                                         header(" 1", "H   1.00O    inf", " 0   1.00794  0.0"),
                                         header("-1", "H   1.00", " 0   1.00794  0.0"),
                                         header(" 1", "H   1.00", " 0   1e999    0.0"),
                                         header(" 1", "H   1.00", " 0   1.00794      inf")));

TEST(NASA9Species, BoundsOfTheFirstElementsNumber)
{
    EXPECT_NO_THROW(headed(header(" 1", "H 999999", " 0   1.00794  0.0")));
    EXPECT_NO_THROW(headed(header(" 1", "H 0.0001", " 0   1.00794  0.0")));
}

struct Spelling {
    const char* text;
    double value;
};
void PrintTo(const Spelling& spelling, std::ostream* out) { *out << '"' << spelling.text << '"'; }

class Numbers : public testing::TestWithParam<Spelling>
{
};

TEST_P(Numbers, AreReadUpToTheFirstBadCharacter)
{
    NASA9Polynomial interval;
    std::string first = "    200.000   1000.000";
    std::string second = GetParam().text;
    second.resize(80, ' ');
    interval.load(first);
    interval.load(second);
    EXPECT_EQ(interval.getA(0), GetParam().value);
    EXPECT_EQ(interval.getA(1), 0.0); // a blank field
}

INSTANTIATE_TEST_SUITE_P(
    NASA9Polynomial, Numbers,
    testing::Values(Spelling{" 1.234500000D+03", 1234.5}, Spelling{" 1.234500000E+03", 1234.5},
                    Spelling{" 1.234500000d+03", 1234.5}, Spelling{" 1.2345e3", 1234.5},
                    Spelling{"+1234.5", 1234.5}, Spelling{"-0.5", -0.5}, Spelling{".5", 0.5},
                    Spelling{"5.", 5.0}, Spelling{"1.5 2.5", 1.5}, Spelling{"1.5x", 1.5},
                    Spelling{"1.5D", 1.5}, Spelling{"\t 2", 2.0}, Spelling{"x", 0.0},
                    Spelling{"+-5", 0.0}, Spelling{"", 0.0}, Spelling{"1e-999", 0.0},
                    Spelling{"1D-310", 1e-310}));

TEST(NASA9Polynomial, ReadsItsThreeLines)
{
    NASA9Polynomial p;
    Texts lines = linesOf(ketra_test::argonRecord);
    EXPECT_FALSE(p.load(lines[5]));
    EXPECT_FALSE(p.load(lines[6]));
    EXPECT_FALSE(p.isCompleted());
    EXPECT_TRUE(p.load(lines[7]));
    EXPECT_TRUE(p.isCompleted());
    EXPECT_EQ(p.size(), 3);
    EXPECT_EQ(p.getT1(), 1000.0);
    EXPECT_EQ(p.getT2(), 6000.0);
    for (int i = 0; i < 7; ++i) EXPECT_EQ(p.getE(i), i - 2.0);
    EXPECT_EQ(p.getA(0), 20.10538475);
    EXPECT_EQ(p.getA(1), -0.0599266107);
    EXPECT_EQ(p.getA(2), 2.75);
    EXPECT_EQ(p.getA(3), -3.99214116e-8);
    EXPECT_EQ(p.getA(4), 1.20527214e-11);
    EXPECT_EQ(p.getA(5), -1.819015576e-15);
    EXPECT_EQ(p.getA(6), 1.078576636e-19);
    EXPECT_EQ(p.getB(0), -744.993961);
    EXPECT_EQ(p.getB(1), 4.37918011);
}

TEST(NASA9Polynomial, UnusualExponentsAreKept)
{
    NASA9Polynomial interval;
    std::string line = "    200.000   1000.0007 -2.0 -1.0  0.0  1.0  2.5  3.0       0.0";
    interval.load(line);
    EXPECT_EQ(interval.getE(0), -2.0);
    EXPECT_EQ(interval.getE(4), 2.5);
    EXPECT_EQ(interval.getE(6), 0.0);
}

class InvalidBounds : public testing::TestWithParam<std::string>
{
};

TEST_P(InvalidBounds, AreRefused)
{
    NASA9Polynomial interval;
    std::string line = GetParam();
    KETRA_EXPECT_THROW_MESSAGE(interval.load(line), runtime::Exception, 1, "");
}

INSTANTIATE_TEST_SUITE_P(NASA9Polynomial, InvalidBounds,
                         testing::Values("      0.000   1000.000", "     -1.000   1000.000",
                                         "  20000.001  30000.000", "        nan   1000.000",
                                         "        inf   1000.000", "    200.000      1e999", "text",
                                         ""));

TEST(NASA9Polynomial, TheUpperBoundIsNotCompared)
{
    NASA9Polynomial interval;
    std::string line = "  20000.000      1.000";
    EXPECT_FALSE(interval.load(line));
    EXPECT_EQ(interval.getT2(), 1.0);
}

TEST(NASA9Polynomial, ACoefficientThatIsNotFiniteIsRefused)
{
    for (const char* text : {"nan", "INF", "-1E+999"}) {
        SCOPED_TRACE(text);
        NASA9Polynomial interval;
        std::string first = "    200.000   1000.000";
        std::string second = text;
        interval.load(first);
        KETRA_EXPECT_THROW_CODE(interval.load(second), runtime::Exception, 1);
    }
}

struct Shown {
    const char* text;
};
/// The name of the record stands for all of it.
void PrintTo(const Shown& record, std::ostream* out)
{
    *out << std::string(record.text).substr(0, 6);
}

class Records : public testing::TestWithParam<Shown>
{
};

TEST_P(Records, AreWrittenAsTheyStandInTheFile)
{
    EXPECT_EQ(written(*speciesOf(GetParam().text)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(NASA9Species, Records,
                         testing::Values(Shown{ketra_test::argonRecord},
                                         Shown{ketra_test::electronRecord},
                                         Shown{ketra_test::waterRecord},
                                         Shown{ketra_test::binderRecord}));

TEST(NASA9Species, WhatIsWrittenReadsBackToTheSameValues)
{
    auto source = speciesOf(ketra_test::argonRecord);
    source->setDHf298_15(-123456.78901);
    source->setDH298_15_0(6197.428);
    source->setCondensed(7);
    source->setM(39.9481234);
    thermo::Polynomial& p = *source->getInterval(1);
    p.setA(0, -1.234567891e-20);
    p.setA(6, 9.876543211e+15);
    p.setB(1, -7.777777777);
    p.setT2(5999.125);
    const auto copy = speciesOf(written(*source));
    EXPECT_EQ(copy->getName(), source->getName());
    EXPECT_EQ(copy->getCondensed(), 7);
    EXPECT_EQ(copy->getM(), 39.9481234);
    EXPECT_EQ(copy->getDHf298_15(), -123456.78901);
    EXPECT_EQ(copy->getDH298_15_0(), 6197.428);
    ASSERT_EQ(copy->getIntervalSize(), 2);
    const thermo::Polynomial& q = *copy->getInterval(1);
    EXPECT_EQ(q.getT1(), 1000.0);
    EXPECT_EQ(q.getT2(), 5999.125);
    for (int i = 0; i < 7; ++i) EXPECT_EQ(q.getA(i), p.getA(i));
    for (int i = 0; i < 2; ++i) EXPECT_EQ(q.getB(i), p.getB(i));
}

TEST(NASA9Species, AVeryLightMassIsWrittenWithTwelveDecimals)
{
    const auto electron = speciesOf(ketra_test::electronRecord);
    EXPECT_EQ(electron->getM(), 0.000548579903);
    const std::string line = linesOf(written(*electron))[1];
    EXPECT_EQ(line.substr(50, 15), " 0.000548579903");
    EXPECT_EQ(line.size(), 80u);
}

TEST(NASA9Species, ALongNameIsCutOnWriting)
{
    std::string record = ketra_test::argonRecord;
    record.replace(0, 18, "SeventeenLetters_  ");
    const auto species = speciesOf(record);
    ASSERT_EQ(species->getName().size(), 17u);
    EXPECT_EQ(linesOf(written(*species))[0].substr(0, 20), "SeventeenLetters  ga");
}

TEST(NASA9Species, AFinishedNameIsTheSameAfterRereading)
{
    std::string record = ketra_test::argonRecord;
    record.replace(0, 40, "O2 singlet oxygen                       ");
    const auto species = speciesOf(record);
    ASSERT_EQ(species->getName(), "O2 singlet");
    const auto copy = speciesOf(written(*species));
    EXPECT_EQ(copy->getName(), "O2 singlet");
    EXPECT_EQ(linesOf(written(*species))[0].substr(0, 33), "O2 singlet        singlet oxygen ");
}

TEST(NASA9Species, LargeNumbersOfAtomsHaveTwoDecimals)
{
    auto species = speciesOf(ketra_test::waterRecord);
    thermo::ChemicalFormula formula;
    for (const auto& [symbol, n] : {std::pair{"C", 100.0},
                                    {"H", 99.9994},
                                    {"O", 123.456},
                                    {"N", -5.5},
                                    {"S", 1.0},
                                    {"P", 1.0}}) {
        const thermo::ChemicalElement element(std::string(symbol), n);
        formula.add(&element);
    }
    species->setFormula(&formula);
    // The sixth element has no field.
    EXPECT_EQ(linesOf(written(*species))[1].substr(10, 40),
              "C 100.00H 99.999O 123.46N -5.500S  1.000");
}

TEST(NASA9Species, IsWrittenToItsOwnSourceOnly)
{
    auto species = speciesOf(ketra_test::argonRecord);
    species->setSourceId(3);
    EXPECT_EQ(written(*species, 2), "");
    EXPECT_EQ(written(*species, 3), ketra_test::argonRecord);
    EXPECT_EQ(written(*species, -1), ketra_test::argonRecord);
}

TEST(NASA9Species, IsWrittenTheSameInAnyLocale)
{
    // Where the decimal point is a comma; without such a locale the test checks the "C" one.
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    const std::string text = written(*speciesOf(ketra_test::electronRecord));
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(text, ketra_test::electronRecord);
}

struct Misfit {
    const char* message;
    void (*damage)(NASA9Species&);
};
void PrintTo(const Misfit& misfit, std::ostream* out) { *out << misfit.message; }

class Misfits : public testing::TestWithParam<Misfit>
{
};

TEST_P(Misfits, AreRefused)
{
    LogCapture capture;
    auto species = speciesOf(ketra_test::argonRecord);
    GetParam().damage(*species);
    std::string text;
    KETRA_EXPECT_THROW_MESSAGE(species->writeTo(text, -1), runtime::Exception, 0, "");
    ASSERT_EQ(capture.errors().size(), 1u);
    EXPECT_EQ(capture.errors()[0],
              std::string("Database: could not write species Ar: ") + GetParam().message + "\n");
    EXPECT_EQ(capture.tagOf(capture.errors()[0]), "ROOT");
}

INSTANTIATE_TEST_SUITE_P(
    NASA9Species, Misfits,
    testing::Values(Misfit{"the molar mass does not fit its column: 1234567.0000000",
                           [](NASA9Species& s) { s.setM(1234567.0); }},
                    Misfit{"the molar mass does not fit its column:           inf",
                           [](NASA9Species& s) { s.setM(INFINITY); }},
                    Misfit{"the phase does not fit its column: 100",
                           [](NASA9Species& s) { s.setCondensed(100); }},
                    Misfit{"the heat of formation does not fit its column: -1234567890.00000",
                           [](NASA9Species& s) { s.setDHf298_15(-1234567890.0); }},
                    Misfit{"a coefficient does not fit its column:  1.000000000E+100",
                           [](NASA9Species& s) { s.getInterval(0)->setA(0, 1e100); }},
                    Misfit{"a coefficient does not fit its column:              NAN",
                           [](NASA9Species& s) { s.getInterval(0)->setB(1, NAN); }},
                    Misfit{"an upper temperature does not fit its column: 12345678.000",
                           [](NASA9Species& s) { s.getInterval(1)->setT2(12345678.0); }},
                    Misfit{"a number of atoms does not fit its column: 1000.00",
                           [](NASA9Species& s) {
                               thermo::ChemicalFormula formula;
                               const thermo::ChemicalElement carbon("C", 1000.0);
                               formula.add(&carbon);
                               s.setFormula(&formula);
                           }},
                    Misfit{"a text does not fit its column: two\nlines",
                           [](NASA9Species& s) { s.setDescr("two\nlines"); }}));
