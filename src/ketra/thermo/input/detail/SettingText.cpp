#include <ketra/thermo/input/detail/SettingText.h>

#include <libconfig.h++>

#include <charconv>
#include <cmath>
#include <cstring>
#include <stdexcept>

using libconfig::Setting;

namespace thermo::input::detail {

namespace {

void append(std::string& text, const Setting& setting, std::size_t depth);

std::string indentation(std::size_t depth) { return std::string(2 * depth, ' '); }

void appendMembers(std::string& text, const Setting& group, std::size_t depth)
{
    for (int i = 0; i < group.getLength(); ++i) {
        const Setting& member = group[i];
        text.append(indentation(depth)).append(member.getName());
        if (member.isGroup())
            text.append(" :\n").append(indentation(depth));
        else
            text.append(" = ");
        append(text, member, depth);
        text.append(";\n");
    }
}

void appendGroup(std::string& text, const Setting& group, std::size_t depth)
{
    text.append("{\n");
    appendMembers(text, group, depth + 1);
    text.append(indentation(depth)).append("}");
}

void appendElements(std::string& text, const Setting& list, std::size_t depth)
{
    const bool array = list.isArray();
    text.append(array ? "[" : "(");
    for (int i = 0; i < list.getLength(); ++i) {
        text.append(i == 0 ? "\n" : ",\n").append(indentation(depth + 1));
        append(text, list[i], depth + 1);
    }
    if (list.getLength() > 0) text.append("\n").append(indentation(depth));
    text.append(array ? "]" : ")");
}

void append(std::string& text, const Setting& setting, std::size_t depth)
{
    switch (setting.getType()) {
    case Setting::TypeGroup:
        appendGroup(text, setting, depth);
        break;
    case Setting::TypeArray:
    case Setting::TypeList:
        appendElements(text, setting, depth);
        break;
    case Setting::TypeInt:
        text.append(std::to_string(static_cast<int>(setting)));
        break;
    case Setting::TypeFloat:
        text.append(toText(static_cast<double>(setting)));
        break;
    case Setting::TypeBoolean:
        text.append(static_cast<bool>(setting) ? "true" : "false");
        break;
    case Setting::TypeString:
        text.append(quoted(setting.c_str()));
        break;
    default:
        throw std::domain_error("Unknown type of setting " + setting.getPath());
    }
}

} // namespace

std::string toText(const Setting& root)
{
    std::string text;
    appendMembers(text, root, 0);
    return text;
}

std::string toText(double x)
{
    if (std::isnan(x)) throw std::domain_error("A value of the configuration is not a number");
    // The format has no word for infinity, but a number that overflows is read as one.
    if (std::isinf(x)) return x > 0.0 ? "1.0e+999" : "-1.0e+999";

    char buffer[32]; // the longest shortest form is -2.2250738585072014e-308
    const std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, x);
    std::string text(buffer, result.ptr);
    if (text.find('.') == std::string::npos)
        text.insert(std::min(text.find('e'), text.size()), ".0");
    return text;
}

std::string quoted(const char* text)
{
    constexpr const char* hexadecimal = "0123456789ABCDEF";
    constexpr const char* special = "\"\\\n\r\t\f";
    constexpr const char* letters = "\"\\nrtf";

    std::string result = "\"";
    for (const char* c = text; *c != '\0'; ++c) {
        const auto code = static_cast<unsigned char>(*c);
        if (const char* found = std::strchr(special, *c))
            result.append("\\").append(1, letters[found - special]);
        else if (code < 0x20 || code == 0x7F)
            result.append("\\x")
                .append(1, hexadecimal[code / 16])
                .append(1, hexadecimal[code % 16]);
        else
            result.append(1, *c);
    }
    return result.append("\"");
}

} // namespace thermo::input::detail
