#pragma once

#include <string>

namespace thermo {

/// One row of the table of atoms: symbol, oxidation number and weight. The rows are made once by
/// ChemicalElement::initAtoms() and never change.
class Atom
{
public:
    /// The rows of the table, named by their symbols. E is the electron; deuterium D has a row of
    /// its own, so that from helium on a row's number is the atomic number plus one.
    // clang-format off
    enum TYPE : int {
        E, H, D, HE, LI, BE, B, C, N, O, F, NE, NA, MG, AL, SI, P, S, CL, AR, K, CA, SC, TI, V,
        CR, MN, FE, CO, NI, CU, ZN, GA, GE, AS, SE, BR, KR, RB, SR, Y, ZR, NB, MO, TC, RU, RH,
        PD, AG, CD, IN, SN, SB, TE, I, XE, CS, BA, LA, CE, PR, ND, PM, SM, EU, GD, TB, DY, HO,
        ER, TM, YB, LU, HF, TA, W, RE, OS, IR, PT, AU, HG, TL, PB, BI, PO, AT, RN, FR, RA, AC,
        TH, PA, U, NP, PU, AM, CM, BK, CF, ES, FM, MD, NO, LR
    };
    // clang-format on

    Atom(TYPE rowType, const std::string& symbol, int oxidationNumber, double atomicWeight)
        : type(rowType), name(symbol), valency(oxidationNumber), weight(atomicWeight)
    {
    }

    TYPE getType() const { return type; }
    /// The symbol in upper case.
    const std::string& getName() const { return name; }
    /// Oxidation number as it counts in the equivalence ratio of a mixture: -2 for oxygen, 0 for
    /// nitrogen.
    int getValency() const { return valency; }
    /// Atomic weight, g/mol.
    double getWeight() const { return weight; }

private:
    TYPE type;
    std::string name;
    int valency;
    double weight; // g/mol
};

} // namespace thermo
