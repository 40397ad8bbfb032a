#include <algorithm>
#include <utility>
#include <vector>

#include "behaviortree_cpp/behavior_tree.h"

namespace BT {

std::size_t levelsOf(const TreeNode& root)
{
    // No recursion: it is the depth that is in question.
    std::vector<std::pair<const TreeNode*, std::size_t>> open{{&root, 1}};
    std::size_t deepest = 0;
    while (!open.empty()) {
        const auto [node, level] = open.back();
        open.pop_back();
        deepest = std::max(deepest, level);
        if (level > kMaxLevels)
            throw BehaviorTreeException("the tree is nested more than " + std::to_string(kMaxLevels) +
                                        " levels deep, below a node '" + root.name() + "'");
        if (node->type() == NodeType::ACTION || node->type() == NodeType::CONDITION)
            continue;
        if (const auto* control = dynamic_cast<const ControlNode*>(node)) {
            for (const TreeNode* child : control->children())
                open.emplace_back(child, level + 1);
        } else if (const auto* decorator = dynamic_cast<const DecoratorNode*>(node)) {
            if (decorator->child() != nullptr)
                open.emplace_back(decorator->child(), level + 1);
        }
    }
    return deepest;
}

}  // namespace BT
