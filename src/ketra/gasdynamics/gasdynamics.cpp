#include <ketra/gasdynamics/gasdynamics.h>

#include <ketra/math/equation/NewtonsRootFinder.h>

#include <cmath>

namespace gasdynamics {

namespace {

constexpr double tolerance = 1e-8; // of a reduced velocity
constexpr double supersonicStart = 1.5;
constexpr double subsonicStart = 0.5;
// How far beyond 1 a branch reaches: at q = 1 the two roots meet, and rounding moves that double
// root by some 1e-8 to either side.
constexpr double overlap = 1e-7;

/// The part of the reduced velocities on which a root is sought.
struct Branch {
    double least;
    double greatest;
};

// The velocity of the flow into a vacuum, where t is 0.
double limitingLambda(double k) { return std::sqrt((k + 1) / (k - 1)); }

// From the start the search may leap to the flat end of the function at the limiting velocity, and
// from there back over all other roots; the branch keeps it on its own.
double root(math::equation::Function& function, bool supersonic, const Branch& branch)
{
    math::equation::NewtonsRootFinder finder(&function, tolerance);
    finder.setBounds(branch.least, branch.greatest);
    finder.reset(supersonic ? supersonicStart : subsonicStart);
    while (!finder.step()) {
    }
    return finder.getXnp1();
}

} // namespace

double M2L(double M, double k)
{
    const double x = M * M / 2;
    return std::sqrt((k + 1) * x / (x * (k - 1) + 1));
}

double L2M(double lambda, double k)
{
    const double x = lambda * lambda / (k + 1);
    return std::sqrt(2 * x / (1 - x * (k - 1)));
}

double gf_tau(double lambda, double k) { return 1 - (k - 1) * lambda * lambda / (k + 1); }

double gf_pi(double lambda, double k) { return std::pow(gf_tau(lambda, k), k / (k - 1)); }

double gf_eps(double lambda, double k) { return std::pow(gf_tau(lambda, k), 1 / (k - 1)); }

double gf_q(double lambda, double k)
{
    // (k + 1) t / 2, in the form that is exactly 1 at lambda = 1
    const double base = 1 + (k - 1) / 2 * (1 - lambda * lambda);
    return lambda * std::pow(base, 1 / (k - 1));
}

double gf_f(double lambda, double k) { return (1 + lambda * lambda) * gf_eps(lambda, k); }

double A(double k) { return std::sqrt(k) * std::pow(2 / (k + 1), (k + 1) / (2 * (k - 1))); }

double n_eff(double p1, double T1, double R1, double p2, double T2, double R2)
{
    const double lnPressures = std::log(p1 / p2);
    return lnPressures / (std::log(T2 * R2 / (T1 * R1)) + lnPressures);
}

double lambda_q(double q, double k, bool supersonic)
{
    Q_Function function(q, k);
    // The two roots lie on either side of 1; a negative flux flows back below the speed of sound.
    const Branch branch = supersonic ? Branch{1.0 - overlap, limitingLambda(k)}
                                     : Branch{-1.0 - overlap, 1.0 + overlap};
    return root(function, supersonic, branch);
}

double lambda_pi(double pi, double k, bool supersonic)
{
    PI_Function function(pi, k);
    return root(function, supersonic, {0.0, limitingLambda(k)});
}

} // namespace gasdynamics
