#include <ketra/util/NetworkException.h>

#include <ketra/runtime/detail/MessageTable.h>

namespace util {

namespace {

constexpr runtime::detail::Message messages[] = {
    {0, "Host not found"},
};

} // namespace

NetworkException::NetworkException(unsigned int code) : runtime::Exception(code, getMessage(code))
{
}

NetworkException::NetworkException(unsigned int code, const char* text)
    : runtime::Exception(code, text)
{
}

const char* NetworkException::getMessage(unsigned int code)
{
    return runtime::detail::messageOf(messages, code);
}

} // namespace util
