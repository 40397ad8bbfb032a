#include "support/transcript.h"

#include <algorithm>
#include <sstream>

#include "leaves/contract.h"

namespace vemra::test {
namespace {

constexpr std::size_t kMostLines = 40;

std::string describe(const Step& step)
{
    std::string text = step.who;
    for (const auto& [port, value] : step.values)
        text.append(" ").append(port).append("=\"").append(value).append("\"");
    return text;
}

void printLine(std::ostream& out, const Asking& asking)
{
    out << "  " << asking.first_frame;
    if (asking.last_frame > asking.first_frame)
        out << "-" << asking.last_frame;
    out << ": " << asking.who;
    for (const auto& [port, value] : asking.ports)
        out << " " << port << "=\"" << value << "\"";
    out << " -> " << BT::toStr(asking.answer);
    if (asking.halted_in)
        out << ", halted in " << *asking.halted_in;
    out << "   (" << asking.tree << ")\n";
}

}  // namespace

bool Asking::fits(const Step& step) const
{
    return who == step.who &&
           std::all_of(step.values.begin(), step.values.end(), [this](const auto& expected) {
               const auto found = ports.find(expected.first);
               return found != ports.end() && found->second == expected.second;
           });
}

void Transcript::ask(const BT::TreeNode& node, const std::string& who, int frame, bool start)
{
    pending_ = {who,           std::string(node.place().tree), {}, frame, frame,
                start ? 1 : 0, BT::NodeStatus::IDLE,           {}};
    std::string text;
    for (const BT::Port& port : node.ports()) {
        text.clear();
        if (port.toText(text))
            pending_.ports.emplace(port.name(), text);
    }
}

void Transcript::settle(const BT::TreeNode& node, BT::NodeStatus answer)
{
    pending_.answer = answer;
    const auto last = last_of_node_.find(&node);
    if (last != last_of_node_.end()) {
        Asking& before = askings_[last->second];
        const int frame = pending_.first_frame;
        // Either a run goes on, or the node is started in each frame and answers the same each time.
        const bool same =
            pending_.starts == 0 || (before.answer == answer && before.first_frame + before.starts == frame);
        if (same && !before.halted_in && before.last_frame + 1 == frame && before.ports == pending_.ports) {
            before.last_frame = frame;
            before.answer = answer;
            before.starts += pending_.starts;
            return;
        }
    }
    last_of_node_[&node] = askings_.size();
    askings_.push_back(std::move(pending_));
}

void Transcript::halt(const BT::TreeNode& node, int frame)
{
    if (const auto last = last_of_node_.find(&node); last != last_of_node_.end())
        askings_[last->second].halted_in = frame;
}

void Transcript::clear()
{
    // What runs keeps its line, so that its halt is still seen.
    std::vector<Asking> kept;
    std::unordered_map<const BT::TreeNode*, std::size_t> places;
    for (const auto& [node, at] : last_of_node_) {
        if (askings_[at].answer != BT::NodeStatus::RUNNING || askings_[at].halted_in)
            continue;
        places[node] = kept.size();
        kept.push_back(askings_[at]);
        kept.back().first_frame = kept.back().last_frame + 1;
        kept.back().starts = 0;
    }
    askings_ = std::move(kept);
    last_of_node_ = std::move(places);
}

std::optional<int> Transcript::firstFrame(const Step& step) const
{
    std::optional<int> first;
    for (const Asking& asking : askings_)
        if (asking.fits(step) && asking.last_frame >= asking.first_frame)
            first = std::min(first.value_or(asking.first_frame), asking.first_frame);
    return first;
}

int Transcript::frames(const Step& step) const
{
    int count = 0;
    for (const Asking& asking : askings_)
        if (asking.fits(step))
            count += asking.last_frame - asking.first_frame + 1;
    return count;
}

int Transcript::starts(const Step& step) const
{
    int count = 0;
    for (const Asking& asking : askings_)
        if (asking.fits(step))
            count += asking.starts;
    return count;
}

bool Transcript::askedIn(int frame, const Step& step) const
{
    return std::any_of(askings_.begin(), askings_.end(), [&](const Asking& asking) {
        return asking.first_frame <= frame && frame <= asking.last_frame && asking.fits(step);
    });
}

testing::AssertionResult Transcript::asked(const Step& step) const
{
    if (firstFrame(step))
        return testing::AssertionSuccess() << describe(step) << " was asked";
    return testing::AssertionFailure() << describe(step) << " was never asked, but:\n" << print(step.who);
}

testing::AssertionResult Transcript::notAsked(const Step& step) const
{
    if (!firstFrame(step))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << describe(step) << " was asked:\n" << print(step.who);
}

testing::AssertionResult Transcript::started(const Step& step, int times) const
{
    const int count = starts(step);
    if (count == times)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << describe(step) << " was started " << count << " times, not " << times << ":\n"
           << print(step.who);
}

testing::AssertionResult Transcript::halted(const Step& step) const
{
    for (const Asking& asking : askings_)
        if (asking.halted_in && asking.fits(step))
            return testing::AssertionSuccess() << step.who << " was halted in frame " << *asking.halted_in;
    return testing::AssertionFailure() << describe(step) << " was not halted:\n" << print(step.who);
}

testing::AssertionResult Transcript::inOrder(const std::vector<Step>& steps) const
{
    int frame = 0;
    std::optional<std::size_t> at;
    for (const Step& step : steps) {
        // The earliest start behind the one before, be it a later round of the same line.
        std::optional<std::pair<int, std::size_t>> next;
        for (std::size_t i = 0; i < askings_.size(); ++i) {
            const Asking& asking = askings_[i];
            if (asking.starts == 0 || !asking.fits(step))
                continue;
            int begins = asking.first_frame;
            if (at && (begins < frame || (begins == frame && i <= *at)))
                begins = i > *at ? frame : frame + 1;
            if (begins > asking.first_frame + asking.starts - 1)
                continue;
            if (!next || std::pair(begins, i) < *next)
                next = std::pair(begins, i);
        }
        if (!next)
            return testing::AssertionFailure()
                   << describe(step) << " was not started after frame " << frame << ":\n"
                   << print();
        frame = next->first;
        at = next->second;
    }
    return testing::AssertionSuccess();
}

std::string Transcript::print(std::string_view who) const
{
    std::vector<const Asking*> chosen;
    for (const Asking& asking : askings_)
        if (asking.who == who)
            chosen.push_back(&asking);
    if (chosen.empty())
        for (const Asking& asking : askings_)
            if (const leaf::LeafContract* contract = leaf::find(asking.who);
                contract == nullptr || contract->kind == leaf::LeafKind::Action)
                chosen.push_back(&asking);
    std::ostringstream out;
    const std::size_t left_out = chosen.size() - std::min(chosen.size(), kMostLines);
    if (left_out > 0)
        out << "  (" << left_out << " lines before)\n";
    for (std::size_t i = left_out; i < chosen.size(); ++i)
        printLine(out, *chosen[i]);
    return out.str().empty() ? "  nothing at all\n" : out.str();
}

}  // namespace vemra::test
