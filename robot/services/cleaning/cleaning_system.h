#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// Fan, brushes, pump and mop, in percent of their power, and which of the robot's eyes are switched on.
///
/// A task sets them by `MoveCleanSysModeSet`, beside its run: brushes and fan where it sweeps, the cloth
/// alone where the user wants no more, more of both on a carpet, water while a box is in that is not shut.
/// The cloth gets dirty by the floor that it wipes; `mop_dirty` is 100 when that is as much as it takes.
class CleaningSystemService final : public Service
{
public:
    explicit CleaningSystemService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    struct Powers
    {
        int brush = 0;
        int fan = 0;
        int pump = 0;
        int side_brush = 0;
        bool operator==(const Powers&) const = default;
    };

    void installRun(leaf::LeafHost& host);
    void setPowers(const Powers& powers, bool wipes_alone);
    void setForRun();
    [[nodiscard]] bool hasKey(const char* key) const { return parts_.blackboard.contains(key); }
    [[nodiscard]] bool wipesAlone() const;
    /// The floor that the cloth wipes until it is to be washed, in square metres.
    [[nodiscard]] double areaOfAWash() const;
    void soil();

    RobotParts parts_;
    std::optional<Powers> powers_;
    int mop_gear_ = 0;
    std::uint64_t run_in_ = 0;                    ///< frame in which a run last set the powers
    std::uint64_t pressed_in_ = 0;                ///< frame in which more power was last asked for
    std::pair<bool, bool> infrared_{true, true};  ///< cliff, front
};

}  // namespace vemra::robot
