#include "CurveLint.h"
#include "Text.h"

#include <ketra/thermo/Polynomial.h>
#include <ketra/thermo/Species.h>

#include <cmath>
#include <string>

namespace host {
namespace {

using thermo::Polynomial;
using thermo::Species;

constexpr double R = thermo::gasConstant;                   // J/(mol K)
constexpr double referenceT = thermo::referenceTemperature; // K

// Limits. What is beyond the first one of a pair is worth a look, what is beyond the second one is
// a slip. Tables of atomic weights of different years differ by up to 3e-4 of a weight.
constexpr double massLimit = 1e-4; // of the molar mass
constexpr double massSlip = 1e-2;
// The NASA coefficients were fitted with R = 8.314510, which shifts all enthalpies by 4.6e-6.
constexpr double heatLimit = 5.0;   // J/mol, and
constexpr double heatShift = 1e-5;  // of the heat of formation
constexpr double heatSlip = 1000.0; // J/mol, and
constexpr double heatSlipShift = 1e-2;
// Of functions on both sides of a joint. Cp jumps where a lambda point was cut.
constexpr double jumpLimit = 2e-3; // of Cp; of R T for H; of R for S
constexpr double jumpSlip = 1.0;

std::string difference(double a, double b, const char* unit)
{
    return plainText(a) + " and " + plainText(b) + " " + unit;
}

void lintMolarMass(const Species& s, const Place& place, Findings& findings)
{
    if (s.size() == 0) return;
    double M = 0.0;
    for (int i = 0; i < s.size(); ++i) M += s[i]->M();
    const double off = std::fabs(s.getM() - M) / std::fabs(M);
    const std::string what =
        "the molar mass and that of the formula are " + difference(s.getM(), M, "g/mol") + ". ";
    if (!(off <= massSlip))
        findings.fail(place, what + "Mend the formula or the molar mass");
    else if (off > massLimit)
        findings.warn(place, what + "Use the present atomic weights if it matters");
}

void lintHeatOfFormation(const Species& s, const Place& place, Findings& findings)
{
    if (s.isFixedTemperature() || s.findInterval(referenceT) == nullptr) return;
    const double heat = s.getDHf298_15();
    const double H = s.H0(referenceT);
    const double off = std::fabs(H - heat);
    const std::string what = "H(298.15) of the coefficients and the heat of formation are " +
                             difference(H, heat, "J/mol") + ". ";
    if (!(off <= heatSlip + heatSlipShift * std::fabs(heat)))
        findings.fail(place, what + "Mend the heat of formation or the coefficients");
    else if (off > heatLimit + heatShift * std::fabs(heat))
        findings.warn(place, what + "The coefficients are what counts");
}

/// The functions of two intervals at the temperature where they meet.
void lintJoint(const Polynomial& below, const Polynomial& above, double T, const Place& place,
               Findings& findings)
{
    const auto compare = [&](const char* name, double a, double b, double scale, const char* unit) {
        const double off = std::fabs(a - b) / scale;
        const std::string what = std::string(name) + " jumps at " + plainText(T) + " K, from " +
                                 difference(a, b, unit) + ". ";
        if (!(off <= jumpSlip))
            findings.fail(place, what + "Mend the coefficients of one of the intervals");
        else if (off > jumpLimit)
            findings.warn(place, what + "Iterations can get stuck there if it is no lambda point");
    };
    compare("Cp", below.Cp0(T), above.Cp0(T), std::fabs(below.Cp0(T)), "J/(mol K)");
    compare("H", below.H0(T), above.H0(T), R * T, "J/mol");
    compare("S", below.S0(T), above.S0(T), R, "J/(mol K)");
}

void lintIntervals(const Species& s, const Place& place, Findings& findings)
{
    if (s.isFixedTemperature()) return;
    const auto count = static_cast<unsigned>(s.getIntervalSize());
    for (unsigned i = 0; i < count; ++i) {
        const Polynomial& interval = *s.getInterval(i);
        const std::string range =
            plainText(interval.getT1()) + " to " + plainText(interval.getT2()) + " K";
        if (!(interval.getT1() < interval.getT2())) {
            findings.fail(place,
                          "the interval from " + range + " holds no temperature. Mend its bounds");
            return;
        }
        if (i == 0) continue;
        const Polynomial& before = *s.getInterval(i - 1);
        if (interval.getT1() > before.getT2())
            findings.fail(place, "there are no data from " + plainText(before.getT2()) + " to " +
                                     plainText(interval.getT1()) + " K. Let the intervals meet");
        else if (interval.getT1() < before.getT2())
            findings.warn(place, "the interval from " + range +
                                     " begins inside of the one before, which counts there. Let "
                                     "the intervals meet");
        else
            lintJoint(before, interval, interval.getT1(), place, findings);
    }
}

} // namespace

void lintData(const Species& species, const Place& place, Findings& findings)
{
    lintMolarMass(species, place, findings);
    lintHeatOfFormation(species, place, findings);
    lintIntervals(species, place, findings);
}

} // namespace host
