#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "behaviortree_cpp/behavior_tree.h"

namespace BT {

class BehaviorTreeFactory;
class TreeRegistry;

using NodeBuilder =
    std::function<std::unique_ptr<TreeNode>(const std::string& name, const NodeParameters& parameters)>;

/// What the factory knows of a node type.
struct TreeNodeManifest
{
    NodeType type = NodeType::UNDEFINED;
    std::string registration_ID;
    NodeParameters required_parameters;
};

/// Makes a node of class T, for a builder: std::make_unique, and a node whose class leaves executeTick() as
/// it is costs one virtual call less in each tick.
template <class T, class... Args>
[[nodiscard]] std::unique_ptr<T> makeNode(Args&&... args);

using TreeBuilder = std::function<Tree(const BehaviorTreeFactory&, const std::shared_ptr<Blackboard>&)>;

/// Makes nodes by identifier and trees by name. All built-in nodes are registered from the start. Trees may
/// outlive it, but one that enters another then finds none. Several threads may make and tick trees of one
/// factory, each on a blackboard of its own, while nobody registers.
class BehaviorTreeFactory
{
public:
    BehaviorTreeFactory();
    ~BehaviorTreeFactory();
    BehaviorTreeFactory(const BehaviorTreeFactory&) = delete;
    BehaviorTreeFactory& operator=(const BehaviorTreeFactory&) = delete;

    /// Throws BehaviorTreeException when the identifier is taken.
    void registerBuilder(const TreeNodeManifest& manifest, const NodeBuilder& builder);
    /// False when there is no such identifier.
    bool unregisterBuilder(const std::string& ID);

    void registerSimpleAction(const std::string& ID, const SimpleActionNode::TickFunctor& functor);
    void registerSimpleCondition(const std::string& ID, const SimpleConditionNode::TickFunctor& functor);
    void registerSimpleDecorator(const std::string& ID, const SimpleDecoratorNode::TickFunctor& functor);

    /// T has a constructor (name, parameters), and then a static requiredNodeParameters(), or one (name).
    template <class T>
    void registerNodeType(const std::string& ID);

    /// Opens the library and calls its BT_RegisterNodesFromPlugin; the library stays open until the program
    /// ends. Throws BehaviorTreeException when it cannot be opened or has no such function.
    void registerFromPlugin(const std::string& file_path);

    /// Makes one node, sets its blackboard and calls its onInit. Throws BehaviorTreeException when the
    /// identifier is unknown; what the node's constructor throws comes through.
    [[nodiscard]] std::unique_ptr<TreeNode> instantiateTreeNode(
        const std::string& ID, const std::string& name, const NodeParameters& parameters,
        const std::shared_ptr<Blackboard>& blackboard) const;

    [[nodiscard]] const std::unordered_map<std::string, NodeBuilder>& builders() const { return builders_; }
    [[nodiscard]] const std::vector<TreeNodeManifest>& manifests() const { return manifests_; }
    /// The identifiers that are registered from the start.
    [[nodiscard]] const std::set<std::string>& builtinNodes() const { return builtin_; }

    // --- trees by name ---

    /// Keeps `builder` under `name`. A later one takes the place of an earlier one, so that a library may
    /// be loaded again; a builder may itself register trees. Throws BehaviorTreeException for an empty name
    /// or builder.
    void registerTreeBuilder(const std::string& name, const TreeBuilder& builder);
    [[nodiscard]] bool hasTree(std::string_view name) const;
    /// Names in the order of their registration.
    [[nodiscard]] std::vector<std::string> treeNames() const;
    /// Makes a new tree. Throws BehaviorTreeException for an unknown name; what the builder throws comes
    /// through, and no tree is left behind.
    [[nodiscard]] Tree createTree(const std::string& name,
                                  const std::shared_ptr<Blackboard>& blackboard) const;

private:
    std::unordered_map<std::string, NodeBuilder> builders_;
    std::unordered_map<const NodeBuilder*, std::shared_ptr<const std::string>> ids_;  ///< nodes share them
    std::vector<TreeNodeManifest> manifests_;
    std::set<std::string> builtin_;
    std::shared_ptr<TreeRegistry> trees_;
};

/// Makes the trees ahead that the `SubtreeCondition` nodes of `tree` name by a literal, and those that these
/// enter: one of each waits to be entered, so that no tick has to make it. Other trees are made when they are
/// entered.
void prepareTrees(const Tree& tree);

/// The tree that a path names: its last component less a trailing ".xml".
[[nodiscard]] std::string_view treeNameOfPath(std::string_view path);

namespace detail {

template <class T>
concept TakesParameters = std::is_constructible_v<T, const std::string&, const NodeParameters&>;

/// Whether T has the executeTick() of Base; the type of a member's address names the class that declares it.
template <class T, class Base>
constexpr bool ticksAs()
{
    if constexpr (requires { &T::executeTick; })
        return std::is_same_v<decltype(&T::executeTick), NodeStatus (Base::*)()>;
    else
        return false;
}

template <class T>
NodeParameters requiredParametersOf()
{
    if constexpr (requires { T::requiredNodeParameters(); })
        return T::requiredNodeParameters();
    else
        return {};
}

}  // namespace detail

template <class T, class... Args>
std::unique_ptr<T> makeNode(Args&&... args)
{
    auto node = std::make_unique<T>(std::forward<Args>(args)...);
    if constexpr (detail::ticksAs<T, TreeNode>())
        node->setTicksPlainly(true);
    else if constexpr (detail::ticksAs<T, DecoratorNode>())
        node->setTicksPlainlyWithChild();
    return node;
}

template <class T>
void BehaviorTreeFactory::registerNodeType(const std::string& ID)
{
    static_assert(detail::TakesParameters<T> || std::is_constructible_v<T, const std::string&>,
                  "a node class needs a constructor (const std::string&, const NodeParameters&) or "
                  "(const std::string&)");
    static_assert(getType<T>() != NodeType::UNDEFINED,
                  "derive from an action, condition, control or decorator");
    registerBuilder({getType<T>(), ID, detail::requiredParametersOf<T>()},
                    [](const std::string& name, [[maybe_unused]] const NodeParameters& parameters) {
                        if constexpr (detail::TakesParameters<T>)
                            return makeNode<T>(name, parameters);
                        else
                            return makeNode<T>(name);
                    });
}

}  // namespace BT

/// Opens the entry point of a plug-in:
///     BT_REGISTER_NODES(factory) { factory.registerNodeType<MyLeaf>("MyLeaf"); }
#define BT_REGISTER_NODES(factory) /* NOLINT(cppcoreguidelines-macro-usage) */         \
    extern "C" __attribute__((visibility("default"))) void BT_RegisterNodesFromPlugin( \
        BT::BehaviorTreeFactory&(factory))
