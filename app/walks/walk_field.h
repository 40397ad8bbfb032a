#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "app/trees/tree_model.h"
#include "app/walks/chance.h"
#include "app/walks/walk.h"
#include "behaviortree_cpp/blackboard/blackboard.h"

namespace vemra::app {

class KeyPool;

/// What surrounds a tree in a walk: what comes by chance, the keys, and all that has happened.
class WalkField
{
public:
    /// The pool must outlive this object.
    explicit WalkField(const KeyPool& pool) : pool_(pool) {}

    /// Begins walk `number` of a tree on a blackboard of its own, with the keys that these trees name.
    void begin(const std::string& tree, std::uint64_t number, std::span<const TreeModel> keys_of);
    /// Begins the next frame: keys change. Whether the tree is to be halted.
    bool nextFrame();
    /// Tells which keys the tree has changed.
    void endFrame();

    [[nodiscard]] int frame() const { return clock_->frame; }
    [[nodiscard]] int frames() const;
    [[nodiscard]] const BT::Blackboard::Ptr& board() const { return board_; }
    [[nodiscard]] std::vector<WalkEvent> takeEvents() { return std::move(events_); }

    void tell(WalkEventKind kind, std::string text) { events_.push_back({frame(), kind, std::move(text)}); }

    // What comes by chance. An action or condition is its leaf and what its ports read.
    /// How often this was begun before.
    std::uint64_t countOf(const std::string& action) { return begun_[action]++; }
    /// Some actions succeed nearly always, some hardly ever, and more in one walk than in another.
    [[nodiscard]] bool succeeds(const std::string& action, std::uint64_t count) const;
    /// In ticks behind the first; -1: until it is halted.
    [[nodiscard]] int duration(const std::string& action, std::uint64_t count, bool is_holding) const;
    /// Most conditions hold, or do not, all the time; some change.
    [[nodiscard]] bool holds(const std::string& condition) const;
    /// Gives the key a value for what was asked.
    void write(const std::string& key, const std::string& question, std::uint64_t count);
    /// The frames near one another, in which a condition is answered alike.
    [[nodiscard]] std::uint64_t span() const { return static_cast<std::uint64_t>(frame()) / span_; }

private:
    struct FrameClock final : BT::Clock
    {
        [[nodiscard]] std::int64_t milliseconds() const override;
        int frame = 0;
    };
    /// A key that the tree has to do with, and what it held last.
    struct WatchedKey
    {
        std::string name;
        BT::Any* slot;
        BT::Any last;
    };
    /// How many of the actions end at once, and how many at all.
    struct Pace
    {
        double at_once = 1;
        double ever = 1;
    };
    /// Shares of the keys that get a value, or another one, in a frame.
    struct KeyRates
    {
        double of_those_absent = 0;
        double of_those_there = 0;
    };
    /// Shares of success; an action has one of them.
    using Mood = std::array<double, 4>;

    [[nodiscard]] std::uint64_t draw(std::string_view what, std::uint64_t count = 0) const
    {
        return drawn(seed_, what, count);
    }
    void giveKeys(const KeyRates& rates);

    const KeyPool& pool_;
    std::shared_ptr<FrameClock> clock_ = std::make_shared<FrameClock>();
    BT::Blackboard::Ptr board_;
    std::vector<WalkEvent> events_;
    std::vector<WatchedKey> keys_;
    std::unordered_map<std::string, std::uint64_t> begun_;
    std::uint64_t number_ = 0;
    std::uint64_t seed_ = 0;
    std::uint64_t span_ = 1;
    KeyRates key_rates_{};
    Mood mood_{};
    Pace pace_{};
};

}  // namespace vemra::app
