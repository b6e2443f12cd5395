#include "Work.h"

#include <ketra/reaction/Equilibrium.h>
#include <ketra/thermo/Mixture.h>

namespace ketra_bench {

namespace {

constexpr double flameTolerance = 1e-4;   // against temperatures of another program
constexpr double closureTolerance = 1e-6; // between problems of ours; the solver stops at 1e-7

/// The flame of a charge: the solved problem of constant pressure and enthalpy.
struct Flame {
    explicit Flame(const Charge& charge)
        : p(charge.p), mixture(charge.mixture()), problem(*mixture, /*multiphase=*/true,
                                                          /*ions=*/false),
          startT(problem.getT()), H(mixture->H())
    {
        solvePH();
        T = problem.getT();
        h = problem.getHspec();
        s = problem.getSspec();
        requireClose(charge.name + " T", T, charge.T, flameTolerance);
        requireCertified(charge.name + " flame", problem);
    }

    // A solution is the start of the next one: the temperature goes back to where it came from, so
    // that every repetition is the same work.
    void solvePH()
    {
        problem.setT(startT);
        problem.setPH(p, H);
        problem.solve(expectCondensed);
    }
    void solvePS()
    {
        problem.setT(startT);
        problem.setPSspec(p, s);
        problem.solve(expectCondensed);
    }
    void solvePT()
    {
        problem.setPT(p, T);
        problem.solve(expectCondensed);
    }

    static constexpr bool expectCondensed = false;
    double p; // Pa
    std::unique_ptr<thermo::Mixture> mixture;
    reaction::Equilibrium problem;
    double startT;  // K
    double H;       // of the charge, J/mol
    double T = 0.0; // K
    double h = 0.0; // J/kg
    double s = 0.0; // J/(kg K)
};

Body preparePH(const Charge& charge)
{
    useShippedSpecies();
    const auto flame = std::make_shared<Flame>(charge);
    return [flame] { flame->solvePH(); };
}

/// The entropy of the flame gives the flame back.
Body preparePS(const Charge& charge)
{
    useShippedSpecies();
    const auto flame = std::make_shared<Flame>(charge);
    flame->solvePS();
    requireClose(charge.name + " T of its entropy", flame->problem.getT(), flame->T,
                 closureTolerance);
    requireCertified(charge.name + " flame by its entropy", flame->problem);
    return [flame] { flame->solvePS(); };
}

/// The temperature of the flame gives its enthalpy back.
Body preparePT(const Charge& charge)
{
    useShippedSpecies();
    const auto flame = std::make_shared<Flame>(charge);
    flame->solvePT();
    requireClose(charge.name + " h of its temperature", flame->problem.getHspec(), flame->h,
                 10.0 * closureTolerance);
    requireCertified(charge.name + " flame by its temperature", flame->problem);
    return [flame] { flame->solvePT(); };
}

} // namespace

std::vector<Work> equilibriumWorks()
{
    struct Problem {
        const char* name;
        Body (*prepare)(const Charge&);
    };
    std::vector<Work> works;
    for (const Problem& problem :
         {Problem{"PT", preparePT}, Problem{"PH", preparePH}, Problem{"PS", preparePS}})
        for (const Charge& charge : charges())
            works.push_back({std::string("Equilibrium/") + problem.name + "/" + charge.name,
                             [problem, charge] { return problem.prepare(charge); }});
    return works;
}

} // namespace ketra_bench
