#pragma once

#include <string>

namespace libconfig {
class Setting;
}

namespace thermo::input::detail {

/// The settings of the group \p root as the text of a document.
///
/// The configuration library's own writer keeps 15 digits of a number, and so changes most of them;
/// here a number has as many digits as it takes to read the same number back.
/// \throws std::domain_error if a value is not a number
std::string toText(const libconfig::Setting& root);

/// \p x as a float of the document: always with a point, as an integer is of another type.
/// \throws std::domain_error if \p x is not a number
std::string toText(double x);

/// \p text as a string of the document, in quotes and with everything escaped that needs it.
std::string quoted(const char* text);

} // namespace thermo::input::detail
