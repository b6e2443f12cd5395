#include "DefaultRecord.h"

#include "DefaultCases.h"

#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/Propellant.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <exception>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace ketra_test {

namespace {

using performance::equilibrium::Chamber;
using performance::equilibrium::NozzleSectionConditions;
using reaction::Equilibrium;

/// The hash of Fowler, Noll and Vo, 64 bits wide.
class Digest
{
public:
    void add(unsigned char byte)
    {
        hash ^= byte;
        hash *= 0x100000001b3;
    }
    void add(std::string_view text)
    {
        for (const char c : text) add(static_cast<unsigned char>(c));
    }
    void add(double x)
    {
        const auto bits = std::bit_cast<std::uint64_t>(x);
        for (int shift = 0; shift < 64; shift += 8) add(static_cast<unsigned char>(bits >> shift));
    }
    void add(const Equilibrium& state)
    {
        const std::unique_ptr<reaction::ReactingMixture> products(
            state.copyReactingMixture(true, true));
        for (unsigned int j = 0; j < products->size(); ++j) {
            add(std::string_view(products->product(j)->getName()));
            add(products->n(j));
        }
    }
    std::uint64_t value() const { return hash; }

private:
    std::uint64_t hash = 0xcbf29ce484222325;
};

void addValues(DefaultRecord& record, std::initializer_list<double> values)
{
    record.values.insert(record.values.end(), values);
}

void addStation(DefaultRecord& record, Digest& digest, const Chamber& chamber,
                Chamber::CHAMBER_STATION station)
{
    const Equilibrium* const state = chamber.getReaction(station);
    const reaction::Derivatives* const derived = chamber.getDerivatives(station);
    if (state == nullptr || derived == nullptr) return;
    addValues(record, {state->getT(), state->getP(), derived->getRho()});
    if (station == Chamber::CHAMBER_END) addValues(record, {chamber.getWc()});
    if (station == Chamber::THROAT) addValues(record, {derived->getA()});
    digest.add(*state);
}

void addSection(DefaultRecord& record, Digest& digest, const NozzleSectionConditions* section)
{
    if (section == nullptr) return;
    addValues(record, {section->getT(), section->getP(), section->getRho(), section->getW(),
                       section->getIs_v(0.0), section->getIs(0.0)});
    if (section->getReaction() != nullptr) digest.add(*section->getReaction());
}

/// All that an engine holds, solved or not to the end.
void addEngine(DefaultRecord& record, Digest& digest, performance::TheoreticalPerformance& engine,
               bool finiteArea)
{
    if (const Chamber* const chamber = engine.getChamber()) {
        addStation(record, digest, *chamber, Chamber::INJECTION_PLANE);
        if (finiteArea) addStation(record, digest, *chamber, Chamber::CHAMBER_END);
        addStation(record, digest, *chamber, Chamber::THROAT);
    }
    addSection(record, digest, engine.getExitSection());
    addSection(record, digest, engine.getOverExpansionSection());
}

/// Runs one step. \returns whether it went well; \p record has the stage and the code of a failure.
template <class Step> bool succeeds(DefaultRecord& record, const char* stage, Step step)
{
    try {
        step();
        return true;
    } catch (const thermo::Exception& e) {
        record.outcome = std::string(stage) + "-thermo-" + std::to_string(e.getType());
    } catch (const runtime::Exception& e) {
        record.outcome = std::string(stage) + "-other-" + std::to_string(e.getType());
    }
    return false;
}

/// Poses the problem of \p one from the solved state \p from at the density \p rho, kg/m3.
void pose(Equilibrium& problem, const EquilibriumCase& one, const Equilibrium& from, double rho)
{
    const double p = one.state.p, v = 1.0 / rho;
    switch (one.type) {
    case Equilibrium::PH:
        problem.setPHspec(p, from.getHspec());
        break;
    case Equilibrium::PS:
        problem.setPSspec(p, from.getSspec());
        break;
    case Equilibrium::PT:
        problem.setPT(p, from.getT());
        break;
    case Equilibrium::VU:
        problem.setVUspec(v, from.getUspec());
        break;
    case Equilibrium::VS:
        problem.setVSspec(v, from.getSspec());
        break;
    case Equilibrium::VT:
        problem.setVT(v, from.getT());
        break;
    }
}

void addState(DefaultRecord& record, Digest& digest, const Equilibrium& state)
{
    addValues(record, {state.getT(), state.getNg(), state.getH(), state.getS(), state.getU(),
                       state.getG()});
    digest.add(state);
}

std::string hexadecimal(std::uint64_t x)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, x, 16).ptr};
}

