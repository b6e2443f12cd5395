#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace host {

/// A line on standard error with what is going on and for how long already, as long as the object
/// lives; it is wiped at the end. Nothing is shown unless standard error is a terminal.
class Progress
{
public:
    explicit Progress(const std::string& activity);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

private:
    void show();

    std::string activity;
    std::mutex mutex;
    std::condition_variable wake;
    bool done = false; // guarded by the mutex
    std::thread clock; // not joinable where there is no terminal
};

} // namespace host
