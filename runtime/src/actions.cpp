#include <cmath>

#include "behaviortree_cpp/actions/arithmetic_nodes.h"
#include "behaviortree_cpp/actions/blackboard_nodes.h"
#include "behaviortree_cpp/actions/comparison_nodes.h"
#include "behaviortree_cpp/actions/set_blackboard_node.h"
#include "behaviortree_cpp/actions/timing_nodes.h"
#include "ports_macro.h"

namespace BT {

namespace {

NodeStatus passed(bool yes)
{
    return yes ? NodeStatus::SUCCESS : NodeStatus::FAILURE;
}

/// Both ports as values of type T; false when one is missing or cannot be read.
template <class T>
bool readBoth(const Port* first, T& a, const Port* second, T& b)
{
    return first != nullptr && second != nullptr && detail::readPort(*first, a) &&
           detail::readPort(*second, b);
}

}  // namespace

NodeStatus SetBlackboardNode::tick()
{
    // Most write the text that is there already.
    const Any* slot = key_.known(*this);
    if (slot != nullptr && value_ != nullptr && value_->form() == PortForm::Literal && slot->isText() &&
        detail::sameText(slot->text(), value_->raw())) [[likely]]
        return NodeStatus::SUCCESS;
    return write();
}

NodeStatus SetBlackboardNode::write()
{
    Any* slot = key_.resolve(*this);
    value_ = findPort("value");
    if (slot == nullptr || value_ == nullptr)
        return NodeStatus::FAILURE;
    if (const Any* referred = value_->reference()) {
        if (referred->empty())
            return NodeStatus::FAILURE;
        slot->assign(*referred);
        return NodeStatus::SUCCESS;
    }
    std::string scratch;
    std::string_view text;
    if (!value_->view(text, scratch))
        return NodeStatus::FAILURE;
    slot->setText(text);
    return NodeStatus::SUCCESS;
}

NodeStatus SetBlackboardWithTypeNode::tick()
{
    Any* slot = key_.resolve(*this);
    const Port* type = findPort("type");
    const Port* value = findPort("value");
    if (slot == nullptr || type == nullptr || value == nullptr)
        return NodeStatus::FAILURE;
    if (type->raw() == "int") {
        std::int64_t integer = 0;
        if (!value->toInteger(integer))
            return NodeStatus::FAILURE;
        slot->setInteger(integer);
    } else if (type->raw() == "float") {
        double real = 0;
        if (!value->toReal(real))
            return NodeStatus::FAILURE;
        slot->setReal(real);
    } else if (type->raw() == "bool") {
        bool truth = false;
        if (!value->toBoolean(truth))
            return NodeStatus::FAILURE;
        slot->setBoolean(truth);
    } else
        return NodeStatus::FAILURE;
    return NodeStatus::SUCCESS;
}

NodeStatus EraseBlackboardNode::tick()
{
    return passed(key_.erase(*this));
}

NodeStatus BlackboardContainsNode::tick()
{
    const Any* slot = key_.find(*this);
    return passed(slot != nullptr && !slot->empty());
}

NodeStatus BlackboardCopyNode::tick()
{
    const Any* source = source_.find(*this);
    if (source == nullptr || source->empty())
        return NodeStatus::FAILURE;
    Any* target = target_.resolve(*this);
    if (target == nullptr)
        return NodeStatus::FAILURE;
    target->assign(*source);
    return NodeStatus::SUCCESS;
}

NodeStatus StackBlackboardNode::tick()
{
    if (kept_of_ == nullptr) {
        kept_of_ = key_.keep(*this);
        if (kept_of_ == nullptr)
            return NodeStatus::FAILURE;
        kept_.assign(*kept_of_);
    }
    return NodeStatus::RUNNING;
}

void StackBlackboardNode::halt()
{
    if (kept_of_ != nullptr) {
        kept_of_->assign(kept_);
        if (blackboard()->hasHostStore())
            blackboard()->handOn(*kept_of_);
    }
    kept_of_ = nullptr;
    setStatus(NodeStatus::IDLE);
}

NodeStatus StringMatchNode::tick()
{
    const Port* a = a_.of(*this);
    const Port* b = b_.of(*this);
    if (a == nullptr || b == nullptr)
        return NodeStatus::FAILURE;
    std::string scratch_a;
    std::string scratch_b;
    std::string_view text_a;
    std::string_view text_b;
    return passed(a->view(text_a, scratch_a) && b->view(text_b, scratch_b) &&
                  detail::sameText(text_a, text_b));
}

NodeStatus BoolMatchNode::tick()
{
    bool a = false;
    bool b = false;
    return passed(readBoth(a_.of(*this), a, b_.of(*this), b) && a == b);
}

NodeStatus IsAGreaterThanBIntNode::tick()
{
    std::int64_t a = 0;
    std::int64_t b = 0;
    return passed(readBoth(a_.of(*this), a, b_.of(*this), b) && a > b);
}

NodeStatus IsAGreaterThanBFloatNode::tick()
{
    double a = 0;
    double b = 0;
    return passed(readBoth(a_.of(*this), a, b_.of(*this), b) && a > b);
}

NodeStatus IntAddNode::tick()
{
    std::int64_t a = 0;
    std::int64_t b = 0;
    std::int64_t sum = 0;
    if (!readBoth(findPort("int_a"), a, findPort("int_b"), b) || __builtin_add_overflow(a, b, &sum))
        return NodeStatus::FAILURE;
    if (Any* out = out_.resolve(*this))
        out->setInteger(sum);
    return NodeStatus::SUCCESS;
}

NodeStatus FloatAddNode::tick()
{
    double a = 0;
    double b = 0;
    if (!readBoth(findPort("a"), a, findPort("b"), b))
        return NodeStatus::FAILURE;
    if (Any* out = out_.resolve(*this))
        out->setReal(a + b);
    return NodeStatus::SUCCESS;
}

NodeStatus FloatModulusNode::tick()
{
    double dividend = 0;
    double divisor = 0;
    double bias = 0;
    if (!readBoth(findPort("dividend"), dividend, findPort("divisor"), divisor) || !getParam("bias", bias) ||
        !(divisor > 0))
        return NodeStatus::FAILURE;
    double remainder = dividend - divisor * std::floor((dividend - bias) / divisor);
    if (remainder >= bias + divisor)
        remainder = bias;  // just below `bias`, and rounded up
    if (Any* out = out_.resolve(*this))
        out->setReal(remainder);
    return NodeStatus::SUCCESS;
}

NodeStatus DelayNode::tick()
{
    if (!on_) {
        if (!getParam("ticks", left_))
            return NodeStatus::FAILURE;
        on_ = true;
    }
    if (left_ > 0) {
        --left_;
        return NodeStatus::RUNNING;
    }
    on_ = false;
    return NodeStatus::SUCCESS;
}

NodeStatus ConditionTimerFramesNode::executeTick()
{
    if (isHalted() && !getParam("start_from", frames_))
        frames_ = 0;
    return ConditionNode::executeTick();
}

NodeStatus ConditionTimerFramesNode::tick()
{
    ++frames_;
    if (Any* out = out_.resolve(*this))
        out->setInteger(frames_);
    return NodeStatus::SUCCESS;
}

NodeStatus ConditionTimerSecsNode::executeTick()
{
    if (isHalted()) {
        if (!getParam("start_from", start_seconds_))
            start_seconds_ = 0;
        start_ms_ = blackboard() != nullptr ? blackboard()->clock().milliseconds() : 0;
    }
    return ConditionNode::executeTick();
}

NodeStatus ConditionTimerSecsNode::tick()
{
    if (Any* out = out_.resolve(*this))
        out->setInteger(start_seconds_ + (blackboard()->clock().milliseconds() - start_ms_) / 1000);
    return NodeStatus::SUCCESS;
}

BT_PORTS(SetBlackboardNode, {"key", ""}, {"value", ""})
BT_PORTS(SetBlackboardWithTypeNode, {"key", ""}, {"type", ""}, {"value", ""})
BT_PORTS(EraseBlackboardNode, {"key", ""})
BT_PORTS(BlackboardContainsNode, {"key", ""})
BT_PORTS(BlackboardCopyNode, {"source", ""}, {"target", ""})
BT_PORTS(StackBlackboardNode, {"key", ""})
BT_PORTS(StringMatchNode, {"string_a", ""}, {"string_b", ""})
BT_PORTS(BoolMatchNode, {"bool_a", ""}, {"bool_b", ""})
BT_PORTS(IsAGreaterThanBIntNode, {"A", ""}, {"B", ""})
BT_PORTS(IsAGreaterThanBFloatNode, {"A", ""}, {"B", ""})
BT_PORTS(IntAddNode, {"int_a", ""}, {"int_b", ""}, {"out_sum", ""})
BT_PORTS(FloatAddNode, {"a", ""}, {"b", ""}, {"out_sum", ""})
BT_PORTS(FloatModulusNode, {"bias", ""}, {"dividend", ""}, {"divisor", ""}, {"out_remainder", ""})
BT_PORTS(DelayNode, {"ticks", "1"})
BT_PORTS(ConditionTimerFramesNode, {"frames_out_key", ""}, {"start_from", "0"})
BT_PORTS(ConditionTimerSecsNode, {"secs_out_key", ""}, {"start_from", "0"})

}  // namespace BT
