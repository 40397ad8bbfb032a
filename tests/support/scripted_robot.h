#pragma once

/// A robot whose leaves answer by script and whose trees are the real ones. A test says what the leaves
/// answer, starts a tree, drives frames, and looks at what was asked of the leaves and at the keys:
///
///     ScriptedRobot robot;
///     robot.leaf("SensorCheckBumped").inTurn({SUCCESS, SUCCESS, FAILURE});
///     robot.start("BTBack2cm");
///     EXPECT_EQ(robot.finish(20), SUCCESS);
///     EXPECT_TRUE(robot.asked("GoBackwards | Stop"));
///     EXPECT_TRUE(robot.keysAre("bump_dir=None -trapped"));
///
/// Leaves and keys are named in the notation of support/notation.h; a name or port that does not exist
/// throws. What is not scripted answers as a bare host would: a condition fails, an action succeeds; the
/// leaves that hold something for as long as what stands beside them (sensors off or on, the trace logger)
/// and the drives without an end of their own (OpenCloseMove, GoBackwards) run until halted. The runtime's
/// own leaves (keys, comparisons, delays) are the real ones.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "support/answer.h"
#include "support/matchers.h"
#include "support/transcript.h"

namespace vemra::test {

using enum BT::NodeStatus;

class ScriptedRobot
{
public:
    ScriptedRobot();
    ~ScriptedRobot();
    ScriptedRobot(const ScriptedRobot&) = delete;
    ScriptedRobot& operator=(const ScriptedRobot&) = delete;

    // --- the script ---

    /// A further answer of the leaf, where its ports read so; throws std::invalid_argument when the trees
    /// name no such leaf.
    Answer& leaf(std::string_view step);
    /// Puts a scripted answer in the place of a registered tree wherever it is entered.
    Answer& tree(const std::string& name);
    /// Leaves and trees that all do so.
    void succeed(std::string_view names);
    void fail(std::string_view names);

    /// From here on points are numbers, millimetres on a line, for the leaves that measure distances.
    void pointsOnALine();
    /// Directions and signals match where their texts are the same; "None" is no bump.
    void textsAsTheyStand();

    // --- keys ---

    template <class T>
    void set(std::string_view key, const T& value)
    {
        keys_->set(key, value);
    }
    /// Keys with a number or a text, with the empty text, and keys that go: "current_pose=0 kicked
    /// -charger_pose".
    void set(std::string_view notes) { setKeys(*keys_, notes); }
    void erase(std::string_view key) { keys_->erase(key); }
    [[nodiscard]] bool has(std::string_view key) const { return keys_->contains(key); }
    /// The value as text; nothing where the key is not there.
    [[nodiscard]] std::optional<std::string> key(std::string_view key) const;
    /// These have these values, are there at all, or are not there: "task_state=init moved -charger_pose".
    testing::AssertionResult keysAre(std::string_view notes) const { return test::keysAre(*keys_, notes); }
    [[nodiscard]] BT::Blackboard& keys() { return *keys_; }

    // --- driving ---

    /// Makes the tree; a tree that runs is halted first.
    void start(const std::string& tree);
    /// Makes a tree that enters these in a memory-less sequence, the way a task has its guard before its
    /// body.
    void startGuarded(const std::vector<std::string>& trees);
    /// Ticks so many frames, whatever the result, and gives the last one. A tree that ended begins again.
    NodeStatus tick(int frames = 1);
    /// Ticks until the tree ends; RUNNING when it has not ended within so many frames.
    NodeStatus finish(int at_most);
    /// Ticks until this is asked in the frame just ticked; fails the test when that takes longer.
    void tickUntil(std::string_view step, int at_most = 2000);
    /// As tick(), finish() and tickUntil(), of a tree that is started first.
    NodeStatus run(const std::string& tree, int frames = 1)
    {
        start(tree);
        return tick(frames);
    }
    NodeStatus finish(const std::string& tree, int at_most)
    {
        start(tree);
        return finish(at_most);
    }
    void runUntil(const std::string& tree, std::string_view step, int at_most = 2000)
    {
        start(tree);
        tickUntil(step, at_most);
    }
    void halt();
    /// The number of frames ticked; the first frame is 1.
    [[nodiscard]] int frame() const { return frame_; }

    // --- what was asked (since the start or forget()) ---

    /// Each of these, or none of them.
    testing::AssertionResult asked(std::string_view steps) const { return each(steps, &Transcript::asked); }
    testing::AssertionResult notAsked(std::string_view steps) const
    {
        return each(steps, &Transcript::notAsked);
    }
    testing::AssertionResult started(int times, std::string_view steps) const
    {
        return each(steps, &Transcript::started, times);
    }
    testing::AssertionResult halted(std::string_view steps) const { return each(steps, &Transcript::halted); }
    /// Started one after the other, whatever else came between.
    testing::AssertionResult inOrder(std::string_view steps) const
    {
        return transcript_.inOrder(known(steps));
    }
    /// Said or logged; the message as it read then.
    testing::AssertionResult said(const std::string& message) const;
    testing::AssertionResult notSaid(const std::string& message) const;
    /// In the frame just ticked.
    [[nodiscard]] bool askedNow(std::string_view step) const
    {
        return transcript_.askedIn(frame_, knownStep(step));
    }
    [[nodiscard]] int framesOf(std::string_view step) const { return transcript_.frames(knownStep(step)); }
    [[nodiscard]] std::optional<int> firstFrameOf(std::string_view step) const
    {
        return transcript_.firstFrame(knownStep(step));
    }
    /// A letter for each asking of these, in order.
    [[nodiscard]] std::string letters(std::initializer_list<std::pair<const char*, char>> names) const;
    void forget() { transcript_.clear(); }
    [[nodiscard]] const Transcript& transcript() const { return transcript_; }

private:
    class FrameClock;
    class LeafScript;
    template <class Base>
    class ScriptedNode;

    void registerLeaves();
    void begin(BT::Tree tree);
    Answer& answerOf(const std::string& name);
    /// Throws std::invalid_argument for a name or a port that can never stand in the transcript.
    std::vector<Step> known(std::string_view steps) const;
    Step knownStep(std::string_view step) const;
    /// The first of the results that is a failure.
    template <class Check, class... More>
    testing::AssertionResult each(std::string_view steps, Check check, More... more) const
    {
        testing::AssertionResult result = testing::AssertionSuccess();
        for (const Step& step : known(steps))
            if (result = (transcript_.*check)(step, more...); !result)
                break;
        return result;
    }

    int frame_ = 0;
    std::shared_ptr<FrameClock> clock_;
    BT::Blackboard::Ptr keys_;
    Transcript transcript_;
    std::unordered_map<std::string, std::unique_ptr<LeafScript>> scripts_;
    BT::BehaviorTreeFactory factory_;
    BT::Tree root_;
};

/// On a line of floor, places in millimetres.
struct RobotOnALine : testing::Test
{
    RobotOnALine() { robot.pointsOnALine(); }
    ScriptedRobot robot;
};

}  // namespace vemra::test
