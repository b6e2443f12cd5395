#pragma once

#include <ketra/export.h>

#include <memory>

namespace math::interpolation {
class Interpolation2D;
} // namespace math::interpolation

namespace performance {
class TheoreticalPerformance;
} // namespace performance

namespace performance::efficiency {

/// What of the ideal performance a real engine reaches: one factor for each kind of loss, 1 meaning
/// none. A factor is the user's, of the document's efficiency factors, or comes from a correlation
/// over a built-in table.
///
/// The object holds no results: every read-out reads the present ones of the performance, which
/// must have a chamber and an exit section. Where they lack, the factors that need them throw
/// thermo::Exception 0. Any argument of a table is limited to its axes. An object belongs to the
/// thread of its performance.
class KETRA_API CorrectionFactors
{
public:
    /// \p performance is borrowed and must outlive the object.
    explicit CorrectionFactors(TheoreticalPerformance* performance);

    CorrectionFactors(const CorrectionFactors&) = delete;
    CorrectionFactors& operator=(const CorrectionFactors&) = delete;
    virtual ~CorrectionFactors();

    /// Completeness of the reaction: the user's, or a correlation over the oxidizer excess
    /// coefficient, the class of the products (with CO, with N2, with neither) and the chamber
    /// pressure, whose loss ends at some 16.3 MPa. Without a propellant the coefficient is 0.8.
    double getReactionEfficiency() const;
    /// Another name of `getReactionEfficiency`.
    double getChamberEfficiency() const { return getReactionEfficiency(); }

    /// The flow leaves the nozzle at an angle. For a cone of half angle a, (1 + cos a)/2 [Sutton];
    /// otherwise that of a bell nozzle of the stated length, in percent, or of 80 %. 1 if the user
    /// gives the efficiency of the whole nozzle.
    double getDivergenceEfficiency() const;
    /// That of a bell nozzle by its length, percent, and its area ratio.
    double getDivergenceEfficiency(double length, double areaRatio) const;

    /// Friction at the wall of the nozzle. 1 if the user gives the efficiency of the whole nozzle.
    double getFrictionEfficiency() const;
    /// The same by the area ratio and by \p y, the second axis of the correlation, from 0 to 16;
    /// the operation without arguments reads it at 9.
    double getFrictionEfficiency(double areaRatio, double y) const;

    /// Particles lag behind the gas in velocity and temperature: 1 without condensed products in
    /// the exit section, or in the freezing section of a frozen nozzle.
    double getMultiphaseEfficiency() const;

    /// All losses of the nozzle: the user's, or the product of the three.
    double getNozzleEfficiency() const;
    /// Chamber and nozzle.
    double getOverallEfficiency() const;

private:
    double productClass() const;

    TheoreticalPerformance* performance; // not owned
    std::unique_ptr<math::interpolation::Interpolation2D> friction;
    std::unique_ptr<math::interpolation::Interpolation2D> reaction;
    std::unique_ptr<math::interpolation::Interpolation2D> divergence;
};

} // namespace performance::efficiency
