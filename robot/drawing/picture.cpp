#include "robot/drawing/picture.h"

#include <cairo-svg.h>
#include <fmt/format.h>

#include <cmath>
#include <memory>
#include <string>

#include "robot/base/input_error.h"
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

void expectGood(cairo_status_t status, const std::filesystem::path& file)
{
    if (status != CAIRO_STATUS_SUCCESS) {
        throw InputError(file.string(), 0,
                         fmt::format("cannot be drawn: {}", cairo_status_to_string(status)));
    }
}

}  // namespace

void writePng(const std::filesystem::path& file, const Picture& picture, double scale)
{
    const Surface surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(picture.width * scale)),
                                   static_cast<int>(std::ceil(picture.height * scale))),
        cairo_surface_destroy);
    drawOn(surface.get(), picture, scale);
    std::string bytes;
    expectGood(cairo_surface_write_to_png_stream(surface.get(), append, &bytes), file);
    writeFile(file, bytes);
}

void writeSvg(const std::filesystem::path& file, const Picture& picture)
{
    std::string bytes;
    const Surface surface(cairo_svg_surface_create_for_stream(append, &bytes, picture.width, picture.height),
                          cairo_surface_destroy);
    drawOn(surface.get(), picture, 1);
    cairo_surface_finish(surface.get());
    expectGood(cairo_surface_status(surface.get()), file);
    writeFile(file, bytes);
}

}  // namespace vemra::robot
