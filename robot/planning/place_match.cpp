#include "robot/planning/place_match.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "robot/geometry/frames.h"
#include "robot/planning/planning_map.h"

namespace vemra::robot {
namespace {

constexpr int kFarCells = 8;
constexpr double kCoarseMm = 130;
constexpr double kFineMm = 60;
constexpr int kStandsFrom = 9;  // 3 cells, squared
constexpr int kStrideCells = 3;
constexpr int kStepDeg = 6;
constexpr std::size_t kKept = 40;
constexpr std::size_t kGuesses = 12;
constexpr double kApartMm = 300;
constexpr double kApartDeg = 12;

constexpr double kLeastScore = 0.6;
constexpr double kOtherMm = 500;
constexpr double kOtherDeg = 20;
constexpr double kOtherShare = 0.85;

bool areApart(const PlaceGuess& a, const PlaceGuess& b, double mm, double deg)
{
    return distance(a.pose.at, b.pose.at) >= mm ||
           std::abs(wrapped({a.pose.yaw.value - b.pose.yaw.value}).value) >= deg;
}

// The best of them, apart from each other.
std::vector<PlaceGuess> bestOf(std::vector<PlaceGuess> guesses, std::size_t most)
{
    std::stable_sort(guesses.begin(), guesses.end(),
                     [](const PlaceGuess& a, const PlaceGuess& b) { return a.score > b.score; });
    std::vector<PlaceGuess> best;
    for (const PlaceGuess& guess : guesses) {
        if (std::all_of(best.begin(), best.end(), [&guess](const PlaceGuess& other) {
                return areApart(guess, other, kApartMm, kApartDeg);
            })) {
            best.push_back(guess);
        }
        if (best.size() == most) {
            break;
        }
    }
    return best;
}

// A beam ends on the face of a thing, never within it.
Grid<CellState> surfacesOf(const Grid<CellState>& map)
{
    Grid<CellState> faces = map;
    for (std::size_t i = 0; i < faces.cells().size(); ++i) {
        const CellIndex cell = map.window().cellOf(i);
        bool seen = false;
        for (int row = -1; row <= 1; ++row) {
            for (int column = -1; column <= 1; ++column) {
                seen = seen || map.at({cell.column + column, cell.row + row}) == CellState::Free;
            }
        }
        if (!seen) {
            faces.cells()[i] = CellState::Unknown;
        }
    }
    return faces;
}

}  // namespace

PlaceMatcher::PlaceMatcher(const Grid<CellState>& map) : window_(map.window())
{
    const Grid<std::uint8_t> away = squaredDistances(surfacesOf(map), CellState::Occupied, kFarCells);
    far_ = Grid<float>(window_, 0, 0);
    near_ = Grid<float>(window_, 0, 0);
    for (std::size_t i = 0; i < away.cells().size(); ++i) {
        const double mm2 = away.cells()[i] * Home::kCellMm * Home::kCellMm;
        far_.cells()[i] = static_cast<float>(std::exp(-mm2 / (2 * kCoarseMm * kCoarseMm)));
        near_.cells()[i] = static_cast<float>(std::exp(-mm2 / (2 * kFineMm * kFineMm)));
        const CellIndex cell = window_.cellOf(i);
        if (cell.column % kStrideCells == 0 && cell.row % kStrideCells == 0 &&
            away.cells()[i] >= kStandsFrom && map.at(cell) == CellState::Free) {
            floor_.push_back(cell);
        }
    }
}

double PlaceMatcher::scoreOf(const PoseMm& pose, std::span<const PointMm> points, bool fine) const
{
    const Grid<float>& likely = fine ? near_ : far_;
    double sum = 0;
    for (const PointMm point : points) {
        sum += static_cast<double>(likely.at(cellAt(placed(pose, point))));
    }
    return points.empty() ? 0 : sum / static_cast<double>(points.size());
}

// Earlier views are laid on by the way that the wheels counted since.
double PlaceMatcher::score(const PoseMm& pose, std::span<const View> views) const
{
    const PoseMm& last = views.back().odometry;
    double sum = 0;
    for (const View& view : views) {
        const double turn = pose.yaw.value - last.yaw.value;
        const PoseMm there{placed({pose.at, {turn}}, view.odometry.at - last.at),
                           {view.odometry.yaw.value + turn}};
        sum += scoreOf(there, view.points, true);
    }
    return sum / static_cast<double>(views.size());
}

std::vector<PlaceGuess> PlaceMatcher::coarse(const View& view) const
{
    std::vector<PlaceGuess> guesses;
    std::vector<PointMm> turned(view.points.size());
    for (int yaw = -180; yaw < 180; yaw += kStepDeg) {
        const PoseMm turn{{}, {static_cast<double>(yaw)}};
        std::transform(view.points.begin(), view.points.end(), turned.begin(),
                       [&turn](PointMm point) { return placed(turn, point); });
        for (const CellIndex cell : floor_) {
            const PointMm at = centreOf(cell);
            guesses.push_back({{at, turn.yaw}, scoreOf({at, {0}}, turned, false)});
        }
    }
    // The rest cannot win any more.
    constexpr std::size_t kWorthSorting = 4000;
    if (guesses.size() > kWorthSorting) {
        std::nth_element(guesses.begin(), guesses.begin() + kWorthSorting, guesses.end(),
                         [](const PlaceGuess& a, const PlaceGuess& b) { return a.score > b.score; });
        guesses.resize(kWorthSorting);
    }
    return bestOf(std::move(guesses), kKept);
}

PlaceGuess PlaceMatcher::refined(PlaceGuess guess, std::span<const View> views) const
{
    guess.score = score(guess.pose, views);
    double mm = 80;
    double deg = 3;
    for (int halving = 0; halving < 5; ++halving, mm /= 2, deg /= 2) {
        for (bool better = true; better;) {
            better = false;
            for (const PoseMm step : {PoseMm{{mm, 0}, {0}}, PoseMm{{-mm, 0}, {0}}, PoseMm{{0, mm}, {0}},
                                      PoseMm{{0, -mm}, {0}}, PoseMm{{}, {deg}}, PoseMm{{}, {-deg}}}) {
                const PoseMm pose{guess.pose.at + step.at, {guess.pose.yaw.value + step.yaw.value}};
                const double there = score(pose, views);
                if (there > guess.score + 1e-6) {
                    guess = {pose, there};
                    better = true;
                }
            }
        }
    }
    return guess;
}

std::vector<PlaceGuess> PlaceMatcher::search(std::span<const View> views) const
{
    if (views.empty() || views.back().points.empty()) {
        return {};
    }
    std::vector<PlaceGuess> guesses = coarse(views.back());
    for (PlaceGuess& guess : guesses) {
        guess = refined(guess, views);
    }
    return bestOf(std::move(guesses), kGuesses);
}

const PlaceGuess* PlaceMatcher::sureOf(std::span<const PlaceGuess> guesses)
{
    if (guesses.empty() || guesses.front().score < kLeastScore) {
        return nullptr;
    }
    const PlaceGuess& best = guesses.front();
    const bool doubtful = std::any_of(guesses.begin() + 1, guesses.end(), [&best](const PlaceGuess& other) {
        return areApart(best, other, kOtherMm, kOtherDeg) && other.score >= kOtherShare * best.score;
    });
    return doubtful ? nullptr : &best;
}

}  // namespace vemra::robot
