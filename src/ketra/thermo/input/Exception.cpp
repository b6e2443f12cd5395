#include <ketra/thermo/input/Exception.h>

#include <ketra/runtime/detail/MessageTable.h>

namespace thermo::input {

namespace {

constexpr runtime::detail::Message messages[] = {
    // 4 is thrown for an unknown unit and reads "Unknown": the log line before it has the detail.
    {0, "Could not load configuration file"},
    {1, "Incorrect version"},
    {2, "NULL pointer"},
    {3, "Data not found"},
    {6, "Index out of bounds"},
    {7, "Invalid state"},
};

} // namespace

Exception::Exception(unsigned int code) : runtime::Exception(code, getMessage(code)) {}

Exception::Exception(unsigned int code, const char* text) : runtime::Exception(code, text) {}

const char* Exception::getMessage(unsigned int code)
{
    return runtime::detail::messageOf(messages, code);
}

} // namespace thermo::input
