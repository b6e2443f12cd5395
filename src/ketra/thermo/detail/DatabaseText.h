#pragma once

#include <string>

namespace thermo::detail {

/// The comment lines at the head of a species file: what the reference-date codes of the records
/// mean, or, for a file of the user's, where to put records.
std::string nasa9Head(bool userFile);

/// The comment lines at the head and at the foot of a properties file.
std::string propertiesHead();
std::string propertiesFoot();

} // namespace thermo::detail
