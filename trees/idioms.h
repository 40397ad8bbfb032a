#pragma once

/// What recurs across the trees, each under one name. Every function returns a fresh copy of its nodes.

#include <initializer_list>
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

// --- keys ---------------------------------------------------------------------------------------

/// Sets a flag key: its presence is the whole meaning.
inline Node set_flag(const std::string& key)
{
    return SetBlackboard{key, ""};
}

inline Node erase(const std::string& key)
{
    return EraseBlackboard{key};
}

inline Node present(const std::string& key)
{
    return BlackboardContains{key};
}

inline Node absent(const std::string& key)
{
    return Inverter(BlackboardContains{key});
}

/// The text under `key` is `text`.
inline Node key_is(const std::string& key, const std::string& text)
{
    return StringMatch{"${" + key + "}", text};
}

inline Node key_is_true(const std::string& key)
{
    return key_is(key, "true");
}

/// Keeps the value that is there, and sets it by `copy_from` where there is none.
inline Node default_from(const std::string& key, const std::string& copy_from)
{
    return FallbackStar(present(key), BlackboardCopy{.source = copy_from, .target = key});
}

/// Gives a key back what was kept beside it, if anything was.
inline Node restore(const std::string& key)
{
    return ForceSuccess(
        SequenceStar(present(key + "_bak"), BlackboardCopy{key + "_bak", key}, erase(key + "_bak")));
}

// --- modes --------------------------------------------------------------------------------------

inline Node in_mode(const char* mode)
{
    return RobotModeAdjugement{mode};
}

/// The first of several tests that passes decides.
inline Node any_of(std::vector<Node> tests)
{
    return {"FallbackStar", {{"reset_on_failure", "true"}}, std::move(tests)};
}

inline Node in_any_mode(std::initializer_list<const char*> modes)
{
    std::vector<Node> tests;
    for (const char* mode : modes)
        tests.push_back(in_mode(mode));
    return any_of(std::move(tests));
}

/// The text under `key` is one of `texts`.
inline Node key_is_any(const std::string& key, std::initializer_list<const char*> texts)
{
    std::vector<Node> tests;
    for (const char* text : texts)
        tests.push_back(key_is(key, text));
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
inline Node by_text(const std::string& key, const std::vector<TextCase>& rows,
                    Node otherwise = AlwaysSuccess{})
{
    std::vector<Case> cases;
    for (const TextCase& row : rows)
        cases.push_back({key_is(key, row.text), row.then});
    return choose(std::move(cases), std::move(otherwise));
}

// --- leaving a loop -----------------------------------------------------------------------------

/// The two steps of a stretch that `break_key` ends from within: the key is set back to "false", then `body`
/// runs until `leave` or its own end.
inline Nodes until_left(const std::string& break_key, Node body)
{
    return row(SetBlackboard{break_key, "false"}, BB_Precondition(break_key, std::move(body)));
}

/// Ends the stretch, and waits for the tick on which it is halted.
inline Nodes leave(const std::string& break_key)
{
    return row(SetBlackboard{break_key, "true"}, Delay{1});
}

// --- senses -------------------------------------------------------------------------------------

/// A sense that does not count while the last of the steps runs; those before it are companions beside it.
template <Steps... Children>
Node without_sensor(const char* sensor, Children&&... children)
{
    return DoWhile(TemporarilyDisableSensor{.lock_status = "false", .sensor = sensor},
                   std::forward<Children>(children)...);
}

/// A sense that counts for as long.
template <Steps... Children>
Node with_sensor(const char* sensor, Children&&... children)
{
    return DoWhile(TemporarilyEnableSensor{.lock_status = "false", .sensor = sensor},
                   std::forward<Children>(children)...);
}

// --- steps --------------------------------------------------------------------------------------

/// Runs the steps in order when all before them pass, and succeeds in any case.
template <Steps... Children>
Node optionally(Children&&... steps)
{
    return ForceSuccess(SequenceStar(std::forward<Children>(steps)...));
}

/// A `SequenceStar` of steps that are put together one by one.
inline Node in_order(std::vector<Node> steps)
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
inline Node stop_for_cliff_sensors(const Node& pause = Delay{"10"})
{
    return Inverter(
        Sequence(present("stop_to_check_clif"), SaySomething{"停下来检测悬崖传感器！"}, Stop{}, pause));
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
    return RetryUntilSuccesful(
        1, Sequence(SubtreeCondition{"Escape"}, Rotate{.angle_deg = angle_deg,
                                                       .angular_velocity_deg_s = deg_s,
                                                       .false_relative_true_absolute = "false"}));
}

// --- sound --------------------------------------------------------------------------------------

/// Asks for music `number`; "true" in `interrupt` cuts off what plays.
inline Node music(const char* number, const char* interrupt)
{
    return SetMusicPlayPara{.Interrupt_En = interrupt, .MusicNumber = number};
}

/// Cuts off what plays.
inline Node play(const char* number)
{
    return music(number, "true");
}

/// Waits for what plays.
inline Node queue(const char* number)
{
    return music(number, "false");
}

}  // namespace vemra::trees

using namespace vemra::trees;  // NOLINT(google-global-names-in-headers, google-build-using-namespace)
