#include "CompareCommand.h"
#include "Columns.h"
#include "EnginePerformance.h"
#include "Failure.h"
#include "Output.h"
#include "Results.h"
#include "Text.h"

#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/thermo/Propellant.h>

#include <cstdio>
#include <filesystem>

namespace host {
namespace {

using performance::TheoreticalPerformance;
using Value = std::optional<double>;

constexpr double standardGravity = 9.80665; // m/s^2

/// A row of the comparison.
struct Figure {
    Column column; ///< name, units and decimals
    Value (*value)(TheoreticalPerformance&);
};

Station injectionOf(TheoreticalPerformance& p)
{
    return p.getChamber() ? injectionPlaneOf(*p.getChamber())
                          : stationOf(*p.getEquilibrium(), *p.getDerivatives());
}

/// A value of the station where it exists.
template <auto member> Value atChamber(TheoreticalPerformance& p)
{
    return (injectionOf(p).*member)();
}
template <auto member> Value atThroat(TheoreticalPerformance& p)
{
    return p.getChamber() ? Value((throatOf(*p.getChamber()).*member)()) : Value();
}
template <auto member> Value atExit(TheoreticalPerformance& p)
{
    return p.getExitSection() ? Value((stationOf(*p.getExitSection()).*member)()) : Value();
}

std::optional<SectionPerformance> exitPerformance(TheoreticalPerformance& p)
{
    return p.getExitSection() ? performanceOf(p, *p.getExitSection()) : std::nullopt;
}

Value vacuumImpulse(TheoreticalPerformance& p)
{
    const auto exit = exitPerformance(p);
    return exit ? Value(exit->vacuum.Is) : Value();
}

Value deliveredImpulse(TheoreticalPerformance& p)
{
    const auto corrections = correctionsOf(p);
    const Value ideal = vacuumImpulse(p);
    return corrections && ideal ? Value(*ideal * corrections->overall) : Value();
}

std::vector<Figure> figures()
{
    using P = TheoreticalPerformance;
    return {
        {plainColumn("mixture ratio O/F", 4),
         [](P& p) { return p.getPropellant() ? Value(p.getPropellant()->getKm()) : Value(); }},
        {pressureColumn("chamber pressure"), &atChamber<&Station::p>},
        {temperatureColumn("chamber temperature"), &atChamber<&Station::T>},
        {molarMassColumn("chamber molar mass"), &atChamber<&Station::M>},
        {temperatureColumn("throat temperature"), &atThroat<&Station::T>},
        {plainColumn("exit area ratio", 3),
         [](P& p) { return p.getExitSection() ? Value(p.getExitSection()->getFr()) : Value(); }},
        {pressureColumn("exit pressure"), &atExit<&Station::p>},
        {temperatureColumn("exit temperature"), &atExit<&Station::T>},
        {molarMassColumn("exit molar mass"), &atExit<&Station::M>},
        {plainColumn("exit Mach number", 4), &atExit<&Station::Mach>},
        {velocityColumn("characteristic velocity"),
         [](P& p) { return p.getChamber() ? Value(p.getChamber()->getCstar(0.0)) : Value(); }},
        {velocityColumn("specific impulse, vacuum"), &vacuumImpulse},
        {Column{"the same over 9.80665 m/s^2",
                {"s", 1 / standardGravity},
                {"s", 1 / standardGravity},
                2},
         &vacuumImpulse},
        {velocityColumn("specific impulse, optimum"),
         [](P& p) {
             const auto exit = exitPerformance(p);
             return exit ? Value(exit->optimum.Is) : Value();
         }},
        {plainColumn("thrust coefficient, vacuum", 5),
         [](P& p) {
             const auto exit = exitPerformance(p);
             return exit ? Value(exit->vacuum.Cf) : Value();
         }},
        {velocityColumn("delivered impulse, vacuum"), &deliveredImpulse},
    };
}

std::string shown(const Value& value, const Scale& scale, int decimals)
{
    if (!value) return "-";
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, *value * scale.factor);
    return text;
}

/// The second over the first less one, in per cent.
std::string difference(const Value& first, const Value& second)
{
    if (!first || !second || *first == 0.0) return "-";
    char text[64];
    std::snprintf(text, sizeof text, "%+.3f %%", 100.0 * (*second / *first - 1.0));
    return text;
}

std::string tableOf(const std::vector<Case>& cases, const std::vector<Certificate>& certificates,
                    bool english)
{
    std::vector<Column> columns = {plainColumn("", 0), plainColumn("", 0)};
    for (const Case& engine : cases)
        columns.push_back(plainColumn(std::filesystem::path(engine.getPath()).stem().string(), 0));
    if (cases.size() == 2) columns.push_back(plainColumn("difference", 0));
    Table table(std::move(columns), english);
    for (const Figure& figure : figures()) {
        const Scale& scale = english ? figure.column.english : figure.column.si;
        std::vector<Cell> row = {figure.column.name, std::string(scale.unit)};
        std::vector<Value> values;
        for (const Case& engine : cases) values.push_back(figure.value(engine.getPerformance()));
        for (const Value& value : values)
            row.emplace_back(shown(value, scale, figure.column.decimals));
        if (values.size() == 2) row.emplace_back(difference(values[0], values[1]));
        table.add(std::move(row));
    }
    std::vector<Cell> grades = {"certificate", ""};
    for (const Certificate& certificate : certificates)
        grades.emplace_back(std::string(1, verification::letter(certificate.grade)));
    if (cases.size() == 2) grades.emplace_back("-");
    table.add(std::move(grades));
    return table.text();
}

std::string jsonOf(const std::vector<Case>& cases, const std::vector<Certificate>& certificates,
                   bool transport)
{
    Json results = {{"program", "ketra"}, {"version", KETRA_VERSION}, {"cases", Json::array()}};
    for (std::size_t i = 0; i < cases.size(); ++i)
        results["cases"].push_back(
            resultsOf(cases[i].getPerformance(), cases[i].getPath(), certificates[i], transport));
    return textOf(results);
}

} // namespace

ExitCode compareDocuments(const CompareOptions& options)
{
    std::vector<Case> cases;
    for (const std::string& document : options.documents)
        cases.emplace_back(document, options.run.reading);
    Session session(options.run.session);
    if (options.run.transport) session.expectTransport();
    for (Case& engine : cases) engine.build();
    std::vector<Certificate> certificates;
    for (Case& engine : cases) {
        HeldMessages messages(session.reports());
        certificates.push_back(solveAndCertify(engine, options.run, messages));
        if (&engine == &cases.front()) report(engine, certificates.back(), options.run);
        messages.recovered();
    }
    if (options.run.json != "-")
        writeToStandardOutput(
            session.report() +
            session.withLineEnds("\n" + tableOf(cases, certificates, options.run.english)));
    if (!options.run.json.empty())
        writeToFile(options.run.json, jsonOf(cases, certificates, options.run.transport));
    session.finish();
    return GOOD;
}

} // namespace host
