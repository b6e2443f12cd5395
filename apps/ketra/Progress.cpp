#include "Progress.h"
#include "Output.h"

#include <chrono>
#include <system_error>

#include <unistd.h>

namespace host {

Progress::Progress(const std::string& shown) : activity(shown)
{
    if (::isatty(STDERR_FILENO) == 0) return;
    try {
        clock = std::thread(&Progress::show, this);
    } catch (const std::system_error&) {
        // Without a thread to spare the work goes on unseen.
    }
}

Progress::~Progress()
{
    if (!clock.joinable()) return;
    {
        const std::lock_guard lock(mutex);
        done = true;
    }
    wake.notify_one();
    clock.join();
}

void Progress::show()
{
    std::size_t width = 0;
    std::unique_lock lock(mutex);
    for (int seconds = 0; !done; ++seconds) {
        const std::string line = activity + ", " + std::to_string(seconds) + " s";
        width = line.size();
        writeToStandardError("\r" + line);
        wake.wait_for(lock, std::chrono::seconds(1), [this] { return done; });
    }
    writeToStandardError("\r" + std::string(width, ' ') + "\r");
}

} // namespace host
