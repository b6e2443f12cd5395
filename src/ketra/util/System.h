#pragma once

#include <ketra/export.h>

#include <cstdint>

namespace util {

/// The clock, and the platform the library was built for.
class KETRA_API System
{
public:
    System() = delete;

    /// Seconds since 1970-01-01 00:00 UTC.
    static std::int64_t currentTimeSecs();

    static bool isPOSIX();
    static bool isWindows();
    static bool isCygwin();
    static bool isMacOSX();
    static bool isMinGw32();
};

} // namespace util
