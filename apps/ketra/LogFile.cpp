#include "LogFile.h"
#include "Failure.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace host {
namespace {

constexpr const char* names[] = {"", "error: ", "warning: ", "info: "};

} // namespace

LogFile::LogFile(const std::string& filePath, bool crlf)
    : path(filePath), lineEnds(crlf), file(filePath, std::ios::binary | std::ios::trunc)
{
    if (!file) throw Failure(INTERNAL, "cannot write " + path + ": " + std::strerror(errno));
}

void LogFile::print(unsigned int channel, const char* text)
{
    std::string line = names[channel <= INFO ? channel : 0] + std::string(text);
    if (channel != REPORT && (line.empty() || line.back() != '\n')) line += '\n';
    file << lineEnds.apply(line);
}

void LogFile::println(unsigned int channel, const char* text)
{
    print(channel, (std::string(text) + "\n").c_str());
}

void LogFile::vprintf(unsigned int channel, const char* format, std::va_list arguments)
{
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    print(channel, text.c_str());
}

void LogFile::finish()
{
    errno = 0;
    file.flush();
    if (!file)
        throw Failure(INTERNAL,
                      "cannot write " + path + ": " + std::strerror(errno != 0 ? errno : EIO));
}

} // namespace host
