#pragma once

#include <cstddef>
#include <deque>

namespace reaction::detail {

/// Finds the period of an iteration that circles through a few states near a phase boundary, and
/// the best state of it to stop at.
class Oscillation
{
public:
    /// Takes up the state after a cycle.
    /// \param T        temperature, K
    /// \param g        specific Gibbs energy, J/kg
    /// \param r        relative difference below which two temperatures are one
    /// \param keep     states remembered
    /// \param gasOnly  without condensed phases a state must not lie above its predecessor
    /// \returns true if the iteration stands at the best state of its period
    bool standsAtBest(double T, double g, double r, std::size_t keep, bool gasOnly);

private:
    void findPeriod(double T, double r);

    std::deque<double> historyT; // K
    std::deque<double> historyG; // J/kg
    double targetT = 0.0;        // K, of the best state of the period; 0: none known
    std::size_t wait = 0;        // cycles until the iteration is back at it
    double lastG = 0.0;
};

} // namespace reaction::detail
