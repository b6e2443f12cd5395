#include <ketra/thermo/detail/EntryState.h>

#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/_Species.h>
#include <ketra/util/Log.h>

#include <algorithm>

namespace thermo::detail {

namespace {

/// A species without a curve: only its enthalpy at one temperature is known.
bool hasOnlyAssignedEnthalpy(const Species& s)
{
    return s.isCondensed() && s.getIntervalSize() == 1 && s.getMaximalT() == 0;
}

EntryEnthalpy gasEnthalpy(const _Species& e, double p, double uncorrected)
{
    const Species& s = *e.getSpecies();
    const double T = e.getT();
    const bool corrected = e.getP() != uncorrected;
    return {s.H0(T), 0.0, corrected ? s.getDeltaH_rho(referenceTemperature, T, p) : 0.0};
}

/// Enthalpy on or beside the curve: beside it the specific heat of the table takes over.
EntryEnthalpy curveEnthalpy(const _Species& e, double p)
{
    const Species& s = *e.getSpecies();
    const double T = e.getT();
    if (hasOnlyAssignedEnthalpy(s)) {
        const double T0 = s.getT0();
        const double standard = s.H0(T0);
        return {standard, T0 != T ? s.getDeltaH_Cp(T0, T, p) : 0.0, 0.0};
    }
    const double standard = s.H0(T), Tmin = s.getMinimalT(), Tmax = s.getMaximalT();
    double heating = 0.0;
    if (T > Tmax)
        heating = s.getDeltaH_Cp(Tmax, T, p);
    else if (T < Tmin)
        heating = s.getDeltaH_Cp(Tmin, T, p);
    return {standard, heating, 0.0};
}

/// Temperature of the state from which compression counts: 298.15 K as far as the species has it.
double compressionReference(const Species& s)
{
    double T = referenceTemperature;
    if (s.getMaximalT() < T) T = s.getMaximalT();
    if (s.getMinimalT() > T) T = s.getMinimalT();
    return T;
}

} // namespace

EntryEnthalpy enthalpyOf(const _Species& e, double p, const UncorrectedPressure& uncorrected)
{
    const Species& s = *e.getSpecies();
    if (!s.isCondensed()) return gasEnthalpy(e, p, uncorrected.gas);
    EntryEnthalpy h = curveEnthalpy(e, p);
    if (e.getP() != uncorrected.condensed)
        h.compression = s.getDeltaH_rho(compressionReference(s), e.getT(), p);
    return h;
}

double internalEnergyOf(const _Species& e)
{
    const Species& s = *e.getSpecies();
    return s.U0(hasOnlyAssignedEnthalpy(s) ? s.getT0() : e.getT());
}

double tabulatedDensity(const _Species& e)
{
    const Species& s = *e.getSpecies();
    const double T = e.getT(), p = e.getP();
    if (s.checkRhoTable(T, p, false)) return s.getInterpolatedRho(T, p, false);
    if (s.hasRhoTable()) {
        const auto& table = *s.getRhoTable();
        return s.getInterpolatedRho(std::clamp(T, table.getMinX(), table.getMaxX()),
                                    std::clamp(p, table.getMinY(), table.getMaxY()), true);
    }
    util::Log::errorf("THERMO", "Could not get density for %s at T=%5.3f K, p=%5.3f MPa%s",
                      s.getName().c_str(), T, p / 1000000, util::eol);
    throw Exception(0, "Could not get mixture density");
}

void printFormula(const ChemicalFormula& formula, double divisor)
{
    for (unsigned i = 0; i < formula.size(); ++i) {
        const ChemicalElement& element = *formula[i];
        const std::string& name = ChemicalElement::getName(element.getType());
        util::Log::printf("THERMO", "(%s)%8.6f ", name.c_str(), element.getNumber() / divisor);
    }
    util::Log::printf("THERMO", "%s", util::eol);
}

double massOf(const ChemicalFormula& formula)
{
    double M = 0.0;
    for (unsigned i = 0; i < formula.size(); ++i) M += formula[i]->M();
    return M;
}

double valenceOf(const ChemicalFormula& formula)
{
    double valence = 0.0;
    for (unsigned i = 0; i < formula.size(); ++i) valence += formula[i]->getValence();
    return valence;
}

} // namespace thermo::detail
