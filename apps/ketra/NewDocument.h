#pragma once

namespace host {

/// A document of a small engine of liquid oxygen and hydrogen, with what most engines need.
extern const char* const smallDocument;

/// The same engine with every section of the format and every key, those that exclude others as
/// comments. Sections that the calculation does not read stand at their defaults.
extern const char* const fullDocument;

} // namespace host
