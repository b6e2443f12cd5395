#pragma once

#include <ketra/export.h>

#include <functional>

namespace util::concurrent {

/// Calls \p body with every index from \p begin up to but excluding \p end, the calls spread over
/// the threads of the machine in chunks of the range, and returns when all are done. A body writes
/// only what belongs to its own index, so that the result does not depend on the threads.
///
/// A failed call stops no other one; of several failures the one of the lowest index is thrown at
/// the end.
KETRA_API void parallelFor(int begin, int end, const std::function<void(int)>& body);

} // namespace util::concurrent
