#pragma once

#include <libconfig.h++>

#include <memory>

namespace thermo::input::detail {

/// The document in the file \p path. Line ends that keep it from being parsed are repaired in the
/// file itself.
/// \throws Exception 0
std::unique_ptr<libconfig::Config> loadDocument(const char* path);

/// Writes the settings under \p root to the file \p path, in place of what it held.
/// \throws Exception 0
void saveDocument(const libconfig::Setting& root, const char* path);

} // namespace thermo::input::detail
