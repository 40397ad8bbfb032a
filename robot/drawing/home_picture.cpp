#include "robot/drawing/home_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "robot/drawing/pen.h"

namespace vemra::robot {
namespace {

constexpr Colour kPaper{0xffffff};
constexpr Colour kUnknown{0xd9dde1};
constexpr Colour kFloor{0xfbf8f1};
constexpr Colour kSolid{0x46505c};
constexpr Colour kMetreLine{0xe9e3d6};
constexpr Colour kInk{0x2a323b};
constexpr Colour kFaint{0x6d7782};
struct PhaseStyle
{
    Colour colour;
    const char* name;
};
// In the order of TrackPhase.
constexpr std::array<PhaseStyle, 5> kPhases = {{{{0x7f8fa6, 0.75}, "drive"},
                                                {{0x2f7ed8, 0.75}, "line"},
                                                {{0x8e44ad, 0.8}, "wall"},
                                                {{0x2c9a57, 0.8}, "to and from the dock"},
                                                {{0xd35400, 0.8}, "finding its place"}}};
constexpr Colour kCarried{0x8a94a6};
constexpr Colour kForbidden{0xc0392b};
constexpr Colour kMissed{0xe9a23b};
constexpr Colour kDock{0x2c9a57};
constexpr Colour kRobot{0xe4572e};
// By DockSignal.
constexpr std::array<Colour, 6> kField{
    {{0x000000, 0}, {0x8fb8de, 0.35}, {0x4f8fd0, 0.45}, {0x2c9a57, 0.5}, {0xe0a05a, 0.5}, {0xf0c794, 0.4}}};
constexpr std::array<const char*, 6> kFieldNames{"",       "Left",         "CentralLeft",
                                                 "Middle", "CentralRight", "Right"};

constexpr double kRim = 24;
constexpr double kHead = 34;
constexpr double kFoot = 30;
constexpr double kFootRow = 18;
constexpr double kLeastWidth = 600;
constexpr double kLongSide = 1000;

struct LegendKey
{
    Colour colour;
    const char* text;
};

// What the picture shows, and nothing else.
std::vector<LegendKey> legendOf(const HomeMarks& marks)
{
    std::vector<LegendKey> keys;
    if (std::any_of(marks.field.begin(), marks.field.end(),
                    [](const auto& floor) { return !floor.empty(); })) {
        for (std::size_t i = 1; i < kField.size(); ++i) {
            keys.push_back({kField[i], kFieldNames[i]});
        }
    } else {
        keys.push_back({kSolid, "walls and furniture"});
        keys.push_back({kUnknown, "unknown"});
    }
    if (!marks.walls.lines.empty() || !marks.walls.areas.empty()) {
        keys.push_back({kForbidden, "virtual walls"});
    }
    if (marks.dock) {
        keys.push_back({kDock, "dock"});
    }
    if (marks.robot) {
        keys.push_back({kRobot, "robot"});
    }
    for (std::size_t phase = 0; phase < kPhases.size(); ++phase) {
        if (std::any_of(marks.track.begin(), marks.track.end(), [phase](const TrackStretch& stretch) {
                return static_cast<std::size_t>(stretch.phase) == phase && stretch.points.size() > 1;
            })) {
            keys.push_back({kPhases.at(phase).colour, kPhases.at(phase).name});
        }
    }
    if (!marks.missed.empty()) {
        keys.push_back({kMissed, "not swept"});
    }
    if (std::any_of(marks.track.begin(), marks.track.end(),
                    [](const TrackStretch& stretch) { return stretch.put_down_here; })) {
        keys.push_back({kCarried, "carried"});
    }
    if (!marks.starts.empty()) {
        keys.push_back({kDock, marks.good_start.c_str()});
        keys.push_back({kForbidden, "did not"});
    }
    return keys;
}

class HomeDrawing
{
public:
    HomeDrawing(const Home& home, const HomeMarks& marks, cairo_t* context, double scale)
        : home_(home), marks_(marks), pen_(context), scale_(scale)
    {}

    void draw(double width, double height)
    {
        pen_.box(0, 0, width, height, kPaper);
        pen_.text(kRim, kRim, pen_.fitted(marks_.title, width - 2 * kRim, 16, true), 16, kInk,
                  Pen::Anchor::Left, true);
        pen_.box(x(home_.origin()), y(home_.farCorner()), home_.columns() * Home::kCellMm * scale_,
                 home_.rows() * Home::kCellMm * scale_, kUnknown);
        cells(CellState::Free, kFloor);
        metreLines();
        cells(CellState::Occupied, kSolid);
        field();
        squares(marks_.missed, marks_.missed_mm, kMissed);
        virtualWalls();
        track();
        starts();
        dock();
        robot();
        foot(width, kHead + home_.rows() * Home::kCellMm * scale_);
    }

