#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>

namespace util::detail {

/// Text on its way from the threads that log to the one that writes.
class TextQueue
{
public:
    /// \param limit characters that wait at most before the writer is woken at once
    explicit TextQueue(std::size_t limit) : size(limit) {}

    void put(const std::string& text)
    {
        if (hasFailed()) return;
        {
            const std::lock_guard lock(mutex);
            pending += text;
        }
        changed.notify_one();
    }

    /// Waits for text and takes all of it. \returns false when the queue is closed and empty.
    bool take(std::string& batch)
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return closed || !pending.empty(); });
        // Lines come in bursts: a short wait gathers them into one write.
        changed.wait_for(lock, std::chrono::milliseconds(50), [this] { return isUrgent(); });
        hurried = false;
        batch.clear();
        batch.swap(pending);
        return !batch.empty();
    }

    /// Sends what is waiting to the writer at once.
    void hurry()
    {
        {
            const std::lock_guard lock(mutex);
            hurried = true;
        }
        changed.notify_one();
    }
    /// No more text will come.
    void close()
    {
        {
            const std::lock_guard lock(mutex);
            closed = true;
        }
        changed.notify_one();
    }

    /// Drops all text from now on: there is no file to write it to.
    void fail() { failed = true; }
    bool hasFailed() const { return failed; }

private:
    bool isUrgent() const { return closed || hurried || pending.size() >= size; }

    std::mutex mutex; // guards all but `failed`
    std::condition_variable changed;
    std::string pending;
    std::size_t size; // characters
    bool closed = false;
    bool hurried = false;
    std::atomic<bool> failed{false};
};

} // namespace util::detail
