#include "Certificate.h"
#include "Failure.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/verification/EngineCertificate.h>

#include <algorithm>
#include <cstdio>

namespace host {

using verification::EngineCertificate;
using verification::EquilibriumCertificate;
using verification::Grade;
using verification::StationCertificate;
using FrozenSection = performance::frozen::NozzleSectionConditions;
using Section = performance::equilibrium::NozzleSectionConditions;

namespace {

/// "elements 3e-14", with what stands before it.
void append(std::string& figures, const char* name, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%s%s %.0e", figures.empty() ? "" : ", ", name, value);
    figures += text;
}

/// Sections of an engine as the certificate takes them: shifting ones, then frozen ones.
struct Sorted {
    explicit Sorted(const std::vector<const Section*>& sections)
    {
        for (const Section* section : sections)
            if (const auto* isFrozen = dynamic_cast<const FrozenSection*>(section))
                frozen.push_back(isFrozen);
            else
                shifting.push_back(section);
        std::size_t nextShifting = 0, nextFrozen = shifting.size();
        for (const Section* section : sections)
            places.push_back(dynamic_cast<const FrozenSection*>(section) ? nextFrozen++
                                                                         : nextShifting++);
    }

    std::vector<const Section*> shifting;
    std::vector<const FrozenSection*> frozen;
    std::vector<std::size_t> places; // of each section among all, shifting ones first
};

EngineCertificate certify(const performance::equilibrium::Chamber& chamber, const Sorted& sections)
{
    return verification::certify(chamber, sections.shifting, sections.frozen);
}

std::string gradeText(Grade grade) { return std::string(1, verification::letter(grade)); }

Json numbersOf(const EquilibriumCertificate& c)
{
    const auto orNull = [](const std::string& text) { return text.empty() ? Json() : Json(text); };
    return {{"grade", gradeText(c.grade)},
            {"reason", orNull(c.reason)},
            {"worstSpecies", orNull(c.worstSpecies)},
            {"elements", c.elementResidual},
            {"charge", c.charge},
            {"gas", c.gasResidual},
            {"optimality", c.optimality},
            {"fractions", c.fractionResidual},
            {"drivingForce", c.drivingForce},
            {"missingFraction", c.missingFraction},
            {"hiddenForce", c.hiddenForce},
            {"target", c.targetResidual},
            {"amountsValid", c.amountsValid},
            {"temperatureInRange", c.temperatureInRange},
            {"blended", c.blended}};
}

Json numbersOf(const StationCertificate& s)
{
    return {{"place", s.place},
            {"grade", gradeText(s.grade)},
            {"reason", s.reason.empty() ? Json() : Json(s.reason)},
            {"T", s.T},
            {"p", s.p},
            {"entropy", s.entropy},
            {"enthalpy", s.enthalpy},
            {"massFlux", s.massFlux},
            {"beyondData", s.beyondData}};
}

Json numbersOf(const EngineCertificate& c)
{
    Json results = {{"grade", gradeText(c.grade)},
                    {"reason", c.reason.empty() ? Json() : Json(c.reason)},
                    {"entropy", c.entropy},
                    {"enthalpy", c.enthalpy},
                    {"mach", c.mach},
                    {"throatFlux", c.throatFlux},
                    {"massFlux", c.massFlux},
                    {"chamberFlux", c.chamberFlux},
                    {"frozenAhead", c.frozenAhead},
                    {"stations", Json::array()}};
    for (const StationCertificate& station : c.stations)
        results["stations"].push_back(numbersOf(station));
    return results;
}

std::string figuresOf(const EngineCertificate& c)
{
    double elements = 0.0, optimality = 0.0;
    for (const StationCertificate& station : c.stations) {
        if (station.frozen) continue;
        elements = std::max(elements, station.equilibrium.elementResidual);
        optimality = std::max(optimality, station.equilibrium.optimality);
    }
    std::string figures;
    append(figures, "elements", elements);
    append(figures, "optimum", optimality);
    append(figures, "entropy", c.entropy);
    append(figures, "enthalpy", c.enthalpy);
    append(figures, "Mach", c.mach);
    append(figures, "mass flux", c.massFlux);
    return figures;
}

Certificate certificateOf(const StationCertificate& s)
{
    Certificate certificate{s.grade, "", s.reason, numbersOf(s)};
    if (!s.frozen) {
        append(certificate.figures, "elements", s.equilibrium.elementResidual);
        append(certificate.figures, "optimum", s.equilibrium.optimality);
    }
    append(certificate.figures, "entropy", s.entropy);
    append(certificate.figures, "enthalpy", s.enthalpy);
    return certificate;
}

/// The injection plane is the end of a chamber of infinite area.
const StationCertificate& stationAt(const std::vector<StationCertificate>& stations,
                                    const char* place)
{
    const auto at = std::find_if(stations.begin(), stations.end(),
                                 [place](const StationCertificate& s) { return s.place == place; });
    return at == stations.end() ? stations.front() : *at;
}

Json attemptsOf(const reaction::Equilibrium& equilibrium)
{
    Json list = Json::array();
    for (const reaction::Equilibrium::Attempt& attempt : equilibrium.getAttempts())
        list.push_back({{"start", attempt.start},
                        {"finished", attempt.finished},
                        {"grade", gradeText(attempt.grade)},
                        {"T", attempt.T}});
    return list;
}

} // namespace

std::string Certificate::line() const
{
    const std::string text = "Certificate: " + gradeText(grade) + "  (" + figures + ")";
    return grade == Grade::A ? text : text + ": " + reason;
}

Certificate certificateOf(const reaction::Equilibrium& equilibrium)
{
    const EquilibriumCertificate c = equilibrium.certificate();
    Certificate certificate{c.grade, "", c.reason, numbersOf(c)};
    append(certificate.figures, "elements", c.elementResidual);
    append(certificate.figures, "optimum", c.optimality);
    append(certificate.figures, "target", c.targetResidual);
    return certificate;
}

Certificate certificateOf(performance::TheoreticalPerformance& performance)
{
    if (!performance.getChamber()) return certificateOf(*performance.getEquilibrium());
    std::vector<const Section*> sections;
    for (const Section* section :
         {performance.getExitSection(), performance.getOverExpansionSection()})
        if (section) sections.push_back(section);
    const EngineCertificate engine = certify(*performance.getChamber(), Sorted(sections));
    return {engine.grade, figuresOf(engine), engine.reason, numbersOf(engine)};
}

StationCertificates certificatesOf(performance::TheoreticalPerformance& performance,
                                   const std::vector<const Section*>& sections)
{
    const Sorted sorted(sections);
    const std::vector<StationCertificate> stations =
        certify(*performance.getChamber(), sorted).stations;
    StationCertificates result{certificateOf(stationAt(stations, "chamber end")),
                               certificateOf(stationAt(stations, "throat")),
                               {}};
    const std::size_t ofChamber = stations.size() - sections.size();
    for (const std::size_t place : sorted.places)
        result.sections.push_back(certificateOf(stations[ofChamber + place]));
    return result;
}

Json certificateResults(const reaction::Equilibrium& equilibrium)
{
    Json results = numbersOf(equilibrium.certificate());
    results["attempts"] = attemptsOf(equilibrium);
    return results;
}

std::string refusalOf(const Certificate& certificate, bool strict)
{
    if (certificate.grade == Grade::F)
        return "the result is no solution: " + certificate.reason + " (" + certificate.figures +
               ")";
    if (strict && certificate.grade == Grade::B)
        return "the result is certified B only, which --strict refuses: " + certificate.reason +
               " (" + certificate.figures + ")";
    return "";
}

void requireGrade(const Certificate& certificate, const std::string& subject, bool strict)
{
    const std::string refusal = refusalOf(certificate, strict);
    if (!refusal.empty()) throw Failure(NOT_CONVERGED, subject + ": " + refusal);
}

} // namespace host
