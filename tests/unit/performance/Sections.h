#pragma once

#include <support/Certificates.h>
#include <support/Reactants.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

// Solved chambers, with or without a layer, and what the sections of their nozzles can be asked.

namespace ketra_test {

using Section = performance::equilibrium::NozzleSectionConditions;
using FrozenSection = performance::frozen::NozzleSectionConditions;
using performance::equilibrium::Chamber;
using FrozenChamber = performance::frozen::Chamber;

constexpr double chamberP = 7e6; // Pa

inline const reaction::Equilibrium& stationOf(const Chamber& chamber, unsigned int number)
{
    return *chamber.getReaction(static_cast<Chamber::CHAMBER_STATION>(number));
}

/// Expects the certificate of a solved chamber to be A; where the area is finite, B will do, for
/// the mass flow that its end misses by the method.
inline void expectCertified(const Chamber& chamber)
{
    using verification::Grade;
    const auto certificate = certificateOf(chamber);
    EXPECT_LE(certificate.grade, certificate.chamberFlux > 1e-3 ? Grade::B : Grade::A)
        << gradeOf(certificate);
}

/// A solved chamber; of infinite area if \p Fcr is 0.
inline std::unique_ptr<Chamber> solvedChamber(thermo::Mixture& mixture, double p = chamberP,
                                              double Fcr = 0.0)
{
    auto chamber = std::make_unique<Chamber>(mixture);
    chamber->setP(p);
    if (Fcr != 0.0) chamber->setFcr(Fcr);
    chamber->solve(Fcr != 0.0, false, false);
    expectCertified(*chamber);
    return chamber;
}

/// A chamber of oxygen and hydrogen, solved.
inline std::unique_ptr<Chamber> hydrogenChamber(double Fcr = 0.0)
{
    useShippedSpecies();
    return solvedChamber(*loxHydrogen(6.0), chamberP, Fcr);
}

/// The same with a cool layer of the mass fraction \p share.
inline std::unique_ptr<Chamber> layeredChamber(double share = 0.1, double Fcr = 0.0)
{
    auto chamber = hydrogenChamber(Fcr);
    chamber->setBLC(share, *loxHydrogen(2.0), false);
    return chamber;
}

/// A chamber of oxygen and hydrogen that freezes at an area ratio, solved.
inline std::unique_ptr<FrozenChamber> frozenChamber(double Fr = 2.0, bool withLayer = false)
{
    useShippedSpecies();
    auto chamber =
        std::make_unique<FrozenChamber>(*loxHydrogen(6.0), Fr, FrozenChamber::EXPANSION_RATIO);
    chamber->setP(chamberP);
    if (withLayer) chamber->setBLC(0.1, *loxHydrogen(2.0), false);
    chamber->solve(false, false, false);
    expectCertified(*chamber);
    return chamber;
}

/// A section by area ratio without tables.
inline Section byArea(Chamber& chamber, double Fr)
{
    return Section(&chamber, Fr, Section::AREA_RATIO, true, false, false, -1);
}

inline Section byPressure(Chamber& chamber, double p)
{
    return Section(&chamber, p, Section::PRESSURE, true, false, false, -1);
}

/// A value of the state of a section, the same of its layer, and where a section in equilibrium
/// has it from.
struct StateGetter {
    const char* name;
    double (Section::*core)() const;
    double (Section::*layer)() const;
    double (*source)(const reaction::Equilibrium&, const reaction::Derivatives&);
};

using SolvedProblem = reaction::Equilibrium;
using SolvedDerivatives = reaction::Derivatives;

// clang-format off
inline const StateGetter stateGetters[] = {
    {"T", &Section::getT, &Section::getT_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getT(); }},
    {"H", &Section::getH, &Section::getH_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getH(); }},
    {"H_spec", &Section::getH_spec, &Section::getH_spec_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getHspec(); }},
    {"S", &Section::getS, &Section::getS_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getS(); }},
    {"S_spec", &Section::getS_spec, &Section::getS_spec_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getSspec(); }},
    {"U", &Section::getU, &Section::getU_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getU(); }},
    {"U_spec", &Section::getU_spec, &Section::getU_spec_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getUspec(); }},
    {"G", &Section::getG, &Section::getG_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getG(); }},
    {"G_spec", &Section::getG_spec, &Section::getG_spec_blc, [](const SolvedProblem& e, const SolvedDerivatives&) { return e.getGspec(); }},
    {"Cp", &Section::getCp, &Section::getCp_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getCp(); }},
    {"Cp_spec", &Section::getCp_spec, &Section::getCp_spec_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getCp_spec(); }},
    {"Cv", &Section::getCv, &Section::getCv_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getCv(); }},
    {"Cv_spec", &Section::getCv_spec, &Section::getCv_spec_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getCv_spec(); }},
    {"R_spec", &Section::getR_spec, &Section::getR_spec_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getR_spec(); }},
    {"M", &Section::getM, &Section::getM_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getM(); }},
    {"Mm", &Section::getMm, &Section::getMm_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getMm(); }},
    {"Mm2", &Section::getMm2, &Section::getMm2_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getMm2(); }},
    {"Gamma", &Section::getGamma, &Section::getGamma_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getGamma(); }},
    {"K", &Section::getK, &Section::getK_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getK(); }},
    {"A", &Section::getA, &Section::getA_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getA(); }},
    {"Rho", &Section::getRho, &Section::getRho_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getRho(); }},
    {"V", &Section::getV, &Section::getV_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getV(); }},
    {"Cfr", &Section::getCfr, &Section::getCfr_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getCfr(); }},
    {"Cpfr", &Section::getCpfr, &Section::getCpfr_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getCpfr(); }},
    {"Prfr", &Section::getPrfr, &Section::getPrfr_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getPrfr(); }},
    {"Ceql", &Section::getCeql, &Section::getCeql_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getCeql(); }},
    {"Cpeql", &Section::getCpeql, &Section::getCpeql_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getCpeql(); }},
    {"Preql", &Section::getPreql, &Section::getPreql_blc, [](const SolvedProblem&, const SolvedDerivatives& d) { return d.getPreql(); }},
};
// clang-format on

} // namespace ketra_test
