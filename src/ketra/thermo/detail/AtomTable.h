#pragma once

#include <ketra/thermo/Atom.h>

namespace thermo::detail {

struct AtomRow {
    Atom::TYPE type;
    const char* symbol;
    int valency;   // oxidation number in the equivalence ratio
    double weight; // g/mol
};

// Table of atoms in the order of Atom::TYPE. Weights: IUPAC standard atomic weights of 2005; for
// elements without stable isotopes the mass of the longest-lived or best-known one. Valencies are
// the oxidation numbers of combustion, which is why N and the noble gases count 0.
// clang-format off
inline constexpr AtomRow atomTable[] = {
    {Atom::E,  "E",   0, 0.00054858026},
    {Atom::H,  "H",   1, 1.00794},
    {Atom::D,  "D",   1, 2.014102},
    {Atom::HE, "HE",  0, 4.002602},
    {Atom::LI, "LI",  1, 6.941},
    {Atom::BE, "BE",  2, 9.012182},
    {Atom::B,  "B",   3, 10.811},
    {Atom::C,  "C",   4, 12.0107},
    {Atom::N,  "N",   0, 14.0067},
    {Atom::O,  "O",  -2, 15.9994},
    {Atom::F,  "F",  -1, 18.9984032},
    {Atom::NE, "NE",  0, 20.1797},
    {Atom::NA, "NA",  1, 22.98976928},
    {Atom::MG, "MG",  2, 24.305},
    {Atom::AL, "AL",  3, 26.9815386},
    {Atom::SI, "SI",  4, 28.0855},
    {Atom::P,  "P",   5, 30.973762},
    {Atom::S,  "S",   4, 32.065},
    {Atom::CL, "CL", -1, 35.453},
    {Atom::AR, "AR",  0, 39.948},
    {Atom::K,  "K",   1, 39.0983},
    {Atom::CA, "CA",  2, 40.078},
    {Atom::SC, "SC",  3, 44.955912},
    {Atom::TI, "TI",  4, 47.867},
    {Atom::V,  "V",   5, 50.9415},
    {Atom::CR, "CR",  3, 51.9961},
    {Atom::MN, "MN",  2, 54.938045},
    {Atom::FE, "FE",  3, 55.845},
    {Atom::CO, "CO",  2, 58.933195},
    {Atom::NI, "NI",  2, 58.6934},
    {Atom::CU, "CU",  2, 63.546},
    {Atom::ZN, "ZN",  2, 65.409},
    {Atom::GA, "GA",  3, 69.723},
    {Atom::GE, "GE",  4, 72.64},
    {Atom::AS, "AS",  3, 74.9216},
    {Atom::SE, "SE",  4, 78.96},
    {Atom::BR, "BR", -1, 79.904},
    {Atom::KR, "KR",  0, 83.798},
    {Atom::RB, "RB",  1, 85.4678},
    {Atom::SR, "SR",  2, 87.62},
    {Atom::Y,  "Y",   3, 88.90585},
    {Atom::ZR, "ZR",  4, 91.224},
    {Atom::NB, "NB",  5, 92.906},
    {Atom::MO, "MO",  6, 95.94},
    {Atom::TC, "TC",  7, 98.9063},
    {Atom::RU, "RU",  3, 101.07},
    {Atom::RH, "RH",  3, 102.9055},
    {Atom::PD, "PD",  2, 106.42},
    {Atom::AG, "AG",  1, 107.8682},
    {Atom::CD, "CD",  2, 112.411},
    {Atom::IN, "IN",  3, 114.818},
    {Atom::SN, "SN",  4, 118.71},
    {Atom::SB, "SB",  3, 121.76},
    {Atom::TE, "TE",  4, 127.6},
    {Atom::I,  "I",  -1, 126.90447},
    {Atom::XE, "XE",  0, 131.293},
    {Atom::CS, "CS",  1, 132.9054519},
    {Atom::BA, "BA",  2, 137.327},
    {Atom::LA, "LA",  3, 138.90547},
    {Atom::CE, "CE",  3, 140.116},
    {Atom::PR, "PR",  3, 140.90765},
    {Atom::ND, "ND",  3, 144.242},
    {Atom::PM, "PM",  3, 146.9151},
    {Atom::SM, "SM",  3, 150.36},
    {Atom::EU, "EU",  3, 151.964},
    {Atom::GD, "GD",  3, 157.25},
    {Atom::TB, "TB",  3, 158.92535},
    {Atom::DY, "DY",  3, 162.5},
    {Atom::HO, "HO",  3, 164.93032},
    {Atom::ER, "ER",  3, 167.259},
    {Atom::TM, "TM",  3, 168.93421},
    {Atom::YB, "YB",  3, 173.04},
    {Atom::LU, "LU",  3, 174.967},
    {Atom::HF, "HF",  4, 178.49},
    {Atom::TA, "TA",  5, 180.9479},
    {Atom::W,  "W",   6, 183.84},
    {Atom::RE, "RE",  7, 186.207},
    {Atom::OS, "OS",  4, 190.23},
    {Atom::IR, "IR",  4, 192.217},
    {Atom::PT, "PT",  4, 195.084},
    {Atom::AU, "AU",  3, 196.966569},
    {Atom::HG, "HG",  2, 200.59},
    {Atom::TL, "TL",  1, 204.3833},
    {Atom::PB, "PB",  2, 207.2},
    {Atom::BI, "BI",  3, 208.9804},
    {Atom::PO, "PO",  2, 208.9824},
    {Atom::AT, "AT", -1, 209.9871},
    {Atom::RN, "RN",  0, 222.0176},
    {Atom::FR, "FR",  1, 223.0197},
    {Atom::RA, "RA",  2, 226.0254},
    {Atom::AC, "AC",  3, 227.0278},
    {Atom::TH, "TH",  4, 232.03806},
    {Atom::PA, "PA",  5, 231.03588},
    {Atom::U,  "U",   6, 238.02891},
    {Atom::NP, "NP",  5, 237.0482},
    {Atom::PU, "PU",  4, 244.0642},
    {Atom::AM, "AM",  3, 243.0614},
    {Atom::CM, "CM",  3, 247.0703},
    {Atom::BK, "BK",  3, 247.0703},
    {Atom::CF, "CF",  3, 251.0796},
    {Atom::ES, "ES",  3, 252.0829},
    {Atom::FM, "FM",  3, 257.0},
    {Atom::MD, "MD",  3, 258.0},
    {Atom::NO, "NO",  3, 259.0},
    {Atom::LR, "LR",  3, 260.0},
};

// What counts as a metal where metals in a propellant ask for condensed products. The list is
// meant as it stands: B, AS and TE are in it, SB, TL and U are not.
inline constexpr Atom::TYPE metalTable[] = {
    Atom::AG, Atom::AL, Atom::AS, Atom::AU, Atom::B, Atom::BA, Atom::BE, Atom::BI, Atom::CA,
    Atom::CD, Atom::CE, Atom::CO, Atom::CR, Atom::CS, Atom::CU, Atom::DY, Atom::ER, Atom::FE,
    Atom::GA, Atom::GD, Atom::GE, Atom::HF, Atom::HG, Atom::HO, Atom::IN, Atom::IR, Atom::K,
    Atom::LA, Atom::LI, Atom::LU, Atom::MG, Atom::MN, Atom::MO, Atom::NA, Atom::NB, Atom::NI,
    Atom::OS, Atom::PB, Atom::PD, Atom::PR, Atom::PT, Atom::RB, Atom::RE, Atom::RH, Atom::RU,
    Atom::SC, Atom::SR, Atom::TA, Atom::TB, Atom::TE, Atom::TI, Atom::TH, Atom::TM, Atom::W,
    Atom::Y, Atom::YB, Atom::ZN, Atom::ZR
};
// clang-format on

} // namespace thermo::detail
