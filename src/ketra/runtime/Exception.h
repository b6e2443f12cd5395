#pragma once

#include <ketra/export.h>

#include <exception>
#include <string>

namespace runtime {

/// Root of the exceptions of the library: a number and a text.
///
/// The number has its meaning within the concrete class; most of these have a table of texts. An
/// exception holds nothing but values and may cross threads by copy.
class KETRA_API Exception : public std::exception
{
public:
    /// An exception of the code \p code with an empty message.
    explicit Exception(unsigned int code);
    /// An exception of the code \p code that keeps a copy of \p text (null counts as empty).
    Exception(unsigned int code, const char* text);
    Exception(const Exception& other) = default;
    Exception& operator=(const Exception& other) = default;
    ~Exception() override;

    /// The code, meaningful within the concrete class.
    unsigned int getType() const { return type; }
    /// The text; valid as long as the exception, may be empty.
    const char* getMessage() const { return message.c_str(); }
    /// The same text as getMessage().
    const char* what() const noexcept override;

private:
    unsigned int type;
    std::string message;
};

} // namespace runtime
