#include <ketra/runtime/Exception.h>

namespace runtime {

Exception::Exception(unsigned int code) : type(code) {}

Exception::Exception(unsigned int code, const char* text)
    : type(code), message(text != nullptr ? text : "")
{
}

Exception::~Exception() = default;

const char* Exception::what() const noexcept { return getMessage(); }

} // namespace runtime