    // A row that is full goes on in the next. Gives the rows' number, for whoever measures.
    int foot(double width, double top)
    {
        double base = top + kFoot / 2 + 4;
        const double metre = 1e3 * scale_;
        pen_.box(kRim, base - 6, metre, 4, kInk);
        pen_.text(kRim + metre + 8, base, "1 m", 12, kInk);
        const double left = kRim + metre + 60;
        double at = left;
        int rows = 1;
        for (const LegendKey& key : legendOf(marks_)) {
            const double wide = 15 + pen_.textWidth(key.text, 12);
            if (at > left && at + wide > width - kRim) {
                at = left;
                base += kFootRow;
                ++rows;
            }
            pen_.box(at, base - 9, 10, 10, key.colour);
            pen_.text(at + 15, base, key.text, 12, kFaint);
            at += wide + 20;
        }
        return rows;
    }

private:
    double x(PointMm p) const { return kRim + (p.x - home_.origin().x) * scale_; }
    double y(PointMm p) const { return kHead + (home_.farCorner().y - p.y) * scale_; }

    PointMm corner(int column, int row) const
    {
        return home_.origin() + Home::kCellMm * PointMm{double(column), double(row)};
    }

    // Adds a box by its corners: neighbours share them to the last bit, which a width and a height would not
    // give.
    void outline(PointMm low, PointMm high)
    {
        cairo_t* const context = pen_.context();
        cairo_move_to(context, x(low), y(low));
        cairo_line_to(context, x(high), y(low));
        cairo_line_to(context, x(high), y(high));
        cairo_line_to(context, x(low), y(high));
        cairo_close_path(context);
    }

    // Runs of equal cells as one box each, in one path and without smoothing, so that no seams show between
    // them.
    void cells(CellState state, Colour fill)
    {
        cairo_set_antialias(pen_.context(), CAIRO_ANTIALIAS_NONE);
        cairo_new_path(pen_.context());
        for (int row = 0; row < home_.rows(); ++row) {
            for (int column = 0; column < home_.columns();) {
                int end = column;
                while (end < home_.columns() && home_.at(CellIndex{end, row}) == state) {
                    ++end;
                }
                if (end > column) {
                    outline(corner(column, row), corner(end, row + 1));
                }
                column = end + 1;
            }
        }
        pen_.colour(fill);
        cairo_fill(pen_.context());
        cairo_set_antialias(pen_.context(), CAIRO_ANTIALIAS_DEFAULT);
    }

    void squares(const std::vector<PointMm>& middles, double edge_mm, Colour fill)
    {
        const PointMm half{edge_mm / 2, edge_mm / 2};
        cairo_set_antialias(pen_.context(), CAIRO_ANTIALIAS_NONE);
        cairo_new_path(pen_.context());
        for (const PointMm& middle : middles) {
            outline(middle - half, middle + half);
        }
        pen_.colour(fill);
        cairo_fill(pen_.context());
        cairo_set_antialias(pen_.context(), CAIRO_ANTIALIAS_DEFAULT);
    }

    void field()
    {
        for (std::size_t i = 0; i < kField.size(); ++i) {
            squares(marks_.field[i], kFieldPatchMm, kField[i]);
        }
    }

    void starts()
    {
        for (const StartMark& start : marks_.starts) {
            const PointMm nose = start.pose.at + 90 * direction(start.pose.yaw);
            const Colour colour = start.good ? kDock : kForbidden;
            pen_.line(x(start.pose.at), y(start.pose.at), x(nose), y(nose), 1.5, colour);
            pen_.disc(x(start.pose.at), y(start.pose.at), start.good ? 3.5 : 5.5, colour);
        }
    }

    static int ceilMetre(double mm) { return static_cast<int>(std::ceil(mm / 1e3)); }

    // Only over floor: solid cells are drawn later, and what is unknown stays blank.
    void metreLines()
    {
        const PointMm low = home_.origin();
        const PointMm high = home_.farCorner();
        for (int metre = ceilMetre(low.x); 1e3 * metre <= high.x; ++metre) {
            metreLine({1e3 * metre, low.y}, {0, 1}, home_.rows());
        }
        for (int metre = ceilMetre(low.y); 1e3 * metre <= high.y; ++metre) {
            metreLine({low.x, 1e3 * metre}, {1, 0}, home_.columns());
        }
    }

    void metreLine(PointMm from, PointMm step, int count)
    {
        for (int i = 0; i < count; ++i) {
            const PointMm start = from + (i * Home::kCellMm) * step;
            const PointMm end = start + Home::kCellMm * step;
            if (home_.at(start + (Home::kCellMm / 2) * step) == CellState::Free) {
                pen_.line(x(start), y(start), x(end), y(end), 1, kMetreLine);
            }
        }
    }

