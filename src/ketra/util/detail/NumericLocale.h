#pragma once

#include <locale.h>

namespace util::detail {

/// The one "C" locale object of the process; null if the platform cannot give it.
inline locale_t cLocale()
{
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    return c;
}

} // namespace util::detail

namespace util {

/// While it lives, the calling thread formats and parses numbers as in the "C" locale.
///
/// Works on the thread alone, by `uselocale`: `setlocale` would change the numbers that other
/// threads of the host print meanwhile. Nests; the locale of the thread comes back at the end.
class NumericLocale
{
public:
    NumericLocale() noexcept : previous(uselocale(detail::cLocale())) {}
    ~NumericLocale() { uselocale(previous); }
    NumericLocale(const NumericLocale&) = delete;
    NumericLocale& operator=(const NumericLocale&) = delete;

private:
    locale_t previous;
};

} // namespace util
