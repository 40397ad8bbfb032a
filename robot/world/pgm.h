#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vemra::robot {

/// A grey picture, rows from the top, values 0 (black) to max_value (white).
struct GreyImage
{
    int width = 0;
    int height = 0;
    int max_value = 255;
    std::vector<std::uint16_t> pixels;
};

/// Reads PGM, plain (P2) or raw (P5), comments and two-byte values included. At most 64 million pixels.
/// Throws InputError if the file is missing, is not PGM, ends early or holds a value above its maximum.
GreyImage readPgm(const std::filesystem::path& file);

/// The same picture as raw PGM bytes.
std::string pgmBytes(const GreyImage& image);

}  // namespace vemra::robot
