#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "behaviortree_cpp/blackboard/safe_any.hpp"
#include "behaviortree_cpp/clock.h"

namespace BT {

class TreeNode;
class TreePools;
class HostStore;
class KeyPort;

/// Sees each status change of every node that works on a blackboard, nodes of trees entered later included.
class StatusObserver
{
public:
    virtual ~StatusObserver() = default;
    virtual void onStatusChange(const TreeNode& node, NodeStatus before, NodeStatus now) = 0;
    /// Each tick of a node, after it: also one that changes no status, as of a node that runs on.
    virtual void onTick(const TreeNode& /*node*/, NodeStatus /*result*/) {}
};

/// A store of the host's own, in which a blackboard then keeps its values:
/// `Blackboard::create<MyStore>(...)`.
class BlackboardImpl
{
public:
    virtual ~BlackboardImpl() = default;
    /// The value, or nullptr when the key does not exist; good until the store is next changed.
    [[nodiscard]] virtual const Any* get(const std::string& key) const = 0;
    virtual void set(const std::string& key, const Any& value) = 0;
    [[nodiscard]] virtual bool contains(const std::string& key) const = 0;
    /// Takes the key away. A store that leaves this as it is gets an empty value, by which a key does not
    /// exist either.
    virtual void erase(const std::string& key) { set(key, Any()); }
};

/// The one store that trees and leaf services share, by key. A key exists from its first write to its
/// erasure and may change the type of its value. A slot that was asked for stays where it is for the life of
/// the blackboard, so that a node looks its keys up by name once; any other goes with its key. Not locked:
/// all ticks and all writes happen on one thread (an AsyncActionNode reads its ports through a copy made on
/// that thread).
///
/// With a store of the host's behind it (BlackboardImpl) every read asks the store and every write goes to
/// it; a slot is then a copy, brought up to date for the nodes that use it and handed on after their tick.
/// Such nodes are ticked more slowly, all others pay nothing for it.
class Blackboard
{
public:
    using Ptr = std::shared_ptr<Blackboard>;
    using Slot = Any;  ///< empty while the key does not exist

    Blackboard() : clock_(std::make_shared<SteadyClock>()) {}
    explicit Blackboard(std::unique_ptr<BlackboardImpl> store);
    Blackboard(const Blackboard&) = delete;
    Blackboard& operator=(const Blackboard&) = delete;

    template <class Impl, class... Args>
    static Ptr create(Args&&... args)
    {
        if constexpr (std::is_base_of_v<BlackboardImpl, Impl>)
            return std::make_shared<Blackboard>(std::make_unique<Impl>(std::forward<Args>(args)...));
        else {
            static_assert(std::is_base_of_v<Blackboard, Impl>,
                          "a store derives from BT::BlackboardImpl, a blackboard from BT::Blackboard");
            return std::make_shared<Impl>(std::forward<Args>(args)...);
        }
    }
    static Ptr create() { return std::make_shared<Blackboard>(); }

    /// False when the key does not exist or its value is no T.
    template <class T>
    bool get(std::string_view key, T& out) const
    {
        const Any* value = getAny(key);
        return value != nullptr && value->tryCast(out);
    }

    /// Throws std::runtime_error when the key does not exist or its value is no T.
    template <class T>
    [[nodiscard]] T get(std::string_view key) const
    {
        T out{};
        if (!get(key, out))
            throw std::runtime_error("Blackboard::get: no such key or another type: " + std::string(key));
        return out;
    }

    template <class T>
    void set(std::string_view key, const T& value)
    {
        entry(key).value.set(value);
        if (host_store_ != nullptr) [[unlikely]]
            handOn(key);
    }

    [[nodiscard]] bool contains(std::string_view key) const;
    /// The value, or nullptr when the key does not exist; good until the key is erased.
    [[nodiscard]] const Any* getAny(std::string_view key) const;
    /// Takes the key away; true when it was there.
    bool erase(std::string_view key);
    /// The place of `key`, made if need be; valid as long as the blackboard.
    [[nodiscard]] Slot& slot(std::string_view key)
    {
        Entry& found = entry(key);
        found.is_kept = true;
        return found.value;
    }
    /// The keys that exist, sorted; with a store of the host's, those that came by here.
    [[nodiscard]] std::vector<std::string> keys() const;

    void setClock(std::shared_ptr<const Clock> clock) { clock_ = std::move(clock); }
    [[nodiscard]] const Clock& clock() const { return *clock_; }

    /// Not owned; nullptr takes it away. One observer at a time.
    void setStatusObserver(StatusObserver* observer)
    {
        observer_ = observer;
        is_observed_ = observer != nullptr;
    }
    [[nodiscard]] StatusObserver* statusObserver() const { return observer_; }
    /// Where a node looks on each tick whether there is an observer; valid as long as the blackboard.
    [[nodiscard]] const bool* observedFlag() const { return &is_observed_; }

    /// For nodes that enter trees.
    [[nodiscard]] TreePools& treePools();

    // For nodes, where the host has a store of its own.
    [[nodiscard]] bool hasHostStore() const { return host_store_ != nullptr; }
    /// Brings the slot of `key` up to date.
    void fetch(std::string_view key);
    /// Gives the store what was written to the slot.
    void handOn(std::string_view key);
    void handOn(const Slot& slot);
    /// What a node writes to the slot of `key` in its tick is to be handed on once that is over.
    void handOnAfterTick(std::string_view key);
    /// Puts aside the keys that nodes above are to hand on, while a node is ticked.
    [[nodiscard]] std::vector<std::string> beginTick();
    void endTick(std::vector<std::string> keys_of_nodes_above);

private:
    friend class KeyPort;

    struct Entry
    {
        Slot value;
        bool is_kept = false;  ///< somebody has its address
    };
    /// Made if need be; its address is good until the key is erased.
    [[nodiscard]] Entry& entry(std::string_view key);

    struct Hash
    {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };

    // A node-based map: its elements stay in place while it grows.
    std::unordered_map<std::string, Entry, Hash, std::equal_to<>> entries_;
    std::shared_ptr<const Clock> clock_;
    StatusObserver* observer_ = nullptr;
    bool is_observed_ = false;
    std::shared_ptr<TreePools> tree_pools_;
    std::shared_ptr<HostStore> host_store_;  ///< none but where the host has its own
};

}  // namespace BT
