#include "robot/world/plan.h"

#include <fmt/format.h>

#include <cmath>

#include "robot/base/yaml_fields.h"

namespace vemra::robot {
namespace {

constexpr std::uint16_t kBlack = 0;      // occupied
constexpr std::uint16_t kWhite = 254;    // free
constexpr std::uint16_t kBetween = 205;  // unknown
constexpr double kMaxSideMm = 100'000;

int cells(double length_mm)
{
    return static_cast<int>(std::lround(length_mm / Home::kCellMm));
}

class PlanReader
{
public:
    explicit PlanReader(const std::filesystem::path& file) : top_(readYaml(file), file.string(), "a plan") {}

    Plan read()
    {
        top_.allowOnly({"name", "floor", "margin", "walls", "doors", "furniture", "cliffs", "dock"});
        plan_.name = top_.text("name");
        plan_.margin_mm = onGrid(top_.number("margin", 0, 10), top_.node("margin"));
        plan_.floor = box(top_.node("floor"), "floor");
        const PointMm size = plan_.floor.high - plan_.floor.low;
        if (size.x > kMaxSideMm || size.y > kMaxSideMm) {
            top_.fail("floor", fmt::format("at most {:.0f} m a side", kMaxSideMm / 1e3));
        }
        for (const YAML::Node& wall : top_.list("walls")) {
            plan_.walls.push_back(inside(wall, "walls"));
        }
        for (const YAML::Node& door : top_.list("doors")) {
            plan_.doors.push_back(inside(door, "doors"));
        }
        for (const YAML::Node& piece : top_.list("furniture")) {
            readPiece({piece, top_.file(), "a piece of furniture"});
        }
        for (const YAML::Node& cliff : top_.list("cliffs")) {
            plan_.cliffs.push_back(inside(cliff, "cliffs"));
        }
        if (top_.has("dock")) {
            const std::vector<double> at = top_.places("dock", 3);
            plan_.dock = Dock{{{1e3 * at[0], 1e3 * at[1]}, wrapped({at[2]})}};
        }
        return plan_;
    }

private:
    double onGrid(double metres, const YAML::Node& node) const
    {
        const double mm = 1e3 * metres;
        const double snapped = Home::kCellMm * std::round(mm / Home::kCellMm);
        if (std::abs(mm - snapped) > 1e-6) {
            top_.failAt(node, fmt::format("{} is off the grid: expected a multiple of 0.05 m", metres));
        }
        return snapped;
    }

    BoxMm box(const YAML::Node& node, const char* name) const
    {
        const std::vector<double> edges = top_.places(node, name, 4);
        const BoxMm box{{onGrid(edges[0], node), onGrid(edges[1], node)},
                        {onGrid(edges[2], node), onGrid(edges[3], node)}};
        if (box.low.x >= box.high.x || box.low.y >= box.high.y) {
            top_.failAt(node, "an empty box: expected [x0, y0, x1, y1] with x0 < x1 and y0 < y1");
        }
        return box;
    }

    BoxMm inside(const YAML::Node& node, const char* name) const
    {
        const BoxMm found = box(node, name);
        const PointMm low = plan_.floor.low;
        const PointMm high = plan_.floor.high;
        if (found.low.x < low.x || found.low.y < low.y || found.high.x > high.x || found.high.y > high.y) {
            top_.failAt(node, "outside the floor: expected a box within it");
        }
        return found;
    }

    void readPiece(const YamlFields& piece)
    {
        piece.allowOnly({"name", "box", "legs"});
        if (piece.has("box") == piece.has("legs")) {
            piece.fail("name", "either \"box\" or \"legs\" beside it");
        }
        if (piece.has("box")) {
            plan_.furniture.push_back(inside(piece.node("box"), "box"));
            return;
        }
        const BoxMm legs = inside(piece.node("legs"), "legs");
        const double post = Home::kCellMm;
        for (const double x : {legs.low.x, legs.high.x - post}) {
            for (const double y : {legs.low.y, legs.high.y - post}) {
                plan_.furniture.push_back({{x, y}, {x + post, y + post}});
            }
        }
    }

    YamlFields top_;
    Plan plan_;
};

void fill(GreyImage& image, const Plan& plan, const BoxMm& box, std::uint16_t grey)
{
    const PointMm corner = plan.floor.low - PointMm{plan.margin_mm, plan.margin_mm};
    for (int row = cells(box.low.y - corner.y); row < cells(box.high.y - corner.y); ++row) {
        for (int column = cells(box.low.x - corner.x); column < cells(box.high.x - corner.x); ++column) {
            image.pixels[static_cast<std::size_t>(image.height - 1 - row) *
                             static_cast<std::size_t>(image.width) +
                         static_cast<std::size_t>(column)] = grey;
        }
    }
}

}  // namespace

Plan readPlan(const std::filesystem::path& file)
{
    return PlanReader(file).read();
}

GreyImage drawPlan(const Plan& plan)
{
    GreyImage image;
    image.width = cells(plan.floor.high.x - plan.floor.low.x + 2 * plan.margin_mm);
    image.height = cells(plan.floor.high.y - plan.floor.low.y + 2 * plan.margin_mm);
    image.pixels.assign(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height),
                        kBetween);
    fill(image, plan, plan.floor, kWhite);
    for (const BoxMm& wall : plan.walls) {
        fill(image, plan, wall, kBlack);
    }
    for (const BoxMm& door : plan.doors) {
        fill(image, plan, door, kWhite);
    }
    for (const BoxMm& piece : plan.furniture) {
        fill(image, plan, piece, kBlack);
    }
    return image;
}

Home homeOfPlan(const Plan& plan)
{
    const GreyImage image = drawPlan(plan);
    std::vector<CellState> cells;
    cells.reserve(image.pixels.size());
    // The picture's rows go from the top, the home's from the bottom.
    for (int row = image.height - 1; row >= 0; --row) {
        for (int column = 0; column < image.width; ++column) {
            const int pixel =
                image.pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(image.width) +
                             static_cast<std::size_t>(column)];
            cells.push_back(pixel == kWhite   ? CellState::Free
                            : pixel == kBlack ? CellState::Occupied
                                              : CellState::Unknown);
        }
    }
    return {image.width, image.height, plan.floor.low - PointMm{plan.margin_mm, plan.margin_mm},
            std::move(cells)};
}

std::string mapYaml(const Plan& plan)
{
    const PointMm corner = plan.floor.low - PointMm{plan.margin_mm, plan.margin_mm};
    std::string text = fmt::format(
        "# Drawn from plan.yaml by draw_home.\n"
        "image: {}.pgm\n"
        "resolution: {}\n"
        "origin: [{}, {}, 0]\n"
        "negate: 0\n"
        "occupied_thresh: 0.65\n"
        "free_thresh: 0.196\n",
        plan.name, Home::kCellMm / 1e3, corner.x / 1e3, corner.y / 1e3);
    if (plan.dock) {
        const PoseMm& face = plan.dock->face;
        text += fmt::format("dock: [{}, {}, {}]  # metres and degrees\n", face.at.x / 1e3, face.at.y / 1e3,
                            face.yaw.value);
    }
    if (!plan.cliffs.empty()) {
        text += "cliffs:\n";
    }
    for (const BoxMm& cliff : plan.cliffs) {
        text += fmt::format("  - [{}, {}, {}, {}]\n", cliff.low.x / 1e3, cliff.low.y / 1e3,
                            cliff.high.x / 1e3, cliff.high.y / 1e3);
    }
    return text;
}

}  // namespace vemra::robot
