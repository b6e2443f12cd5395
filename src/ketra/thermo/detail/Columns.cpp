#include <ketra/thermo/detail/Columns.h>

#include <ketra/runtime/Exception.h>
#include <ketra/util/Log.h>
#include <ketra/util/detail/Format.h>

#include <algorithm>
#include <cstdarg>
#include <string_view>

namespace thermo::detail {

void Columns::text(std::size_t width, const std::string& value)
{
    // A control character would end the line early or shift its columns.
    const auto control = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
    if (std::any_of(value.begin(), value.end(), control)) refuse("a text", value);
    const std::size_t length = std::min(width, value.size());
    out.append(value, 0, length).append(width - length, ' ');
}

void Columns::number(std::size_t width, std::size_t filled, const char* what, const char* format,
                     ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const std::string value = util::detail::vformat(format, arguments);
    va_end(arguments);
    // What is not finite prints as "inf" or "nan", in the case of the format's letter.
    if (value.size() > width || value.find_first_of("nN") != std::string::npos) refuse(what, value);
    out += value;
    if (value.size() < filled) out.append(filled - value.size(), ' ');
}

void Columns::endLine(std::size_t width)
{
    const std::size_t length = out.size() - begin;
    if (length < width) out.append(width - length, ' ');
    out += '\n';
    begin = out.size();
}

void Columns::refuse(const char* what, const std::string& value) const
{
    util::Log::errorf("ROOT",
                      "Database: could not write species %s: %s does not fit its column: %s\n",
                      species.c_str(), what, value.c_str());
    throw runtime::Exception(0);
}

void appendLine(std::string& text, const char* line, std::size_t width)
{
    const std::string_view content(line);
    const auto continuation = [](char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; };
    const std::size_t characters =
        content.size() -
        static_cast<std::size_t>(std::count_if(content.begin(), content.end(), continuation));
    text += content;
    if (characters < width) text.append(width - characters, ' ');
    text += '\n';
}

} // namespace thermo::detail
