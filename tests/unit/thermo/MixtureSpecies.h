#pragma once

#include <support/Reactants.h>

#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/thermo/Constants.h>

namespace ketra_test {

/// Species of constant heat capacity for the tests of mixtures, so that every expected number is a
/// closed form. H0 = R (c T + h) with the c and h of the table.
inline void useMixtureSpecies()
{
    // name, formula, M, phase, heat of formation, {T1, T2, c, h, s}
    useSpecies({
        {"H2", {{"H", 2}}, 2.01588, 0, 0.0, {constantCp(200, 6000, 3.5, -1000, 1)}},
        {"O2", {{"O", 2}}, 31.9988, 0, 0.0, {constantCp(200, 6000, 4.0, -1200, 2)}},
        {"N2", {{"N", 2}}, 28.0134, 0, 0.0, {constantCp(200, 6000, 3.5, -1043, 3)}},
        {"H+", {{"H", 1}, {"E", -1}}, 1.00739, 0, 0.0, {constantCp(200, 6000, 2.5, 180000, 4)}},
        {"C(cr)", {{"C", 1}}, 12.0107, 1, 0.0, {constantCp(200, 2000, 2.0, -600, 5)}},
        {"FE(cr)", {{"FE", 1}}, 55.845, 1, 0.0, {constantCp(200, 1800, 3.0, -900, 6)}},
        {"H2O(L)",
         {{"H", 2}, {"O", 1}},
         18.01528,
         1,
         0.0,
         {constantCp(273.15, 373.15, 9.0, -37000, 7)}},
    });

    // A component of which only the enthalpy at its boiling point is known.
    Record oxygen{"O2(L)", {{"O", 2}}, 31.9988, 1, -12979.0, {constantCp(90.17, 0, 0, 0, 0)}};
    auto liquidOxygen = makeSpecies(oxygen, 1);
    liquidOxygen->resetIds();
    thermo::Database::getInstance()->addNewSpecies(liquidOxygen.release());
}

inline thermo::Species* speciesOf(const std::string& name)
{
    return thermo::Database::getInstance()->findForUpdate(name);
}

/// A table that has the value \p lower at the lower pressure and \p upper at the upper one, at both
/// temperatures. The caller's.
inline math::interpolation::Interpolation2D* tableOf(double T1, double T2, double p1, double p2,
                                                     double lower, double upper)
{
    const std::array T{T1, T2}, p{p1, p2};
    const std::array v{lower, upper, lower, upper};
    return new math::interpolation::Interpolation2D(2, T.data(), 2, p.data(), v.data());
}

} // namespace ketra_test
