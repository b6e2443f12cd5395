#pragma once

#include <support/ReferenceStates.h>

#include <ketra/math/matrix/Matrix.h>
#include <ketra/math/matrix/RowVector.h>
#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/Product.h>
#include <ketra/reaction/ReactingMixture.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// The published transport properties of tests/validation/data, and how far the library is from
// them.

namespace ketra_test {

inline constexpr std::size_t transportQuantities = 5;
inline constexpr std::array<const char*, transportQuantities> transportNames = {
    "viscosity", "cond_fr", "cond_eq", "Pr_fr", "Pr_eq"};
using TransportValues = std::array<double, transportQuantities>;

/// Transport properties of one state of the reference. A NaN was not computed.
struct ReferenceTransport {
    std::string id;
    int station;
    int frozenAt; // station whose composition it keeps, 0 in equilibrium
    double p, T;
    TransportValues values;

    bool isFrozen() const { return frozenAt != 0; }
    std::string name() const { return id + "_station_" + std::to_string(station); }
};

inline std::vector<ReferenceTransport> readReferenceTransport()
{
    std::vector<ReferenceTransport> all;
    for (const auto& row : referenceRows("transport.csv")) {
        ReferenceTransport r{row.at(0), std::stoi(row.at(1)), 0, 0.0, 0.0, {}};
        if (!row.at(2).empty()) r.frozenAt = std::stoi(row.at(2));
        r.p = numberOf(row.at(3));
        r.T = numberOf(row.at(4));
        for (std::size_t i = 0; i < transportQuantities; ++i) r.values[i] = numberOf(row.at(5 + i));
        all.push_back(r);
    }
    return all;
}

inline const std::vector<ReferenceTransport>& referenceTransport()
{
    static const std::vector<ReferenceTransport> all = readReferenceTransport();
    return all;
}

/// The share of the reactions as it comes out, whether the calculation believes it or not.
class ReactingTransport : public reaction::Derivatives
{
public:
    using Derivatives::Derivatives;

    /// Computes Cr, Cpr and Prr from all gases that matter, and no other result.
    void react(double atT)
    {
        const double bands[] = {1e-4, 1e-8, 1e-10};
        double counts[3] = {}, *x = nullptr, nSum = 0.0, nE = 0.0, xE = 0.0;
        unsigned nm = 0;
        std::vector<reaction::Product*> list;
        getInvolvedSpecies(list, nm, nSum, nE, x, xE, bands, counts, 3);
        const std::unique_ptr<double[]> owned(x);
        const auto n = static_cast<unsigned>(list.size());
        math::matrix::Matrix eta(n, n);
        math::matrix::RowVector lambda(n);
        prepareData(list, nm, n, nSum, nE, x, xE, &eta, &lambda, atT);
        calculateTransportPropertiesR(list, nm, n, nSum, nE, x, xE, &eta, &lambda, atT);
    }
};

/// The shipped species with their transport data.
inline void useShippedTransport()
{
    useShippedSpecies();
    const thermo::Database& database = *thermo::Database::getInstance();
    if (!database.find("N2")->isTransportPropertiesAvailable())
        thermo::Database::loadTransportPropertiesDatabase(KETRA_SOURCE_DIR "/resources/trans.inp");
}

/// A state as the library finds it at the p and T of the reference.
struct FoundTransport {
    TransportValues values;
    double Cpr;                         // J/(kg K)
    std::vector<std::string> estimated; // gases above 1 % without data at this temperature
};

/// Mole fraction in the gas above which a species counts as a major one.
inline constexpr double majorFraction = 0.01;

inline FoundTransport findTransport(const ReferenceTransport& reference)
{
    useShippedTransport();
    const int station = reference.isFrozen() ? reference.frozenAt : reference.station;
    for (const ReferenceCase& c : referenceCases()) {
        if (c.id != reference.id) continue;
        for (const ReferenceState& state : c.states) {
            if (state.station != station) continue;
            const auto charge = chargeOf(c);
            reaction::Equilibrium problem(*charge, true, c.ions);
            problem.setPT(state.p, state.T);
            problem.solve(false);
            reaction::Derivatives derivatives(&problem);
            derivatives.solve(false);
            derivatives.calculateTransportProperties(reference.T, !reference.isFrozen());
            FoundTransport found{{derivatives.getV(), derivatives.getCfr(), derivatives.getCeql(),
                                  derivatives.getPrfr(), derivatives.getPreql()},
                                 derivatives.getCpr(),
                                 {}};
            const reaction::ReactingMixture& mixture = *derivatives.getReactingMixture();
            for (unsigned j = 0; j < mixture.gasSize(); ++j) {
                const reaction::Product& gas = *mixture.product(j);
                if (gas.n() / mixture.getNg() <= majorFraction) continue;
                if (gas.findViscosity(reference.T) == 0.0 ||
                    gas.findConductivity(reference.T) == 0.0)
                    found.estimated.push_back(gas.getName());
            }
            return found;
        }
    }
    throw std::runtime_error("no state " + reference.name());
}

/// Relative deviations; NaN where the reference has no value.
inline TransportValues deviationsOf(const ReferenceTransport& reference,
                                    const FoundTransport& found)
{
    TransportValues deviations;
    for (std::size_t i = 0; i < transportQuantities; ++i)
        deviations[i] = found.values[i] / reference.values[i] - 1.0;
    return deviations;
}

} // namespace ketra_test
