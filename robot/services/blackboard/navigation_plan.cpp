#include "robot/services/blackboard/navigation_plan.h"

#include <array>
#include <stdexcept>
#include <string_view>

#include "robot/services/blackboard/blackboard_types.h"

namespace vemra::robot {
namespace {

constexpr std::string_view kBetween = " | ";
constexpr std::array kTypes = {BridgeType::Tmp, BridgeType::History, BridgeType::TrialWithTrace,
                               BridgeType::TrialNoTrace, BridgeType::Step};

BridgePtr bridgeFrom(std::string_view text)
{
    for (const BridgeType type : kTypes) {
        const std::string start = std::string(toText(type)) + ';';
        if (text.starts_with(start)) {
            auto bridge = std::make_shared<Bridge>();
            bridge->type = type;
            bridge->line = pointsOf(text.substr(start.size()));
            if (bridge->line.size() < 2) {
                throw std::invalid_argument("a bridge has two ends, found '" + std::string(text) + "'");
            }
            return bridge;
        }
    }
    return nullptr;
}

PlanSegment segmentFrom(std::string_view text)
{
    if (const BridgePtr bridge = bridgeFrom(text)) {
        return {std::make_shared<const Line>(bridge->line), bridge};
    }
    return {std::make_shared<const Line>(pointsOf(text)), nullptr};
}

}  // namespace

const char* toText(BridgeType type)
{
    switch (type) {
        case BridgeType::Tmp:
            return "TMP";
        case BridgeType::History:
            return "HISTORY";
        case BridgeType::TrialWithTrace:
            return "TRIALWITHTRACE";
        case BridgeType::TrialNoTrace:
            return "TRIALNOTRACE";
        case BridgeType::Step:
            return "STEP";
    }
    return "";
}

std::ostream& operator<<(std::ostream& out, const LinePtr& line)
{
    if (line) {
        writePoints(out, *line);
    }
    return out;
}

std::ostream& operator<<(std::ostream& out, const BridgePtr& bridge)
{
    if (bridge) {
        out << toText(bridge->type) << ';';
        writePoints(out, bridge->line);
    }
    return out;
}

std::ostream& operator<<(std::ostream& out, const PlanPtr& plan)
{
    for (std::size_t i = plan ? plan->next : 0; plan && i < plan->segments.size(); ++i) {
        const PlanSegment& segment = plan->segments[i];
        out << (i > plan->next ? kBetween : "");
        if (segment.bridge) {
            out << segment.bridge;
        } else {
            out << segment.line;
        }
    }
    return out;
}

}  // namespace vemra::robot

namespace BT {

using vemra::robot::BridgePtr;
using vemra::robot::LinePtr;
using vemra::robot::PlanPtr;

template <>
LinePtr convertFromString<LinePtr>(const StringView& text)
{
    return std::make_shared<const vemra::robot::Line>(vemra::robot::pointsOf(text));
}

template <>
BridgePtr convertFromString<BridgePtr>(const StringView& text)
{
    if (BridgePtr bridge = vemra::robot::bridgeFrom(text)) {
        return bridge;
    }
    throw std::invalid_argument("expected a type of bridge and its ends, found '" + std::string(text) + "'");
}

template <>
PlanPtr convertFromString<PlanPtr>(const StringView& text)
{
    auto plan = std::make_shared<vemra::robot::NavigationPlan>();
    std::string_view left = text;
    for (bool more = true; more;) {
        const std::size_t end = left.find(vemra::robot::kBetween);
        more = end != std::string_view::npos;
        plan->segments.push_back(vemra::robot::segmentFrom(left.substr(0, end)));
        left.remove_prefix(more ? end + vemra::robot::kBetween.size() : left.size());
    }
    return plan;
}

}  // namespace BT
