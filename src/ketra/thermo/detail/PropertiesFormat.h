#pragma once

#include <string>

namespace thermo::detail {

inline constexpr std::size_t propertiesWidth = 120; // characters of the comment lines

/// The line behind each table of a properties file: "!" and asterisks over the whole width.
inline std::string propertiesRule() { return '!' + std::string(propertiesWidth - 1, '*') + '\n'; }

} // namespace thermo::detail
