#pragma once

#include <ketra/export.h>

namespace util {

/// Something that can be run, on a thread or without one.
class KETRA_API Runnable
{
public:
    virtual ~Runnable();
    virtual void run() = 0;

protected:
    Runnable() = default;
    Runnable(const Runnable&) = default;
    Runnable& operator=(const Runnable&) = default;
};

} // namespace util
