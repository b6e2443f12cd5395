#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Exception.h>

#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

using ketra_test::LogCapture;
using thermo::Atom;
using thermo::ChemicalElement;
using thermo::ChemicalFormula;

namespace {

class Atoms : public testing::Test
{
protected:
    static void SetUpTestSuite() { ChemicalElement::initAtoms(); }

    static ChemicalFormula formulaOf(std::vector<std::pair<const char*, double>> terms)
    {
        ChemicalFormula formula;
        for (const auto& [symbol, n] : terms) {
            const ChemicalElement element(std::string(symbol), n);
            formula.add(&element);
        }
        return formula;
    }
};

/// Opens the protected parts.
struct Tables : ChemicalElement {
    using ChemicalElement::addAtom;
    using ChemicalElement::atomList;
    using ChemicalElement::atoms;
    using ChemicalElement::metals;
};

} // namespace

TEST_F(Atoms, EMinusIsAnAliasOfTheElectron)
{
    EXPECT_TRUE(ChemicalElement::isValid("E-"));
    ASSERT_NE(ChemicalElement::getAtom("E"), nullptr);
    EXPECT_EQ(ChemicalElement::getAtom("E-"), ChemicalElement::getAtom("E"));
    EXPECT_EQ(ChemicalElement::getName(Atom::TYPE(0)), "E");
}

TEST_F(Atoms, SymbolsAreInUpperCase)
{
    EXPECT_FALSE(ChemicalElement::isValid("he"));
    EXPECT_TRUE(ChemicalElement::isValid("HE"));
    EXPECT_TRUE(ChemicalElement::isValid(std::string("HE")));
    EXPECT_EQ(ChemicalElement::getAtom("XX"), nullptr);
    EXPECT_FALSE(ChemicalElement::isValid("XX"));
    EXPECT_FALSE(ChemicalElement::isValid(""));
}

TEST_F(Atoms, TheMetalsAreThoseOfTheList)
{
    EXPECT_TRUE(ChemicalElement::isMetal(Atom::B));
    EXPECT_FALSE(ChemicalElement::isMetal(Atom::SB));
    EXPECT_TRUE(ChemicalElement(ChemicalElement::getAtom("TE"), 1.0).isMetal());
    EXPECT_FALSE(ChemicalElement(ChemicalElement::getAtom("U"), 1.0).isMetal());
    EXPECT_EQ(Tables::metals.size(), 58u);
}

TEST_F(Atoms, TheTableHasARowPerAtomInOrder)
{
    // Weights and valencies of some rows: IUPAC 2005.
    ASSERT_EQ(Tables::atomList.size(), 105u);
    EXPECT_EQ(Tables::atoms.size(), 106u);
    for (std::size_t i = 0; i < Tables::atomList.size(); ++i) {
        SCOPED_TRACE(Tables::atomList[i]->getName());
        EXPECT_EQ(Tables::atomList[i]->getType(), Atom::TYPE(i));
        EXPECT_EQ(ChemicalElement::getAtom(Tables::atomList[i]->getName().c_str()),
                  Tables::atomList[i].get());
    }
    EXPECT_EQ(ChemicalElement::getAtom("D")->getType(), 2);
    EXPECT_EQ(ChemicalElement::getAtom("HE")->getType(), 3);
    EXPECT_EQ(ChemicalElement::getAtom("LR")->getType(), 104);
    EXPECT_EQ(ChemicalElement::getAtom("E")->getWeight(), 0.00054858026);
    EXPECT_EQ(ChemicalElement::getAtom("FE")->getWeight(), 55.845);
    EXPECT_EQ(ChemicalElement::getAtom("CL")->getValency(), -1);
    EXPECT_EQ(ChemicalElement::getAtom("W")->getValency(), 6);
    EXPECT_EQ(ChemicalElement::M(Atom::AR, 2.0), 79.896);
}

TEST_F(Atoms, InitAtomsAgainChangesNothing)
{
    const Atom* const iron = ChemicalElement::getAtom("FE");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(ChemicalElement::initAtoms);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(ChemicalElement::getAtom("FE"), iron);
    EXPECT_EQ(Tables::atomList.size(), 105u);
    EXPECT_EQ(Tables::metals.size(), 58u);
}

