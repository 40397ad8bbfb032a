#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "behaviortree_cpp/basic_types.h"
#include "behaviortree_cpp/blackboard/blackboard.h"
#include "behaviortree_cpp/exceptions.h"
#include "behaviortree_cpp/port_value.h"

namespace BT {

class TreeNode;

/// Where a node stands: the name of its tree and its index in creation order, the root at 0. Unlike UID()
/// it is the same in every run.
struct TreePlace
{
    std::string_view tree;
    std::uint32_t index = 0;
};

/// Base of all nodes. A tick gives RUNNING, SUCCESS or FAILURE; IDLE is the state of a node that was not
/// ticked or was halted. Whoever is IDLE has nothing but IDLE nodes below.
class TreeNode
{
    /// Called once: by the factory, right after the blackboard is set, or else before the first tick.
    virtual void onInit() {}

public:
    using Ptr = std::shared_ptr<TreeNode>;
    using StatusChangeCallback =
        std::function<void(TimePoint, const TreeNode&, NodeStatus before, NodeStatus now)>;
    using StatusChangeSubscriber = std::shared_ptr<StatusChangeCallback>;

    TreeNode(const std::string& name, const NodeParameters& parameters);
    virtual ~TreeNode();
    TreeNode(const TreeNode&) = delete;
    TreeNode& operator=(const TreeNode&) = delete;

    /// Ticks the node and takes over the result as its status.
    virtual NodeStatus executeTick();
    /// The same for the node above, which ticks its children in every frame: one virtual call instead of two
    /// where the class has no executeTick() of its own.
    [[gnu::always_inline]] NodeStatus visit() { return visit(status(), NodeStatus::SUCCESS); }
    /// By who has looked at the node's status just now, and looks first whether the result is the one that
    /// is expected.
    [[gnu::always_inline]] NodeStatus visit(NodeStatus status, NodeStatus expected)
    {
        if (!is_plainly_visited_) [[unlikely]]
            return executeTick();
        if (status > NodeStatus::RUNNING) [[unlikely]]
            setStatus(NodeStatus::IDLE);
        return tickPlainly(expected);
    }
    /// Stops the node: it and all below come back to IDLE.
    virtual void halt() = 0;
    [[nodiscard]] virtual NodeType type() const = 0;

    [[nodiscard]] bool isHalted() const { return status() == NodeStatus::IDLE; }
    /// Waits until the node, which another thread ticks, is no longer IDLE; looks every millisecond.
    [[nodiscard]] NodeStatus waitValidStatus() const;
    [[nodiscard]] NodeStatus status() const { return status_.load(std::memory_order_relaxed); }
    [[gnu::always_inline]] void setStatus(NodeStatus now)
    {
        if (isWatched()) [[unlikely]]
            tellStatus(now);
        else
            status_.store(now, std::memory_order_relaxed);
    }
    /// What haltNode() does.
    [[gnu::always_inline]] void bringToIdle(bool at_end)
    {
        if (status() <= NodeStatus::RUNNING || live_below_after_end_) [[unlikely]]
            haltLive(at_end);
        else
            setStatus(NodeStatus::IDLE);
    }

    void setBlackboard(const Blackboard::Ptr& blackboard);
    /// Throws std::logic_error while the node is not set up, as in its constructor.
    [[nodiscard]] const Blackboard::Ptr& blackboard() const
    {
        if (blackboard_ == nullptr && !initialized_) [[unlikely]]
            refuseBlackboard();
        return blackboard_;
    }

    /// The present time of the blackboard's clock, or of the machine's where there is no blackboard.
    [[nodiscard]] TimePoint clockTime() const;

    /// A label; the registration name unless another was given.
    [[nodiscard]] const std::string& name() const { return *name_; }
    /// Unique among the nodes that are alive.
    [[nodiscard]] std::uint64_t UID() const
    {
        return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(this));
    }
    /// The identifier under which the factory made the node; empty for one made by hand.
    [[nodiscard]] const std::string& registrationName() const;
    [[nodiscard]] TreePlace place() const { return {tree_ ? *tree_ : std::string_view{}, index_in_tree_}; }
    /// The ports as they were given.
    [[nodiscard]] const NodeParameters& initializationParameters() const;

    /// The callback is told of each status change until the returned subscriber is dropped.
    [[nodiscard]] StatusChangeSubscriber subscribeToStatusChange(StatusChangeCallback callback);

    /// The value of port `key` as it is now; nothing when there is no such port, when it refers to a key
    /// that is not on the blackboard, or when the value is no T. Never throws. A `const char*` points to a
    /// text that stays until the port is read again.
    template <class T>
    [[nodiscard]] optional<T> getParam(std::string_view key) const
    {
        T out{};
        if (!getParam(key, out))
            return std::nullopt;
        return out;
    }

    template <class T>
    [[gnu::always_inline]] bool getParam(std::string_view key, T& out) const;

    /// Whether `text` is a reference as a whole: "${key}".
    [[nodiscard]] static bool isBlackboardPattern(StringView text);

