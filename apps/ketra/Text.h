#pragma once

#include <string>

namespace host {

/// A number as a document may state it, with a point or an exponent, as short as it can be.
std::string realText(double value);

/// A number to six digits, as short as it can be.
std::string plainText(double value);

/// The text with the letters A to Z made small.
std::string lowered(std::string text);

} // namespace host
