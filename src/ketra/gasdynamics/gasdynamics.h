#pragma once

#include <ketra/gasdynamics/PI_Function.h>
#include <ketra/gasdynamics/Q_Function.h>

/// The isentropic relations of a perfect gas in one dimension [Zucrow], written in the reduced
/// velocity lambda: the velocity over the critical speed of sound.
///
/// In all of them \p k is the isentropic exponent, and t = 1 - (k - 1) lambda^2 / (k + 1) the ratio
/// of static to stagnation temperature. No function checks its arguments: k = 1 divides by zero,
/// and beyond the limiting velocity, lambda^2 = (k + 1) / (k - 1), t is negative and its powers
/// are not numbers.
namespace gasdynamics {

/// Reduced velocity at the Mach number \p M.
KETRA_API double M2L(double M, double k);
/// Mach number at the reduced velocity \p lambda; infinite at the limiting velocity.
KETRA_API double L2M(double lambda, double k);

/// Temperature ratio T / T0 = t.
KETRA_API double gf_tau(double lambda, double k);
/// Pressure ratio p / p0 = t^(k / (k - 1)).
KETRA_API double gf_pi(double lambda, double k);
/// Density ratio rho / rho0 = t^(1 / (k - 1)).
KETRA_API double gf_eps(double lambda, double k);
/// Reduced mass flux, the area ratio A* / A = lambda ((k + 1) t / 2)^(1 / (k - 1)); exactly 1 at
/// lambda = 1.
KETRA_API double gf_q(double lambda, double k);
/// Impulse function (1 + lambda^2) t^(1 / (k - 1)).
KETRA_API double gf_f(double lambda, double k);

/// The factor of the critical flow, sqrt(k) (2 / (k + 1))^((k + 1) / (2 (k - 1))): the critical
/// mass flux is A(k) p0 / sqrt(R T0).
KETRA_API double A(double k);

/// Exponent n of the polytropic change, p / rho^n = const, between two states of an ideal gas given
/// by pressure, temperature and gas constant, each pair in any one unit.
KETRA_API double n_eff(double p1, double T1, double R1, double p2, double T2, double R2);

/// The reduced velocity at which gf_q is \p q: the one above 1 if \p supersonic, else that below.
/// \throws math::equation::Exception when none is found, as for \p q above 1
KETRA_API double lambda_q(double q, double k, bool supersonic);
/// The reduced velocity at which gf_pi is \p pi; \p supersonic only tells where to start from.
/// \throws math::equation::Exception when none is found, as for \p pi above 1 or below 0
KETRA_API double lambda_pi(double pi, double k, bool supersonic);

} // namespace gasdynamics
