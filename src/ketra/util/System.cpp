#include <ketra/util/System.h>

#include <chrono>

namespace util {

namespace {

#if defined(__unix__) || defined(__APPLE__)
constexpr bool posix = true;
#else
constexpr bool posix = false;
#endif
#if defined(_WIN32)
constexpr bool windows = true;
#else
constexpr bool windows = false;
#endif
#if defined(__CYGWIN__)
constexpr bool cygwin = true;
#else
constexpr bool cygwin = false;
#endif
#if defined(__APPLE__) && defined(__MACH__)
constexpr bool macOSX = true;
#else
constexpr bool macOSX = false;
#endif
#if defined(__MINGW32__)
constexpr bool minGw32 = true;
#else
constexpr bool minGw32 = false;
#endif

} // namespace

std::int64_t System::currentTimeSecs()
{
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

bool System::isPOSIX() { return posix; }

bool System::isWindows() { return windows; }

bool System::isCygwin() { return cygwin; }

bool System::isMacOSX() { return macOSX; }

bool System::isMinGw32() { return minGw32; }

} // namespace util
