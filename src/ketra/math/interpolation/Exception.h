#pragma once

#include <ketra/runtime/Exception.h>

namespace math::interpolation {

/// A table could not be made or was asked outside its range: code 0.
class KETRA_API Exception : public runtime::Exception
{
public:
    /// A failure with the text that its code has in the table, "Unknown" if it has none.
    explicit Exception(unsigned int code);
    /// A failure whose text is \p text instead of the table's.
    Exception(unsigned int code, const char* text);

    using runtime::Exception::getMessage;

private:
    static const char* getMessage(unsigned int code);
};

} // namespace math::interpolation
