#pragma once

#include <ketra/runtime/Exception.h>

namespace util {

/// A failure of the network.
class KETRA_API NetworkException : public runtime::Exception
{
public:
    /// A failure with the text that its code has in the table, "Unknown" if it has none.
    explicit NetworkException(unsigned int code);
    /// A failure whose text is \p text instead of the table's.
    NetworkException(unsigned int code, const char* text);

    using runtime::Exception::getMessage;

private:
    static const char* getMessage(unsigned int code);
};

} // namespace util
