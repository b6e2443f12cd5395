#pragma once

#include "DataText.h"
#include "Findings.h"

namespace host {

/// Looks for faults of a PROPEP file: ingredients that the library drops or reads otherwise than
/// they are meant. \returns the number of ingredients that it keeps
size_t lintPropep(const DataText& text, Findings& findings);

} // namespace host
