#pragma once

#include "ReportLogger.h"

namespace host {

/// Holds the library's warnings and errors back while it works, and prints them when it is known
/// what came of it: as errors, unless `recovered` was called.
class HeldMessages
{
public:
    explicit HeldMessages(ReportLogger& heldLogger) : logger(heldLogger) { logger.hold(); }
    HeldMessages(const HeldMessages&) = delete;
    HeldMessages& operator=(const HeldMessages&) = delete;
    ~HeldMessages() { logger.release(good); }

    /// What was reported as an error did no harm.
    void recovered() { good = true; }
    /// Forgets the messages so far, unless the user asked for all of them.
    void dismiss() { logger.dismiss(); }
    /// The last of the messages so far that has one of these wordings; empty if there is none.
    std::string latestWith(const std::vector<std::string>& wordings) const
    {
        return logger.latestWith(wordings);
    }

private:
    ReportLogger& logger;
    bool good = false;
};

} // namespace host
