#pragma once

#include <ketra/reaction/ReactingMixture.h>

#include <vector>

namespace reaction::detail {

/// A flat, contiguous picture of the present list of a reacting mixture: what the solver reads in
/// every cycle, gases first.
class ReactingState
{
public:
    explicit ReactingState(const ReactingMixture& mixture);

    /// Takes up the list anew: entries, stoichiometric numbers, amounts and functions.
    void refresh();
    /// Takes up amounts and functions; the list is the one of the last `refresh`.
    void refreshValues();

    unsigned int elements() const { return m; }
    unsigned int size() const { return N; }
    unsigned int gasSize() const { return ng; }
    /// Atoms of each element in entry \p j.
    const double* row(unsigned int j) const { return &a[std::size_t{j} * m]; }

    std::vector<double> n;   // mol
    std::vector<double> lnN; // ln n of a gas
    std::vector<double> H;   // H0/(R T)
    std::vector<double> U;
    std::vector<double> G;
    std::vector<double> S;
    std::vector<double> Cp;
    std::vector<double> Cv;

private:
    const ReactingMixture& mixture;
    unsigned int m;
    unsigned int N = 0;
    unsigned int ng = 0;
    std::vector<double> a; // N rows of m
};

} // namespace reaction::detail
