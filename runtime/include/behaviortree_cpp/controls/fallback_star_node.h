#pragma once

#include "behaviortree_cpp/controls/star_node.h"

namespace BT {

/// A fallback that keeps its place over RUNNING and FAILURE of a child. SUCCESS of a child, or FAILURE of
/// the last one, ends it and goes back to the first. Without children: FAILURE.
class FallbackStarNode : public StarNode
{
public:
    explicit FallbackStarNode(const std::string& name) : StarNode(name, true) {}
    FallbackStarNode(const std::string& name, const NodeParameters& parameters) : StarNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override { return run(NodeStatus::FAILURE); }
};

}  // namespace BT
