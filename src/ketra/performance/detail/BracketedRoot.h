#pragma once

#include <functional>

namespace performance::detail {

/// A root of an expensive function between two positions at which its signs differ, by Brent's
/// method [Brent1973]: inverse interpolation, and bisection where that does not pay. A function
/// that jumps across zero has no root; the bracket closes around the jump then.
class BracketedRoot
{
public:
    struct Point {
        double x;
        double value; // of the function; may be infinite at an end
    };

    /// The signs of the two values differ. The position evaluated last is the one that stands in
    /// whatever \p newFunction sets.
    BracketedRoot(std::function<double(double)> newFunction, Point a, Point b);

    /// Evaluates until a value is smaller than \p tolerance or the bracket narrower than \p width.
    /// \returns whether there is such a value; it is that of the last evaluation
    bool close(double tolerance, double width);
    /// The end of the bracket with the smaller value.
    Point best() const;
    /// The other end.
    Point other() const;

private:
    double nextPosition() const;
    void take(Point point);

    std::function<double(double)> function;
    Point present;   // the better end
    Point opposite;  // of the other sign
    Point former;    // the end before `present`
    double lastStep; // of the position, and the one before it
    double stepBefore;
};

} // namespace performance::detail
