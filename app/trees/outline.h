#pragma once

#include <functional>
#include <iosfwd>
#include <limits>
#include <string>

#include "app/trees/tree_model.h"

namespace vemra::app {

struct OutlineStyle
{
    bool color = false;
    std::size_t levels = std::numeric_limits<std::size_t>::max();  ///< how many levels are shown
    bool expand = false;  ///< goes on into entered trees, into each at the first place that enters it
    /// Whether a node can ever be ticked; one that cannot is dimmed. Empty: all are taken to be live.
    std::function<bool(const std::string& tree, std::size_t index)> live = {};
};

/// A node as its line in an outline says it, without indent and colour.
[[nodiscard]] std::string nodeText(const ModelNode& node);

using TreeSource = std::function<TreeModel(const std::string& name)>;

/// Writes a tree, a node a line, a level two blanks deeper: identifier, "label" where it is another, ports.
/// `source` gives the trees that are entered; one that `knows` denies is said to be missing.
void writeOutline(std::ostream& out, const TreeModel& tree, const OutlineStyle& style,
                  const TreeSource& source, const std::function<bool(const std::string&)>& knows);

}  // namespace vemra::app
