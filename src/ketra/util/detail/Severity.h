#pragma once

#include <ketra/util/Logger.h>

#include <string>

namespace util::detail {

/// What stands in front of a line of a severity.
inline const char* prefixOf(Logger::Level severity)
{
    switch (severity) {
    case Logger::ERROR:
        return "error: ";
    case Logger::WARN:
        return "warning: ";
    case Logger::INFO:
        return "info: ";
    default:
        return "";
    }
}

/// The text as a sink shows it: a severity has its prefix in front and ends its line.
inline std::string shown(Logger::Level severity, const char* text)
{
    std::string line = prefixOf(severity);
    line += text;
    if (severity != Logger::REPORT && line.back() != '\n') line += '\n';
    return line;
}

} // namespace util::detail
