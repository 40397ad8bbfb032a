#include "robot/drawing/run_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "robot/base/clock.h"
#include "robot/drawing/pen.h"

namespace vemra::robot {
namespace {

constexpr Colour kPaper{0xffffff};
constexpr Colour kInk{0x2a323b};
constexpr Colour kFaint{0x6d7782};
constexpr Colour kRule{0xe3e7eb};
constexpr Colour kEmpty{0xf4f6f8};
constexpr Colour kBattery{0x2c9a57};

// Soft enough for dark text upon them; neighbours differ in hue.
constexpr std::array<unsigned, 12> kBandColours{0x8ecae6, 0xffc971, 0xa7d7a9, 0xf4a6a0, 0xc9b6e4, 0xf6e58d,
                                                0x95d5cf, 0xf7b7d2, 0xb8c4ce, 0xd9c3a5, 0xb5d99c, 0xa9bcf5};

constexpr double kWidth = 1200;
constexpr double kMarkWidth = 420;  // of the longest text at a tick
constexpr double kLabels = 110;     // the column of the bands' names
constexpr double kRight = 30;
constexpr double kTop = 52;
constexpr double kBandHeight = 26;
constexpr double kCurveHeight = 70;
constexpr double kMarkRow = 15;
constexpr int kMarkRows = 3;
constexpr double kGap = 14;
constexpr double kLegendRow = 17;
constexpr double kSmall = 11;

struct Segment
{
    std::uint64_t from;
    std::uint64_t to;
    std::size_t value;
};

// What held from when to when.
struct Band
{
    std::string name;
    std::vector<std::string> values;  // in order of appearance
    std::vector<Segment> segments;

    void change(std::uint64_t frame, const std::string& value)
    {
        if (!segments.empty()) {
            segments.back().to = frame;
        }
        auto found = std::find(values.begin(), values.end(), value);
        if (found == values.end()) {
            found = values.insert(values.end(), value);
        }
        const auto index = static_cast<std::size_t>(found - values.begin());
        if (!segments.empty() && segments.back().value == index) {
            return;
        }
        segments.push_back({frame, frame, index});
    }
};

struct Mark
{
    std::uint64_t frame;
    std::string text;
};

struct Marks
{
    std::string name;
    Colour ink;
    std::vector<Mark> marks;
};

// What the picture shows, taken from the log.
struct Run
{
    std::vector<Band> bands{{"mode", {}, {}},
                            {"task state", {}, {}},
                            {"light", {}, {}},
                            {"station light", {}, {}},
                            {"dock", {}, {}}};
    std::vector<Marks> marks{{"scenario", {0x2c7a4b}, {}},
                             {"errors", {0xc0392b}, {}},
                             {"music", {0x7d4bb0}, {}},
                             {"docking", {0x2c9a57}, {}}};
    std::vector<std::pair<std::uint64_t, double>> battery;
    std::uint64_t frames = 1;

