#pragma once

#include "behaviortree_cpp/loggers/abstract_logger.h"

namespace BT {

/// Writes each status change to standard output.
class StdCoutLogger : public StatusChangeLogger
{
public:
    explicit StdCoutLogger(TreeNode* root) : StatusChangeLogger(root) {}

    void callback(Duration timestamp, const TreeNode& node, NodeStatus previous, NodeStatus now) override;
    void flush() override;
};

}  // namespace BT
