#pragma once

#include <cairo.h>

#include <string>

namespace vemra::robot {

/// A colour as 0xrrggbb.
struct Colour
{
    unsigned rgb = 0;
    double opacity = 1;
};

/// The few strokes of which the pictures are made.
class Pen
{
public:
    enum class Anchor
    {
        Left,
        Middle,
        Right
    };

    explicit Pen(cairo_t* context) : context_(context) {}

    cairo_t* context() const { return context_; }

    void colour(Colour colour);
    void box(double x, double y, double width, double height, Colour fill);
    void line(double x0, double y0, double x1, double y1, double width, Colour stroke);
    void disc(double x, double y, double radius, Colour fill);
    /// y is the base line. Text that is not UTF-8 is not drawn.
    void text(double x, double y, const std::string& text, double size, Colour ink,
              Anchor anchor = Anchor::Left, bool bold = false);
    /// The text, or where that is wider than width as much of it as fits, and an ellipsis.
    std::string fitted(std::string text, double width, double size, bool bold = false);
    double textWidth(const std::string& text, double size, bool bold = false);

private:
    void font(double size, bool bold);

    cairo_t* context_;
};

}  // namespace vemra::robot
