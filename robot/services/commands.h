#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "robot/services/service.h"

namespace vemra::robot {

/// The front panel and the app. What a person asks for waits in line; each is shown to the trees until they
/// have dealt with it, and dropped where that takes longer than twelve seconds.
class CommandService final : public Service
{
public:
    CommandService(const RobotParts& parts, const ScenarioStart& start);

    void install(leaf::LeafHost& host) override;
    void update() override;
    bool take(const Happening& what) override;

private:
    void installKeys(leaf::LeafHost& host);
    void installApp(leaf::LeafHost& host);
    void setChildLock(bool on);
    void showToTrees(const AppCommand& command);
    [[nodiscard]] bool stillDealtWith() const;

    RobotParts parts_;
    std::optional<AnnoyTime> quiet_time_;
    std::deque<PanelKey> keys_;
    std::deque<AppCommand> app_;
    std::optional<PanelKey> key_;  ///< being dealt with
    std::optional<AppCommand> command_;
    std::uint64_t dealt_with_since_ = 0;
    bool find_robot_ = false;
    std::optional<bool> wifi_joined_;  ///< the network's answer, till the trees ask for it
};

}  // namespace vemra::robot