    Run(const std::vector<LogEntry>& entries, std::uint64_t last)
    {
        frames = std::max<std::uint64_t>({last, entries.empty() ? 0 : entries.back().frame, 1});
        for (const LogEntry& entry : entries) {
            take(entry);
        }
        for (Band& band : bands) {
            if (!band.segments.empty()) {
                band.segments.back().to = frames;
            }
        }
        std::erase_if(bands, [](const Band& band) { return band.segments.empty(); });
        std::erase_if(marks, [](const Marks& row) { return row.marks.empty(); });
    }

private:
    void take(const LogEntry& entry)
    {
        using namespace event;
        const auto band = [&](std::size_t row) { bands[row].change(entry.frame, toText(entry.event)); };
        const auto mark = [&](std::size_t row) {
            marks[row].marks.push_back({entry.frame, toText(entry.event)});
        };
        const auto level = [&](int percent) {
            battery.emplace_back(entry.frame, std::clamp<double>(percent, 0, 100));
        };
        std::visit(
            Cases{[&](const ModeChange&) { band(0); },
                  [&](const KeyChange& e) {
                      if (e.key == KeyChange::Key::TaskState)
                          band(1);
                  },
                  [&](const Light&) { band(2); }, [&](const StationLight&) { band(3); },
                  [&](const DockContact& e) { bands[4].change(entry.frame, e.on ? "on the dock" : "off"); },
                  [&](const UserAct&) { mark(0); }, [&](const HealthCode&) { mark(1); },
                  [&](const EscapeError&) { mark(1); }, [&](const StationCode&) { mark(1); },
                  [&](const Music&) { mark(2); },
                  [&](const Approach&) {
                      marks[3].marks.push_back({entry.frame, "approach"});
                  },
                  [&](const BatteryLevel& e) { level(e.percent); }, [&](const BatteryEmpty&) { level(0); },
                  [&](const ChargeBegins& e) { level(e.percent); }, [](const auto& /*e*/) {}},
            entry.event);
    }
};

// The step between labels of the time axis, in frames: a round one, ten labels at most.
std::uint64_t axisStep(std::uint64_t frames)
{
    constexpr std::array<std::uint64_t, 17> seconds{1,   2,   5,    10,   15,   30,    60,    120,  300,
                                                    600, 900, 1800, 3600, 7200, 10800, 21600, 43200};
    for (const std::uint64_t step : seconds) {
        if (frames / (step * 1000 / kFrameMs) <= 10) {
            return step * 1000 / kFrameMs;
        }
    }
    const std::uint64_t day = 86'400'000 / kFrameMs;
    return day * (frames / day / 10 + 1);
}

std::string axisLabel(std::uint64_t frame)
{
    const std::uint64_t seconds = frame * kFrameMs / 1000;
    return fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

// Lays the picture out from the top down. Drawn twice, it measures with nothing to draw on: `height` is known
// when all has been placed.
class RunDrawing
{
public:
    RunDrawing(const Run& run, const std::string& title, cairo_t* context)
        : run_(run), title_(title), pen_(context)
    {}

    void draw(double height)
    {
        pen_.box(0, 0, kWidth, height, kPaper);
        pen_.text(20, 28, pen_.fitted(title_, kWidth - 40, 16, true), 16, kInk, Pen::Anchor::Left, true);
        axis(height - 12);
        for (const Band& band : run_.bands) {
            drawBand(band);
        }
        if (!run_.battery.empty()) {
            drawBattery();
        }
        for (const Marks& marks : run_.marks) {
            drawMarks(marks);
        }
    }

    // Where the last line ended.
    double bottom() const { return y_; }

private:
    double x(std::uint64_t frame) const
    {
        return kLabels +
               (kWidth - kLabels - kRight) * static_cast<double>(frame) / static_cast<double>(run_.frames);
    }

    void name(const std::string& text, double middle)
    {
        pen_.text(kLabels - 12, middle + 4, text, 12, kInk, Pen::Anchor::Right);
    }

    void axis(double bottom)
    {
        const std::uint64_t step = axisStep(run_.frames);
        for (std::uint64_t frame = 0; frame <= run_.frames; frame += step) {
            pen_.line(x(frame), kTop, x(frame), bottom, 1, kRule);
            pen_.text(x(frame), kTop - 5, axisLabel(frame), kSmall, kFaint, Pen::Anchor::Middle);
        }
        y_ = kTop + 8;
    }

    void drawBand(const Band& band)
    {
        name(band.name, y_ + kBandHeight / 2);
        pen_.box(x(0), y_, x(run_.frames) - x(0), kBandHeight, kEmpty);
        std::vector<bool> told(band.values.size(), false);
        for (const Segment& segment : band.segments) {
            // A short state is a line at least: it happened.
            const double width = std::max(x(segment.to) - x(segment.from), 1.5);
            pen_.box(x(segment.from), y_, width, kBandHeight, colourOf(segment.value));
            const std::string& text = band.values[segment.value];
            if (pen_.textWidth(text, kSmall) + 8 <= width) {
                pen_.text(x(segment.from) + width / 2, y_ + kBandHeight / 2 + 4, text, kSmall, kInk,
                          Pen::Anchor::Middle);
                told[segment.value] = true;
            }
        }
        y_ += kBandHeight + 4;
        legend(band, told);
        y_ += kGap - 4;
    }

    // The names of those colours that never had room for theirs.
    void legend(const Band& band, const std::vector<bool>& told)
    {
        double at = kLabels;
        bool any = false;
        for (std::size_t i = 0; i < band.values.size(); ++i) {
            if (told[i]) {
                continue;
            }
            const std::string text = band.values[i].empty() ? "(none)" : band.values[i];
            const double width = 14 + pen_.textWidth(text, kSmall) + 16;
            if (at + width > kWidth - kRight && any) {
                at = kLabels;
                y_ += kLegendRow;
            }
            pen_.box(at, y_ + 3, 9, 9, colourOf(i));
            pen_.text(at + 14, y_ + 11.5, text, kSmall, kFaint);
            at += width;
            any = true;
        }
        y_ += any ? kLegendRow : 0;
    }

    void drawBattery()
    {
        name("battery", y_ + kCurveHeight / 2);
        pen_.box(x(0), y_, x(run_.frames) - x(0), kCurveHeight, kEmpty);
        const auto level = [&](double percent) { return y_ + kCurveHeight * (1 - percent / 100); };
        for (const int percent : {0, 50, 100}) {
            pen_.line(x(0), level(percent), x(run_.frames), level(percent), 1, kRule);
            pen_.text(kWidth - kRight + 3, level(percent) + 4, std::to_string(percent), 9.5, kFaint);
        }
        cairo_t* const context = pen_.context();
        cairo_new_path(context);
        cairo_move_to(context, x(run_.battery.front().first), level(run_.battery.front().second));
        // In steps: a level holds until the next one is told.
        double height = level(run_.battery.front().second);
        for (const auto& [frame, percent] : run_.battery) {
            cairo_line_to(context, x(frame), height);
            height = level(percent);
            cairo_line_to(context, x(frame), height);
        }
        cairo_line_to(context, x(run_.frames), height);
        pen_.colour(kBattery);
        cairo_set_line_width(context, 2);
        cairo_stroke_preserve(context);
        cairo_line_to(context, x(run_.frames), level(0));
        cairo_line_to(context, x(run_.battery.front().first), level(0));
        cairo_close_path(context);
        pen_.colour({kBattery.rgb, 0.15});
        cairo_fill(context);
        y_ += kCurveHeight + kGap;
    }

    // Each mark has its tick; its text stands in the first of a few rows that has room, or else is left out.
    void drawMarks(const Marks& row)
    {
        const double height = kMarkRow * kMarkRows + 8;
        name(row.name, y_ + height / 2);
        pen_.box(x(0), y_, x(run_.frames) - x(0), height, kEmpty);
        for (const Mark& mark : row.marks) {
            pen_.line(x(mark.frame), y_, x(mark.frame), y_ + height, 1, {row.ink.rgb, 0.45});
        }
        std::array<double, kMarkRows> taken{};
        for (const Mark& mark : row.marks) {
            const double at = x(mark.frame);
            const std::string text = pen_.fitted(mark.text, kMarkWidth, 10);
            const double width = pen_.textWidth(text, 10);
            // At the right edge the text stands before its tick.
            const bool turned = at + 3 + width > kWidth - 4;
            const double start = turned ? at - 3 - width : at + 3;
            for (std::size_t i = 0; i < taken.size(); ++i) {
                if (start >= taken[i] && start >= kLabels) {
                    const double base = y_ + kMarkRow * (static_cast<double>(i) + 1);
                    // Clear of the ticks behind it.
                    pen_.box(start - 1.5, base - 9, width + 3, 12, kEmpty);
                    pen_.text(start, base, text, 10, row.ink);
                    taken[i] = start + width + 5;
                    break;
                }
            }
        }
        y_ += height + kGap;
    }

    Colour colourOf(std::size_t value) const { return {kBandColours[value % kBandColours.size()]}; }

    const Run& run_;
    const std::string& title_;
    Pen pen_;
    double y_ = 0;
};

}  // namespace

bool isDrawn(const Event& event)
{
    using namespace event;
    return std::visit(Cases{[](const KeyChange& e) { return e.key == KeyChange::Key::TaskState; },
                            [](const Message&) { return false; }, [](const LevelMessage&) { return false; },
                            [](const Motion&) { return false; }, [](const EscapeBegins&) { return false; },
                            [](const EscapeEnds&) { return false; }, [](const Unmet&) { return false; },
                            [](const Note&) { return false; }, [](const auto& /*e*/) { return true; }},
                      event);
}

Picture runPicture(const std::vector<LogEntry>& entries, std::uint64_t frames, std::string title)
{
    const Run run(entries, frames);
    // Text widths decide the lines of the legends: lay it out once to learn the height.
    cairo_surface_t* const nowhere = cairo_recording_surface_create(CAIRO_CONTENT_COLOR, nullptr);
    cairo_t* const context = cairo_create(nowhere);
    RunDrawing measure(run, title, context);
    measure.draw(0);
    cairo_destroy(context);
    cairo_surface_destroy(nowhere);

    Picture picture;
    picture.width = kWidth;
    picture.height = std::ceil(measure.bottom() + 10);
    picture.draw = [run, title = std::move(title), height = picture.height](cairo_t* target) {
        RunDrawing(run, title, target).draw(height);
    };
    return picture;
}

}  // namespace vemra::robot