std::uint64_t fromHexadecimal(const std::string& text)
{
    std::uint64_t x = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), x, 16);
    if (error != std::errc{} || end != text.data() + text.size())
        throw std::runtime_error("not a hexadecimal number: " + text);
    return x;
}

} // namespace

DefaultRecord recordEngine(std::size_t i)
{
    static const std::vector<EngineCase> cases = defaultEngines();
    const EngineCase& one = cases.at(i);
    DefaultRecord record;
    Digest digest;
    const auto document = documentOf(one);
    performance::TheoreticalPerformance engine(document.get(), /*ownsDocument=*/false);
    const bool solved = succeeds(record, "engine", [&] { engine.solve(false); });
    addEngine(record, digest, engine, one.isFiniteArea());
    if (solved) record.outcome = "solved";
    if (solved && one.isThrottled()) {
        std::unique_ptr<performance::ThrottlingPerformance> throttled;
        if (succeeds(record, "throttling", [&] {
                throttled = std::make_unique<performance::ThrottlingPerformance>(
                    &engine, one.throttling, false);
            }))
            addEngine(record, digest, *throttled, one.isFiniteArea());
    }
    record.products = digest.value();
    return record;
}

DefaultRecord recordEquilibrium(std::size_t i)
{
    static const std::vector<EquilibriumCase> cases = defaultEquilibria();
    const EquilibriumCase& one = cases.at(i);
    DefaultRecord record;
    Digest digest;
    const auto charge = mixtureOf(one.state.reactants);
    Equilibrium from(*charge, true, one.state.ions);
    from.setPT(one.state.p, one.state.T);
    const bool known = succeeds(record, "state", [&] { from.solve(one.expectCondensed); });
    if (known) {
        addState(record, digest, from);
        Equilibrium problem(*charge, true, one.state.ions);
        if (succeeds(record, "problem", [&] {
                reaction::Derivatives derived(&from);
                derived.solve(false);
                pose(problem, one, from, derived.getRho());
                problem.solve(one.expectCondensed);
            })) {
            addState(record, digest, problem);
            record.outcome = "solved";
        }
    }
    record.products = digest.value();
    return record;
}

std::uint64_t mathematicsFingerprint()
{
    StateGenerator random(7);
    Digest digest;
    for (int i = 0; i < 20000; ++i) {
        const double x = random.uniform(-100.0, 100.0);
        const double positive = random.uniform(1e-6, 20000.0);
        digest.add(std::exp(x));
        digest.add(std::log(positive));
        digest.add(std::log(positive * 1e-12));
        digest.add(std::pow(positive, 0.02 * x));
        digest.add(std::sqrt(positive));
    }
    return digest.value();
}

std::string lineOf(const DefaultRecord& record)
{
    std::string line = record.outcome + ' ' + hexadecimal(record.products);
    for (const double value : record.values) {
        char text[48];
        const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::hex).ptr;
        line += ' ';
        line.append(text, end);
    }
    return line;
}

DefaultRecord recordOf(const std::string& line)
{
    std::istringstream words(line);
    DefaultRecord record;
    std::string digest, number;
    words >> record.outcome >> digest;
    record.products = fromHexadecimal(digest);
    while (words >> number) {
        double value = 0.0;
        const char* const last = number.data() + number.size();
        const auto [end, error] =
            std::from_chars(number.data(), last, value, std::chars_format::hex);
        if (error != std::errc{} || end != last)
            throw std::runtime_error("not a number: " + number);
        record.values.push_back(value);
    }
    return record;
}

DefaultRecords readDefaultRecords(const std::string& path)
{
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    DefaultRecords records;
    std::string line;
    while (std::getline(file, line)) {
        const std::size_t blank = line.find(' ');
        const std::string kind = line.substr(0, blank);
        const std::string rest = blank == std::string::npos ? "" : line.substr(blank + 1);
        if (kind == "mathematics")
            records.fingerprint = fromHexadecimal(rest);
        else if (kind == "engine")
            records.engines.push_back(recordOf(rest));
        else if (kind == "equilibrium")
            records.equilibria.push_back(recordOf(rest));
        else
            throw std::runtime_error("not a line of records: " + line);
    }
    return records;
}

} // namespace ketra_test