    /// The compiled port, or nullptr; valid until the node goes or gets another blackboard.
    [[gnu::always_inline]] [[nodiscard]] const Port* findPort(std::string_view key) const
    {
        return ports_.find(key);
    }
    [[nodiscard]] std::span<const Port> ports() const { return ports_.all(); }

    // How a node above treats this one.
    /// A finished one is not started again within a run of a memory-less composite.
    [[nodiscard]] bool countsAsAction() const { return counts_as_action_; }

    // For nodes above and the factory alone.
    void setCountsAsAction() { counts_as_action_ = true; }
    /// Gives ports to a node whose class takes none; they are kept for who looks at the tree.
    void setParameters(const NodeParameters& parameters);
    /// A node that is called as its identifier shares its text.
    void setRegistrationName(const std::shared_ptr<const std::string>& id);
    void setPlace(std::shared_ptr<const std::string> tree, std::uint32_t index)
    {
        tree_ = std::move(tree);
        index_in_tree_ = index;
    }
    void initialize()
    {
        initialized_ = true;
        findWayOfVisits();
        onInit();
    }
    /// Whether executeTick() is that of this class, so that visit() need not call it.
    void setTicksPlainly(bool plain)
    {
        ticks_plainly_ = plain;
        findWayOfVisits();
    }

protected:
    virtual NodeStatus tick() = 0;

    /// Whether a tick that returns RUNNING is a std::logic_error.
    void setMustEnd(bool must_end) { must_end_ = must_end; }
    /// What every executeTick() begins with: a node that is set up, and one that ended begins anew, which
    /// whoever watches sees.
    void prepareTick()
    {
        if (!initialized_) [[unlikely]]
            initialize();
        if (status() > NodeStatus::RUNNING)
            setStatus(NodeStatus::IDLE);
    }
    /// The result of a tick, told to who observes the blackboard: what executeTick() returns.
    NodeStatus ticked(NodeStatus result) const
    {
        if (isWatched()) [[unlikely]]
            notifyTick(result);
        return result;
    }
    /// After a throw out of a tick: a node with others below is RUNNING, so that a halt reaches them.
    void keepInReach();
    /// Whether nodes below may be other than IDLE once this one has ended.
    void setLiveBelowAfterEnd(bool live) { live_below_after_end_ = live; }

    /// For halt(): whether it is only called because the node above has ended, as this one had before.
    [[nodiscard]] bool isAtEnd() const { return at_end_; }

    /// A copy of the ports' values as they are now, for a tick on another thread.
    void takePortSnapshot();

private:
    /// Whether someone wants to be told of status changes.
    [[nodiscard]] bool isWatched() const { return *watched_; }
    /// Looks anew at whose flag says so: the node's own where it has listeners, else its blackboard's.
    void findWatchers();
    [[nodiscard]] bool isOnHostStore() const { return blackboard_ != nullptr && blackboard_->hasHostStore(); }
    void findWayOfVisits() { is_plainly_visited_ = ticks_plainly_ && initialized_ && !isOnHostStore(); }
    /// The tick of a node whose blackboard stands before a store of the host's.
    NodeStatus tickOnHostStore();
    /// A tick of a node that is set up and was not left ended.
    [[gnu::always_inline]] NodeStatus tickPlainly(NodeStatus expected = NodeStatus::SUCCESS)
    {
        NodeStatus result = NodeStatus::IDLE;
        try {
            result = tick();
        } catch (...) {
            keepInReach();
            throw;
        }
        if (isWatched()) [[unlikely]]
            return tellTick(result);
        status_.store(result, std::memory_order_relaxed);
        if (result == expected) [[likely]]
            return result;
        if (result == NodeStatus::RUNNING && must_end_) [[unlikely]]
            refuseRunning();
        return result;
    }
    /// The end of tickPlainly() with those who watch told of it.
    NodeStatus tellTick(NodeStatus result);
    [[noreturn]] void refuseRunning() const;
    /// bringToIdle() where there may be something to stop.
    void haltLive(bool at_end);
    /// setStatus() with those who watch told of it.
    void tellStatus(NodeStatus now);
    void notifyStatusChange(NodeStatus before, NodeStatus now);
    void notifyTick(NodeStatus result) const;

    /// What few nodes have: listeners, a snapshot, a name apart from the identifier.
    struct Extras;
    Extras& extras() const;

    std::shared_ptr<const std::string> name_;
    std::shared_ptr<const std::string> tree_;
    Blackboard::Ptr blackboard_;
    PortList ports_;
    mutable std::unique_ptr<Extras> extras_;
    const bool* watched_ = &has_listeners_;
    std::uint32_t index_in_tree_ = 0;
    std::atomic<NodeStatus> status_ = NodeStatus::IDLE;
    bool at_end_ = false;
    bool has_listeners_ = false;
    bool initialized_ : 1 = false;
    bool counts_as_action_ : 1 = false;
    bool live_below_after_end_ : 1 = false;
    bool reads_aside_ : 1 = false;  ///< a snapshot, or what a store of the host's keeps
    bool is_plainly_visited_ : 1 = false;
    bool ticks_plainly_ : 1 = false;
    bool must_end_ : 1 = false;
    bool registered_ : 1 = false;

