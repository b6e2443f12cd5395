#include "Work.h"

#include <ketra/api/ketra.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/verification/EngineCertificate.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace ketra_bench {

namespace {

struct Reactant {
    const char* name;
    double T;        // K
    double fraction; // of the mass
};

std::unique_ptr<thermo::Mixture> mixtureOf(const std::vector<Reactant>& reactants)
{
    auto mixture = std::make_unique<thermo::Mixture>();
    for (const Reactant& reactant : reactants)
        mixture->addSpecies(reactant.name, reactant.T, reactant.fraction);
    return mixture;
}

/// Oxidizer and fuel at the mass ratio \p km.
std::function<std::unique_ptr<thermo::Mixture>()> pair(const char* oxidizer, double oxidizerT,
                                                       const char* fuel, double fuelT, double km)
{
    return [=] {
        return mixtureOf({{fuel, fuelT, 1.0 / (1.0 + km)}, {oxidizer, oxidizerT, km / (1.0 + km)}});
    };
}

} // namespace

std::vector<Work> allWorks()
{
    std::vector<Work> all;
    for (const auto& works :
         {databaseWorks(), mixtureWorks(), equilibriumWorks(), engineWorks(), runWorks()})
        all.insert(all.end(), works.begin(), works.end());
    return all;
}

void requireClose(const std::string& what, double value, double expected, double tolerance)
{
    if (std::abs(value - expected) <= tolerance * std::abs(expected)) return;
    char text[120];
    std::snprintf(text, sizeof text, ": %.10g in place of %.10g", value, expected);
    throw std::runtime_error(what + text);
}

void requireCertified(const std::string& what, const reaction::Equilibrium& solution)
{
    const auto certificate = solution.certificate();
    if (certificate.grade == verification::Grade::F)
        throw std::runtime_error(what + " is no equilibrium: " + certificate.reason);
}

void requireCertified(const std::string& what, const performance::equilibrium::Chamber& chamber,
                      const performance::equilibrium::NozzleSectionConditions& section)
{
    using FrozenSection = performance::frozen::NozzleSectionConditions;
    const auto* frozen = dynamic_cast<const FrozenSection*>(&section);
    const auto certificate = frozen ? verification::certify(chamber, {}, std::array{frozen})
                                    : verification::certify(chamber, std::array{&section}, {});
    if (certificate.grade == verification::Grade::F)
        throw std::runtime_error(what + " breaks a law: " + certificate.reason);
}

void useShippedSpecies()
{
    static const bool loaded = [] {
        loadThermodynamicsDatabase(KETRA_SOURCE_DIR "/resources/thermo.inp", /*clear=*/true);
        return true;
    }();
    static_cast<void>(loaded);
}

const std::vector<Charge>& charges()
{
    // The temperatures of the four liquids were computed with NASA CEA from the same species data;
    // that of the solid was captured from this library on 2026-11-20 and guards against change
    // only.
    static const std::vector<Charge> all = {
        {"LoxHydrogen", pair("O2(L)", 90.17, "H2(L)", 20.27, 6.0), 20.0e6, 3595.42469},
        {"LoxMethane", pair("O2(L)", 90.17, "CH4(L)", 111.643, 3.4), 10.0e6, 3598.28440},
        {"LoxRP1", pair("O2(L)", 90.17, "RP-1", 298.15, 2.36), 7.0e6, 3602.52319},
        {"N2O4_MMH", pair("N2O4(L)", 298.15, "CH6N2(L)", 298.15, 1.9), 1.0e6, 3152.08639},
        {"AP_HTPB_Al",
         [] {
             return mixtureOf(
                 {{"NH4CLO4(I)", 298.15, 0.68}, {"AL(cr)", 298.15, 0.18}, {"HTPB", 298.15, 0.14}});
         },
         7.0e6, 3365.79987},
    };
    return all;
}

} // namespace ketra_bench
