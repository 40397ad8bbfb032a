#pragma once

#include <filesystem>
#include <string_view>

namespace vemra::robot {

/// Writes a whole file or nothing: the bytes go to a file beside it that takes its name at the end. Throws
/// InputError if that cannot be done.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

}  // namespace vemra::robot
