#pragma once

#include <string>

namespace thermo::input::detail {

/// The text of the document in the file \p path.
///
/// A text that the parser cannot cope with is refused here: one that is larger than any document,
/// one with a group of so many settings that the parser, which compares each new key with all
/// before it, would not come back in reasonable time, and one that includes a folder.
/// \throws std::runtime_error
std::string readSource(const std::string& path);

/// Puts \p text in place of what the file \p path holds. A regular file is replaced in one step:
/// whoever reads it meanwhile, and whatever fails, finds the old text or the new one.
/// \returns false if the file cannot be opened for writing
/// \throws std::runtime_error if the text cannot be written
bool replaceFile(const std::string& path, const std::string& text);

} // namespace thermo::input::detail
