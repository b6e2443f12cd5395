#pragma once

#include <string>
#include <vector>

namespace host {

/// A number as it stands in the text of a document.
struct NumberLiteral {
    unsigned line; ///< from 1
    std::string text;
};

/// A line `@include "file"` of a document.
struct IncludeLine {
    unsigned line;
    std::string file;
};

/// The numbers and the included files of a document, found by reading the text as the
/// configuration library does: comments and strings are passed over. The library itself turns a
/// number that does not fit into another one without a word, so the text is the only witness.
struct Literals {
    explicit Literals(const std::string& text);

    std::vector<NumberLiteral> numbers;
    std::vector<IncludeLine> includes;
};

/// What is wrong with a number, and how to mend it; empty if the library reads it as it is written.
std::string faultOf(const std::string& literal);

} // namespace host
