#pragma once

/// What recurs across the trees, each under one name. Every function returns a fresh copy of its nodes.

#include <array>
#include <concepts>
#include <string>
#include <utility>

#include "description/keys.h"
#include "description/tree.h"

namespace vemra::trees {

// --- build options ------------------------------------------------------------------------------

/// A build option that is on in this product.
inline Node switched_on()
{
    return StringMatch{"true", "true"};
}

/// A build option that is off in this product; what it guards stays in the tree.
inline Node switched_off()
{
    return StringMatch{"false", "true"};
}

// --- on a condition -----------------------------------------------------------------------------

/// Several steps as one node; a single one stays as it is.
template <Steps... Children>
Node steps_as_one(Children&&... steps)
{
    Nodes nodes = row(std::forward<Children>(steps)...);
    if (nodes.size() == 1)
        return std::move(nodes.front());
    return SequenceStar(nodes);
}

/// Does the steps if `given` passes. If it does not, there is nothing to do; a step that fails is a failure.
template <Steps... Children>
Node when(Node given, Children&&... steps)
{
    return IfThenElseStar(std::move(given), steps_as_one(std::forward<Children>(steps)...), AlwaysSuccess{});
}

/// Does the steps unless `given` passes.
template <Steps... Children>
Node unless(Node given, Children&&... steps)
{
    return FallbackStar(std::move(given), steps_as_one(std::forward<Children>(steps)...));
}

// --- keys ---------------------------------------------------------------------------------------

/// Erases several keys, one after the other.
template <std::convertible_to<Key>... Keys>
Nodes erase(const Keys&... keys)
{
    return row(keys.erase()...);
}

/// Gives a key back what was `kept` beside it, if anything was.
inline Node restore(const Key& key, const Key& kept)
{
    return ForceSuccess(SequenceStar(kept.present(), kept.copy_to(key), kept.erase()));
}

/// The robot stands within `distance_mm` of a point.
inline Node near(const Key& point, const Port& distance_mm)
{
    return ArePointsTooClose{
        .distance_mm = distance_mm, .point_mm_a = "${current_pose}", .point_mm_b = point.value()};
}

// --- modes --------------------------------------------------------------------------------------

inline Node in_mode(const char* mode)
{
    return RobotModeAdjugement{mode};
}

/// The first of several tests that passes decides.
inline Node any_of(Nodes tests)
{
    return {"FallbackStar", {{"reset_on_failure", "true"}}, std::move(tests)};
}

// Groups of modes, in the order in which they are tested.
inline constexpr std::array kCleaningModes = {"AutoCleanMode", "PartCleanMode", "SelectAreaCleanMode",
                                              "DrawAreaCleanMode", "SelectPointCleanMode"};
inline constexpr std::array kTaskModes = {"AutoCleanMode",        "DrawAreaCleanMode", "SelectAreaCleanMode",
                                          "SelectPointCleanMode", "FastMapBuildMode",  "PartCleanMode"};
inline constexpr std::array kModesOnDock = {"ChargingMode", "SleepMode"};

namespace detail {

inline void append_mode(Nodes& tests, const char* mode)
{
    tests.push_back(in_mode(mode));
}
template <std::size_t N>
void append_mode(Nodes& tests, const std::array<const char*, N>& modes)
{
    for (const char* mode : modes)
        append_mode(tests, mode);
}

}  // namespace detail

/// In one of modes and groups of modes.
template <class... Modes>
Node in_any_mode(const Modes&... modes)
{
    Nodes tests;
    (detail::append_mode(tests, modes), ...);
    return any_of(std::move(tests));
}

// --- decision tables ----------------------------------------------------------------------------

/// A row of a decision table.
struct Case
{
    Node when;
    Node then;
};

/// The first row whose test passes is carried out to its end: nested `IfThenElseStar`s.
inline Node choose(std::vector<Case> rows, Node otherwise = AlwaysSuccess{})
{
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        otherwise = IfThenElseStar(std::move(row->when), std::move(row->then), std::move(otherwise));
    return otherwise;
}

/// The tests are looked at again on each tick, and a row further up takes over: nested `IfThenElse`s.
inline Node keep_choosing(std::vector<Case> rows, Node otherwise = AlwaysSuccess{})
{
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        otherwise = IfThenElse(std::move(row->when), std::move(row->then), std::move(otherwise));
    return otherwise;
}

struct TextCase
{
    const char* text;
    Node then;
};

/// Chooses by the text under `key`.
inline Node by_text(const Key& key, const std::vector<TextCase>& rows, Node otherwise = AlwaysSuccess{})
{
    std::vector<Case> cases;
    for (const TextCase& row : rows)
        cases.push_back({key.is(row.text), row.then});
    return choose(std::move(cases), std::move(otherwise));
}

// --- leaving a stretch --------------------------------------------------------------------------

/// A key by which a stretch of a tree is left from within.
struct BreakKey
{
    Key key;

