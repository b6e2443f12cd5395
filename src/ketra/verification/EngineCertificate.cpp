#include <ketra/verification/EngineCertificate.h>

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Species.h>
#include <ketra/verification/criteria/EquilibriumState.h>
#include <ketra/verification/criteria/detail/withNumber.h>
#include <ketra/verification/detail/StationSums.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using performance::equilibrium::Chamber;
using Section = performance::equilibrium::NozzleSectionConditions;
using FrozenSection = performance::frozen::NozzleSectionConditions;

namespace verification {

namespace {

using detail::StationSums;
using detail::withNumber;

/// A condensed phase that has just appeared, or is about to: its share of the moles, and the
/// driving force by which it is still away.
constexpr double freshFraction = 1e-3;
constexpr double nearForce = -1e-2;
/// By how much the Mach number jumps there at most.
constexpr double widestJump = 0.3;

/// Two sections of the same area ratio.
constexpr double sameRatio = 1e-6;

/// Works through an engine.
class Judgement
{
public:
    explicit Judgement(const Chamber& solved)
        : chamber(solved), forA(EngineLimits::of(Grade::A, solved.getRelativeTolerance())),
          forB(EngineLimits::of(Grade::B, solved.getRelativeTolerance()))
    {
    }

    EngineCertificate run(std::span<const Section* const> sections,
                          std::span<const FrozenSection* const> frozen);

private:
    bool judgeChamber();
    void judgeThroat(const StationSums& throat);
    void judgeEnd(const StationSums& end);
    void judgeLayer();
    void judgeLayerAt(const reaction::Equilibrium& solved);
    void judgeSection(const Section& section);
    void judgeFrozen(const FrozenSection& section);
    void compareImpulse(const FrozenSection& frozen, std::span<const Section* const> sections);

    StationCertificate stationOf(const char* place, const reaction::Equilibrium& solved,
                                 StationSums& sums) const;
    StationCertificate& station(const char* place, const reaction::Equilibrium& solved,
                                StationSums& sums)
    {
        return result.stations.emplace_back(stationOf(place, solved, sums));
    }
    void measureLaws(StationCertificate& at, const StationSums& sums, double velocity) const;
    void judgeLaws(StationCertificate& at);
    bool isMisplaced(double T) const;
    void judgeFlux(double flux);
    double fluxOf(const StationSums& sums) const;
    double velocityOf(const StationSums& sums) const;
    bool phaseAppears(const StationCertificate& throat) const;

    void check(double value, double EngineLimits::*limit, const char* what, std::string& reason,
               Grade& grade) const;
    void check(StationCertificate& at, double value, double EngineLimits::*limit,
               const char* what) const
    {
        check(value, limit, what, at.reason, at.grade);
    }
    void check(double value, double EngineLimits::*limit, const char* what)
    {
        check(value, limit, what, result.reason, result.grade);
    }

