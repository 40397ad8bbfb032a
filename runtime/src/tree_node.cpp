#include "behaviortree_cpp/tree_node.h"

#include <algorithm>
#include <optional>
#include <thread>
#include <unordered_map>

namespace BT {

struct TreeNode::Extras
{
    std::vector<std::weak_ptr<StatusChangeCallback>> listeners;
    std::unique_ptr<NodeParameters> parameters;
    std::optional<std::vector<std::pair<std::string_view, Any>>> snapshot;
    std::unordered_map<const Port*, std::string> texts;
    std::shared_ptr<const std::string> registration_name;
};

TreeNode::TreeNode(const std::string& name, const NodeParameters& parameters)
    : name_(std::make_shared<const std::string>(name)), ports_(parameters)
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
    prepareTick();
    return isOnHostStore() ? tickOnHostStore() : tickPlainly();
}

NodeStatus TreeNode::tickOnHostStore()
{
    for (const Port& port : ports())
        fetchPort(port.name());
    const Blackboard::Ptr board = blackboard_;
    auto of_nodes_above = board->beginTick();
    NodeStatus result = NodeStatus::IDLE;
    try {
        result = tickPlainly();
    } catch (...) {
        board->endTick(std::move(of_nodes_above));
        throw;
    }
    board->endTick(std::move(of_nodes_above));
    return result;
}

const Port* TreeNode::fetchPort(std::string_view key) const
{
    const Port* port = findPort(key);
    if (port != nullptr && port->form() != PortForm::Literal)
        for (const std::string& name : referencedKeys(port->raw()))
            blackboard_->fetch(name);
    return port;
}

void TreeNode::keepInReach()
{
    if (live_below_after_end_)
        setStatus(NodeStatus::RUNNING);
}

void TreeNode::refuseRunning() const
{
    throw std::logic_error("SyncActionNode '" + name() + "' returned RUNNING");
}

void TreeNode::haltLive(bool at_end)
{
    const NodeStatus before = status();
    if (before == NodeStatus::IDLE)
        return;
    at_end_ = at_end && before != NodeStatus::RUNNING;
    halt();
    at_end_ = false;
    setStatus(NodeStatus::IDLE);
}

NodeStatus TreeNode::tellTick(NodeStatus result)
{
    tellStatus(result);
    if (result == NodeStatus::RUNNING && must_end_)
        refuseRunning();
    return ticked(result);
}

void TreeNode::tellStatus(NodeStatus now)
{
    const NodeStatus before = status();
    if (before == now)
        return;
    status_.store(now, std::memory_order_relaxed);
    notifyStatusChange(before, now);
}

void TreeNode::findWatchers()
{
    watched_ = has_listeners_ || blackboard_ == nullptr ? &has_listeners_ : blackboard_->observedFlag();
}

void TreeNode::setBlackboard(const Blackboard::Ptr& blackboard)
{
    blackboard_ = blackboard;
    findWatchers();
    findWayOfVisits();
    reads_aside_ = isOnHostStore() || hasSnapshot();
    if (blackboard_ == nullptr)
        return;
    for (Port& port : ports_.all())
        port.compile(*blackboard_);
}

void TreeNode::refuseBlackboard() const
{
    throw std::logic_error("node '" + name() +
                           "' has no blackboard yet; a constructor is too early for it, onInit() is not");
}

NodeStatus TreeNode::waitValidStatus() const
{
    while (isHalted())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return status();
}

bool TreeNode::isBlackboardPattern(StringView text)
{
    try {
        return classifyPortText(text) == PortForm::Reference;
    } catch (const std::invalid_argument&) {
        return false;
    }
}

void TreeNode::setParameters(const NodeParameters& parameters)
{
    ports_ = PortList(parameters);
    setBlackboard(blackboard_);
}

void TreeNode::setRegistrationName(const std::shared_ptr<const std::string>& id)
{
    registered_ = true;
    if (*id == *name_)
        name_ = id;
    else
        extras().registration_name = id;
}

const std::string& TreeNode::registrationName() const
{
    static const std::string kNone;
    if (!registered_)
        return kNone;
    return extras_ != nullptr && extras_->registration_name != nullptr ? *extras_->registration_name : *name_;
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
    findWatchers();
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
        findWatchers();
    }
}

void TreeNode::notifyTick(NodeStatus result) const
{
    if (blackboard_ != nullptr && blackboard_->statusObserver() != nullptr)
        blackboard_->statusObserver()->onTick(*this, result);
}

void TreeNode::takePortSnapshot()
{
    auto& kept = extras().snapshot.emplace();
    for (const Port& port : ports()) {
        Any value;
        if (isOnHostStore())
            fetchPort(port.name());
        if (port.toAny(value))
            kept.emplace_back(port.name(), std::move(value));
    }
    reads_aside_ = true;
}

bool TreeNode::hasSnapshot() const
{
    return extras_ != nullptr && extras_->snapshot;
}

bool TreeNode::keepText(const Port& port, const char*& out) const
{
    if (port.form() == PortForm::Literal) {
        out = port.raw().data();
        return true;
    }
    std::string& kept = extras().texts[&port];
    if (!port.toText(kept))
        return false;
    out = kept.c_str();
    return true;
}

const Any* TreeNode::snapshotValue(std::string_view key) const
{
    for (const auto& [name, value] : *extras_->snapshot)
        if (name == key)
            return &value;
    return nullptr;
}

std::string_view KeyPort::key(const TreeNode& node, bool& literal, std::string& scratch) const
{
    const Port* port = node.findPort(port_name_);
    std::string_view text;
    if (port == nullptr || node.blackboard() == nullptr || !port->view(text, scratch))
        return {};
    literal = port->form() == PortForm::Literal;
    return text;
}

Any* KeyPort::lookUp(const TreeNode& node, Use use)
{
    bool literal = false;
    std::string scratch;
    const std::string_view named = key(node, literal, scratch);
    if (named.empty())
        return nullptr;
    Blackboard& blackboard = *node.blackboard();
    if (blackboard.hasHostStore()) {
        slot_ = nullptr;
        owner_ = nullptr;
        blackboard.fetch(named);
        if (use == Use::Write)
            blackboard.handOnAfterTick(named);
        return &blackboard.slot(named);
    }
    if (literal) {
        slot_ = &blackboard.slot(named);
        owner_ = &blackboard;
        return slot_;
    }
    if (use == Use::Keep)
        return &blackboard.slot(named);
    if (use == Use::Read) {
        const auto found = blackboard.entries_.find(named);
        return found != blackboard.entries_.end() ? &found->second.value : nullptr;
    }
    return &blackboard.entry(named).value;
}

bool KeyPort::erase(const TreeNode& node)
{
    bool literal = false;
    std::string scratch;
    if (slot_ == nullptr || owner_ != node.blackboard().get()) {
        const std::string_view named = key(node, literal, scratch);
        if (named.empty())
            return false;
        if (!literal || node.blackboard()->hasHostStore()) {
            node.blackboard()->erase(named);
            return true;
        }
    }
    resolve(node)->clear();
    return true;
}

}  // namespace BT
