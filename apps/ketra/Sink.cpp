#include "Sink.h"

#include <cstdio>
#include <string>

namespace host {

void Sink::println(unsigned int channel, const char* text)
{
    print(channel, (std::string(text) + "\r\n").c_str());
}

void Sink::vprintf(unsigned int channel, const char* format, std::va_list arguments)
{
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    print(channel, text.c_str());
}

} // namespace host
