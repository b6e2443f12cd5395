#pragma once

#include "DataText.h"

#include <optional>

namespace host {

/// What a file of species data holds.
enum class DataKind { SPECIES, PROPERTIES, TRANSPORT, PROPEP };

/// "species file" and the like.
const char* nameOf(DataKind kind);

/// What a file holds, by its content; nothing if it is none of the four.
std::optional<DataKind> recognise(const DataText& text);

} // namespace host
