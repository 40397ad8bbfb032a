#pragma once

#include <cairo.h>

#include <filesystem>
#include <functional>
#include <string>

namespace vemra::robot {

/// Something that can be drawn: its size in points and how. One drawing makes the pixels and the vectors.
struct Picture
{
    double width = 0;
    double height = 0;
    std::function<void(cairo_t*)> draw;
};

[[nodiscard]] std::string pngBytes(const Picture& picture, double scale = 1);
[[nodiscard]] std::string svgBytes(const Picture& picture);

/// Write the whole file or none. scale is pixels a point. Throw InputError if the file cannot be written, and
/// std::runtime_error if there is no memory to draw in.
void writePng(const std::filesystem::path& file, const Picture& picture, double scale = 1);
void writeSvg(const std::filesystem::path& file, const Picture& picture);

}  // namespace vemra::robot
