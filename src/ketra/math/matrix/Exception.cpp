#include <ketra/math/matrix/Exception.h>

#include <ketra/runtime/detail/MessageTable.h>

namespace math::matrix {

namespace {

constexpr runtime::detail::Message messages[] = {
    {0, "Invalid matrix index"}, {1, "Invalid dimensions"}, {2, "Zero row"}, {3, "Singular"},
    {4, "No convergence"},
};

} // namespace

Exception::Exception(unsigned int code) : runtime::Exception(code, getMessage(code)) {}

Exception::Exception(unsigned int code, const char* text) : runtime::Exception(code, text) {}

const char* Exception::getMessage(unsigned int code)
{
    return runtime::detail::messageOf(messages, code);
}

} // namespace math::matrix
