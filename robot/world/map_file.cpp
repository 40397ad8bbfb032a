#include "robot/world/map_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "robot/base/input_error.h"
#include "robot/base/yaml_fields.h"
#include "robot/world/pgm.h"

namespace vemra::robot {
namespace {

constexpr double kMaxSideMm = 250'000;
constexpr double kMaxCells = 16e6;

// How the grey values of a map are to be read.
struct GreyScale
{
    std::string mode;  // trinary, scale or raw
    bool negate = false;
    double occupied = 0;
    double free = 0;
};

GreyScale readScale(const YamlFields& map)
{
    GreyScale scale;
    scale.mode = map.has("mode") ? map.text("mode") : "trinary";
    if (scale.mode != "trinary" && scale.mode != "scale" && scale.mode != "raw") {
        map.fail("mode", "trinary, scale or raw");
    }
    const std::string negate = map.text("negate", "0 or 1");
    scale.negate = negate == "1" || negate == "0" ? negate == "1" : map.flag("negate");
    scale.occupied = map.number("occupied_thresh", 0, 1);
    scale.free = map.number("free_thresh", 0, 1);
    if (scale.free > scale.occupied) {
        map.fail("free_thresh", fmt::format("at most occupied_thresh, {}", scale.occupied));
    }
    return scale;
}

CellState stateOf(int grey, int max_value, const GreyScale& scale)
{
    double occupancy = 0;
    if (scale.mode == "raw") {
        // The value is the occupancy itself, 0 to 100; all above says "not known".
        if (grey > 100) {
            return CellState::Unknown;
        }
        occupancy = grey / 100.0;
    } else {
        const double white = static_cast<double>(grey) / max_value;
        occupancy = scale.negate ? white : 1 - white;
    }
    if (occupancy > scale.occupied) {
        return CellState::Occupied;
    }
    if (occupancy < scale.free) {
        return CellState::Free;
    }
    if (scale.mode == "scale") {
        // A graded value is knowledge too: it falls to the nearer side.
        return 2 * occupancy < scale.occupied + scale.free ? CellState::Free : CellState::Occupied;
    }
    return CellState::Unknown;
}

// More than one turn either way: no angle in radians is written so.
bool looksLikeDegrees(double yaw)
{
    return std::abs(yaw) > 2 * std::numbers::pi + 1e-3;
}

// The picture laid into the map frame.
class MapPicture
{
public:
    MapPicture(const GreyImage& image, const GreyScale& scale, double resolution_mm, PoseMm origin)
        : image_(image), resolution_mm_(resolution_mm), origin_(origin), along_(direction(origin.yaw))
    {
        for (int grey = 0; grey <= image.max_value; ++grey) {
            states_.push_back(stateOf(grey, image.max_value, scale));
        }
    }

    CellState at(PointMm point) const
    {
        const PointMm d = point - origin_.at;
        const double column = std::floor((d.x * along_.x + d.y * along_.y) / resolution_mm_);
        const double row = std::floor((d.y * along_.x - d.x * along_.y) / resolution_mm_);
        if (column < 0 || column >= image_.width || row < 0 || row >= image_.height) {
            return CellState::Unknown;
        }
        const auto from_top = static_cast<std::size_t>(image_.height - 1 - static_cast<int>(row));
        return states_[image_.pixels[from_top * static_cast<std::size_t>(image_.width) +
                                     static_cast<std::size_t>(column)]];
    }

    // The upright box around the picture.
    std::array<PointMm, 2> box() const
    {
        const PointMm right = (image_.width * resolution_mm_) * along_;
        const PointMm up = (image_.height * resolution_mm_) * PointMm{-along_.y, along_.x};
        return {origin_.at + PointMm{std::min({0.0, right.x, up.x, right.x + up.x}),
                                     std::min({0.0, right.y, up.y, right.y + up.y})},
                origin_.at + PointMm{std::max({0.0, right.x, up.x, right.x + up.x}),
                                     std::max({0.0, right.y, up.y, right.y + up.y})}};
    }

private:
    const GreyImage& image_;
    double resolution_mm_;
    PoseMm origin_;
    PointMm along_;
    std::vector<CellState> states_;
};

// The state of a cell from samples that lie at most half a pixel apart, so that no pixel is passed over.
CellState sampled(const MapPicture& picture, PointMm corner, int samples)
{
    int free = 0;
    const double apart = Home::kCellMm / samples;
    for (int i = 0; i < samples; ++i) {
        for (int j = 0; j < samples; ++j) {
            const CellState state = picture.at(corner + PointMm{(i + 0.5) * apart, (j + 0.5) * apart});
            if (state == CellState::Occupied) {
                return CellState::Occupied;
            }
            free += state == CellState::Free ? 1 : 0;
        }
    }
    return 2 * free >= samples * samples ? CellState::Free : CellState::Unknown;
}

Home toCells(const MapPicture& picture, double resolution_mm)
{
    const auto [low, high] = picture.box();
    const auto cellsOver = [](double length) {
        return static_cast<int>(std::ceil(length / Home::kCellMm - 1e-6));
    };
    const int columns = std::max(cellsOver(high.x - low.x), 1);
    const int rows = std::max(cellsOver(high.y - low.y), 1);
    const int samples = std::max(static_cast<int>(std::ceil(2 * Home::kCellMm / resolution_mm - 1e-6)), 1);

    std::vector<CellState> cells;
    cells.reserve(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            cells.push_back(
                sampled(picture, low + Home::kCellMm * PointMm{double(column), double(row)}, samples));
        }
    }
    return {columns, rows, low, std::move(cells)};
}

}  // namespace

