#pragma once

#include <iosfwd>
#include <span>
#include <string>

#include "app/trees/tree_model.h"

namespace vemra::app {

/// {"trees":[{"name":N,"nodes":[{"id":I,"name":L,"parent":P,"ports":{k:v}}]}]}, a node a line: nodes in
/// creation order, `parent` an index into the same list and -1 for the root.
void exportJson(std::ostream& out, std::span<const TreeModel> trees);

/// XML for tree editors, with `main_tree` as the one to execute. Inner trees become trees of their own named
/// "<tree>.<inner>", each once. A node that enters another tree refers to it as editors do, by a SubTree;
/// where that tree is not in the file it stays a node of the type SubtreeCondition. The model at the end
/// declares all types that an editor need not know, with every port that a node in the file has.
void exportXml(std::ostream& out, std::span<const TreeModel> trees, const std::string& main_tree);

/// A graph for Graphviz, each tree a cluster of its own.
void exportDot(std::ostream& out, std::span<const TreeModel> trees);

}  // namespace vemra::app
