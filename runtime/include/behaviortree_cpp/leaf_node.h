#pragma once

#include "behaviortree_cpp/tree_node.h"

namespace BT {

/// A node without children.
class LeafNode : public TreeNode
{
public:
    using TreeNode::TreeNode;
};

}  // namespace BT
