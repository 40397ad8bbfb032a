#pragma once

#include <optional>

namespace vemra::robot {

/// The charge that a task which was broken off needs to go on: what the floor that is left will take, by what
/// the task has taken for each square metre so far, ways included.
class ChargeNeed
{
public:
    /// One frame. `swept_m2` is what the task has swept; a new task has swept less than the one before.
    void follow(double battery_percent, double swept_m2);

    /// In percent, 40 to 100: a tenth more than reckoned, above what sends the robot home.
    [[nodiscard]] int forFloor(double left_m2) const;

private:
    std::optional<double> battery_percent_;
    double swept_m2_ = 0;
    double spent_percent_ = 0;
};

}  // namespace vemra::robot
