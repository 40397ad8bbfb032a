#pragma once

#include <span>
#include <vector>

#include "robot/belief/grid.h"
#include "robot/world/home.h"

namespace vemra::robot {

/// What the laser saw from one place: the pose there by dead reckoning, and where its beams ended, in the
/// frame of the robot.
struct View
{
    PoseMm odometry;
    std::vector<PointMm> points;
};

struct PlaceGuess
{
    PoseMm pose;       ///< on the map, at the last view
    double score = 0;  ///< 0 to 1: how well the views fit
};

/// Finds a robot on a map by what its laser sees, without any idea of where it is.
///
/// The score of a pose is the mean over the ends of beams of exp(-d^2 / (2 s^2)), d being the way to the
/// nearest obstacle of the map (likelihood field; Thrun, Burgard and Fox 2005). Poses are tried coarse, every
/// 150 mm and 6 degrees on free floor, and the best then finer and finer (correlative matching; Olson 2009).
class PlaceMatcher
{
public:
    explicit PlaceMatcher(const Grid<CellState>& map);

    /// The best poses, none two of them within 300 mm and 12 degrees; the best first. The views are of one
    /// drive, the last one is the present.
    [[nodiscard]] std::vector<PlaceGuess> search(std::span<const View> views) const;

    /// The best one, if it can be believed: it fits, and no other pose half a metre or 20 degrees away fits
    /// nearly as well.
    [[nodiscard]] static const PlaceGuess* sureOf(std::span<const PlaceGuess> guesses);

private:
    [[nodiscard]] double score(const PoseMm& pose, std::span<const View> views) const;
    [[nodiscard]] double scoreOf(const PoseMm& pose, std::span<const PointMm> points, bool fine) const;
    [[nodiscard]] std::vector<PlaceGuess> coarse(const View& view) const;
    [[nodiscard]] PlaceGuess refined(PlaceGuess guess, std::span<const View> views) const;

    CellWindow window_;
    std::vector<CellIndex> floor_;  ///< where the robot may stand
    Grid<float> far_{0};            ///< likelihoods for the coarse search
    Grid<float> near_{0};           ///< and for the fine one
};

}  // namespace vemra::robot
