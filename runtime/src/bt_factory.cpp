#include "behaviortree_cpp/bt_factory.h"

#include <dlfcn.h>

#include <algorithm>

#include "behaviortree_cpp/actions/arithmetic_nodes.h"
#include "behaviortree_cpp/actions/blackboard_nodes.h"
#include "behaviortree_cpp/actions/comparison_nodes.h"
#include "behaviortree_cpp/actions/timing_nodes.h"
#include "behaviortree_cpp/controls/do_while_node.h"
#include "behaviortree_cpp/controls/if_then_else_node.h"
#include "behaviortree_cpp/controls/post_process_node.h"
#include "behaviortree_cpp/decorators/action_decorator_node.h"
#include "behaviortree_cpp/decorators/bb_precondition_node.h"
#include "behaviortree_cpp/decorators/blackboard_precondition.h"
#include "behaviortree_cpp/decorators/frameout_node.h"
#include "behaviortree_cpp/decorators/loop_node.h"
#include "behaviortree_cpp/decorators/subtree_condition_node.h"
#include "tree_registry.h"

namespace BT {

BehaviorTreeFactory::BehaviorTreeFactory() : trees_(std::make_shared<TreeRegistry>(*this))
{
    registerNodeType<SequenceNode>("Sequence");
    registerNodeType<SequenceStarNode>("SequenceStar");
    registerNodeType<FallbackNode>("Fallback");
    registerNodeType<FallbackStarNode>("FallbackStar");
    registerNodeType<IfThenElseNode>("IfThenElse");
    registerNodeType<IfThenElseStarNode>("IfThenElseStar");
    registerNodeType<DoWhileNode>("DoWhile");
    registerNodeType<ParallelNode>("ParallelNode");
    registerNodeType<PostProcessNode>("PostProcess");

    registerNodeType<ForceSuccessDecorator>("ForceSuccess");
    registerNodeType<ForceFailureDecorator>("ForceFailure");
    registerNodeType<InverterNode>("Inverter");
    registerNodeType<RetryNode>("RetryUntilSuccesful");
    registerNodeType<RepeatNode>("Repeat");
    registerNodeType<LoopNode>("Loop");
    registerNodeType<FrameoutNode>("Frameout");
    registerNodeType<TimeoutNode>("Timeout");
    registerNodeType<BBPreconditionNode>("BB_Precondition");
    registerNodeType<ActionDecoratorNode>("ActionDecorator");
    registerNodeType<BlackboardPreconditionNode<int>>("BlackboardCheckInt");
    registerNodeType<BlackboardPreconditionNode<double>>("BlackboardCheckDouble");
    registerNodeType<BlackboardPreconditionNode<std::string>>("BlackboardCheckString");
    registerNodeType<DecoratorSubtreeNode>("SubTree");

    registerNodeType<AlwaysSuccessNode>("AlwaysSuccess");
    registerNodeType<AlwaysFailureNode>("AlwaysFailure");
    registerNodeType<ForceRunningNode>("ForceRunning");
    registerNodeType<DelayNode>("Delay");
    registerNodeType<SetBlackboardNode>("SetBlackboard");
    registerNodeType<SetBlackboardWithTypeNode>("SetBlackboardWithType");
    registerNodeType<EraseBlackboardNode>("EraseBlackboard");
    registerNodeType<BlackboardContainsNode>("BlackboardContains");
    registerNodeType<BlackboardCopyNode>("BlackboardCopy");
    registerNodeType<StackBlackboardNode>("StackBlackboard");
    registerNodeType<StringMatchNode>("StringMatch");
    registerNodeType<BoolMatchNode>("BoolMatch");
    registerNodeType<IsAGreaterThanBIntNode>("IsAGreaterThanBInt");
    registerNodeType<IsAGreaterThanBFloatNode>("IsAGreaterThanBFloat");
    registerNodeType<IntAddNode>("IntAdd");
    registerNodeType<FloatAddNode>("FloatAdd");
    registerNodeType<FloatModulusNode>("FloatModulus");
    registerNodeType<ConditionTimerFramesNode>("ConditionTimerFrames");
    registerNodeType<ConditionTimerSecsNode>("ConditionTimerSecs");

    const std::weak_ptr<TreeRegistry> trees = trees_;
    registerBuilder({NodeType::CONDITION, "SubtreeCondition", SubtreeConditionNode::requiredNodeParameters()},
                    [trees](const std::string& name, const NodeParameters& parameters) {
                        return makeNode<SubtreeConditionNode>(name, parameters, trees);
                    });

    for (const TreeNodeManifest& manifest : manifests_)
        builtin_.insert(manifest.registration_ID);
}

BehaviorTreeFactory::~BehaviorTreeFactory() = default;

void BehaviorTreeFactory::registerBuilder(const TreeNodeManifest& manifest, const NodeBuilder& builder)
{
    const auto [at, added] = builders_.try_emplace(manifest.registration_ID, builder);
    if (!added)
        throw BehaviorTreeException("node type '" + manifest.registration_ID + "' is already registered");
    ids_.emplace(&at->second, std::make_shared<const std::string>(manifest.registration_ID));
    manifests_.push_back(manifest);
}

bool BehaviorTreeFactory::unregisterBuilder(const std::string& ID)
{
    std::erase_if(manifests_,
                  [&ID](const TreeNodeManifest& manifest) { return manifest.registration_ID == ID; });
    const auto found = builders_.find(ID);
    if (found == builders_.end())
        return false;
    ids_.erase(&found->second);
    builders_.erase(found);
    return true;
}

void BehaviorTreeFactory::registerSimpleAction(const std::string& ID,
                                               const SimpleActionNode::TickFunctor& functor)
{
    registerBuilder({NodeType::ACTION, ID, {}},
                    [shared = std::make_shared<const SimpleActionNode::TickFunctor>(functor)](
                        const std::string& name, const NodeParameters& parameters) {
                        return makeNode<SimpleActionNode>(name, shared, parameters);
                    });
}

void BehaviorTreeFactory::registerSimpleCondition(const std::string& ID,
                                                  const SimpleConditionNode::TickFunctor& functor)
{
    registerBuilder({NodeType::CONDITION, ID, {}},
                    [shared = std::make_shared<const SimpleConditionNode::TickFunctor>(functor)](
                        const std::string& name, const NodeParameters& parameters) {
                        return makeNode<SimpleConditionNode>(name, shared, parameters);
                    });
}

void BehaviorTreeFactory::registerSimpleDecorator(const std::string& ID,
                                                  const SimpleDecoratorNode::TickFunctor& functor)
{
    registerBuilder({NodeType::DECORATOR, ID, {}},
                    [shared = std::make_shared<const SimpleDecoratorNode::TickFunctor>(functor)](
                        const std::string& name, const NodeParameters& parameters) {
                        return makeNode<SimpleDecoratorNode>(name, shared, parameters);
                    });
}

void BehaviorTreeFactory::registerFromPlugin(const std::string& file_path)
{
    void* handle = dlopen(file_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* why = dlerror();
        throw BehaviorTreeException("cannot open plug-in '" + file_path +
                                    "': " + (why != nullptr ? why : "unknown"));
    }
    using EntryPoint = void (*)(BehaviorTreeFactory&);
    const auto entry = reinterpret_cast<EntryPoint>(dlsym(handle, "BT_RegisterNodesFromPlugin"));
    if (entry == nullptr) {
        dlclose(handle);
        throw BehaviorTreeException("plug-in '" + file_path + "' has no function BT_RegisterNodesFromPlugin");
    }
    // Stays open from here on: nodes and values whose code is in it may outlive this factory.
    entry(*this);
}

std::unique_ptr<TreeNode> BehaviorTreeFactory::instantiateTreeNode(
    const std::string& ID, const std::string& name, const NodeParameters& parameters,
    const std::shared_ptr<Blackboard>& blackboard) const
{
    const auto found = builders_.find(ID);
    if (found == builders_.end())
        throw BehaviorTreeException("no node type '" + ID + "' is registered (node '" + name + "')");
    std::unique_ptr<TreeNode> node = found->second(name, parameters);
    if (node == nullptr)
        throw BehaviorTreeException("the builder of '" + ID + "' made no node (node '" + name + "')");
    if (!parameters.empty() && node->ports().empty())
        node->setParameters(parameters);
    node->setRegistrationName(ids_.at(&found->second));
    node->setBlackboard(blackboard);
    node->initialize();
    return node;
}

void BehaviorTreeFactory::registerTreeBuilder(const std::string& name, const TreeBuilder& builder)
{
    trees_->add(name, builder);
}

bool BehaviorTreeFactory::hasTree(std::string_view name) const
{
    return trees_->find(name) != nullptr;
}

std::vector<std::string> BehaviorTreeFactory::treeNames() const
{
    return trees_->names();
}

Tree BehaviorTreeFactory::createTree(const std::string& name,
                                     const std::shared_ptr<Blackboard>& blackboard) const
{
    const auto tree = trees_->find(name);
    if (tree == nullptr)
        throw BehaviorTreeException("no tree '" + name + "' is registered");
    Tree made = trees_->make(*tree, blackboard);
    if (made.root_node != nullptr)
        levelsOf(*made.root_node);
    return made;
}

}  // namespace BT
