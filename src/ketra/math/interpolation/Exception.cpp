#include <ketra/math/interpolation/Exception.h>

#include <ketra/runtime/detail/MessageTable.h>

namespace math::interpolation {

namespace {

constexpr runtime::detail::Message messages[] = {
    {0, "Invalid interval or argument"},
};

} // namespace

Exception::Exception(unsigned int code) : runtime::Exception(code, getMessage(code)) {}

Exception::Exception(unsigned int code, const char* text) : runtime::Exception(code, text) {}

const char* Exception::getMessage(unsigned int code)
{
    return runtime::detail::messageOf(messages, code);
}

} // namespace math::interpolation
