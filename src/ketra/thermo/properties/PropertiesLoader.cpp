#include <ketra/thermo/properties/PropertiesLoader.h>

#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/detail/TextFile.h>
#include <ketra/util/Log.h>
#include <ketra/util/String.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace thermo::properties {

using detail::slice;
using detail::toNumber;
using math::interpolation::Interpolation;
using math::interpolation::Interpolation2D;

namespace {

constexpr int largestCount = 1000;                          // of pressures and of temperatures
constexpr std::string_view versionMark = "format version "; // in a comment
constexpr int molarVersion = 2; // from this version on Cp goes by kg and molar mass

/// One table while it is read. The numbers grow with the lines that arrive: what the head of the
/// table promises may be wrong.
class Table
{
public:
    Table(Species& s, int pressures, int temperatures, double factor)
        : owner(s), nP(static_cast<std::size_t>(pressures)),
          nT(static_cast<std::size_t>(temperatures)), cpFactor(factor)
    {
    }

    Species& species() const { return owner; }
    /// Reads the next line. \returns true if it was the last one.
    bool read(std::string_view line);
    /// Gives the tables to the species.
    void publish(int sourceId);

private:
    std::unique_ptr<Interpolation2D> grid(const std::vector<double>& lines) const;
    void repairTs();

    Species& owner;
    std::size_t nP, nT;
    double cpFactor; // kJ/(kg K) to what the species holds
    std::size_t count = 0;
    std::vector<double> P, T, Ts, Qs;
    std::vector<double> cp, rho, mu, lambda; // in the order of the lines
};

bool Table::read(std::string_view line)
{
    const std::size_t iT = count % nT;
    const auto value = [&](unsigned int from) { return toNumber(slice(line, from, from + 14)); };
    if (iT == 0) {
        P.push_back(value(0) * 1e6);
        Ts.push_back(value(90));
        Qs.push_back(value(105) * 1000.0);
    }
    if (count < nT) T.push_back(value(15));
    cp.push_back(value(30) * cpFactor);
    rho.push_back(value(45));
    mu.push_back(value(60) / 1e6);
    lambda.push_back(value(75) / 1000.0);
    return ++count == nP * nT;
}

/// The lines stand pressure by pressure, the table temperature by temperature.
std::unique_ptr<Interpolation2D> Table::grid(const std::vector<double>& lines) const
{
    std::vector<double> values(lines.size());
    for (std::size_t iP = 0; iP < nP; ++iP)
        for (std::size_t iT = 0; iT < nT; ++iT) values[iT * nP + iP] = lines[iP * nT + iT];
    return std::make_unique<Interpolation2D>(static_cast<unsigned int>(nT), T.data(),
                                             static_cast<unsigned int>(nP), P.data(),
                                             values.data());
}

/// A boiling temperature that is not given is that of the pressure before; none lies above the
/// table.
void Table::repairTs()
{
    const double highest = *std::max_element(T.begin(), T.end());
    for (std::size_t i = 0; i < Ts.size(); ++i) {
        if (i > 0 && Ts[i] == 0.0) Ts[i] = Ts[i - 1];
        Ts[i] = std::min(Ts[i], highest);
    }
}

void Table::publish(int sourceId)
{
    repairTs();
    const auto n = static_cast<unsigned int>(nP);
    auto cpTable = grid(cp);
    auto rhoTable = grid(rho);
    auto muTable = grid(mu);
    auto lambdaTable = grid(lambda);
    auto tsTable = std::make_unique<Interpolation>(n, P.data(), Ts.data());
    auto qsTable = std::make_unique<Interpolation>(n, Ts.data(), Qs.data());

    owner.setCpTable(cpTable.release());
    owner.setRhoTable(rhoTable.release());
    owner.setMuTable(muTable.release());
    owner.setLambdaTable(lambdaTable.release());
    owner.setTsTable(tsTable.release());
    owner.setQsTable(qsTable.release());
    const int speciesSource = owner.getSourceId();
    owner.resetSourceIds();
    owner.setSourceId(speciesSource);
    owner.setTableSourceId(sourceId);
    owner.setTableModified(false);
}

/// The version that a comment line states, or the present one if it states none.
int statedVersion(std::string_view comment, int present)
{
    if (comment.size() <= versionMark.size() + 1) return present;
    std::string lower(comment);
    util::String::toLowerCase(lower);
    const std::size_t at = lower.find(versionMark);
    if (at == std::string::npos || at == 0) return present;
    std::string_view digits = slice(lower, at + versionMark.size());
    int version = 0;
    detail::takeInteger(digits, version);
    return version;
}

struct Head {
    std::string name;
    int nP = 0;
    int nT = 0;
};

/// The line in front of a table: the name up to the first blank, then "nP,nT".
Head readHead(std::string_view line)
{
    Head head;
    const std::size_t blank = line.find(' ');
    head.name = detail::trimmed(slice(line, 0, blank));
    std::string_view counts =
        blank == std::string_view::npos ? std::string_view() : line.substr(blank);
    if (detail::takeInteger(counts, head.nP) && !counts.empty() && counts.front() == ',') {
        counts.remove_prefix(1);
        detail::takeInteger(counts, head.nT);
    }
    const auto legal = [](int n) { return n >= 1 && n <= largestCount; };
    if (!legal(head.nP) || !legal(head.nT)) throw runtime::Exception(1);
    return head;
}

} // namespace

void PropertiesLoader::load(std::ifstream& stream, const SpeciesMap& species, int sourceId)
{
    const std::string text = detail::readAll(stream);
    if (detail::hasBareReturnsOnly(text))
        util::Log::warnf("THERMO", "Ignoring properties file whose lines have no line feeds\n");

    int version = 0;
    int skip = 0; // lines of a table whose species is unknown
    std::unique_ptr<Table> table;
    detail::LineReader lines(text);
    for (std::string_view line; lines.next(line);) {
        if (detail::trimmed(line).empty()) continue;
        if (line.front() == '!') {
            version = statedVersion(line, version);
        } else if (skip > 0) {
            --skip;
        } else if (!table) {
            const std::string_view name = detail::trimmed(slice(line, 0, line.find(' ')));
            const auto found = species.find(std::string(name));
            if (found == species.end())
                util::Log::warnf("THERMO", "Could not find species %s defined in properties file\n",
                                 std::string(name).c_str());
            const Head head = readHead(line);
            if (found == species.end()) {
                skip = head.nP * head.nT;
            } else {
                Species& owner = *found->second;
                const double factor = version < molarVersion ? 1000.0 : owner.getM();
                table = std::make_unique<Table>(owner, head.nP, head.nT, factor);
            }
        } else if (table->read(line)) {
            try {
                table->publish(sourceId);
            } catch (const math::interpolation::Exception&) {
                util::Log::warnf("THERMO", "Ignoring invalid properties of species %s (line %u)\n",
                                 table->species().getName().c_str(), lines.getCount());
            }
            table.reset();
        }
    }
    if (table)
        util::Log::warnf("THERMO", "Ignoring incomplete properties of species %s (line %u)\n",
                         table->species().getName().c_str(), lines.getCount());
}

} // namespace thermo::properties
