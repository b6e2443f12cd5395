#pragma once

#include <ketra/export.h>

#include <mutex>

namespace util::concurrent {

/// A stretch of code that one thread at a time may be in; the same thread may enter again.
class KETRA_API CriticalSection
{
public:
    /// Is inside the section while it lives.
    class Guard
    {
    public:
        explicit Guard(CriticalSection& entered) : section(entered) { section.enter(); }
        ~Guard() { section.leave(); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        CriticalSection& section;
    };

    CriticalSection();
    virtual ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void enter();
    /// Leaves the section once; each enter() needs its leave().
    void leave();

private:
    std::recursive_mutex section;
};

} // namespace util::concurrent