HomeFile readHome(const std::filesystem::path& yaml)
{
    const YamlFields map(readYaml(yaml), yaml.string(), "a map");
    map.allowOnly({"image", "resolution", "origin", "negate", "occupied_thresh", "free_thresh", "mode",
                   "dock", "cliffs"});
    std::vector<std::string> doubts;
    const std::string image_name = map.text("image");
    if (image_name.empty()) {
        map.fail("image", "the name of a PGM picture");
    }
    const double resolution_mm = 1e3 * map.number("resolution");
    if (resolution_mm < 1 || resolution_mm > 1e4) {
        map.fail("resolution", "metres a pixel, from 0.001 to 10");
    }
    const std::vector<double> origin = map.places("origin", 3);
    if (looksLikeDegrees(origin[2])) {
        doubts.push_back(
            fmt::format("{}:{}: the yaw of `origin` is in radians, as map_server has it: {} is more "
                        "than a turn",
                        yaml.string(), map.line("origin"), origin[2]));
    }
    const GreyScale scale = readScale(map);
    std::optional<Dock> dock;
    if (map.has("dock")) {
        const std::vector<double> at = map.places("dock", 3);
        dock = Dock{{{1e3 * at[0], 1e3 * at[1]}, wrapped({at[2]})}};
        if (canOnlyBeRadians(at[2])) {
            dock->face.yaw = wrapped(degreesOfRadians(at[2]));
            doubts.push_back(
                fmt::format("{}:{}: the yaw of `dock` is in degrees: {} can only be radians and is read as "
                            "{:.6g} degrees",
                            yaml.string(), map.line("dock"), at[2], dock->face.yaw.value));
        } else if (looksLikeRadians(*dock)) {
            doubts.push_back(fmt::format("{}:{}: the yaw of `dock` is in degrees: {} looks like radians",
                                         yaml.string(), map.line("dock"), at[2]));
        }
    }
    std::vector<BoxMm> cliffs;
    for (const YAML::Node& node : map.list("cliffs")) {
        const std::vector<double> at = map.places(node, "cliffs", 4);
        cliffs.push_back({{1e3 * at[0], 1e3 * at[1]}, {1e3 * at[2], 1e3 * at[3]}});
        if (at[0] >= at[2] || at[1] >= at[3]) {
            map.failAt(node, "an empty box: expected [x0, y0, x1, y1] with x0 < x1 and y0 < y1");
        }
    }

    const std::filesystem::path image_file = yaml.parent_path() / image_name;
    const GreyImage image = readPgm(image_file);
    const MapPicture picture(image, scale, resolution_mm,
                             {{1e3 * origin[0], 1e3 * origin[1]}, degreesOfRadians(origin[2])});
    const auto [low, high] = picture.box();
    const PointMm size = high - low;
    const double area = size.x * size.y;
    const double most_area = kMaxCells * Home::kCellMm * Home::kCellMm;
    if (size.x > kMaxSideMm || size.y > kMaxSideMm || area > most_area) {
        const std::string limit = area > most_area ? fmt::format("{:.0f} m2", most_area / 1e6)
                                                   : fmt::format("{:.0f} m a side", kMaxSideMm / 1e3);
        map.fail("resolution", fmt::format("a home of at most {}: {} x {} pixels would be {:.0f} x {:.0f} m",
                                           limit, image.width, image.height, size.x / 1e3, size.y / 1e3));
    }
    Home home = toCells(picture, resolution_mm);
    if (home.freeAreaM2() == 0) {
        throw InputError(image_file.string(), 0,
                         "the map has no free floor: expected pixels that `free_thresh`, `negate` and `mode` "
                         "make free");
    }
    return {std::move(home), dock, yaml.string(), map.line("dock"), std::move(cliffs), std::move(doubts)};
}

ChosenDock chooseDock(const HomeFile& home, const std::optional<Dock>& given)
{
    if (given) {
        checkDock(home.home, *given, "--dock", 0);
        return {*given, DockSource::Given};
    }
    if (home.dock) {
        checkDock(home.home, *home.dock, home.file, home.dock_line);
        return {*home.dock, DockSource::Map};
    }
    if (const auto placed = placeDock(home.home)) {
        return {*placed, DockSource::Placed};
    }
    throw InputError(
        home.file, 0,
        "no free stretch of wall for a dock: expected `dock: [x, y, degrees]` or --dock X,Y,DEG");
}

}  // namespace vemra::robot
