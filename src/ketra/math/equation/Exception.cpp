#include <ketra/math/equation/Exception.h>

#include <ketra/runtime/detail/MessageTable.h>

namespace math::equation {

namespace {

constexpr runtime::detail::Message messages[] = {
    {0, "Invalid interval"},
    {1, "Iteration count exceeded"},
    {2, "Position unchanged"},
};

} // namespace

Exception::Exception(unsigned int code) : runtime::Exception(code, getMessage(code)) {}

Exception::Exception(unsigned int code, const char* text) : runtime::Exception(code, text) {}

const char* Exception::getMessage(unsigned int code)
{
    return runtime::detail::messageOf(messages, code);
}

} // namespace math::equation