    /// The stretch: the key is set back, then `body` runs until `leave` or its own end.
    [[nodiscard]] Nodes scope(Node body) const { return row(key.set("false"), guard(std::move(body))); }
    /// The stretch alone, where the key was set back before.
    [[nodiscard]] Node guard(Node body) const { return BB_Precondition(key, std::move(body)); }
    /// Leaves the stretch, and waits for the tick on which it is halted.
    [[nodiscard]] Nodes leave() const { return row(key.set("true"), Delay{1}); }
};

// --- senses -------------------------------------------------------------------------------------

/// Companions: a sensor or virtual edge counts, or does not, while the scope runs. What is held, no younger
/// scope changes.
inline Node sensor_off(const char* sensor)
{
    return TemporarilyDisableSensor{.lock_status = "false", .sensor = sensor};
}
inline Node sensor_on(const char* sensor)
{
    return TemporarilyEnableSensor{.lock_status = "false", .sensor = sensor};
}
inline Node sensor_held_off(const char* sensor)
{
    return TemporarilyDisableSensor{.lock_status = "true", .sensor = sensor};
}
inline Node sensor_held_on(const char* sensor)
{
    return TemporarilyEnableSensor{.lock_status = "true", .sensor = sensor};
}

/// A sensor that does not count while the last of the steps runs; those before it are companions beside it.
template <Steps... Children>
Node without_sensor(const char* sensor, Children&&... children)
{
    return DoWhile(sensor_off(sensor), std::forward<Children>(children)...);
}

/// A sensor that counts for as long.
template <Steps... Children>
Node with_sensor(const char* sensor, Children&&... children)
{
    return DoWhile(sensor_on(sensor), std::forward<Children>(children)...);
}

// --- steps --------------------------------------------------------------------------------------

/// Runs the steps in order when all before them pass, and succeeds in any case.
template <Steps... Children>
Node optionally(Children&&... steps)
{
    return ForceSuccess(SequenceStar(std::forward<Children>(steps)...));
}

/// Runs the steps in order when all before them pass, and fails in any case.
template <Steps... Children>
Node fail_after(Children&&... steps)
{
    return SequenceStar(std::forward<Children>(steps)..., AlwaysFailure{});
}

/// A `SequenceStar` of steps that are put together one by one.
inline Node in_order(Nodes steps)
{
    return {"SequenceStar", {{"reset_on_failure", "true"}}, std::move(steps)};
}

inline Node trace(const std::string& message)
{
    return Log{"trace", message};
}

/// A gate before a motion, open while nobody asks for a check of the cliffs. When asked, the robot stands
/// still for `pause` until the sensors have settled, and the motion is then given up, unless `pause` ends in
/// failure.
inline Node stop_for_cliff_sensors(const Node& pause = Delay{10})
{
    return Inverter(
        Sequence(key::stop_to_check_clif.present(), SaySomething{"停下来检测悬崖传感器！"}, Stop{}, pause));
}

/// A gate before a motion, open while nothing touches. On a bump or a cliff the robot backs off, and the
/// motion is then given up.
inline Node back_off_on_contact()
{
    return FallbackStar(Inverter(CheckClifBump{.out_bump_dir = "bump_dir"}),
                        ForceFailure(SubtreeCondition{"Back2cm.xml"}));
}

/// A motion that an escape ends in failure.
inline Node guarded(Node motion)
{
    return Sequence(SubtreeCondition{"Escape"}, std::move(motion));
}

/// A turn by `angle_deg` from where the robot looks now. An escape on the way ends it in failure.
inline Node guarded_turn(const Port& angle_deg, const Port& deg_s)
{
    return RetryUntilSuccesful(1, guarded(Rotate{.angle_deg = angle_deg,
                                                 .angular_velocity_deg_s = deg_s,
                                                 .false_relative_true_absolute = "false"}));
}

// --- sound --------------------------------------------------------------------------------------

/// Plays music `number`, and cuts off what plays.
inline Node play(const Port& number)
{
    return SetMusicPlayPara{.Interrupt_En = "true", .MusicNumber = number};
}

/// Plays music `number` after what plays.
inline Node queue(const Port& number)
{
    return SetMusicPlayPara{.Interrupt_En = "false", .MusicNumber = number};
}

}  // namespace vemra::trees

using namespace vemra::trees;  // NOLINT(google-global-names-in-headers, google-build-using-namespace)