    [[noreturn]] void refuseBlackboard() const;
    /// The port as a C string, kept until it is read again.
    bool keepText(const Port& port, const char*& out) const;
    /// The value of a port that was kept for a tick on another thread.
    [[nodiscard]] const Any* snapshotValue(std::string_view key) const;
    [[nodiscard]] bool hasSnapshot() const;
    /// As findPort, with the keys that the port refers to brought up to date.
    const Port* fetchPort(std::string_view key) const;
};

/// Brings a node and all below it to IDLE; does nothing to one that is IDLE. `at_end`: not for a halt, but
/// because the node above has ended; this leaves a place that is kept over a failure.
inline void haltNode(TreeNode& node, bool at_end = false)
{
    node.bringToIdle(at_end);
}

namespace detail {

template <class T>
bool readPort(const Port& port, T& out)
{
    if constexpr (std::is_same_v<T, bool>)
        return port.toBoolean(out);
    else if constexpr (kIsUnsigned64<T>) {
        if (const Any* value = port.reference())
            return value->tryCast(out);
        if (port.form() == PortForm::Literal)
            return convertText(port.raw(), out);
        std::int64_t value = 0;
        return port.toInteger(value) && fitInteger(value, out);
    } else if constexpr (std::is_integral_v<T>) {
        std::int64_t value = 0;
        return port.toInteger(value) && fitInteger(value, out);
    } else if constexpr (std::is_floating_point_v<T>) {
        double value = 0;
        if (!port.toReal(value))
            return false;
        out = static_cast<T>(value);
        return true;
    } else if constexpr (std::is_same_v<T, std::string>)
        return port.toText(out);
    else if constexpr (std::is_same_v<T, Any>)
        return port.toAny(out);
    else {
        if (const Any* value = port.reference())
            return !value->empty() && value->tryCast(out);
        if (port.form() == PortForm::Literal)
            return convertText(port.raw(), out);
        std::string text;
        return port.toText(text) && convertText(text, out);
    }
}

}  // namespace detail

template <class T>
inline bool TreeNode::getParam(std::string_view key, T& out) const
{
    if (reads_aside_ && hasSnapshot()) [[unlikely]] {
        const Any* value = snapshotValue(key);
        return value != nullptr && value->tryCast(out);
    }
    const Port* port = reads_aside_ ? fetchPort(key) : findPort(key);
    if constexpr (std::is_same_v<T, const char*>)
        return port != nullptr && keepText(*port, out);
    else
        return port != nullptr && detail::readPort(*port, out);
}

/// A port of a built-in node, looked for by name once.
class PortRef
{
public:
    explicit constexpr PortRef(const char* name) : name_(name) {}

    /// nullptr when the node has no such port.
    [[gnu::always_inline]] [[nodiscard]] const Port* of(const TreeNode& node)
    {
        if (port_ == nullptr) [[unlikely]]
            port_ = node.findPort(name_);
        return port_;
    }

private:
    const char* name_;
    const Port* port_ = nullptr;
};

/// A port that names a key: the slot is looked up once when the name is literal, and by its present text
/// when the name is itself read from the blackboard. What is looked up so is good for the tick alone.
class KeyPort
{
public:
    explicit constexpr KeyPort(const char* port_name) : port_name_(port_name) {}

    /// The slot named, or nullptr when the port is missing, empty or unreadable.
    [[nodiscard]] Any* resolve(const TreeNode& node)
    {
        if (owner_ == node.blackboard().get()) [[likely]]
            return slot_;
        return lookUp(node, Use::Write);
    }
    /// The slot where it was looked up before, for good; else nullptr.
    [[nodiscard]] Any* known(const TreeNode& node) const
    {
        return owner_ == node.blackboard().get() ? slot_ : nullptr;
    }
    /// For reading: nullptr also for some keys that are not there, none of which is made.
    [[nodiscard]] const Any* find(const TreeNode& node)
    {
        if (owner_ == node.blackboard().get()) [[likely]]
            return slot_;
        return lookUp(node, Use::Read);
    }
    /// As resolve(), but good as long as the blackboard.
    [[nodiscard]] Any* keep(const TreeNode& node)
    {
        if (owner_ == node.blackboard().get()) [[likely]]
            return slot_;
        return lookUp(node, Use::Keep);
    }
    /// Takes the key away; false when resolve() would give nothing.
    bool erase(const TreeNode& node);

private:
    enum class Use
    {
        Read,
        Write,
        Keep
    };
    /// The key named by the port, which is literal or else read into `scratch`; empty when there is none.
    [[nodiscard]] std::string_view key(const TreeNode& node, bool& literal, std::string& scratch) const;
    [[nodiscard]] Any* lookUp(const TreeNode& node, Use use);

    const char* port_name_;
    Any* slot_ = nullptr;
    const Blackboard* owner_ = nullptr;  ///< of the slot
};

}  // namespace BT
