#pragma once

#include "behaviortree_cpp/behavior_tree.h"

namespace BT {

/// Base of what logs the status changes of the nodes of a tree. `callback` gets the time since the logger
/// was made.
class StatusChangeLogger
{
public:
    explicit StatusChangeLogger(TreeNode* root);
    virtual ~StatusChangeLogger() = default;
    StatusChangeLogger(const StatusChangeLogger&) = delete;
    StatusChangeLogger& operator=(const StatusChangeLogger&) = delete;

    virtual void callback(Duration timestamp, const TreeNode& node, NodeStatus previous, NodeStatus now) = 0;
    virtual void flush() = 0;

    void setEnabled(bool enabled) { enabled_ = enabled; }
    [[nodiscard]] bool enabled() const { return enabled_; }
    /// Whether changes to IDLE are told; they are unless switched off.
    void enableTransitionToIdle(bool enable) { show_idle_ = enable; }
    [[nodiscard]] bool showsTransitionToIdle() const { return show_idle_; }

private:
    bool enabled_ = true;
    bool show_idle_ = true;
    TimePoint start_;
    std::vector<TreeNode::StatusChangeSubscriber> subscribers_;
};

}  // namespace BT
