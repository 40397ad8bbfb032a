#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/trees/tree_model.h"

namespace vemra::app {

/// Which nodes of a tree can ever be ticked.
struct TreeLife
{
    static constexpr int kNone = -1;

    bool entered = false;  ///< something live enters the tree, or it is the first one
    std::vector<bool> live;
    /// For the topmost node of each branch that is off: the node whose constant result does it; kNone for all
    /// others.
    std::vector<int> off_by;

    [[nodiscard]] std::size_t liveNodes() const;
};

/// The result that a node has whatever is on the blackboard, where its texts alone decide it.
using ConstantResult = std::function<std::optional<BT::NodeStatus>(const ModelNode& node)>;

/// Looks, from the built trees alone, which nodes can ever be ticked from `first` on: what constant
/// conditions switch off, what stands behind a loop without an end, and what no live node enters is off.
/// Where `first` is no tree of them, each tree is entered. A leaf may give any result; a tree that is not
/// written may, too.
[[nodiscard]] std::map<std::string, TreeLife> livenessOf(const std::vector<TreeModel>& trees,
                                                         const std::string& first,
                                                         const ConstantResult& constant);

}  // namespace vemra::app
