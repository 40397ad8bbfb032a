#include "app/walks/walk_field.h"

#include <fmt/format.h>

#include "app/trees/keys.h"
#include "app/walks/key_pool.h"
#include "robot/base/clock.h"

namespace vemra::app {
namespace {

constexpr std::array<int, 3> kFrames{200, 600, 1800};
constexpr std::uint64_t kOneWalkInIsHalted = 4;
constexpr double kHaltedInFrame = 0.005;
constexpr double kKeyIsThere = 0.6;
constexpr double kSoon = 0.9;  // of the actions that take time
constexpr std::uint64_t kSoonTicks = 8;
constexpr std::uint64_t kLateTicks = 120;

template <class T, std::size_t N>
const T& oneOf(const std::array<T, N>& all, std::uint64_t lot)
{
    return all[lot % N];
}

bool isSame(const BT::Any& one, const BT::Any& other)
{
    if (one.kind() != other.kind())
        return false;
    switch (one.kind()) {
        case BT::Any::Kind::Empty:
            return true;
        case BT::Any::Kind::Integer:
        case BT::Any::Kind::Boolean:
            return one.integer() == other.integer();
        case BT::Any::Kind::Text:
            return one.text() == other.text();
        default: {
            std::string a;
            std::string b;
            return one.view(a) == other.view(b);
        }
    }
}

std::string keyText(const std::string& key, const BT::Any& value)
{
    if (value.empty())
        return key + " is gone";
    std::string scratch;
    return fmt::format("{} = \"{}\"", key, value.view(scratch));
}

}  // namespace

std::int64_t WalkField::FrameClock::milliseconds() const
{
    return std::int64_t{frame} * robot::kFrameMs;
}

void WalkField::begin(const std::string& tree, std::uint64_t number, std::span<const TreeModel> keys_of)
{
    static constexpr std::array<std::uint64_t, 3> kSpans{1, 20, 200};
    static constexpr std::array<KeyRates, 4> kKeyRates{
        {{0, 0}, {0.002, 0.0005}, {0.02, 0.001}, {0.02, 0.01}}};
    static constexpr std::array<Mood, 5> kMoods{
        {{0.04, 0.5, 0.5, 0.96}, {0.5, 0.96, 0.96, 1}, {0, 1, 1, 1}, {0.9, 1, 1, 1}, {1, 1, 1, 1}}};
    static constexpr std::array<Pace, 3> kPaces{{{0.9, 1}, {0.6, 0.998}, {0.2, 0.97}}};
    number_ = number;
    seed_ = drawn(0, tree, number);
    span_ = oneOf(kSpans, draw("span"));
    pace_ = oneOf(kPaces, draw("pace"));
    mood_ = oneOf(kMoods, draw("mood"));
    key_rates_ = oneOf(kKeyRates, draw("key rates"));
    clock_->frame = 0;
    events_.clear();
    begun_.clear();
    keys_.clear();
    board_ = BT::Blackboard::create();
    board_->setClock(clock_);
    for (const auto& [name, places] : keysOf(keys_of))
        keys_.push_back({name, &board_->slot(name), {}});
    giveKeys({kKeyIsThere, 0});
}

int WalkField::frames() const
{
    return oneOf(kFrames, number_);
}

bool WalkField::nextFrame()
{
    ++clock_->frame;
    giveKeys(key_rates_);
    return number_ % kOneWalkInIsHalted == 0 &&
           share(draw("halt", static_cast<std::uint64_t>(frame()))) < kHaltedInFrame;
}

void WalkField::giveKeys(const KeyRates& rates)
{
    for (WatchedKey& key : keys_) {
        const std::uint64_t lot = draw(key.name, ~static_cast<std::uint64_t>(frame()));
        const bool is_there = !key.slot->empty();
        if (share(lot) >= (is_there ? rates.of_those_there : rates.of_those_absent))
            continue;
        if (is_there && lot % 3 == 0)
            board_->erase(key.name);
        else
            key.slot->assign(pool_.choose(key.name, lot));
        if (!isSame(*key.slot, key.last))
            tell(WalkEventKind::Given, keyText(key.name, *key.slot));
        key.last.assign(*key.slot);
    }
}

void WalkField::endFrame()
{
    for (WatchedKey& key : keys_)
        if (!isSame(*key.slot, key.last)) {
            tell(WalkEventKind::Written, keyText(key.name, *key.slot));
            key.last.assign(*key.slot);
        }
}

bool WalkField::succeeds(const std::string& action, std::uint64_t count) const
{
    return share(draw(action, count)) < oneOf(mood_, draw("leaning", drawn(0, action)));
}

bool WalkField::holds(const std::string& condition) const
{
    static constexpr std::array<double, 8> kShares{0, 0, 0, 1, 1, 1, 0.03, 0.5};
    return share(draw(condition, span())) < oneOf(kShares, draw("leaning", drawn(0, condition)));
}

int WalkField::duration(const std::string& action, std::uint64_t count, bool is_holding) const
{
    const std::uint64_t chance = drawn(draw("duration", drawn(0, action)), {}, count);
    const double lot = share(chance);
    if (is_holding)
        return lot < 0.9 ? -1 : 0;
    if (lot < pace_.at_once)
        return 0;
    if (lot < pace_.ever)
        return 1 + static_cast<int>(chance % (lot < kSoon ? kSoonTicks : kLateTicks));
    return -1;
}

void WalkField::write(const std::string& key, const std::string& question, std::uint64_t count)
{
    board_->slot(key).assign(pool_.choose(key, draw(key, drawn(count, question))));
}

}  // namespace vemra::app
