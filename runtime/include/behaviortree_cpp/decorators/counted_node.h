#pragma once

#include "behaviortree_cpp/decorator_node.h"

namespace BT {

/// What the decorators with a limit share: the limit is read from its port when a run begins, and the count
/// is cleared by the end and by a halt.
class CountedNode : public DecoratorNode
{
public:
    void halt() override;

protected:
    CountedNode(const std::string& name, const char* port, int limit);
    CountedNode(const std::string& name, const char* port, const NodeParameters& parameters);

    /// Begins a run if none is on; false when the limit cannot be read.
    bool begin();
    [[nodiscard]] bool endless() const { return limit_ < 0; }
    [[nodiscard]] std::int64_t limit() const { return limit_; }
    [[nodiscard]] bool spent() const { return !endless() && count_ >= limit_; }
    void count() { ++count_; }
    [[nodiscard]] std::int64_t counted() const { return count_; }
    NodeStatus finish(NodeStatus result);

private:
    const char* port_;
    std::int64_t limit_ = 0;
    std::int64_t count_ = 0;
    bool reads_port_ = false;
    bool on_ = false;
};

}  // namespace BT
