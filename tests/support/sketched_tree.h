#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/hang.h"

namespace vemra::test {

/// A tree in a few words. Below a `SubtreeCondition` stands the tree that it enters, which is no part of it.
struct Sketch
{
    std::string id;
    BT::NodeParameters ports;
    std::vector<Sketch> children;
    std::string name;

    [[nodiscard]] std::string port(const std::string& key) const
    {
        const auto found = ports.find(key);
        return found == ports.end() ? "" : found->second;
    }
};

inline Sketch node(const std::string& id, std::vector<Sketch> children)
{
    return {id, {}, std::move(children), id};
}
inline Sketch node(const std::string& id, BT::NodeParameters ports, std::vector<Sketch> children)
{
    return {id, std::move(ports), std::move(children), id};
}
inline Sketch leaf(const std::string& id, BT::NodeParameters ports = {})
{
    return {id, std::move(ports), {}, id};
}
inline Sketch enter(const std::string& path)
{
    return leaf("SubtreeCondition", {{"subtree_file_path", path}});
}

/// The sketch and all below, put into the tree.
inline BT::TreeNode* grow(const Sketch& sketch, BT::Tree& into, const BT::BehaviorTreeFactory& factory,
                          const BT::Blackboard::Ptr& blackboard)
{
    BT::TreeNode* const made =
        into.nodes.emplace_back(factory.instantiateTreeNode(sketch.id, sketch.name, sketch.ports, blackboard))
            .get();
    if (sketch.id != "SubtreeCondition")
        for (const Sketch& child : sketch.children)
            hang(*made, *grow(child, into, factory, blackboard));
    return made;
}
inline BT::Tree grown(const Sketch& sketch, const BT::BehaviorTreeFactory& factory,
                      const BT::Blackboard::Ptr& blackboard)
{
    BT::Tree tree;
    tree.root_node = grow(sketch, tree, factory, blackboard);
    return tree;
}
inline void registerTree(BT::BehaviorTreeFactory& factory, const std::string& name, const Sketch& sketch)
{
    factory.registerTreeBuilder(
        name, [sketch](const BT::BehaviorTreeFactory& made_by, const BT::Blackboard::Ptr& blackboard) {
            return grown(sketch, made_by, blackboard);
        });
}

}  // namespace vemra::test
