// Writes the nodes of all trees of a library, a line each: tree, parent, identifier, label, ports; texts in
// hex.

#include <algorithm>
#include <iostream>
#include <map>
#include <unordered_map>

#include "app/trees/node_children.h"
#include "leaves/host/host.h"

namespace {

std::string hex(const std::string& text)
{
    static constexpr const char* kDigits = "0123456789abcdef";
    std::string out;
    for (const char character : text) {
        const auto c = static_cast<unsigned char>(character);
        out += kDigits[c >> 4];
        out += kDigits[c & 15];
    }
    return out.empty() ? "-" : out;
}

void write(const std::string& name, const BT::Tree& tree)
{
    std::unordered_map<const BT::TreeNode*, int> parents;
    for (std::size_t i = 0; i < tree.nodes.size(); ++i)
        for (const BT::TreeNode* child : vemra::app::childrenOf(*tree.nodes[i]))
            parents[child] = static_cast<int>(i);
    for (const auto& node : tree.nodes) {
        const auto parent = parents.find(node.get());
        std::cout << name << ' ' << (parent == parents.end() ? -1 : parent->second) << ' '
                  << node->registrationName() << ' ' << hex(node->name());
        const BT::NodeParameters& given = node->initializationParameters();
        for (const auto& [port, text] : std::map<std::string, std::string>(given.begin(), given.end()))
            std::cout << ' ' << port << '=' << hex(text);
        std::cout << '\n';
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: write_trees LIBRARY\n";
        return 2;
    }
    BT::BehaviorTreeFactory factory;
    factory.registerFromPlugin(argv[1]);
    vemra::leaf::LeafHost host(factory);
    host.use_runtime_builtin();
    host.register_defaults();
    const auto blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    for (const std::string& name : factory.treeNames())
        write(name, factory.createTree(name, blackboard));
}