    const Chamber& chamber;
    const EngineLimits forA;
    const EngineLimits forB;
    EngineCertificate result;
    double h0 = 0.0;           // J/kg, of the injection plane
    double s0 = 0.0;           // J/(kg K), of the chamber end
    double throatFlux = 0.0;   // kg/(m^2 s)
    double throatEnergy = 0.0; // a^2/2, J/kg
};

EngineCertificate Judgement::run(std::span<const Section* const> sections,
                                 std::span<const FrozenSection* const> frozen)
{
    result.grade = Grade::A;
    result.frozenAhead = -std::numeric_limits<double>::infinity();
    if (!judgeChamber()) {
        result.grade = Grade::F;
        result.reason = "the chamber is not solved";
        return std::move(result);
    }
    for (const Section* section : sections) judgeSection(*section);
    for (const FrozenSection* section : frozen) {
        judgeFrozen(*section);
        compareImpulse(*section, sections);
    }
    if (!std::isfinite(result.frozenAhead)) result.frozenAhead = 0.0;

    check(result.mach, &EngineLimits::mach, "the throat is off Mach 1 by #");
    check(result.throatFlux, &EngineLimits::throatFlux, "a station passes # more than the throat");
    check(result.frozenAhead, &EngineLimits::frozenAhead, "frozen impulse # above shifting");
    for (const auto* list : {&result.stations, &result.layers})
        for (const StationCertificate& at : *list) {
            if (at.grade <= result.grade) continue;
            result.grade = at.grade;
            result.reason = at.place + ": " + at.reason;
        }
    return std::move(result);
}

bool Judgement::judgeChamber()
{
    const reaction::Equilibrium* injection = chamber.getReaction(Chamber::INJECTION_PLANE);
    const reaction::Equilibrium* end = chamber.getReaction(Chamber::CHAMBER_END);
    const reaction::Equilibrium* throat = chamber.getReaction(Chamber::THROAT);
    if (!injection || !end || !throat || !chamber.getDerivatives(Chamber::THROAT)) return false;

    StationSums atInjection;
    station("injection plane", *injection, atInjection);
    h0 = atInjection.h;
    s0 = atInjection.s;
    StationSums atEnd;
    const bool finiteArea = end != injection;
    if (finiteArea) {
        station("chamber end", *end, atEnd);
        s0 = atEnd.s;
    }
    StationSums atThroat;
    station("throat", *throat, atThroat);
    judgeThroat(atThroat);
    if (finiteArea) judgeEnd(atEnd);
    judgeLayer();
    return true;
}

void Judgement::judgeLayerAt(const reaction::Equilibrium& solved)
{
    StationSums sums;
    result.layers.push_back(stationOf("layer", solved, sums));
}

// The layer has the static pressures of the core, and enthalpies that fit them: of the laws only
// those of equilibrium hold for it.
void Judgement::judgeLayer()
{
    const reaction::Equilibrium* previous = nullptr;
    for (const auto number : {Chamber::INJECTION_PLANE, Chamber::CHAMBER_END, Chamber::THROAT}) {
        const reaction::Equilibrium* solved = chamber.getBlcReaction(number);
        if (solved && solved != previous) judgeLayerAt(*solved);
        previous = solved;
    }
}

/// A station with its own certificate, and its sums.
StationCertificate Judgement::stationOf(const char* place, const reaction::Equilibrium& solved,
                                        StationSums& sums) const
{
    const EquilibriumState state = solved.describe();
    StationCertificate at;
    at.place = place;
    at.equilibrium = judge(state);
    at.grade = at.equilibrium.grade;
    at.reason = at.equilibrium.reason;
    sums = StationSums::of(state);
    if (at.equilibrium.blended) {
        sums.h = solved.getHspec();
        sums.s = solved.getSspec();
    }
    at.T = sums.T;
    at.p = sums.p;
    return at;
}

double Judgement::velocityOf(const StationSums& sums) const
{
    return std::sqrt(2.0 * std::max(h0 - sums.h, 0.0));
}

double Judgement::fluxOf(const StationSums& sums) const { return sums.rho * velocityOf(sums); }

void Judgement::judgeThroat(const StationSums& throat)
{
    StationCertificate& at = result.stations.back();
    const double a = chamber.getDerivatives(Chamber::THROAT)->getA();
    throatEnergy = a * a / 2.0;
    result.mach = std::abs(velocityOf(throat) / a - 1.0);
    if (phaseAppears(at) && result.mach <= widestJump && result.mach > forB.mach) {
        // No state has Mach 1: what counts is that no other station passes more.
        result.mach = 0.0;
        throatEnergy = std::max(h0 - throat.h, 0.0);
        at.grade = worse(at.grade, Grade::B);
        at.reason = "a condensed phase appears in the throat, where the speed of sound jumps";
    }
    throatFlux = fluxOf(throat);
    // The velocity of the throat is that of sound, which the Mach number has been held against.
    measureLaws(at, throat, velocityOf(throat));
    judgeLaws(at);
}

bool Judgement::phaseAppears(const StationCertificate& throat) const
{
    if (throat.equilibrium.drivingForce > nearForce) return true;
    const EquilibriumState state = chamber.getReaction(Chamber::THROAT)->describe();
    double total = 0.0;
    for (const auto& c : state.candidates) total += c.amount;
    return std::any_of(state.candidates.begin(), state.candidates.end(), [&](const auto& c) {
        return c.present && !c.isGas() && c.amount < freshFraction * total;
    });
}

void Judgement::judgeEnd(const StationSums& end)
{
    StationCertificate& at = *(result.stations.end() - 2);
    measureLaws(at, end, chamber.getWc());
    judgeLaws(at);
    const double flux = fluxOf(end);
    judgeFlux(flux);
    at.massFlux = std::abs(flux * chamber.getFcr() / throatFlux - 1.0);
    result.chamberFlux = at.massFlux;
    check(at, at.massFlux, &EngineLimits::chamberFlux, "mass flow off by #");
}

void Judgement::judgeSection(const Section& section)
{
    const reaction::Equilibrium* solved = section.getReaction();
    if (!solved) {
        StationCertificate& at = result.stations.emplace_back();
        at.place = "section";
        at.reason = "it is not solved";
        return;
    }
    StationSums sums;
    StationCertificate& at = station("section", *solved, sums);
    measureLaws(at, sums, section.getW());
    judgeLaws(at);
    judgeFlux(fluxOf(sums));
    at.massFlux = std::abs(fluxOf(sums) * section.getFr() / throatFlux - 1.0);
    result.massFlux = std::max(result.massFlux, at.massFlux);
    check(at, at.massFlux, &EngineLimits::massFlux, "mass flow off by #");
    if (const reaction::Equilibrium* layer = section.getBlcReaction()) judgeLayerAt(*layer);
}

void Judgement::judgeFrozen(const FrozenSection& section)
{
    const StationSums sums = StationSums::of(section);
    StationCertificate& at = result.stations.emplace_back();
    at.place = "frozen section";
    at.frozen = true;
    at.grade = Grade::A;
    at.T = sums.T;
    at.p = sums.p;
    const double W = section.getW();
    measureLaws(at, sums, W);
    at.massFlux = std::abs(fluxOf(sums) * section.getFr() / throatFlux - 1.0);
    if (sums.beyondData || isMisplaced(sums.T)) {
        at.beyondData = std::max({at.entropy, at.enthalpy, at.massFlux});
        check(at, at.beyondData, &EngineLimits::beyondData,
              "a condensed product outside the range of its data, state uncertain by #");
        return;
    }
    judgeLaws(at);
    judgeFlux(fluxOf(sums));
    result.massFlux = std::max(result.massFlux, at.massFlux);
    check(at, at.massFlux, &EngineLimits::massFlux, "mass flow off by #");
}

/// Whether a condensed product of the freezing section does not exist, or is blended, at \p T.
bool Judgement::isMisplaced(double T) const
{
    const auto* freezing = dynamic_cast<const performance::frozen::Chamber*>(&chamber);
    if (!freezing) return false;
    std::vector<const thermo::Species*> condensed;
    freezing->getEquilibriumSection()->getReaction()->getCondensedSpecies(&condensed);
    return std::any_of(condensed.begin(), condensed.end(), [T](const thermo::Species* species) {
        return T < species->getMinimalT() || T > species->getMaximalT();
    });
}

void Judgement::measureLaws(StationCertificate& at, const StationSums& sums, double velocity) const
{
    at.entropy = std::abs(sums.s - s0) / sums.cp;
    at.enthalpy = std::abs(h0 - sums.h - velocity * velocity / 2.0) /
                  std::max(throatEnergy, velocity * velocity / 2.0);
}

void Judgement::judgeLaws(StationCertificate& at)
{
    result.entropy = std::max(result.entropy, at.entropy);
    result.enthalpy = std::max(result.enthalpy, at.enthalpy);
    check(at, at.entropy, at.frozen ? &EngineLimits::frozen : &EngineLimits::entropy,
          "entropy off by # of T");
    check(at, at.enthalpy, &EngineLimits::enthalpy, "total enthalpy off by #");
}

void Judgement::judgeFlux(double flux)
{
    result.throatFlux = std::max(result.throatFlux, flux / throatFlux - 1.0);
}

void Judgement::compareImpulse(const FrozenSection& frozen,
                               std::span<const Section* const> sections)
{
    for (const Section* shifting : sections) {
        if (std::abs(shifting->getFr() / frozen.getFr() - 1.0) > sameRatio) continue;
        if (!(shifting->getIs_v_core() > 0.0)) continue; // no impulse on the subsonic side
        result.frozenAhead =
            std::max(result.frozenAhead, frozen.getIs_v_core() / shifting->getIs_v_core() - 1.0);
    }
}

void Judgement::check(double value, double EngineLimits::*limit, const char* what,
                      std::string& reason, Grade& grade) const
{
    const Grade own = value <= forA.*limit ? Grade::A : value <= forB.*limit ? Grade::B : Grade::F;
    if (own <= grade) return;
    grade = own;
    reason = withNumber(what, value);
}

} // namespace

EngineLimits EngineLimits::of(Grade grade, double relativeTolerance)
{
    constexpr EngineLimits b{
        .entropy = 1e-4,
        .frozen = 2e-3,
        .enthalpy = 1e-4,
        .mach = 1e-2,
        .throatFlux = 1e-4,
        .massFlux = 3e-3,
        .chamberFlux = 4e-2,
        .frozenAhead = 2e-3,
        .beyondData = 1e-2,
    };
    if (grade != Grade::A) return b;
    const auto limit = [relativeTolerance](double ofA, double ofB) {
        return std::min(ofA * std::max(relativeTolerance, 1.0), ofB);
    };
    return {
        .entropy = limit(1e-6, b.entropy),
        .frozen = 1e-3,
        .enthalpy = limit(1e-6, b.enthalpy),
        .mach = limit(2e-5, b.mach),
        .throatFlux = limit(1e-6, b.throatFlux),
        .massFlux = limit(1e-3, b.massFlux),
        .chamberFlux = 1e-3,
        .frozenAhead = 1e-3,
        .beyondData = 0.0,
    };
}

EngineCertificate certify(const Chamber& chamber, std::span<const Section* const> sections,
                          std::span<const FrozenSection* const> frozen)
{
    return Judgement(chamber).run(sections, frozen);
}

} // namespace verification
