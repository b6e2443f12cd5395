#include "Literals.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

namespace host {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool isNameStart(char c) { return isLetter(c) || c == '*'; }
bool isNamePart(char c) { return isNameStart(c) || isDigit(c) || c == '-' || c == '_'; }

/// Walks over the text once; each step consumes one comment, string, name, number or other letter.
class Scanner
{
public:
    Scanner(const std::string& source, Literals& found) : text(source), literals(found) {}

    void run()
    {
        while (at < text.size()) step();
    }

private:
    char peek(size_t ahead = 0) const { return at + ahead < text.size() ? text[at + ahead] : '\0'; }

    void step()
    {
        const char c = peek();
        if (c == '#' || (c == '/' && peek(1) == '/'))
            skipLine();
        else if (c == '/' && peek(1) == '*')
            skipComment();
        else if (c == '"')
            readString();
        else if (c == '@')
            readInclude();
        else if (isNameStart(c))
            readName();
        else if (startsNumber())
            readNumber();
        else
            advance();
    }

    void advance()
    {
        if (text[at] == '\n') ++line;
        ++at;
    }

    void skipLine()
    {
        while (at < text.size() && text[at] != '\n') ++at;
    }

    void skipComment()
    {
        at += 2;
        while (at < text.size() && !(peek() == '*' && peek(1) == '/')) advance();
        at = at + 2 < text.size() ? at + 2 : text.size();
    }

    std::string readString()
    {
        std::string content;
        ++at;
        while (at < text.size() && text[at] != '"') {
            if (text[at] == '\\' && at + 1 < text.size()) ++at;
            content += text[at];
            advance();
        }
        if (at < text.size()) ++at;
        return content;
    }

    void readInclude()
    {
        const unsigned where = line;
        if (text.compare(at, 8, "@include") != 0) return advance();
        at += 8;
        while (peek() == ' ' || peek() == '\t') ++at;
        literals.includes.push_back({where, peek() == '"' ? readString() : std::string()});
    }

    void readName()
    {
        while (isNamePart(peek())) ++at;
    }

    bool startsNumber() const
    {
        const size_t sign = peek() == '-' || peek() == '+' ? 1 : 0;
        return isDigit(peek(sign)) || (peek(sign) == '.' && isDigit(peek(sign + 1)));
    }

    /// Takes every letter that may belong to a number; a sign only at the front and in an exponent.
    void readNumber()
    {
        const size_t begin = at++;
        while (isDigit(peek()) || isLetter(peek()) || peek() == '.' || isSignOfExponent(begin))
            ++at;
        literals.numbers.push_back({line, text.substr(begin, at - begin)});
    }

    bool isSignOfExponent(size_t begin) const
    {
        const bool sign = peek() == '-' || peek() == '+';
        const char before = text[at - 1];
        const bool hexadecimal = text.find_first_of("xX", begin) < at;
        return sign && (before == 'e' || before == 'E') && !hexadecimal;
    }

    const std::string& text;
    Literals& literals;
    size_t at = 0;
    unsigned line = 1;
};

std::string faultOfReal(std::string_view digits, const std::string& literal)
{
    double value = 0.0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error == std::errc::result_out_of_range)
        return literal + " is outside the range of a real number (about 1e-308 to 1e308). "
                         "Write a number within it";
    if (error != std::errc() || end != digits.data() + digits.size())
        return literal + " is not a number. Write it like 12, 12.5 or 1.25e1";
    return {};
}

std::string faultOfWhole(std::string_view digits, int base, bool negative,
                         const std::string& literal)
{
    std::uint64_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    if (error == std::errc() && end != digits.data() + digits.size())
        return literal + " is not a number. Write it like 12, 12.5 or 1.25e1";
    constexpr std::uint64_t largest = std::numeric_limits<std::int32_t>::max();
    if (error != std::errc() || value > largest + (negative ? 1 : 0))
        return literal + " is outside the range of a whole number (-2147483648 to 2147483647) and "
                         "would be read as another one. Write a smaller one, or a real number such "
                         "as 2.5e9";
    return {};
}

} // namespace

Literals::Literals(const std::string& text) { Scanner(text, *this).run(); }

std::string faultOf(const std::string& literal)
{
    std::string_view digits = literal;
    const bool negative = digits.front() == '-';
    if (negative || digits.front() == '+') digits.remove_prefix(1);
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        digits.remove_prefix(2);
        return faultOfWhole(digits, 16, false, literal);
    }
    if (digits.find_first_of(".eE") != std::string_view::npos) return faultOfReal(digits, literal);
    return faultOfWhole(digits, 10, negative, literal);
}

} // namespace host
