#include <ketra/thermo/detail/TextFile.h>

#include <ketra/runtime/Exception.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

namespace thermo::detail {

namespace {

constexpr std::size_t firstPiece = 1u << 16; // bytes, where a stream cannot tell its length

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view withoutLeadingSpace(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && isSpace(text[i])) ++i;
    return text.substr(i);
}

/// Passes over a plus sign, which std::from_chars does not know; "+-5" stays no number.
std::string_view withoutPlus(std::string_view text)
{
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    return text;
}

/// A value that does not fit a double: an underflow is 0, an overflow infinite.
double outOfRange(const char* first, const char* last)
{
    long double wide = 0.0L;
    if (std::from_chars(first, last, wide).ec == std::errc()) return static_cast<double>(wide);
    const std::string_view text(first, static_cast<std::size_t>(last - first));
    const std::size_t e = text.find_first_of("eE");
    const bool tiny = e != std::string_view::npos && e + 1 < text.size() && text[e + 1] == '-';
    return tiny ? 0.0 : std::numeric_limits<double>::infinity();
}

// Powers of ten that a double holds exactly.
constexpr double exactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int largestExactPower = 22;
constexpr int exactDigits = 15; // decimal digits of an integer that a double always holds

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Reads the digits at \p at into \p value, at most one more than can be exact. \returns how many.
int takeDigits(const char*& at, const char* end, std::uint64_t& value)
{
    const char* const begin = at;
    const char* const stop = end - at > exactDigits + 1 ? at + exactDigits + 1 : end;
    for (; at != stop && isDigit(*at); ++at)
        value = 10 * value + static_cast<unsigned int>(*at - '0');
    return static_cast<int>(at - begin);
}

/// The numbers that a data file is full of: up to 15 digits, and a power of ten up to 22. Both are
/// exact in a double, so that one multiplication or division gives the nearest double, the same
/// that the general conversion finds at several times the cost. \p letter, in lower case, is the
/// letter of exponents that are read. \returns false for all other texts.
bool takePlainNumber(std::string_view text, char letter, double& value)
{
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end && *at == ' ') ++at;
    const bool negative = at != end && *at == '-';
    if (negative) ++at;
    std::uint64_t digits = 0;
    int count = takeDigits(at, end, digits);
    int power = 0;
    if (at != end && *at == '.') {
        const int decimals = takeDigits(++at, end, digits);
        count += decimals;
        power = -decimals;
    }
    if (count == 0 || count > exactDigits) return false;
    if (at != end && (*at | 0x20) == letter) {
        std::uint64_t exponent = 0;
        const bool minus = ++at != end && *at == '-';
        if (at != end && (*at == '-' || *at == '+')) ++at;
        const int length = takeDigits(at, end, exponent);
        if (length == 0 || length > 3) return false;
        power += minus ? -static_cast<int>(exponent) : static_cast<int>(exponent);
    } else if (at != end && *at != ' ') {
        return false;
    }
    if (power < -largestExactPower || power > largestExactPower) return false;
    const double size = power < 0 ? static_cast<double>(digits) / exactPowers[-power]
                                  : static_cast<double>(digits) * exactPowers[power];
    value = negative ? -size : size;
    return true;
}

/// What the stream still holds as far as it can tell, 0 if it cannot.
std::size_t remaining(std::streambuf& buffer)
{
    const auto here = buffer.pubseekoff(0, std::ios::cur, std::ios::in);
    if (here < 0) return 0;
    const auto end = buffer.pubseekoff(0, std::ios::end, std::ios::in);
    buffer.pubseekpos(here, std::ios::in);
    return end > here ? static_cast<std::size_t>(end - here) : 0;
}

} // namespace

std::string readAll(std::istream& stream)
{
    std::string text;
    std::size_t length = 0;
    std::size_t piece = std::max(firstPiece, remaining(*stream.rdbuf()) + 1);
    for (;; piece *= 2) {
        text.resize(length + piece);
        const std::streamsize got = stream.rdbuf()->sgetn(
            text.data() + length, static_cast<std::streamsize>(text.size() - length));
        if (got <= 0) break;
        length += static_cast<std::size_t>(got);
        if (length < text.size()) break;
    }
    text.resize(length);
    stream.setstate(std::ios::eofbit);
    return text;
}

bool hasBareReturnsOnly(std::string_view text)
{
    return text.find('\n') == std::string_view::npos && text.find('\r') != std::string_view::npos;
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

double toNumber(std::string_view text)
{
    double value = 0.0;
    if (takePlainNumber(text, 'e', value)) return value;
    text = withoutPlus(withoutLeadingSpace(text));
    const char* const last = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), last, value);
    return result.ec == std::errc::result_out_of_range ? outOfRange(text.data(), result.ptr)
                                                       : value;
}

double number(std::string_view text)
{
    const double value = toNumber(text);
    if (!std::isfinite(value)) throw runtime::Exception(1);
    return value;
}

double fortranNumber(std::string_view text)
{
    double value = 0.0;
    if (takePlainNumber(text, 'd', value)) return value;
    constexpr std::size_t widest = 32; // characters; a field of coefficients has 16
    char copy[widest];
    text = text.substr(0, widest);
    std::transform(text.begin(), text.end(), copy,
                   [](char c) { return c == 'D' || c == 'd' ? 'E' : c; });
    return number(std::string_view(copy, text.size()));
}

bool takeInteger(std::string_view& text, int& value)
{
    const std::string_view digits = withoutPlus(withoutLeadingSpace(text));
    const char* const last = digits.data() + digits.size();
    const std::from_chars_result result = std::from_chars(digits.data(), last, value);
    if (result.ec != std::errc()) return false;
    text = std::string_view(result.ptr, static_cast<std::size_t>(last - result.ptr));
    return true;
}

int integer(std::string_view text)
{
    text = withoutPlus(withoutLeadingSpace(text));
    int value = 0;
    const std::from_chars_result result =
        std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) throw runtime::Exception(1);
    return value;
}

} // namespace thermo::detail
