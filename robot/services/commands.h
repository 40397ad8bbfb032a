#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "leaves/host/host.h"
#include "robot/services/modes.h"
#include "robot/services/report.h"

namespace vemra::robot {

/// The keys of the panel by their values, as the trees ask for them.
enum class Key : std::uint8_t
{
    Start = 1,
    Home = 2,
    SetUp = 3,
    StartLong = 5,
    HomeLong = 6,
    Reset = 9,
    HomeVeryLong = 12
};

/// The front panel and the app. What a person asks for waits in line; each is shown to the trees until they
/// have dealt with it, and dropped where that takes longer than twelve seconds.
class CommandService
{
public:
    struct AppCommand
    {
        Mode mode = Mode::None;
        bool order = false;  ///< a timed order, not a person
    };

    CommandService(BT::Blackboard& blackboard, Report report, ModeService& modes);

    void install(leaf::LeafHost& host);
    /// The beginning of a frame.
    void update() { ++frame_; }

    void press(Key key) { keys_.push_back(key); }
    void send(const AppCommand& command) { app_.push_back(command); }
    void findRobot() { find_robot_ = true; }
    void setChildLock(bool on);
    /// As the app's own button does: the trees speak of it.
    void clickChildLock(bool on);
    void setAnnoyMode(bool on) { annoy_ = on; }

    [[nodiscard]] bool annoyMode() const { return annoy_; }

private:
    void installKeys(leaf::LeafHost& host);
    void installApp(leaf::LeafHost& host);
    [[nodiscard]] bool stillDealtWith() const { return frame_ - dealt_with_since_ < kPatienceFrames; }

    static constexpr std::uint64_t kPatienceFrames = 600;

    BT::Blackboard& blackboard_;
    Report report_;
    ModeService& modes_;
    std::deque<Key> keys_;
    std::deque<AppCommand> app_;
    std::optional<Key> key_;          ///< being dealt with
    std::optional<AppCommand> command_;
    std::uint64_t frame_ = 0;
    std::uint64_t dealt_with_since_ = 0;
    bool find_robot_ = false;
    bool annoy_ = false;
};

}  // namespace vemra::robot
