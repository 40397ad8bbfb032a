#include "app/visits/tree_watch.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <ostream>
#include <utility>

#include "app/trees/outline.h"
#include "app/user_error.h"
#include "robot/events/timeline_printer.h"

namespace vemra::app {

TreeWatch::TreeWatch(std::ostream& out, TreeModel tree, std::size_t top)
    : out_(out), tree_(std::move(tree)), top_(top), end_(top + 1)
{
    if (top_ >= tree_.nodes.size())
        throw UserError(fmt::format("--watch: tree {} has {} lines", tree_.name, tree_.nodes.size()));
    while (end_ < tree_.nodes.size() && tree_.nodes[end_].depth > tree_.nodes[top_].depth)
        ++end_;
    now_.assign(end_ - top_, BT::NodeStatus::IDLE);
    shown_ = now_;
}

void TreeWatch::onTick(const BT::TreeNode& node, BT::NodeStatus result)
{
    const BT::TreePlace place = node.place();
    if (place.index >= top_ && place.index < end_ && place.tree == tree_.name)
        now_[place.index - top_] = result;
}

void TreeWatch::frame(std::uint64_t number)
{
    if (now_ != shown_) {
        print(number);
        shown_ = now_;
    }
    std::fill(now_.begin(), now_.end(), BT::NodeStatus::IDLE);
}

void TreeWatch::print(std::uint64_t number) const
{
    out_ << fmt::format("frame {}  {}  {}\n", number, robot::timeOfFrame(number), tree_.name);
    if (now_.front() == BT::NodeStatus::IDLE) {
        out_ << "  not ticked\n";
        return;
    }
    const auto runs = [this](std::size_t index) { return now_[index - top_] == BT::NodeStatus::RUNNING; };
    for (std::size_t i = top_; i < end_; ++i) {
        const ModelNode& node = tree_.nodes[i];
        if (runs(i) && std::none_of(node.children.begin(), node.children.end(), runs))
            out_ << fmt::format("  runs: {}:{}: {}\n", tree_.name, i + 1, nodeText(node));
    }
    for (std::size_t i = top_; i < end_; ++i)
        if (now_[i - top_] != BT::NodeStatus::IDLE)
            out_ << fmt::format("  {:<7}  {}{}\n", BT::toStr(now_[i - top_]),
                                std::string(2 * (tree_.nodes[i].depth - tree_.nodes[top_].depth), ' '),
                                nodeText(tree_.nodes[i]));
}

WatchedPart watchedPartOf(const std::string& text)
{
    const std::size_t colon = text.find(':');
    WatchedPart part{text.substr(0, colon)};
    if (colon == std::string::npos)
        return part;
    std::size_t line = 0;
    const char* end = text.data() + text.size();
    const auto [rest, fault] = std::from_chars(text.data() + colon + 1, end, line);
    if (fault != std::errc{} || rest != end || line == 0)
        throw UserError("--watch: expected TREE or TREE:LINE, as in StandbyModeIndex:3, not '" + text + "'");
    part.top = line - 1;
    return part;
}

}  // namespace vemra::app
