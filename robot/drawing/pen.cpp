#include "robot/drawing/pen.h"

#include <numbers>

namespace vemra::robot {
namespace {

double channel(unsigned rgb, unsigned shift)
{
    return ((rgb >> shift) & 0xff) / 255.0;
}

}  // namespace

void Pen::colour(Colour colour)
{
    cairo_set_source_rgba(context_, channel(colour.rgb, 16), channel(colour.rgb, 8), channel(colour.rgb, 0),
                          colour.opacity);
}

void Pen::box(double x, double y, double width, double height, Colour fill)
{
    colour(fill);
    cairo_rectangle(context_, x, y, width, height);
    cairo_fill(context_);
}

void Pen::line(double x0, double y0, double x1, double y1, double width, Colour stroke)
{
    colour(stroke);
    cairo_set_line_width(context_, width);
    cairo_move_to(context_, x0, y0);
    cairo_line_to(context_, x1, y1);
    cairo_stroke(context_);
}

void Pen::disc(double x, double y, double radius, Colour fill)
{
    colour(fill);
    cairo_new_sub_path(context_);
    cairo_arc(context_, x, y, radius, 0, 2 * std::numbers::pi);
    cairo_fill(context_);
}

void Pen::text(double x, double y, const std::string& text, double size, Colour ink, Anchor anchor, bool bold)
{
    const double width = textWidth(text, size, bold);
    colour(ink);
    cairo_move_to(context_,
                  x - (anchor == Anchor::Left     ? 0
                       : anchor == Anchor::Middle ? width / 2
                                                  : width),
                  y);
    cairo_show_text(context_, text.c_str());
}

double Pen::textWidth(const std::string& text, double size, bool bold)
{
    font(size, bold);
    cairo_text_extents_t extents;
    cairo_text_extents(context_, text.c_str(), &extents);
    return extents.x_advance;
}

std::string Pen::fitted(std::string text, double width, double size, bool bold)
{
    if (textWidth(text, size, bold) <= width) {
        return text;
    }
    const auto isInside = [](char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; };
    while (!text.empty() && textWidth(text + "…", size, bold) > width) {
        // Whole characters of UTF-8.
        while (text.size() > 1 && isInside(text.back())) {
            text.pop_back();
        }
        text.pop_back();
    }
    return text + "…";
}

void Pen::font(double size, bool bold)
{
    cairo_select_font_face(context_, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context_, size);
}

}  // namespace vemra::robot
