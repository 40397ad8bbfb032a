#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"

namespace BT {

/// A builder under its name. Another builder for the name is another one of these.
struct NamedTree
{
    std::shared_ptr<const std::string> name;
    TreeBuilder builder;
};

/// The trees of one name on one blackboard that wait to be entered again; all their nodes are IDLE. The
/// nodes that enter them own it together, and it goes with the last of these.
class TreePool
{
public:
    explicit TreePool(std::weak_ptr<const NamedTree> tree) : tree_(std::move(tree)) {}

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
        if (reusable_ && !isRetired())
            waiting_.push_back(std::move(tree));
    }

    /// A new one, that was made ahead.
    void add(std::unique_ptr<Tree> tree) { waiting_.push_back(std::move(tree)); }
    [[nodiscard]] bool hasWaiting() const { return !waiting_.empty(); }

    /// The levels of a tree of that name.
    void setLevels(std::size_t levels) { levels_ = levels; }
    [[nodiscard]] std::size_t levels() const { return levels_; }

    /// Whether a tree that has ended is as good as a new one.
    void setReusable(bool reusable) { reusable_ = reusable; }
    /// The name has got another builder, or the factory is gone: nothing waits here any more.
    [[nodiscard]] bool isRetired() const { return tree_.expired(); }
    [[nodiscard]] std::shared_ptr<const NamedTree> tree() const { return tree_.lock(); }

private:
    std::weak_ptr<const NamedTree> tree_;
    std::vector<std::unique_ptr<Tree>> waiting_;
    std::size_t levels_ = 0;
    bool reusable_ = true;
};

/// The pools of a blackboard, by tree.
class TreePools
{
public:
    [[nodiscard]] std::shared_ptr<TreePool> of(const std::shared_ptr<const NamedTree>& tree);

    std::size_t levels_in_tick = 0;  ///< of the entered trees that are being ticked now, one within the other

private:
    // A pool that is alive keeps the address of its NamedTree from being used again.
    std::unordered_map<const NamedTree*, std::weak_ptr<TreePool>> pools_;
};

/// The named trees of a factory. Nodes that enter trees hold it weakly, as they may outlive it.
class TreeRegistry
{
public:
    explicit TreeRegistry(const BehaviorTreeFactory& factory) : factory_(factory) {}

    void add(const std::string& name, const TreeBuilder& builder);
    [[nodiscard]] std::vector<std::string> names() const;
    /// nullptr for an unknown name.
    [[nodiscard]] std::shared_ptr<const NamedTree> find(std::string_view name) const;
    [[nodiscard]] Tree make(const NamedTree& tree, const Blackboard::Ptr& blackboard) const;

private:
    const BehaviorTreeFactory& factory_;
    std::vector<std::shared_ptr<const NamedTree>> trees_;
    std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace BT
