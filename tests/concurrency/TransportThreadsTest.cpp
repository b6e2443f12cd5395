#include <support/Reactants.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>

#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

using namespace ketra_test;

namespace {

std::array<double, 4> transportAt(double p)
{
    const auto charge = ntoMmh(2.0);
    reaction::Equilibrium problem(*charge);
    problem.setPT(p, 3000.0);
    problem.solve(false);
    reaction::Derivatives d(&problem);
    d.solve(true);
    return {d.getV(), d.getCeql(), d.getCpeql(), d.getPreql()};
}

// The products of all problems share the transport data of the database.
TEST(Transport, IsComputedByManyThreadsAtOnce)
{
    useShippedSpecies();
    thermo::Database::loadTransportPropertiesDatabase(KETRA_SOURCE_DIR "/resources/trans.inp");
    constexpr std::array pressures = {1e5, 1e6, 5e6, 2e7};
    std::vector<std::array<double, 4>> alone, together(pressures.size());
    for (const double p : pressures) alone.push_back(transportAt(p));
    std::vector<std::thread> workers;
    for (std::size_t i = 0; i < pressures.size(); ++i)
        workers.emplace_back([&, i] { together[i] = transportAt(pressures[i]); });
    for (std::thread& worker : workers) worker.join();
    EXPECT_EQ(together, alone);
    EXPECT_GT(alone[0][1], alone[3][1]) << "the thinner gas dissociates more";
}

} // namespace
