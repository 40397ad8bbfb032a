#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <unordered_map>

#include "behaviortree_cpp/loggers/abstract_logger.h"

namespace BT {

/// Writes a tree and the status changes of its nodes to a file of JSON lines. The first line is the tree:
///     {"tree":[{"index":0,"parent":-1,"id":"Sequence","name":"Sequence"},...]}
/// and each further one a change, with seconds since the first one:
///     {"t":0.02,"index":3,"from":"IDLE","to":"RUNNING"}
class FileLogger : public StatusChangeLogger
{
public:
    /// Keeps up to `buffer_size` lines back before it writes them. Throws BehaviorTreeException when the
    /// file cannot be opened.
    FileLogger(TreeNode* root, const char* filename, std::uint16_t buffer_size = 10);
    ~FileLogger() override;

    void callback(Duration timestamp, const TreeNode& node, NodeStatus previous, NodeStatus now) override;
    void flush() override;

private:
    void writeTree(const TreeNode* root);

    std::ofstream file_;
    std::string pending_;
    std::uint16_t pending_lines_ = 0;
    std::uint16_t buffer_size_;
    std::unordered_map<const TreeNode*, std::size_t> index_;
};

}  // namespace BT
