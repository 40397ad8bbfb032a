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

/// Counts the levels of a tree as those of the trees being ticked, as long as it lives.
class LevelsInTick
{
public:
    LevelsInTick(const Blackboard::Ptr& blackboard, TreePool& pool)
        : all_(blackboard != nullptr ? &blackboard->treePools().levels_in_tick : nullptr), own_(pool.levels())
    {
        if (all_ == nullptr)
            return;
        if (*all_ + own_ > kMaxLevels) {
            pool.setReusable(false);  // trees that wait and enter each other would keep each other
            const auto tree = pool.tree();
            throw BehaviorTreeException("tree '" + (tree != nullptr ? *tree->name : std::string()) +
                                        "' is entered more than " + std::to_string(kMaxLevels) +
                                        " levels deep: does it enter itself?");
        }
        *all_ += own_;
    }
    ~LevelsInTick()
    {
        if (all_ != nullptr)
            *all_ -= own_;
    }
    LevelsInTick(const LevelsInTick&) = delete;
    LevelsInTick& operator=(const LevelsInTick&) = delete;

private:
    std::size_t* all_;
    std::size_t own_;
};

}  // namespace

std::shared_ptr<TreePool> TreePools::of(const std::shared_ptr<const NamedTree>& tree)
{
    std::shared_ptr<TreePool> pool = pools_[tree.get()].lock();
    if (pool == nullptr) {
        std::erase_if(pools_, [](const auto& one) { return one.second.expired(); });
        pool = std::make_shared<TreePool>(tree);
        pools_[tree.get()] = pool;
    }
    return pool;
}

TreePools& Blackboard::treePools()
{
    if (tree_pools_ == nullptr)
        tree_pools_ = std::make_shared<TreePools>();
    return *tree_pools_;
}

void TreeRegistry::add(const std::string& name, const TreeBuilder& builder)
{
    if (name.empty())
        throw BehaviorTreeException("a tree must have a name");
    if (!builder)
        throw BehaviorTreeException("tree '" + name + "' has no builder");
    const auto [at, added] = index_.try_emplace(name, trees_.size());
    auto tree =
        std::make_shared<const NamedTree>(NamedTree{std::make_shared<const std::string>(name), builder});
    if (added)
        trees_.push_back(std::move(tree));
    else
        trees_[at->second] = std::move(tree);
}

std::shared_ptr<const NamedTree> TreeRegistry::find(std::string_view name) const
{
    const auto found = index_.find(std::string(name));
    return found == index_.end() ? nullptr : trees_[found->second];
}

std::vector<std::string> TreeRegistry::names() const
{
    std::vector<std::string> names;
    for (const auto& tree : trees_)
        names.push_back(*tree->name);
    return names;
}

Tree TreeRegistry::make(const NamedTree& tree, const Blackboard::Ptr& blackboard) const
{
    Tree made = tree.builder(factory_, blackboard);
    std::uint32_t index = 0;
    for (const TreeNode::Ptr& node : made.nodes)
        node->setPlace(tree.name, index++);
    return made;
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

bool SubtreeConditionNode::findPool()
{
    const Port* path = findPort("subtree_file_path");
    const auto trees = trees_.lock();
    if (path == nullptr || trees == nullptr)
        return false;
    if (pool_ == nullptr || pool_->isRetired() || path->form() != PortForm::Literal) {
        std::string scratch;
        std::string_view text;
        const auto tree = path->view(text, scratch) ? trees->find(treeNameOfPath(text)) : nullptr;
        if (tree == nullptr)
            pool_ = nullptr;
        else if (blackboard() != nullptr)
            pool_ = blackboard()->treePools().of(tree);
        else
            pool_ = std::make_shared<TreePool>(tree);
    }
    return pool_ != nullptr;
}

std::unique_ptr<Tree> SubtreeConditionNode::makeTree()
{
    const auto tree = pool_->tree();  // held, as its builder may register another
    auto made = std::make_unique<Tree>(trees_.lock()->make(*tree, blackboard()));
    if (made->root_node == nullptr)
        return nullptr;
    pool_->setReusable(!keepsPlaces(*made));
    pool_->setLevels(levelsOf(*made->root_node));
    return made;
}

void SubtreeConditionNode::prepare()
{
    const Port* path = findPort("subtree_file_path");
    if (path == nullptr || path->form() != PortForm::Literal || entered_ != nullptr || !findPool() ||
        pool_->hasWaiting())
        return;
    auto tree = makeTree();
    if (tree == nullptr)
        return;
    const Tree& waits = *tree;
    pool_->add(std::move(tree));
    prepareTrees(waits);
}

void prepareTrees(const Tree& tree)
{
    for (const TreeNode::Ptr& node : tree.nodes)
        if (auto* enters = dynamic_cast<SubtreeConditionNode*>(node.get()))
            enters->prepare();
}

bool SubtreeConditionNode::enter()
{
    if (!findPool())
        return false;
    entered_ = pool_->take();
    if (entered_ == nullptr)
        entered_ = makeTree();
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
    NodeStatus result = NodeStatus::RUNNING;
    {
        const LevelsInTick levels(blackboard(), *pool_);
        in_tick_ = true;
        struct Over
        {
            bool& in_tick;
            ~Over() { in_tick = false; }
        } const over{in_tick_};
        result = entered_->root_node->visit();
    }
    if (result != NodeStatus::SUCCESS && result != NodeStatus::FAILURE)
        return NodeStatus::RUNNING;
    leave();
    return result;
}

void SubtreeConditionNode::halt()
{
    // A leaf of the tree may halt what is above it: the tree stays until its tick is over.
    if (in_tick_)
        haltNode(*entered_->root_node);
    else
        leave();
    setStatus(NodeStatus::IDLE);
}

BT_PORTS(SubtreeConditionNode, {"subtree_file_path", ""}, {"expand_in_logger", "false"})

}  // namespace BT
