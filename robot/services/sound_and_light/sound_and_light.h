#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// A request for a music, as `SetMusicPlayPara` leaves it on the blackboard. Number 0 is silence.
struct MusicRequest
{
    int number = 0;
    bool interrupt = false;
    int times = 0;
    std::uint64_t serial = 0;  ///< tells two requests for the same music apart

    friend std::ostream& operator<<(std::ostream& out, const MusicRequest& request);
};

/// The loudspeaker, the button light and what the robot says. A music lasts two seconds; a request that
/// does not interrupt waits for its end, and a later request takes the place of one that waits. In quiet
/// hours the button light of a charging robot is out, but for half a minute after somebody used the robot.
class SoundAndLightService final : public Service
{
public:
    explicit SoundAndLightService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    void update() override { showLight(); }

private:
    void play(const MusicRequest& request);
    void showLight();
    [[nodiscard]] bool dimmed() const;
    void installLights(leaf::LeafHost& host);

    RobotParts parts_;
    std::uint64_t requests_ = 0;
    std::uint64_t heard_ = 0;
    std::int64_t busy_until_ms_ = 0;
    std::string light_;  ///< as the trees set it
    std::string shown_;  ///< as a person sees it
    std::string station_light_;
    std::uint64_t dimming_in_ = 0;           ///< last frame in which the quiet hours were to be kept
    std::optional<std::uint64_t> woken_in_;  ///< frame in which a key lit a dark panel
    std::uint64_t bright_until_ = 0;         ///< frame; somebody is at the robot
};

}  // namespace vemra::robot
