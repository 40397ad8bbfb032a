#include <tinyxml2.h>

#include <algorithm>
#include <array>
#include <map>
#include <ostream>
#include <set>

#include "app/trees/export.h"
#include "leaves/contract.h"

namespace vemra::app {

namespace {

using tinyxml2::XMLElement;

// What tree editors bring along. All else is declared in the file.
constexpr std::array<std::string_view, 11> kKnownToEditors{
    "AlwaysFailure", "AlwaysSuccess", "Fallback",     "ForceFailure",  "ForceSuccess", "Inverter",
    "Repeat",        "Sequence",      "SequenceStar", "SetBlackboard", "Timeout"};

bool knownToEditors(const std::string& id)
{
    return std::find(kKnownToEditors.begin(), kKnownToEditors.end(), id) != kKnownToEditors.end();
}

const char* elementOf(BT::NodeType type)
{
    switch (type) {
        case BT::NodeType::CONTROL:
            return "Control";
        case BT::NodeType::DECORATOR:
            return "Decorator";
        case BT::NodeType::CONDITION:
            return "Condition";
        case BT::NodeType::SUBTREE:
            return "SubTree";
        default:
            return "Action";
    }
}

/// The editors' own SetBlackboard has another name for the key that it writes.
std::string portName(const std::string& id, const std::string& port)
{
    return id == "SetBlackboard" && port == "key" ? "output_key" : port;
}

bool sameBody(const TreeModel& tree, std::size_t a, std::size_t b)
{
    const ModelNode& left = tree.nodes[a];
    const ModelNode& right = tree.nodes[b];
    return left.id == right.id && left.name == right.name && left.ports == right.ports &&
           std::equal(left.children.begin(), left.children.end(), right.children.begin(),
                      right.children.end(),
                      [&tree](std::size_t x, std::size_t y) { return sameBody(tree, x, y); });
}

/// Node types to declare, with the ports seen.
struct UsedType
{
    BT::NodeType type = BT::NodeType::UNDEFINED;
    std::set<std::string> ports;
};

class Writer
{
public:
    Writer(XMLElement& root, std::span<const TreeModel> trees) : root_(root)
    {
        for (const TreeModel& tree : trees)
            trees_.insert(tree.name);
    }

    void tree(const TreeModel& tree)
    {
        bodies_.clear();
        if (!tree.nodes.empty())
            body(tree, tree.name, 0);
    }

    void model()
    {
        XMLElement& model = *root_.InsertNewChildElement("TreeNodesModel");
        for (const auto& [id, used] : used_)
            declare(model, id, used);
        for (const auto& [id, ports] : subtrees_) {
            XMLElement& element = *model.InsertNewChildElement("SubTree");
            element.SetAttribute("ID", id.c_str());
            for (const std::string& port : ports)
                declarePort(element, "input_port", port, {});
        }
    }

private:
    void body(const TreeModel& tree, const std::string& id, std::size_t root)
    {
        XMLElement& element = *root_.InsertNewChildElement("BehaviorTree");
        element.SetAttribute("ID", id.c_str());
        node(tree, root, element);
    }

    void node(const TreeModel& tree, std::size_t index, XMLElement& above)
    {
        const ModelNode& node = tree.nodes[index];
        if (node.type == BT::NodeType::SUBTREE) {
            innerTree(tree, index, above);
            return;
        }
        if (const std::string entered(enteredTree(node)); trees_.contains(entered)) {
            reference(node, entered, above);
            return;
        }
        const bool known = knownToEditors(node.id);
        XMLElement& element = *above.InsertNewChildElement(known ? node.id.c_str() : elementOf(node.type));
        if (!known) {
            element.SetAttribute("ID", node.id.c_str());
            used_[node.id].type = node.type;
        }
        if (node.hasOwnName())
            element.SetAttribute("name", node.name.c_str());
        for (const auto& [name, text] : node.ports) {
            element.SetAttribute(portName(node.id, name).c_str(), text.c_str());
            if (!known)
                used_[node.id].ports.insert(name);
        }
        for (const std::size_t child : node.children)
            this->node(tree, child, element);
    }

    void reference(const ModelNode& node, const std::string& entered, XMLElement& above)
    {
        XMLElement& element = *above.InsertNewChildElement("SubTree");
        element.SetAttribute("ID", entered.c_str());
        if (node.hasOwnName())
            element.SetAttribute("name", node.name.c_str());
        for (const auto& [name, text] : node.ports) {
            element.SetAttribute(name.c_str(), text.c_str());
            subtrees_[entered].insert(name);
        }
    }

    void innerTree(const TreeModel& tree, std::size_t index, XMLElement& above)
    {
        const ModelNode& node = tree.nodes[index];
        const std::string* name = node.port("name");
        const std::string& label = name != nullptr ? *name : node.name;
        auto& bodies = bodies_[label];
        auto found = std::find_if(bodies.begin(), bodies.end(),
                                  [&](const auto& other) { return sameBody(tree, other.first, index); });
        std::string id;
        if (found != bodies.end())
            id = found->second;
        else {
            id = tree.name + "." + label;
            if (!bodies.empty())
                id += "." + std::to_string(bodies.size() + 1);
            bodies.emplace_back(index, id);
            subtrees_[id];
            if (!node.children.empty())
                body(tree, id, node.children.front());
        }
        XMLElement& element = *above.InsertNewChildElement("SubTree");
        element.SetAttribute("ID", id.c_str());
        element.SetAttribute("name", label.c_str());
    }

    static void declare(XMLElement& model, const std::string& id, const UsedType& used)
    {
        XMLElement& element = *model.InsertNewChildElement(elementOf(used.type));
        element.SetAttribute("ID", id.c_str());
        std::set<std::string> ports = used.ports;
        if (const leaf::LeafContract* contract = leaf::find(id))
            for (const leaf::PortContract& port : contract->ports) {
                const bool out = port.type == leaf::PortType::OutKey;
                declarePort(element, out ? "output_port" : "input_port", std::string(port.name),
                            std::string(port.about));
                ports.erase(std::string(port.name));
            }
        for (const std::string& port : ports)
            declarePort(element, "input_port", port, {});
    }

    static void declarePort(XMLElement& type, const char* direction, const std::string& name,
                            const std::string& about)
    {
        XMLElement& port = *type.InsertNewChildElement(direction);
        port.SetAttribute("name", name.c_str());
        if (!about.empty())
            port.SetText(about.c_str());
    }

    XMLElement& root_;
    std::map<std::string, UsedType> used_;
    std::set<std::string> trees_;
    /// Trees that others refer to, and the ports that the references have.
    std::map<std::string, std::set<std::string>> subtrees_;
    /// Of the tree at hand: the bodies met under an inner name, and the names they got.
    std::map<std::string, std::vector<std::pair<std::size_t, std::string>>> bodies_;
};

}  // namespace

void exportXml(std::ostream& out, std::span<const TreeModel> trees, const std::string& main_tree)
{
    tinyxml2::XMLDocument document;
    document.InsertEndChild(document.NewDeclaration());
    XMLElement* root = document.NewElement("root");
    document.InsertEndChild(root);
    root->SetAttribute("main_tree_to_execute", main_tree.c_str());
    Writer writer(*root, trees);
    for (const TreeModel& tree : trees)
        writer.tree(tree);
    writer.model();
    tinyxml2::XMLPrinter printer;
    document.Print(&printer);
    out << printer.CStr();
}

}  // namespace vemra::app
