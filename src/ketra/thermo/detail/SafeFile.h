#pragma once

#include <string>
#include <string_view>

namespace thermo::detail {

/// The name under which the old content of a file is kept: a "~" in front of the first point of
/// the file's name that another character follows, or behind a name without such a point. Points
/// in the names of folders do not count.
std::string backupName(const std::string& path);

/// Puts \p text into the file \p path, all or nothing: the text goes to a new file in the same
/// folder and to the disk first; then the old file, if there is one, gets its backup name and the
/// new one takes its place. \returns false if any step failed; the old file then stands as it was.
bool replaceFile(const std::string& path, std::string_view text);

} // namespace thermo::detail
