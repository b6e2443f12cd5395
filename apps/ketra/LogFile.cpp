#include "LogFile.h"
#include "Failure.h"

#include <cerrno>
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

void LogFile::finish()
{
    errno = 0;
    file.flush();
    if (!file)
        throw Failure(INTERNAL,
                      "cannot write " + path + ": " + std::strerror(errno != 0 ? errno : EIO));
}

} // namespace host
