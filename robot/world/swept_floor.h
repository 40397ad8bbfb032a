#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "robot/world/home.h"

namespace vemra::robot {

/// The floor of a home that brush and side brush have really swept: ground truth, for figures alone.
class SweptFloor
{
public:
    /// Keeps the home by reference.
    explicit SweptFloor(const Home& home);

    /// A frame has brought the robot to a pose. With the brushes off it sweeps nothing.
    void follow(const PoseMm& pose, bool brushes_on, std::uint64_t frame = 0);

    [[nodiscard]] double areaM2() const { return areaOf(count_); }
    /// Swept a second time, after the robot had driven at least a metre in between.
    [[nodiscard]] double againM2() const { return areaOf(again_); }

    /// The floor is cleaned once more from here on: a pass has figures of its own.
    void beginPass();
    /// Swept in the pass at hand, and a second time in it.
    [[nodiscard]] double passAreaM2() const { return areaOf(pass_count_); }
    [[nodiscard]] double passAgainM2() const { return areaOf(pass_again_); }

    /// What the robot can sweep at all: free floor within reach of brush or side brush at any pose that is
    /// connected to a place. It takes a look at the whole home, as it is now.
    struct Share
    {
        double reachable_m2 = 0;
        double cleaned_m2 = 0;  ///< of that

        [[nodiscard]] double part() const { return reachable_m2 > 0 ? cleaned_m2 / reachable_m2 : 0; }
    };
    [[nodiscard]] Share shareOf(PointMm from) const { return shareOf(from, std::nullopt); }
    /// The same of the floor in a box.
    [[nodiscard]] Share shareOf(PointMm from, const std::optional<BoxMm>& box) const;
    /// The same of the pass at hand.
    [[nodiscard]] Share passShareOf(PointMm from) const;
    /// For each share, 0 to 1, the frame in which so much of the reachable floor was swept for the first
    /// time.
    [[nodiscard]] std::vector<std::optional<std::uint64_t>> sweptBy(PointMm from,
                                                                    const std::vector<double>& shares) const;
    /// The same as a picture: middles of the reachable cells that were left, and the cells' edge, mm.
    [[nodiscard]] std::vector<PointMm> missed(PointMm from) const;
    [[nodiscard]] double cellMm() const { return cell_mm_; }

private:
    static constexpr std::uint32_t kNever = std::numeric_limits<std::uint32_t>::max();

    [[nodiscard]] double areaOf(std::uint64_t cells) const
    {
        return static_cast<double>(cells) * cell_mm_ * cell_mm_ / 1e6;
    }
    [[nodiscard]] bool isSwept(std::size_t index) const { return first_in_[index] != kNever; }
    [[nodiscard]] PointMm centreOf(std::size_t index) const;
    void sweepAt(std::uint32_t frame, const PoseMm& pose);
    [[nodiscard]] std::vector<bool> reachable(PointMm from) const;
    /// Of that floor, what `done` holds for.
    template <class Done>
    [[nodiscard]] Share shareOfFloor(const std::vector<bool>& floor, const Done& done) const;

    const Home& home_;
    double cell_mm_;
    int columns_;
    int rows_;
    std::vector<std::uint32_t> swept_at_;  ///< metres driven by then, in tenths, and one; 0: not in this pass
    std::vector<std::uint32_t> first_in_;  ///< frame of the first time
    std::vector<bool> swept_again_;
    std::vector<bool> again_in_pass_;
    std::uint64_t count_ = 0;
    std::uint64_t again_ = 0;
    std::uint64_t pass_count_ = 0;
    std::uint64_t pass_again_ = 0;
    std::optional<PoseMm> last_;
    double driven_mm_ = 0;
};

}  // namespace vemra::robot
