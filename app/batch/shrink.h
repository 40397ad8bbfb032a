#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace vemra::app {

/// Plays the home of a seed with less and less furniture, for as long as its clean does not come out well,
/// and prints what is left and how to play it. Returns the exit code. Throws UserError where it comes out
/// well as it is.
int shrink(std::uint64_t seed, const std::optional<std::filesystem::path>& keep,
           const std::filesystem::path& plugin);

}  // namespace vemra::app
