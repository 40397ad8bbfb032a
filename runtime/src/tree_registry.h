#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"

namespace BT {

/// The trees of one name on one blackboard that wait to be entered again; all their nodes are IDLE.
class TreePool
{
public:
    [[nodiscard]] std::unique_ptr<Tree> take()
    {
        if (waiting_.empty())
            return nullptr;
        auto tree = std::move(waiting_.back());
        waiting_.pop_back();
        return tree;
    }
    void giveBack(std::unique_ptr<Tree> tree)
    {
        if (reusable_ && !retired_)
            waiting_.push_back(std::move(tree));
    }
    void clear() { waiting_.clear(); }

    /// Whether a tree that has ended is as good as a new one.
    void setReusable(bool reusable) { reusable_ = reusable; }
    /// The name has got another builder: nothing waits here any more.
    void retire()
    {
        retired_ = true;
        clear();
    }
    [[nodiscard]] bool isRetired() const { return retired_; }

private:
    std::vector<std::unique_ptr<Tree>> waiting_;
    bool reusable_ = true;
    bool retired_ = false;
};

/// The named trees of a factory. Nodes that enter trees hold it weakly, as pools own such nodes.
class TreeRegistry
{
public:
    explicit TreeRegistry(const BehaviorTreeFactory& factory) : factory_(factory) {}

    void add(const std::string& name, const TreeBuilder& builder);
    [[nodiscard]] bool has(std::string_view name) const { return find(name) != nullptr; }
    [[nodiscard]] std::vector<std::string> names() const;
    /// nullptr for an unknown name.
    [[nodiscard]] std::unique_ptr<Tree> make(std::string_view name, const Blackboard::Ptr& blackboard) const;
    /// nullptr for an unknown name.
    [[nodiscard]] std::shared_ptr<TreePool> pool(std::string_view name, const Blackboard::Ptr& blackboard);
    void clearPools();

private:
    struct Entry
    {
        std::shared_ptr<const std::string> name;
        TreeBuilder builder;
        /// By blackboard; a waiting tree keeps its blackboard alive, so the address stays its own.
        std::vector<std::pair<const Blackboard*, std::shared_ptr<TreePool>>> pools;
    };

    [[nodiscard]] const Entry* find(std::string_view name) const;

    const BehaviorTreeFactory& factory_;
    std::vector<Entry> entries_;
    std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace BT
