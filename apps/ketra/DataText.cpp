#include "DataText.h"
#include "Failure.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace host {
namespace {

constexpr const char* blanks = " \t\r\n";

} // namespace

DataText::DataText(const std::string& dataFile) : file(dataFile)
{
    std::ifstream stream(file, std::ios::binary);
    // A folder can be opened, but nothing can be read from it.
    stream.peek();
    if (!stream.is_open() || stream.bad()) throw Failure(DATA, file + ": the file cannot be read");
    text.assign(std::istreambuf_iterator<char>(stream), {});
    std::string_view rest = text;
    while (!rest.empty()) {
        const size_t end = rest.find('\n');
        lines.push_back(rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
}

std::string_view columnsOf(std::string_view line, size_t from, size_t to)
{
    return from < line.size() ? line.substr(from, to - from) : std::string_view();
}

std::string trimmedText(std::string_view text)
{
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(blanks) + 1 - first));
}

bool isBlank(std::string_view text)
{
    return text.find_first_not_of(blanks) == std::string_view::npos;
}

std::optional<double> numberIn(std::string_view field)
{
    std::string number = trimmedText(field);
    std::replace_if(
        number.begin(), number.end(), [](char c) { return c == 'D' || c == 'd'; }, 'E');
    if (number.size() > 1 && number[0] == '+' && number[1] != '-') number.erase(0, 1);
    double value = 0.0;
    const char* const end = number.data() + number.size();
    const auto [last, fault] = std::from_chars(number.data(), end, value);
    if (number.empty() || fault != std::errc() || last != end || !std::isfinite(value)) return {};
    return value;
}

double leadingNumber(std::string_view field)
{
    return std::strtod(std::string(field).c_str(), nullptr);
}

std::optional<int> digitAt(std::string_view line, size_t place)
{
    if (place >= line.size() || line[place] < '0' || line[place] > '9') return {};
    return line[place] - '0';
}

} // namespace host
