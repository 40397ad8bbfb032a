#include "robot/drawing/distribution_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "robot/base/percentile.h"
#include "robot/drawing/pen.h"

namespace vemra::robot {
namespace {

constexpr Colour kPaper{0xffffff};
constexpr Colour kInk{0x2a323b};
constexpr Colour kFaint{0x6d7782};
constexpr Colour kGrid{0xe3e6ea};
constexpr Colour kCurve{0x2f7ed8};
constexpr Colour kMark{0xe4572e};

constexpr double kRim = 24;
constexpr double kHead = 44;
constexpr double kPanelWidth = 460;
constexpr double kPanelHeight = 250;
constexpr int kPanelsARow = 2;
// Of a panel: room for its title, for the shares at the left and the values below.
constexpr double kTitle = 26;
constexpr double kLeft = 44;
constexpr double kBelow = 40;
constexpr double kRight = 20;

/// A step of 1, 2 or 5 and noughts, of which four to nine make a span.
double niceStep(double span)
{
    const double rough = span / 6;
    const double ten = std::pow(10, std::floor(std::log10(rough)));
    const double ones = rough / ten;
    return ten * (ones < 1.5 ? 1 : ones < 3.5 ? 2 : ones < 7.5 ? 5 : 10);
}

class Panel
{
public:
    Panel(Pen& pen, double left, double top) : pen_(pen), left_(left), top_(top) {}

    void draw(const Distribution& figure)
    {
        pen_.text(left_, top_ + 16, figure.title, 14, kInk, Pen::Anchor::Left, true);
        std::vector<double> sorted = figure.values;
        std::sort(sorted.begin(), sorted.end());
        if (sorted.empty()) {
            pen_.text(left_ + kLeft, top_ + 50, "no run has it", 12, kFaint);
            return;
        }
        low_ = sorted.front();
        high_ = sorted.back() > sorted.front() ? sorted.back() : sorted.front() + 1;
        axes();
        curve(sorted);
        for (const double share : {0.05, 0.5, 0.95}) {
            mark(sorted, share);
        }
        std::string below = fmt::format("{} runs", sorted.size());
        if (figure.failed > 0) {
            below += fmt::format(", {} without it", figure.failed);
        }
        pen_.text(left_ + kPanelWidth - kRight, top_ + 16, below, 11, kFaint, Pen::Anchor::Right);
    }

private:
    [[nodiscard]] double width() const { return kPanelWidth - kLeft - kRight; }
    [[nodiscard]] double height() const { return kPanelHeight - kTitle - kBelow; }
    [[nodiscard]] double x(double value) const
    {
        return left_ + kLeft + (value - low_) / (high_ - low_) * width();
    }
    [[nodiscard]] double y(double share) const { return top_ + kTitle + (1 - share) * height(); }

    void axes()
    {
        for (const double share : {0.0, 0.25, 0.5, 0.75, 1.0}) {
            pen_.line(x(low_), y(share), x(high_), y(share), 1, kGrid);
            pen_.text(left_ + kLeft - 6, y(share) + 4, fmt::format("{:.0f} %", 100 * share), 10, kFaint,
                      Pen::Anchor::Right);
        }
        const double step = niceStep(high_ - low_);
        for (double value = std::ceil(low_ / step) * step; value <= high_ + 1e-9; value += step) {
            pen_.line(x(value), y(0), x(value), y(1), 1, kGrid);
            pen_.text(x(value), y(0) + 15, fmt::format("{:g}", value), 10, kFaint, Pen::Anchor::Middle);
        }
    }

    void curve(const std::vector<double>& sorted)
    {
        cairo_t* const context = pen_.context();
        cairo_new_path(context);
        cairo_move_to(context, x(sorted.front()), y(0));
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            cairo_line_to(context, x(sorted[i]),
                          y(static_cast<double>(i + 1) / static_cast<double>(sorted.size())));
        }
        pen_.colour(kCurve);
        cairo_set_line_width(context, 2);
        cairo_stroke(context);
    }

    void mark(const std::vector<double>& sorted, double share)
    {
        const double value = percentileOf(sorted, share);
        pen_.disc(x(value), y(share), 3.5, kMark);
        const bool at_right = x(value) > left_ + kLeft + width() - 60;
        pen_.text(x(value) + (at_right ? -8 : 8), y(share) + (share > 0.9 ? 14 : -6),
                  fmt::format("{:.1f}", value), 11, kInk, at_right ? Pen::Anchor::Right : Pen::Anchor::Left);
    }

    Pen& pen_;
    double left_;
    double top_;
    double low_ = 0;
    double high_ = 1;
};

}  // namespace

Picture distributionPicture(const std::string& title, std::vector<Distribution> panels)
{
    const int rows = (static_cast<int>(panels.size()) + kPanelsARow - 1) / kPanelsARow;
    Picture picture;
    picture.width = 2 * kRim + kPanelsARow * kPanelWidth;
    picture.height = kHead + rows * kPanelHeight + kRim;
    picture.draw = [title, panels = std::move(panels), w = picture.width,
                    h = picture.height](cairo_t* context) {
        Pen pen(context);
        pen.box(0, 0, w, h, kPaper);
        pen.text(kRim, kRim + 4, pen.fitted(title, w - 2 * kRim, 16, true), 16, kInk, Pen::Anchor::Left,
                 true);
        for (std::size_t i = 0; i < panels.size(); ++i) {
            const std::size_t column = i % kPanelsARow;
            const std::size_t row = i / kPanelsARow;
            Panel(pen, kRim + static_cast<double>(column) * kPanelWidth,
                  kHead + static_cast<double>(row) * kPanelHeight)
                .draw(panels[i]);
        }
    };
    return picture;
}

}  // namespace vemra::robot
