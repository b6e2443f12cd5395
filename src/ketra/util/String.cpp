#include <ketra/util/String.h>

#include <ketra/runtime/Exception.h>
#include <ketra/util/detail/NumericLocale.h>

#include <array>

#include <regex.h>

namespace util {

namespace {

constexpr std::size_t groupLimit = 10; // the whole match and $1 to $9

using Match = std::array<regmatch_t, groupLimit>;

/// A compiled POSIX extended regular expression.
///
/// <regex.h> and not std::regex: the latter recurses once a character and overflows the stack on
/// long lines.
class Regex
{
public:
    explicit Regex(const std::string& pattern)
    {
        if (regcomp(&compiled, pattern.c_str(), REG_EXTENDED) != 0)
            throw runtime::Exception(1, "Invalid regular expression");
    }
    ~Regex() { regfree(&compiled); }
    Regex(const Regex&) = delete;
    Regex& operator=(const Regex&) = delete;

    bool search(const std::string& s, Match& match) const
    {
        // REG_STARTEND bounds the text by its length, so that a zero byte does not end it.
        match[0].rm_so = 0;
        match[0].rm_eo = static_cast<regoff_t>(s.size());
        return regexec(&compiled, s.data(), match.size(), match.data(), REG_STARTEND) == 0;
    }

private:
    regex_t compiled;
};

std::string group(const std::string& s, const regmatch_t& span)
{
    if (span.rm_so < 0) return {};
    return s.substr(static_cast<std::size_t>(span.rm_so),
                    static_cast<std::size_t>(span.rm_eo - span.rm_so));
}

std::string expand(const std::string& replacement, const std::string& s, const Match& match)
{
    std::string text;
    for (std::size_t i = 0; i < replacement.size(); ++i) {
        const char next = i + 1 < replacement.size() ? replacement[i + 1] : '\0';
        if (replacement[i] == '$' && next >= '0' && next <= '9') {
            text += group(s, match[static_cast<std::size_t>(next - '0')]);
            ++i;
        } else {
            text += replacement[i];
        }
    }
    return text;
}

} // namespace

int String::indexOf(const std::string& s, char c)
{
    const std::size_t i = s.find(c);
    return i == std::string::npos ? -1 : static_cast<int>(i);
}

int String::indexOf(const std::string& s, const char* t)
{
    const std::size_t i = t != nullptr ? s.find(t) : std::string::npos;
    return i == std::string::npos ? -1 : static_cast<int>(i);
}

bool String::startsWith(const std::string& s, const std::string& prefix)
{
    return s.starts_with(prefix);
}

bool String::endsWith(const std::string& s, const std::string& suffix)
{
    return s.ends_with(suffix);
}

void String::toLowerCase(std::string& s)
{
    for (char& c : s)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
}

void String::toUpperCase(std::string& s)
{
    for (char& c : s)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
}

void String::trim(std::string& s, const std::string& chars)
{
    s.erase(s.find_last_not_of(chars) + 1);
    s.erase(0, s.find_first_not_of(chars));
}

void String::replaceFirst(std::string& s, const std::string& pattern,
                          const std::string& replacement)
{
    // In the "C" locale a point matches any byte, also one that is no character of the locale.
    const NumericLocale bytes;
    const Regex regex(pattern);
    Match match;
    if (!regex.search(s, match)) return;
    const std::string text = expand(replacement, s, match);
    s.replace(static_cast<std::size_t>(match[0].rm_so),
              static_cast<std::size_t>(match[0].rm_eo - match[0].rm_so), text);
}

} // namespace util
