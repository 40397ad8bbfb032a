#pragma once

#include <array>
#include <deque>

#include "robot/services/escape/escape_watch.h"
#include "robot/services/sensing/sensing.h"

namespace vemra::robot {

/// When the robot is stuck: the warnings that call for an escape, and the motions that get it out. A warning
/// stays until the motion has worked; one that did not work fails, and the trees come back to it. A robot
/// that does not get free after some tries has an error, until what holds it is gone or it is moved.
class EscapeService final : public Service
{
public:
    EscapeService(const RobotParts& parts, const SensingService& sensing) : parts_(parts), sensing_(sensing)
    {}

    void install(leaf::LeafHost& host) override;
    void update() override;
    bool take(const Happening& what) override;

    /// Gets the robot stuck. It takes wheels that work for so many mm to get free; a bumper that sticks and a
    /// robot that stands tilted or is held fast are so in body.
    void raise(EscapeKind kind, double work_mm = 150);
    /// The trouble has gone by itself.
    void clear(EscapeKind kind);

    /// A warning is on.
    [[nodiscard]] bool warns(EscapeKind kind) const;
    [[nodiscard]] bool warns() const;
    /// What the warning is about is still felt, whether or not it has been for long.
    [[nodiscard]] bool felt(EscapeKind kind) const;

private:
    class Deal;

    [[nodiscard]] double& trouble(EscapeKind kind) { return troubles_mm_[static_cast<std::size_t>(kind)]; }
    [[nodiscard]] double trouble(EscapeKind kind) const
    {
        return troubles_mm_[static_cast<std::size_t>(kind)];
    }
    void began(EscapeKind kind);
    /// How often an escape began about here lately.
    [[nodiscard]] std::size_t timesHere() const;
    [[nodiscard]] PointMm place() const;
    /// `in_air`: nobody set the robot down.
    void ended(EscapeKind kind, bool free, bool in_air);
    void raiseError(EscapeKind kind);
    void clearErrors();

    struct Begun
    {
        std::uint64_t frame = 0;
        PointMm at;
    };

    RobotParts parts_;
    const SensingService& sensing_;
    std::deque<Begun> begun_;  ///< the last escapes
    EscapeWatch watch_;
    std::array<double, kEscapeKinds> troubles_mm_{};  ///< work left until the robot is free
    std::array<int, kEscapeKinds> failed_{};          ///< escapes in a row that did not work
    std::array<bool, kEscapeKinds> error_{};          ///< told as an error
};

}  // namespace vemra::robot
