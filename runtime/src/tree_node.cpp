#include "behaviortree_cpp/tree_node.h"

#include <algorithm>

namespace BT {

struct TreeNode::Extras
{
    std::vector<std::weak_ptr<StatusChangeCallback>> listeners;
    std::unique_ptr<NodeParameters> parameters;
    std::vector<std::pair<std::string_view, Any>> snapshot;
    std::string registration_name;
};

TreeNode::TreeNode(const std::string& name, const NodeParameters& parameters)
    : name_(name), ports_(parameters)
{}

TreeNode::~TreeNode() = default;

TreeNode::Extras& TreeNode::extras() const
{
    if (extras_ == nullptr)
        extras_ = std::make_unique<Extras>();
    return *extras_;
}

NodeStatus TreeNode::executeTick()
{
    // A node that ended begins anew, and whoever watches sees it.
    if (status() > NodeStatus::RUNNING)
        setStatus(NodeStatus::IDLE);
    const NodeStatus result = tick();
    setStatus(result);
    return ticked(result);
}

void TreeNode::setBlackboard(const Blackboard::Ptr& blackboard)
{
    blackboard_ = blackboard;
    if (blackboard_ == nullptr)
        return;
    for (Port& port : ports_.all())
        port.compile(*blackboard_);
}

void TreeNode::setParameters(const NodeParameters& parameters)
{
    ports_ = PortList(parameters);
    setBlackboard(blackboard_);
}

void TreeNode::setRegistrationName(const std::string& id)
{
    registered_ = true;
    if (id != name_)
        extras().registration_name = id;
}

const std::string& TreeNode::registrationName() const
{
    static const std::string kNone;
    if (!registered_)
        return kNone;
    return extras_ != nullptr && !extras_->registration_name.empty() ? extras_->registration_name : name_;
}

const NodeParameters& TreeNode::initializationParameters() const
{
    Extras& kept = extras();
    if (kept.parameters == nullptr) {
        kept.parameters = std::make_unique<NodeParameters>();
        for (const Port& port : ports())
            kept.parameters->emplace(port.name(), port.raw());
    }
    return *kept.parameters;
}

TreeNode::StatusChangeSubscriber TreeNode::subscribeToStatusChange(StatusChangeCallback callback)
{
    auto subscriber = std::make_shared<StatusChangeCallback>(std::move(callback));
    extras().listeners.emplace_back(subscriber);
    has_listeners_ = true;
    return subscriber;
}

TimePoint TreeNode::clockTime() const
{
    return blackboard_ != nullptr ? TimePoint(std::chrono::milliseconds(blackboard_->clock().milliseconds()))
                                  : std::chrono::high_resolution_clock::now();
}

void TreeNode::notifyStatusChange(NodeStatus before, NodeStatus now)
{
    if (blackboard_ != nullptr && blackboard_->statusObserver() != nullptr)
        blackboard_->statusObserver()->onStatusChange(*this, before, now);
    if (!has_listeners_)
        return;
    // A copy, as a callback may subscribe or drop a subscriber.
    std::vector<StatusChangeSubscriber> alive;
    for (const auto& listener : extras_->listeners)
        if (auto subscriber = listener.lock())
            alive.push_back(std::move(subscriber));
    const TimePoint now_is = clockTime();
    for (const StatusChangeSubscriber& subscriber : alive)
        (*subscriber)(now_is, *this, before, now);
    if (alive.size() < extras_->listeners.size()) {
        std::erase_if(extras_->listeners, [](const auto& listener) { return listener.expired(); });
        has_listeners_ = !extras_->listeners.empty();
    }
}

void TreeNode::notifyTick(NodeStatus result) const
{
    if (blackboard_ != nullptr && blackboard_->statusObserver() != nullptr)
        blackboard_->statusObserver()->onTick(*this, result);
}

void TreeNode::takePortSnapshot()
{
    Extras& kept = extras();
    kept.snapshot.clear();
    for (const Port& port : ports()) {
        Any value;
        if (port.toAny(value))
            kept.snapshot.emplace_back(port.name(), std::move(value));
    }
    has_snapshot_ = true;
}

const Any* TreeNode::snapshotValue(std::string_view key) const
{
    for (const auto& [name, value] : extras_->snapshot)
        if (name == key)
            return &value;
    return nullptr;
}

Any* KeyPort::lookUp(const TreeNode& node)
{
    const Port* port = node.findPort(port_name_);
    if (port == nullptr || node.blackboard() == nullptr)
        return nullptr;
    std::string scratch;
    std::string_view key;
    if (!port->view(key, scratch) || key.empty())
        return nullptr;
    Any& slot = node.blackboard()->slot(key);
    if (port->form() == PortForm::Literal) {
        slot_ = &slot;
        owner_ = node.blackboard().get();
    }
    return &slot;
}

}  // namespace BT
