#include "support/answer.h"

#include <stdexcept>

namespace vemra::test {

std::string Moment::port(std::string_view name) const
{
    std::string text;
    const BT::Port* port = node.findPort(name);
    return port != nullptr && port->toText(text) ? text : std::string{};
}

Answer& Answer::where(const std::string& port, const std::string& value)
{
    return provided([port, value](const Moment& now) { return now.port(port) == value; });
}

Answer& Answer::provided(std::function<bool(const Moment&)> holds)
{
    limits_.push_back(std::move(holds));
    return *this;
}

Answer& Answer::inTurn(std::initializer_list<NodeStatus> results)
{
    return decides([list = std::vector<NodeStatus>(results), at = std::make_shared<std::size_t>(0)](
                       const Moment&) { return *at + 1 < list.size() ? list[(*at)++] : list.back(); });
}

Answer& Answer::decides(Function function)
{
    function_ = std::move(function);
    return *this;
}

Answer& Answer::endsAfter(int ticks, NodeStatus result)
{
    return decides([ticks, result](const Moment& now) {
        return now.tick_of_run < ticks ? NodeStatus::RUNNING : result;
    });
}

bool Answer::fits(const Moment& now) const
{
    for (const auto& holds : limits_)
        if (!holds(now))
            return false;
    return true;
}

NodeStatus Answer::give(const Moment& now) const
{
    if (!function_ && effects_.empty())
        throw std::logic_error("the script does not say what " + who_ + " answers");
    const NodeStatus result = function_ ? function_(now) : NodeStatus::SUCCESS;
    if (at_once_ && result == NodeStatus::RUNNING)
        throw std::logic_error(who_ + " is a condition and cannot answer RUNNING");
    if (result == NodeStatus::SUCCESS)
        for (const auto& effect : effects_)
            effect(now);
    return result;
}

}  // namespace vemra::test
