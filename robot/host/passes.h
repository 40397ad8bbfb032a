#pragma once

#include <cstdint>
#include <vector>

#include "robot/body/body.h"
#include "robot/events/event_log.h"
#include "robot/world/swept_floor.h"

namespace vemra::robot {

/// A small home is cleaned twice: what each pass over the floor came to. A run has one at least; what comes
/// before the floor is cleaned, and the way home, belong to the first and the last.
class Passes final : public LogSink
{
public:
    struct Pass
    {
        std::uint64_t frames = 0;  ///< what it took
        double run_mm = 0;         ///< way on the robot's own wheels
        double coverage = 0;       ///< of the floor within reach, 0 to 1
        double again_m2 = 0;       ///< swept twice in this pass
    };

    void take(const LogEntry& entry) override;
    void finish(const nlohmann::ordered_json& /*report*/) override {}

    /// A frame's tick is over. Where a pass began in it, the one before is closed.
    void frame(std::uint64_t frame, const Body& body, SweptFloor& swept, PointMm from);

    /// All of them, the one at hand included; takes a look at the whole home.
    [[nodiscard]] std::vector<Pass> upTo(std::uint64_t frame, const Body& body, const SweptFloor& swept,
                                         PointMm from) const;
    [[nodiscard]] std::size_t count() const { return ended_.size() + 1; }

private:
    std::vector<Pass> ended_;
    bool begins_ = false;
    std::uint64_t since_ = 0;
    double run_mm_ = 0;
};

}  // namespace vemra::robot
