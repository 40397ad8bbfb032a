#pragma once

#include <fstream>

#include "behaviortree_cpp/loggers/abstract_logger.h"

namespace BT {

/// Writes the runs of nodes as a trace that a browser's performance view shows: a list of JSON events, with
/// microseconds since the logger was made. A node that ends in the tick in which it began is one event, any
/// other has a begin and an end.
class MinitraceLogger : public StatusChangeLogger
{
public:
    /// Throws BehaviorTreeException when the file cannot be opened.
    MinitraceLogger(TreeNode* root, const char* filename_json);
    ~MinitraceLogger() override;

    void callback(Duration timestamp, const TreeNode& node, NodeStatus previous, NodeStatus now) override;
    void flush() override { file_ << std::flush; }

private:
    std::ofstream file_;
    bool first_ = true;
};

}  // namespace BT
