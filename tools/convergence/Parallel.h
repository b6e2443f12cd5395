#pragma once

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace convergence {

/// Calls \p body with every index below \p count on \p threads threads. A body writes only what
/// belongs to its own index, so that the result does not depend on the threads.
template <class Body> void forEach(std::size_t count, unsigned threads, Body body)
{
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < threads; ++i)
        workers.emplace_back([&] {
            for (std::size_t k = next++; k < count; k = next++) body(k);
        });
    for (std::thread& worker : workers) worker.join();
}

} // namespace convergence
