#pragma once

#include <filesystem>
#include <string_view>

namespace vemra::robot {

/// A file that comes with the program, as "homes/flat/flat.yaml": from share/vemra beside the folder of the
/// executable where that exists, or else from the sources that the program was built of.
[[nodiscard]] std::filesystem::path sampleFile(std::string_view name);

}  // namespace vemra::robot
