#include "tree_registry.h"

#include <algorithm>

#include "behaviortree_cpp/decorators/subtree_condition_node.h"
#include "ports_macro.h"

namespace BT {

namespace {

/// Whether a node of the tree keeps its place over a failure, and so into the next entry.
bool keepsPlaces(const Tree& tree)
{
    return std::any_of(tree.nodes.begin(), tree.nodes.end(), [](const TreeNode::Ptr& node) {
        const Port* reset = node->findPort("reset_on_failure");
        return reset != nullptr && reset->raw() != "true";
    });
}

}  // namespace

void TreeRegistry::add(const std::string& name, const TreeBuilder& builder)
{
    if (name.empty())
        throw BehaviorTreeException("a tree must have a name");
    if (!builder)
        throw BehaviorTreeException("tree '" + name + "' has no builder");
    const auto [at, added] = index_.try_emplace(name, entries_.size());
    if (added)
        entries_.push_back({std::make_shared<const std::string>(name), builder, {}});
    else {
        entries_[at->second].builder = builder;
        for (const auto& [owner, pool] : entries_[at->second].pools)
            pool->retire();
        entries_[at->second].pools.clear();
    }
}

const TreeRegistry::Entry* TreeRegistry::find(std::string_view name) const
{
    const auto found = index_.find(std::string(name));
    return found == index_.end() ? nullptr : &entries_[found->second];
}

std::vector<std::string> TreeRegistry::names() const
{
    std::vector<std::string> names;
    for (const Entry& entry : entries_)
        names.push_back(*entry.name);
    return names;
}

std::unique_ptr<Tree> TreeRegistry::make(std::string_view name, const Blackboard::Ptr& blackboard) const
{
    const Entry* entry = find(name);
    if (entry == nullptr)
        return nullptr;
    const auto tree_name = entry->name;
    auto tree = std::make_unique<Tree>(entry->builder(factory_, blackboard));
    std::uint32_t index = 0;
    for (const TreeNode::Ptr& node : tree->nodes)
        node->setPlace(tree_name, index++);
    return tree;
}

std::shared_ptr<TreePool> TreeRegistry::pool(std::string_view name, const Blackboard::Ptr& blackboard)
{
    const auto found = index_.find(std::string(name));
    if (found == index_.end())
        return nullptr;
    Entry& entry = entries_[found->second];
    for (const auto& [owner, pool] : entry.pools)
        if (owner == blackboard.get())
            return pool;
    entry.pools.emplace_back(blackboard.get(), std::make_shared<TreePool>());
    return entry.pools.back().second;
}

void TreeRegistry::clearPools()
{
    for (Entry& entry : entries_) {
        for (const auto& [owner, pool] : entry.pools)
            pool->clear();
        entry.pools.clear();
    }
}

std::string_view treeNameOfPath(std::string_view path)
{
    if (const std::size_t slash = path.rfind('/'); slash != std::string_view::npos)
        path.remove_prefix(slash + 1);
    if (path.ends_with(".xml"))
        path.remove_suffix(4);
    return path;
}

SubtreeConditionNode::SubtreeConditionNode(const std::string& name, const NodeParameters& parameters,
                                           std::weak_ptr<TreeRegistry> trees)
    : LeafNode(name, parameters), trees_(std::move(trees))
{}

SubtreeConditionNode::~SubtreeConditionNode() = default;

bool SubtreeConditionNode::expandInLogger() const
{
    const Port* port = findPort("expand_in_logger");
    return port != nullptr && port->raw() == "true";
}

bool SubtreeConditionNode::enter()
{
    const Port* path = findPort("subtree_file_path");
    const auto trees = trees_.lock();
    if (path == nullptr || trees == nullptr)
        return false;
    std::string scratch;
    std::string_view text;
    if (pool_ == nullptr || pool_->isRetired() || path->form() != PortForm::Literal)
        pool_ = path->view(text, scratch) ? trees->pool(treeNameOfPath(text), blackboard()) : nullptr;
    if (pool_ == nullptr)
        return false;
    entered_ = pool_->take();
    if (entered_ == nullptr && path->view(text, scratch)) {
        entered_ = trees->make(treeNameOfPath(text), blackboard());
        if (entered_ != nullptr && entered_->root_node == nullptr)
            entered_.reset();
        if (entered_ != nullptr)
            pool_->setReusable(!keepsPlaces(*entered_));
    }
    return entered_ != nullptr;
}

void SubtreeConditionNode::leave()
{
    if (entered_ == nullptr)
        return;
    haltNode(*entered_->root_node);
    pool_->giveBack(std::move(entered_));
}

NodeStatus SubtreeConditionNode::tick()
{
    setStatus(NodeStatus::RUNNING);
    if (entered_ == nullptr && !enter())
        return NodeStatus::FAILURE;
    const NodeStatus result = entered_->root_node->executeTick();
    if (result != NodeStatus::SUCCESS && result != NodeStatus::FAILURE)
        return NodeStatus::RUNNING;
    leave();
    return result;
}

void SubtreeConditionNode::halt()
{
    leave();
    setStatus(NodeStatus::IDLE);
}

BT_PORTS(SubtreeConditionNode, {"subtree_file_path", ""}, {"expand_in_logger", "false"})

}  // namespace BT
