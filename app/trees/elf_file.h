#pragma once

#include <filesystem>

namespace vemra::app {

/// Whether a shared library lacks part of what its head promises. Loading such a file would end the process
/// with a bus error. A file that is no 64-bit ELF file is not truncated in this sense: the loader refuses it.
[[nodiscard]] bool isTruncatedLibrary(const std::filesystem::path& file);

}  // namespace vemra::app
