#include "app/trees/outline.h"

#include <map>
#include <ostream>

namespace vemra::app {

namespace {

// What stands out in colour: inner and entered trees most, then what steers, then what asks.
constexpr std::string_view kReset = "\033[0m";
constexpr std::string_view kDim = "\033[2m";
constexpr std::string_view kLabel = "\033[3m";
constexpr std::string_view kInner = "\033[1;35m";
constexpr std::string_view kEntered = "\033[1;36m";
constexpr std::string_view kControl = "\033[34m";
constexpr std::string_view kDecorator = "\033[33m";
constexpr std::string_view kCondition = "\033[32m";

std::string_view colorOf(const ModelNode& node)
{
    if (node.type == BT::NodeType::SUBTREE)
        return kInner;
    if (!enteredTree(node).empty())
        return kEntered;
    switch (node.type) {
        case BT::NodeType::CONTROL:
            return kControl;
        case BT::NodeType::DECORATOR:
            return kDecorator;
        case BT::NodeType::CONDITION:
            return kCondition;
        default:
            return {};
    }
}

/// Keeps a text in quotes on its line.
std::string quoted(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            out += {'\\', c};
        else if (c == '\n')
            out += "\\n";
        else
            out += c;
    }
    return out + '"';
}

/// An inner tree says its name twice, as its label and as a port; once is enough here.
bool showsLabel(const ModelNode& node)
{
    return node.hasOwnName() && node.id != "SubTree";
}

class Writer
{
public:
    Writer(std::ostream& out, const OutlineStyle& style, const TreeSource& source,
           const std::function<bool(const std::string&)>& knows)
        : out_(out), style_(style), source_(source), knows_(knows)
    {}

    void tree(const TreeModel& tree, std::size_t depth)
    {
        lines_of_.emplace(tree.name, line_ + 1);
        if (!tree.nodes.empty())
            node(tree, 0, depth);
    }

private:
    void node(const TreeModel& tree, std::size_t index, std::size_t depth)
    {
        const ModelNode& node = tree.nodes[index];
        const std::string_view entered = enteredTree(node);
        const bool goes_on = style_.expand && !entered.empty() && knows_(std::string(entered));
        const std::size_t below = goes_on ? 1 : node.children.size();
        const bool cut = depth + 1 >= style_.levels;
        ++line_;
        out_ << std::string(depth * 2, ' ');
        if (style_.live && !style_.live(tree.name, index))
            paint(kDim, nodeText(node));
        else
            bright(node);
        if (!tree.written())
            paint(kDim, "  (not written)");
        if (style_.expand && !entered.empty() && !goes_on)
            paint(kDim, "  (no such tree)");
        if (cut && below > 0)
            paint(kDim, goes_on ? "  ..."
                                : "  ... " + std::to_string(below) + (below == 1 ? " child" : " children"));
        if (cut) {
            out_ << '\n';
            return;
        }
        if (goes_on) {
            if (const auto seen = lines_of_.find(entered); seen != lines_of_.end()) {
                paint(kDim, "  (as from line " + std::to_string(seen->second) + ")");
                out_ << '\n';
            } else {
                out_ << '\n';
                this->tree(source_(std::string(entered)), depth + 1);
            }
            return;
        }
        out_ << '\n';
        for (const std::size_t child : node.children)
            this->node(tree, child, depth + 1);
    }

    void bright(const ModelNode& node)
    {
        paint(colorOf(node), node.id);
        if (showsLabel(node))
            paint(kLabel, " " + quoted(node.name));
        for (const auto& [name, text] : node.ports) {
            paint(kDim, " " + name + "=");
            out_ << quoted(text);
        }
    }

    void paint(std::string_view color, std::string_view text)
    {
        if (style_.color && !color.empty())
            out_ << color << text << kReset;
        else
            out_ << text;
    }

    std::ostream& out_;
    const OutlineStyle& style_;
    const TreeSource& source_;
    const std::function<bool(const std::string&)>& knows_;
    std::map<std::string, std::size_t, std::less<>> lines_of_;
    std::size_t line_ = 0;
};

}  // namespace

std::string nodeText(const ModelNode& node)
{
    std::string text = node.id;
    if (showsLabel(node))
        text += " " + quoted(node.name);
    for (const auto& [name, value] : node.ports)
        text += " " + name + "=" + quoted(value);
    return text;
}

void writeOutline(std::ostream& out, const TreeModel& tree, const OutlineStyle& style,
                  const TreeSource& source, const std::function<bool(const std::string&)>& knows)
{
    Writer(out, style, source, knows).tree(tree, 0);
}

}  // namespace vemra::app
