#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <utility>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// What a person asks for, one after the other. What the trees do not take up in time lapses: a key pressed
/// during an update does nothing after it.
template <class T>
class Waiting
{
public:
    explicit Waiting(std::uint64_t patience_frames) : patience_(patience_frames) {}

    void add(const T& what, std::uint64_t frame) { line_.emplace_back(frame, what); }
    void dropOld(std::uint64_t frame)
    {
        while (!line_.empty() && frame - line_.front().first >= patience_)
            line_.pop_front();
    }
    std::optional<T> next()
    {
        if (line_.empty())
            return std::nullopt;
        std::optional<T> first(std::move(line_.front().second));
        line_.pop_front();
        return first;
    }

private:
    std::uint64_t patience_;
    std::deque<std::pair<std::uint64_t, T>> line_;
};

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
    static constexpr std::uint64_t kKeyFrames = 100;
    static constexpr std::uint64_t kPatienceFrames = 600;
    /// From a timed order to its task, a map that is being closed in between.
    static constexpr std::uint64_t kOrderFrames = 600;

    void installKeys(leaf::LeafHost& host);
    void installApp(leaf::LeafHost& host);
    void setChildLock(bool on);
    void showToTrees(const AppCommand& command);
    [[nodiscard]] bool stillDealtWith() const;
    void noteOrder(const AppCommand& command);
    /// The mode at hand was entered for a timed order; true once for each.
    [[nodiscard]] bool takeOrder();

    RobotParts parts_;
    std::optional<AnnoyTime> quiet_time_;
    Waiting<PanelKey> keys_{kKeyFrames};
    Waiting<AppCommand> app_{kPatienceFrames};
    std::optional<PanelKey> key_;  ///< being dealt with
    std::optional<AppCommand> command_;
    std::uint64_t dealt_with_since_ = 0;
    std::optional<Mode> ordered_;  ///< by the timetable, and not entered yet
    std::uint64_t ordered_in_ = 0;
    bool find_robot_ = false;
    std::optional<bool> wifi_joined_;  ///< the network's answer, till the trees ask for it
};

}  // namespace vemra::robot
