#pragma once

#include <ketra/export.h>

#include <string>

namespace util {

/// Helpers for strings; letters are the ASCII ones, whatever the locale.
class KETRA_API String
{
public:
    String() = delete;

    /// Index of the first \p c in \p s, -1 if there is none.
    static int indexOf(const std::string& s, char c);
    /// Index of the first occurrence of \p t in \p s, -1 if there is none.
    static int indexOf(const std::string& s, const char* t);

    /// Whether \p s begins or ends with the given text, upper and lower case being different.
    static bool startsWith(const std::string& s, const std::string& prefix);
    static bool endsWith(const std::string& s, const std::string& suffix);

    /// Change the letters of \p s in place.
    static void toLowerCase(std::string& s);
    static void toUpperCase(std::string& s);

    /// Removes all characters that are in \p chars from both ends of \p s, in place.
    static void trim(std::string& s, const std::string& chars);

    /// Replaces the first match of a POSIX extended regular expression, in place.
    ///
    /// `$1` to `$9` in \p replacement stand for the groups of the match, `$0` for all of it; a
    /// group that took no part is empty. Without a match \p s stays as it is.
    /// \throws runtime::Exception 1 if \p pattern is not a regular expression
    static void replaceFirst(std::string& s, const std::string& pattern,
                             const std::string& replacement);
};

} // namespace util
