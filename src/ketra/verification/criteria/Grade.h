#pragma once

#include <ketra/export.h>

/// Independent checks of finished calculations, by code that shares no sum, no cache and no matrix
/// with the solver.
namespace verification {

/// How far a result can be trusted.
enum class Grade {
    A, ///< a solution, as closely as the solver's tolerance promises
    B, ///< a solution within the limits of use, for a stated reason not as close as A
    F  ///< no solution: nothing of it may be used
};

/// 'A', 'B' or 'F'.
KETRA_API char letter(Grade grade);
/// The worse of two grades.
KETRA_API Grade worse(Grade left, Grade right);

} // namespace verification