    void virtualWalls()
    {
        cairo_t* const context = pen_.context();
        for (const PolygonMm& area : marks_.walls.areas) {
            cairo_new_path(context);
            for (const PointMm& point : area) {
                cairo_line_to(context, x(point), y(point));
            }
            cairo_close_path(context);
            pen_.colour({kForbidden.rgb, 0.18});
            cairo_fill_preserve(context);
            pen_.colour(kForbidden);
            cairo_set_line_width(context, 1.5);
            cairo_stroke(context);
        }
        for (const SegmentMm& line : marks_.walls.lines) {
            pen_.line(x(line.from), y(line.from), x(line.to), y(line.to), 2.5, kForbidden);
        }
    }

    void track()
    {
        cairo_t* const context = pen_.context();
        cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
        const PointMm* last = nullptr;
        for (const TrackStretch& stretch : marks_.track) {
            if (stretch.points.empty()) {
                continue;
            }
            cairo_new_path(context);
            if (last != nullptr && stretch.put_down_here) {
                dashed(*last, stretch.points.front(), kCarried);
            } else if (last != nullptr) {
                cairo_move_to(context, x(*last), y(*last));
            }
            for (const PointMm& point : stretch.points) {
                cairo_line_to(context, x(point), y(point));
            }
            pen_.colour(kPhases.at(static_cast<std::size_t>(stretch.phase)).colour);
            cairo_set_line_width(context, 1.6);
            cairo_stroke(context);
            last = &stretch.points.back();
        }
    }

    void dashed(PointMm from, PointMm to, Colour stroke)
    {
        cairo_save(pen_.context());
        const double dashes[] = {3, 3};
        cairo_set_dash(pen_.context(), dashes, 2, 0);
        pen_.line(x(from), y(from), x(to), y(to), 1.5, stroke);
        cairo_restore(pen_.context());
    }

    void dock()
    {
        if (!marks_.dock) {
            return;
        }
        // A plate of the robot's width at the wall, and its axis into the room.
        const PoseMm face = marks_.dock->face;
        const PointMm ahead = direction(face.yaw);
        const PointMm side{-ahead.y, ahead.x};
        const PointMm left = face.at + 150 * side;
        const PointMm right = face.at - 150 * side;
        pen_.line(x(left), y(left), x(right), y(right), std::max(80 * scale_, 4.0), kDock);
        const PointMm tip = face.at + 520 * ahead;
        dashed(face.at, tip, kDock);
    }

    void robot()
    {
        if (!marks_.robot) {
            return;
        }
        const PoseMm pose = *marks_.robot;
        const double radius = kRobotRadiusMm * scale_;
        pen_.disc(x(pose.at), y(pose.at), radius, {kRobot.rgb, 0.9});
        const PointMm nose = pose.at + (0.9 * kRobotRadiusMm) * direction(pose.yaw);
        pen_.line(x(pose.at), y(pose.at), x(nose), y(nose), std::max(radius * 0.16, 1.5), kPaper);
        pen_.disc(x(pose.at), y(pose.at), std::max(radius * 0.16, 1.5), kPaper);
    }

    const Home& home_;
    const HomeMarks& marks_;
    Pen pen_;
    double scale_;
};

}  // namespace

TrackPhase phaseOfMotion(std::string_view motion)
{
    if (motion == "Gong") {
        return TrackPhase::Line;
    }
    if (motion == "Followwall") {
        return TrackPhase::Wall;
    }
    if (motion == "Reloc") {
        return TrackPhase::Look;
    }
    return motion == "Detach" || motion.find("Charge") != std::string_view::npos ? TrackPhase::Dock
                                                                                 : TrackPhase::Drive;
}

Picture homePicture(const Home& home, HomeMarks marks)
{
    const double wide = home.columns() * Home::kCellMm;
    const double high = home.rows() * Home::kCellMm;
    const double scale = kLongSide / std::max(wide, high);
    Picture picture;
    picture.width = std::ceil(std::max(wide * scale, kLeastWidth) + 2 * kRim);
    // Text widths decide how many rows the legend takes.
    cairo_surface_t* const nowhere = cairo_recording_surface_create(CAIRO_CONTENT_COLOR, nullptr);
    cairo_t* const measure = cairo_create(nowhere);
    const int rows = HomeDrawing(home, marks, measure, scale).foot(picture.width, 0);
    cairo_destroy(measure);
    cairo_surface_destroy(nowhere);
    picture.height = std::ceil(high * scale + kHead + kFoot + (rows - 1) * kFootRow);
    picture.draw = [&home, marks = std::move(marks), scale, w = picture.width, h = picture.height](
                       cairo_t* context) { HomeDrawing(home, marks, context, scale).draw(w, h); };
    return picture;
}

}  // namespace vemra::robot
