#pragma once

namespace report {

// Bits of the flags of all print and printResults functions that concern the whole report.
inline constexpr unsigned englishUnits = 0x80;         // US customary units
inline constexpr unsigned transportProperties = 0x100; // with the transport block

} // namespace report
