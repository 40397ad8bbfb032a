#include "generator/emit.h"

#include <algorithm>
#include <limits>
#include <map>
#include <ostream>
#include <stdexcept>
#include <string_view>

namespace vemra::generator {

using description::NamedTree;
using description::Node;

namespace {

/// All texts of the trees, each once.
class TextPool
{
public:
    std::size_t add(const std::string& text)
    {
        const auto [at, added] = index_.try_emplace(text, order_.size());
        if (added)
            order_.push_back(text);
        return at->second;
    }
    [[nodiscard]] const std::vector<std::string>& all() const { return order_; }

private:
    std::map<std::string, std::size_t> index_;
    std::vector<std::string> order_;
};

struct NodeRow
{
    std::size_t id;
    std::size_t name;
    std::size_t parent;
    std::size_t first_port;
    std::size_t ports;
};

struct Tables
{
    TextPool texts;
    std::vector<std::pair<std::size_t, std::size_t>> ports;
    std::map<std::string, std::vector<NodeRow>> nodes;
};

void add(Tables& tables, std::vector<NodeRow>& rows, const Node& node, std::size_t parent)
{
    const std::size_t self = rows.size();
    rows.push_back({tables.texts.add(node.id), tables.texts.add(node.name), parent, tables.ports.size(),
                    node.ports.size()});
    for (const description::PortText& port : node.ports)
        tables.ports.emplace_back(tables.texts.add(port.name), tables.texts.add(port.text));
    for (const Node& child : node.children)
        add(tables, rows, child, self);
}

std::string literal(std::string_view text)
{
    static constexpr std::string_view kHex = "0123456789abcdef";
    std::string out = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        // A question mark too, as two of them may begin a trigraph.
        if (c == '"' || c == '\\' || c == '?')
            out += {'\\', c};
        else if (byte >= 0x20 && byte < 0x7f)
            out += c;
        else
            // Closed and opened again, so that no digit behind joins the escape.
            out += {'\\', 'x', kHex[byte >> 4U], kHex[byte & 15U], '"', '"'};
    }
    return out + "\"";
}

std::string builderOf(const std::string& tree)
{
    return "build" + tree;
}

void fit(std::size_t value, const char* what)
{
    if (value > std::numeric_limits<std::uint16_t>::max())
        throw std::length_error(std::string("the tables are too small for the number of ") + what);
}

}  // namespace

std::vector<NamedTree> completed(std::vector<NamedTree> described, const std::vector<std::string>& registry)
{
    std::vector<NamedTree> all;
    for (const std::string& name : registry) {
        const auto found = std::find_if(described.begin(), described.end(),
                                        [&name](const NamedTree& tree) { return tree.name == name; });
        if (found != described.end())
            all.push_back(std::move(*found));
        else {
            Node stand_in("AlwaysFailure", {}, {});
            stand_in.name = kNotWritten;
            all.push_back({name, std::move(stand_in)});
        }
    }
    return all;
}

void emitSource(std::ostream& out, const std::vector<NamedTree>& trees)
{
    Tables tables;
    for (const NamedTree& tree : trees) {
        std::vector<NodeRow>& rows = tables.nodes[tree.name];
        add(tables, rows, tree.root, 0);
        fit(rows.size(), "nodes of a tree");
    }
    fit(tables.texts.all().size(), "texts");

    out << "// Made by treegen from the descriptions in trees/; changes here are lost.\n"
           "#include \"plugin/tree_table.h\"\n\n"
           "using vemra::plugin::NodeRow;\n"
           "using vemra::plugin::PortRow;\n\n"
           "namespace {\n\n"
           "constexpr std::string_view kTexts[] = {\n";
    for (const std::string& text : tables.texts.all())
        out << "    {" << literal(text) << ", " << text.size() << "},\n";
    out << "};\n\nconstexpr PortRow kPorts[] = {\n";
    for (const auto& [name, text] : tables.ports)
        out << "    {" << name << ", " << text << "},\n";
    out << "    {0, 0}};\n\n";
    for (const NamedTree& tree : trees) {
        out << "constexpr NodeRow kNodes_" << tree.name << "[] = {\n";
        for (const NodeRow& row : tables.nodes[tree.name])
            out << "    {" << row.id << ", " << row.name << ", " << row.parent << ", " << row.ports << ", "
                << row.first_port << "},\n";
        out << "};\n\n";
    }
    out << "}  // namespace\n\n";
    for (const NamedTree& tree : trees)
        out << "BT::Tree " << builderOf(tree.name)
            << "(const BT::BehaviorTreeFactory& factory, const std::shared_ptr<BT::Blackboard>& blackboard)\n"
               "{\n    return vemra::plugin::buildTree({kTexts, kPorts, kNodes_"
            << tree.name << "}, factory, blackboard);\n}\n\n";
    out << "namespace vemra::plugin {\n\nstd::span<const TreeEntry> treeEntries()\n{\n"
           "    static constexpr TreeEntry kTrees[] = {\n";
    for (const NamedTree& tree : trees)
        out << "        {\"" << tree.name << "\", " << builderOf(tree.name) << "},\n";
    out << "    };\n    return kTrees;\n}\n\n}  // namespace vemra::plugin\n";
}

void emitExports(std::ostream& out, const std::vector<NamedTree>& trees)
{
    out << "{\n  global:\n    BT_RegisterNodesFromPlugin;\n    extern \"C++\" {\n";
    for (const NamedTree& tree : trees)
        out << "      \"" << builderOf(tree.name)
            << "(BT::BehaviorTreeFactory const&, std::shared_ptr<BT::Blackboard> const&)\";\n";
    out << "    };\n  local: *;\n};\n";
}

}  // namespace vemra::generator
