#include "robot/host/expectations.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>

namespace vemra::robot {
namespace {

/// Gathers what is otherwise than expected: "mode was StandbyMode, docked was true".
class Differences
{
public:
    template <class Value>
    void compare(const char* what, const std::optional<Value>& expected, const Value& is)
    {
        if (expected && *expected != is)
            add(fmt::format("{} was {}", what, shown(is)));
    }
    void add(const std::string& difference) { text_ += (text_.empty() ? "" : ", ") + difference; }
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    static std::string shown(bool value) { return value ? "true" : "false"; }
    static std::string shown(Mode value) { return value == Mode::None ? "none" : toText(value); }
    static std::string shown(const std::string& value) { return value.empty() ? "empty" : value; }

    std::string text_;
};

std::string listed(const std::vector<std::string>& texts)
{
    return texts.empty() ? "none" : fmt::format("{}", fmt::join(texts, ", "));
}

bool isState(const ExpectedState& state)
{
    return !(state == ExpectedState{});
}

}  // namespace

void Expectations::begin(std::uint64_t frame)
{
    for (; next_ < expected_.size() && expected_[next_].from <= frame; ++next_)
        active_.push_back({&expected_[next_]});
}

void Expectations::take(const LogEntry& entry)
{
    if (const auto* light = std::get_if<event::Light>(&entry.event))
        light_ = light->shown;
    else if (const auto* station = std::get_if<event::StationLight>(&entry.event))
        station_light_ = station->shown;
    else if (std::holds_alternative<event::Unmet>(entry.event))
        return;
    if (active_.empty())
        return;
    const std::string text = toText(entry.event);
    const bool is_message = std::holds_alternative<event::Message>(entry.event) ||
                            std::holds_alternative<event::LevelMessage>(entry.event);
    for (Active& active : active_) {
        const ExpectedEvents& events = active.what->events;
        if (std::holds_alternative<event::ModeChange>(entry.event))
            active.modes.push_back(text);
        if (std::holds_alternative<event::Music>(entry.event))
            active.music.push_back(text);
        const bool said = events.message && is_message && text.find(*events.message) != std::string::npos;
        const bool told = events.told && text.find(*events.told) != std::string::npos;
        active.told += said || told ? 1 : 0;
    }
}

// What keeps the state from being as expected; empty where nothing does.
std::string Expectations::missing(const ExpectedState& state, const Moment& now) const
{
    Differences differ;
    differ.compare("mode", state.mode, now.mode);
    differ.compare("task_state", state.task_state, now.task_state);
    differ.compare("robot_status", state.robot_status, now.robot_status);
    differ.compare("light", state.light, light_);
    differ.compare("station_light", state.station_light, station_light_);
    differ.compare("docked", state.docked, now.docked);
    differ.compare("powered_off", state.powered_off, now.powered_off);
    if (state.error && !now.errors.contains(*state.error))
        differ.add(
            fmt::format("no error {}, but {}", *state.error, listed({now.errors.begin(), now.errors.end()})));
    for (const auto& [key, text] : state.keys) {
        std::string is;
        if (!now.keys.contains(key))
            differ.add(fmt::format("there was no key {}", key));
        else if (!now.keys.get(key, is))
            differ.add(fmt::format("key {} held no text", key));
        else
            differ.compare(key.c_str(), std::optional(text), is);
    }
    for (const std::string& key : state.absent)
        if (now.keys.contains(key))
            differ.add(fmt::format("there was a key {}", key));
    if (state.place) {
        const double away = distance(now.stands_at, *state.place);
        if (away > state.place_mm)
            differ.add(fmt::format("the robot stood at [{:.2f}, {:.2f}], {:.0f} mm away",
                                   now.stands_at.x / 1000, now.stands_at.y / 1000, away));
    }
    // Last, as it costs: nobody asks where something else is wrong already.
    if (state.coverage && differ.text().empty()) {
        if (const double swept = now.coverage(); swept < *state.coverage)
            differ.add(fmt::format("{:.1f} % of the floor was swept", swept));
    }
    if (state.known && differ.text().empty()) {
        if (const double known = now.known(); known < *state.known)
            differ.add(fmt::format("{:.1f} % of the floor was known", known));
    }
    if (state.floor && differ.text().empty()) {
        const double swept = now.swept_in(state.floor->box);
        if (swept < state.floor->least || swept > state.floor->most)
            differ.add(fmt::format("{:.1f} % of that floor was swept", swept));
    }
    return differ.text();
}

// As far as it has come: what is counted can still become too much.
bool Expectations::isMet(const Active& active)
{
    const ExpectedEvents& events = active.what->events;
    const bool listens = events.message || events.told;
    return (active.state_seen || !isState(active.what->state)) &&
           (!listens || (events.times ? active.told == *events.times : active.told > 0)) &&
           (!events.modes || *events.modes == active.modes) &&
           (!events.music || *events.music == active.music);
}

std::string Expectations::found(const Active& active, const Moment& now) const
{
    if (active.what->never)
        return "it was so";
    Differences differ;
    const ExpectedEvents& events = active.what->events;
    if (isState(active.what->state) && !active.state_seen)
        differ.add(missing(active.what->state, now));
    if (events.times && active.told != *events.times)
        differ.add(fmt::format("it came {} times", active.told));
    else if ((events.message || events.told) && !events.times && active.told == 0)
        differ.add("it was not told");
    differ.compare("modes", events.modes ? std::optional(listed(*events.modes)) : std::nullopt,
                   listed(active.modes));
    differ.compare("music", events.music ? std::optional(listed(*events.music)) : std::nullopt,
                   listed(active.music));
    return differ.text();
}

bool Expectations::decide(Active& active, const Moment& now, std::vector<Unmet>& unmet)
{
    const Expectation& what = *active.what;
    if (isState(what.state) && (!active.state_seen || what.never)) {
        // Looking at the whole floor in every frame would take longer than the run: once a second will do.
        const bool due = (!what.state.coverage && !what.state.floor && !what.state.known) ||
                         now.frame >= what.to || now.frame % 50 == 0;
        active.state_seen = due && missing(what.state, now).empty();
    }
    const bool counted = what.events.times || what.events.modes || what.events.music;
    const bool over = now.frame >= what.to;
    const bool met = isMet(active);
    if (what.never ? !met && !over : !over && (counted || !met))
        return false;
    if (met != what.never)
        ++met_;
    else
        unmet.push_back(
            {now.frame, what.line, fmt::format("expected {}: {}", what.text, found(active, now))});
    return true;
}

std::vector<Unmet> Expectations::look(const Moment& now)
{
    std::vector<Unmet> unmet;
    std::erase_if(active_, [&](Active& active) { return decide(active, now, unmet); });
    return unmet;
}

std::vector<Unmet> Expectations::close(const Moment& now)
{
    std::vector<Unmet> unmet;
    for (; next_ < expected_.size(); ++next_)
        active_.push_back({&expected_[next_]});
    for (Active& active : active_) {
        Expectation ended = *active.what;
        ended.to = std::min(ended.to, now.frame);
        active.what = &ended;
        decide(active, now, unmet);
    }
    active_.clear();
    return unmet;
}

}  // namespace vemra::robot
