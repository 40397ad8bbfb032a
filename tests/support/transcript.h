#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "support/notation.h"

namespace vemra::test {

/// What was asked of one node in frames without a gap: one run, or the same answer again and again.
struct Asking
{
    std::string who;  ///< leaf or replaced tree
    std::string tree;
    std::map<std::string, std::string, std::less<>> ports;  ///< as read; a port without a value is left out
    int first_frame = 0;
    int last_frame = 0;
    int starts = 0;  ///< 0 where it goes on with a run begun with other port values
    BT::NodeStatus answer = BT::NodeStatus::IDLE;
    std::optional<int> halted_in;  ///< frame in which it was stopped while RUNNING

    [[nodiscard]] bool fits(const Step& step) const;
};

/// All that the leaves were asked, with checks whose failures tell what was asked instead.
class Transcript
{
public:
    /// The node is asked, with its ports as they read now; settle() tells its answer.
    void ask(const BT::TreeNode& node, const std::string& who, int frame, bool start);
    void settle(const BT::TreeNode& node, BT::NodeStatus answer);
    void halt(const BT::TreeNode& node, int frame);
    /// Begins anew; nodes that run go on.
    void clear();

    [[nodiscard]] const std::vector<Asking>& askings() const { return askings_; }
    [[nodiscard]] std::optional<int> firstFrame(const Step& step) const;
    [[nodiscard]] int frames(const Step& step) const;
    [[nodiscard]] int starts(const Step& step) const;
    [[nodiscard]] bool askedIn(int frame, const Step& step) const;

    testing::AssertionResult asked(const Step& step) const;
    testing::AssertionResult notAsked(const Step& step) const;
    testing::AssertionResult started(const Step& step, int times) const;
    testing::AssertionResult halted(const Step& step) const;
    testing::AssertionResult inOrder(const std::vector<Step>& steps) const;

    /// One line an asking: those of `who` when it is given and was asked at all, else of all actions.
    [[nodiscard]] std::string print(std::string_view who = {}) const;

private:
    Asking pending_;  ///< asked and not yet answered
    std::vector<Asking> askings_;
    std::unordered_map<const BT::TreeNode*, std::size_t> last_of_node_;
};

}  // namespace vemra::test
