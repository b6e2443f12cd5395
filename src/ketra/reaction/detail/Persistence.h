#pragma once

#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/detail/ElementPotentials.h>
#include <ketra/reaction/detail/SolvedState.h>

#include <exception>
#include <functional>
#include <vector>

namespace reaction::detail {

/// Solves a persistent or warm problem: one attempt after the other, each from a fresh state of the
/// object, until a certificate is good enough.
class Persistence
{
public:
    explicit Persistence(Equilibrium& problem);

    /// \throws thermo::Exception as the default method, if that and all further attempts fail
    void solve(bool expectCondensed);

private:
    /// The quantities of a problem that a solve changes.
    struct Scalars {
        double H, Hspec, S, Sspec, U, Uspec, G, Gspec;
        double T, Ng, lnNg, lnPv;
        double maxB, balanceTolerance; // of the mixture, which only grow
    };
    /// A result of grade B, kept while a better one is looked for.
    struct Kept {
        Scalars scalars{};
        std::vector<Product*> list; // empty: there is none
        std::vector<double> n;
        std::vector<double> lnN;
    };

    /// The problem as it was posed, whatever an earlier attempt has left.
    void pose() { restore(posed); }
    /// Runs one attempt. \returns true if its result can stand
    bool attempt(const char* start, const std::function<void()>& run);
    void solveFurther(bool expectCondensed);
    bool isBeyondData();
    void fromState(const SolvedState& state);
    void fromHotState(bool expectCondensed);
    void fromMainSpecies();
    void keep();
    void takeKept();
    void tell() const;
    [[noreturn]] void fail();

    Scalars scalars() const;
    void restore(const Scalars& values);

    Equilibrium& eq;
    const Scalars posed;
    Kept kept;
    std::exception_ptr failure;                                      // of the default method
    ElementPotentials::Side side = ElementPotentials::Side::UNKNOWN; // of the target
    double endT = 0.0; // K, end of the data that the target lies beyond
};

} // namespace reaction::detail
