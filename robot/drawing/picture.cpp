#include "robot/drawing/picture.h"

#include <cairo-svg.h>
#include <fmt/format.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>

#include "robot/base/output_file.h"

namespace vemra::robot {
namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

cairo_status_t append(void* bytes, const unsigned char* data, unsigned int length)
{
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

void drawOn(cairo_surface_t* surface, const Picture& picture, double scale)
{
    const Context context(cairo_create(surface), cairo_destroy);
    cairo_scale(context.get(), scale, scale);
    picture.draw(context.get());
}

// With a surface in memory that can only be a lack of it.
void expectGood(cairo_status_t status)
{
    if (status != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error(
            fmt::format("a picture cannot be drawn: {}", cairo_status_to_string(status)));
    }
}

}  // namespace

std::string pngBytes(const Picture& picture, double scale)
{
    const Surface surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(picture.width * scale)),
                                   static_cast<int>(std::ceil(picture.height * scale))),
        cairo_surface_destroy);
    drawOn(surface.get(), picture, scale);
    std::string bytes;
    expectGood(cairo_surface_write_to_png_stream(surface.get(), append, &bytes));
    return bytes;
}

void writePng(const std::filesystem::path& file, const Picture& picture, double scale)
{
    writeFile(file, pngBytes(picture, scale));
}

std::string svgBytes(const Picture& picture)
{
    std::string bytes;
    const Surface surface(cairo_svg_surface_create_for_stream(append, &bytes, picture.width, picture.height),
                          cairo_surface_destroy);
    drawOn(surface.get(), picture, 1);
    cairo_surface_finish(surface.get());
    expectGood(cairo_surface_status(surface.get()));
    return bytes;
}

void writeSvg(const std::filesystem::path& file, const Picture& picture)
{
    writeFile(file, svgBytes(picture));
}

}  // namespace vemra::robot
