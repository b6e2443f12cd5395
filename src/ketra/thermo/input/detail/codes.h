#pragma once

namespace thermo::input::codes {

// Types of `thermo::input::Exception` as the sections throw them.
inline constexpr unsigned int notLoaded = 0;
inline constexpr unsigned int incorrectVersion = 1;
inline constexpr unsigned int nullPointer = 2;
inline constexpr unsigned int notFound = 3;
inline constexpr unsigned int unknownWord = 4;
inline constexpr unsigned int invalidState = 7;

} // namespace thermo::input::codes