TEST_F(Atoms, AnAtomOutOfSequenceIsRefused)
{
    LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(Tables::addAtom(Atom::FE, "FX", 3, 55.8), thermo::Exception, 3,
                               "Unknown");
    ASSERT_EQ(capture.errors(), std::vector<std::string>{"ChemicalElement: unknown element\n"});
    EXPECT_EQ(capture.tagOf("ChemicalElement: unknown element\n"), "THERMO");
    EXPECT_FALSE(ChemicalElement::isValid("FX"));
    EXPECT_EQ(Tables::atomList.size(), 105u);
}

TEST_F(Atoms, AnElementWeighsItsNumberOfAtoms)
{
    ChemicalElement oxygen("O", 2.0);
    EXPECT_DOUBLE_EQ(oxygen.M(), 31.9988);
    EXPECT_DOUBLE_EQ(oxygen.am(), 15.9994);
    EXPECT_EQ(oxygen.getValence(), -4.0);
    EXPECT_EQ(ChemicalElement("N", 7.5).getValence(), 0.0);
    oxygen.addNumber(0.5);
    EXPECT_EQ(oxygen.getNumber(), 2.5);
    oxygen.setNumber(1.0);
    EXPECT_EQ(oxygen.getNumber(), 1.0);
}

TEST_F(Atoms, AnElementIsBuiltFromAnother)
{
    const ChemicalElement carbon("C", 3.0);
    EXPECT_EQ(ChemicalElement(&carbon).getNumber(), 3.0);
    EXPECT_EQ(ChemicalElement(&carbon, 7.0).getNumber(), 7.0);
    EXPECT_TRUE(ChemicalElement(&carbon, 7.0) == carbon);
    EXPECT_FALSE(ChemicalElement("O", 3.0) == carbon);
}

TEST_F(Atoms, AddingATermOfTheSameAtomAddsTheNumbers)
{
    ChemicalFormula formula = formulaOf({{"H", 1}});
    const ChemicalElement h("H", 2.0);
    formula.add(&h);
    ASSERT_EQ(formula.size(), 1u);
    EXPECT_EQ(formula[0]->getNumber(), 3.0);

    ChemicalFormula other = formulaOf({{"H", 1}});
    other.add(&h, 5.0);
    ASSERT_EQ(other.size(), 1u);
    EXPECT_EQ(other[0]->getNumber(), 6.0);
}

TEST_F(Atoms, AddingAFormulaScalesItsTerms)
{
    const ChemicalFormula methane = formulaOf({{"C", 1}, {"H", 4}});
    ChemicalFormula sum;
    sum.add(methane, 2.0);
    ASSERT_EQ(sum.size(), 2u);
    EXPECT_EQ(sum[0]->getType(), Atom::C);
    EXPECT_EQ(sum[0]->getNumber(), 2.0);
    EXPECT_EQ(sum[1]->getNumber(), 8.0);
    sum.add(sum, 1.0);
    EXPECT_EQ(sum[1]->getNumber(), 16.0);
    EXPECT_EQ(methane[1]->getNumber(), 4.0);
}

TEST_F(Atoms, FormulasAreComparedTermByTermInOrder)
{
    const ChemicalFormula methane = formulaOf({{"C", 1}, {"H", 4}});
    EXPECT_FALSE(methane == formulaOf({{"H", 4}, {"C", 1}}));
    EXPECT_TRUE(methane == formulaOf({{"C", 1.5}, {"H", 4.2}}));
    EXPECT_FALSE(methane == formulaOf({{"C", 1}, {"H", 5}}));
    EXPECT_FALSE(methane == formulaOf({{"C", 1}}));
    EXPECT_FALSE(methane == formulaOf({{"C", 1}, {"O", 4}}));
    EXPECT_TRUE(methane == *formulaOf({{"C", 1}, {"H", 4}}).getElements());
}

TEST_F(Atoms, CopiesOfAFormulaAreDeep)
{
    auto source = std::make_unique<ChemicalFormula>(formulaOf({{"C", 1}, {"H", 4}}));
    const ChemicalFormula copy(*source);
    const ChemicalFormula fromList(*source->getElements());
    ChemicalFormula assigned = formulaOf({{"O", 2}});
    assigned = *source;
    const ChemicalFormula& self = assigned;
    assigned = self;
    (*source)[0]->setNumber(9.0);
    source.reset();
    for (const ChemicalFormula* formula : {&copy, &fromList, &std::as_const(assigned)}) {
        ASSERT_EQ(formula->size(), 2u);
        EXPECT_EQ((*formula)[0]->getNumber(), 1.0);
        EXPECT_EQ((*formula)[1]->getNumber(), 4.0);
    }
}
