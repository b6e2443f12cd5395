#pragma once

#include <vector>

namespace reaction::detail {

/// Solves a square system by elimination with full pivoting on equilibrated rows and columns; what
/// the system leaves open is 0, and equations that contradict each other are left out: a caller who
/// minds looks at the residual. \p A (row by row) and \p b are overwritten.
void solveWhatIsDetermined(std::vector<double>& A, std::vector<double>& b, std::vector<double>& x);

} // namespace reaction::detail
