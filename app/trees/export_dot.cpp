#include <ostream>

#include "app/trees/export.h"

namespace vemra::app {

namespace {

std::string escaped(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        if (c == '\n')
            out += "\\n";
        else
            out += c;
    }
    return out;
}

std::string label(const ModelNode& node)
{
    std::string text = escaped(node.id);
    if (node.hasOwnName() && node.type != BT::NodeType::SUBTREE)
        text += "\\n(" + escaped(node.name) + ")";
    for (const auto& [name, value] : node.ports)
        text += "\\n" + escaped(name) + " = " + escaped(value);
    return text;
}

const char* look(const ModelNode& node)
{
    if (!enteredTree(node).empty())
        return "shape=box3d, fillcolor=\"#cfe8ef\"";
    switch (node.type) {
        case BT::NodeType::CONTROL:
            return "shape=box, fillcolor=\"#dfe6f5\"";
        case BT::NodeType::DECORATOR:
            return "shape=hexagon, fillcolor=\"#f6ecd2\"";
        case BT::NodeType::SUBTREE:
            return "shape=folder, fillcolor=\"#ecdcf2\"";
        case BT::NodeType::CONDITION:
            return "shape=ellipse, fillcolor=\"#dff0db\"";
        default:
            return "shape=box, style=\"rounded,filled\", fillcolor=\"#ffffff\"";
    }
}

}  // namespace

void exportDot(std::ostream& out, std::span<const TreeModel> trees)
{
    // ordering=out keeps children from left to right as they are ticked.
    out << "digraph trees {\n  graph [ordering=out, rankdir=TB];\n"
           "  node [style=filled, fontname=\"sans-serif\", fontsize=10];\n";
    for (std::size_t t = 0; t < trees.size(); ++t) {
        const std::string prefix = "t" + std::to_string(t) + "_";
        out << "  subgraph cluster_" << t << " {\n    label=\"" << escaped(trees[t].name) << "\";\n";
        for (std::size_t i = 0; i < trees[t].nodes.size(); ++i) {
            const ModelNode& node = trees[t].nodes[i];
            out << "    " << prefix << i << " [" << look(node) << ", label=\"" << label(node) << "\"];\n";
            if (node.parent >= 0)
                out << "    " << prefix << node.parent << " -> " << prefix << i << ";\n";
        }
        out << "  }\n";
    }
    out << "}\n";
}

}  // namespace vemra::app
