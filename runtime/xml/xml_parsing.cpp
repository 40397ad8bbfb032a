#include "behaviortree_cpp/xml_parsing.h"

#include <tinyxml2.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string_view>

namespace BT {

namespace {

using tinyxml2::XMLElement;

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> texts)
{
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// The element says in `ID` of which type its node is.
bool isGeneric(std::string_view element)
{
    return isOneOf(element, {"Action", "Condition", "Control", "Decorator"});
}

std::string attribute(const XMLElement& element, const char* name)
{
    const char* text = element.Attribute(name);
    return text != nullptr ? text : "";
}

}  // namespace

class XMLParser::Document
{
public:
    void readFile(const std::string& path) { main_ = mainOf(takeIn(loadFile(path))); }
    void readText(const std::string& text)
    {
        Source& source = add("text", "");
        check(source, source.xml.Parse(text.c_str(), text.size()));
        main_ = mainOf(takeIn(source));
    }

    Tree make(const BehaviorTreeFactory& factory, const Blackboard::Ptr& blackboard) const
    {
        Tree tree;
        std::vector<std::string> entered;
        tree.root_node = make(*body(main_, *main_), {factory, blackboard}, tree.nodes, entered);
        return tree;
    }

private:
    /// A file, or the text.
    struct Source
    {
        std::string name;
        std::filesystem::path folder;
        tinyxml2::XMLDocument xml;
    };
    struct Target
    {
        const BehaviorTreeFactory& factory;
        const Blackboard::Ptr& blackboard;
    };

    [[nodiscard]] static BehaviorTreeException fault(const Source& source, int line, const std::string& what)
    {
        return BehaviorTreeException(source.name + ":" + std::to_string(line) + ": " + what);
    }
    [[nodiscard]] BehaviorTreeException fault(const XMLElement& at, const std::string& what) const
    {
        const auto source = std::find_if(sources_.begin(), sources_.end(),
                                         [&at](const auto& one) { return &one->xml == at.GetDocument(); });
        return fault(**source, at.GetLineNum(), what);
    }

    Source& add(std::string name, std::filesystem::path folder)
    {
        Source& source = *sources_.emplace_back(std::make_unique<Source>());
        source.name = std::move(name);
        source.folder = std::move(folder);
        return source;
    }

    Source& loadFile(const std::string& path)
    {
        Source& source = add(path, std::filesystem::path(path).parent_path());
        check(source, source.xml.LoadFile(path.c_str()));
        files_.insert(std::filesystem::weakly_canonical(path));
        return source;
    }

    static void check(const Source& source, tinyxml2::XMLError result)
    {
        if (result == tinyxml2::XML_SUCCESS)
            return;
        const char* error = source.xml.ErrorName();
        if (isOneOf(error, {"XML_ERROR_FILE_NOT_FOUND", "XML_ERROR_FILE_COULD_NOT_BE_OPENED",
                            "XML_ERROR_FILE_READ_ERROR"}))
            throw BehaviorTreeException(source.name + ": the file cannot be read");
        throw fault(source, source.xml.ErrorLineNum(), std::string("not well-formed XML (") + error + ")");
    }

    /// Takes in the trees of a source and of those that it includes; gives its root.
    const XMLElement& takeIn(const Source& source)
    {
        const XMLElement* root = source.xml.RootElement();
        if (root == nullptr || std::string_view(root->Name()) != "root")
            throw fault(source, root != nullptr ? root->GetLineNum() : 1, "expected <root>");
        for (const XMLElement* one = root->FirstChildElement(); one != nullptr;
             one = one->NextSiblingElement()) {
            if (std::string_view(one->Name()) == "include")
                include(*one, source.folder);
            else if (std::string_view(one->Name()) == "BehaviorTree" &&
                     !trees_.try_emplace(attribute(*one, "ID"), one).second)
                throw fault(*one, "a second <BehaviorTree> with ID '" + attribute(*one, "ID") + "'");
        }
        return *root;
    }

    void include(const XMLElement& element, const std::filesystem::path& folder)
    {
        if (element.Attribute("path") == nullptr || element.Attribute("ros_pkg") != nullptr)
            throw fault(element, "expected <include path=\"...\"/> and nothing else in it");
        const std::filesystem::path path = folder / attribute(element, "path");
        if (files_.contains(std::filesystem::weakly_canonical(path)))
            return;
        if (!std::filesystem::is_regular_file(path))
            throw fault(element, "the included file '" + path.string() + "' cannot be read");
        takeIn(loadFile(path.string()));
    }

    [[nodiscard]] const XMLElement* mainOf(const XMLElement& root) const
    {
        const XMLElement* own = root.FirstChildElement("BehaviorTree");
        const std::string main = attribute(root, "main_tree_to_execute");
        if (main.empty() && own == nullptr)
            throw fault(root, "expected a <BehaviorTree>");
        if (main.empty() && own->NextSiblingElement("BehaviorTree") != nullptr)
            throw fault(root, "expected main_tree_to_execute, as there are several trees");
        if (main.empty())
            return own;
        const auto found = trees_.find(main);
        if (found == trees_.end())
            throw fault(root, "there is no <BehaviorTree> with ID '" + main + "'");
        return found->second;
    }

    /// The one node in a tree or decorator.
    const XMLElement* body(const XMLElement* around, const XMLElement& at) const
    {
        const XMLElement* child = around->FirstChildElement();
        if (child == nullptr || child->NextSiblingElement() != nullptr)
            throw fault(at, "expected exactly one node in <" + std::string(around->Name()) + ">");
        return child;
    }

    TreeNode* make(const XMLElement& element, const Target& target, std::vector<TreeNode::Ptr>& nodes,
                   std::vector<std::string>& entered) const
    {
        const std::string type = isGeneric(element.Name()) ? attribute(element, "ID") : element.Name();
        if (type.empty())
            throw fault(element, "<" + std::string(element.Name()) + "> has no ID");
        const bool is_tree = !target.factory.builders().contains(type) && trees_.contains(type);
        const bool refers = is_tree || (type == "SubTree" && element.FirstChildElement() == nullptr);
        const std::string tree = is_tree ? type : attribute(element, "ID");
        if (is_tree && element.FirstChildElement() != nullptr)
            throw fault(element, "'" + type + "' is a tree and takes no children");
        TreeNode* node = add(element, refers ? "SubTree" : type, refers ? tree : type, refers, target, nodes);
        if (refers)
            enter(element, tree, *node, target, nodes, entered);
        else if (auto* control = dynamic_cast<ControlNode*>(node))
            for (const XMLElement* child = element.FirstChildElement(); child != nullptr;
                 child = child->NextSiblingElement())
                control->addChild(make(*child, target, nodes, entered));
        else if (auto* decorator = dynamic_cast<DecoratorNode*>(node))
            decorator->setChild(make(*body(&element, element), target, nodes, entered));
        else if (element.FirstChildElement() != nullptr)
            throw fault(element, "'" + type + "' is a leaf and takes no children");
        return node;
    }

    TreeNode* add(const XMLElement& element, const std::string& type, std::string label, bool refers,
                  const Target& target, std::vector<TreeNode::Ptr>& nodes) const
    {
        NodeParameters ports;
        for (const auto* at = element.FirstAttribute(); at != nullptr; at = at->Next()) {
            const std::string_view name = at->Name();
            if (name == "name")
                label = at->Value();
            // An inner tree bears its name as a port as well.
            if (name == "name" && type != "SubTree")
                continue;
            if (name == "ID" && (refers || isGeneric(element.Name())))
                continue;
            // The usual editor calls the key so.
            const bool editors_key = type == "SetBlackboard" && name == "output_key";
            ports.emplace(editors_key ? "key" : at->Name(), at->Value());
        }
        try {
            nodes.push_back(target.factory.instantiateTreeNode(type, label, ports, target.blackboard));
        } catch (const BehaviorTreeException& error) {
            throw fault(element, error.what());
        }
        return nodes.back().get();
    }

    void enter(const XMLElement& element, const std::string& name, TreeNode& node, const Target& target,
               std::vector<TreeNode::Ptr>& nodes, std::vector<std::string>& entered) const
    {
        const auto found = trees_.find(name);
        if (found == trees_.end())
            throw fault(element, "there is no <BehaviorTree> with ID '" + name + "'");
        if (std::find(entered.begin(), entered.end(), name) != entered.end() || found->second == main_)
            throw fault(element, "tree '" + name + "' enters itself");
        auto* decorator = dynamic_cast<DecoratorNode*>(&node);
        if (decorator == nullptr)
            throw fault(element, "'SubTree' is registered as something other than a decorator");
        entered.push_back(name);
        decorator->setChild(make(*body(found->second, *found->second), target, nodes, entered));
        entered.pop_back();
    }

    std::vector<std::unique_ptr<Source>> sources_;
    std::set<std::filesystem::path> files_;
    std::map<std::string, const XMLElement*, std::less<>> trees_;
    const XMLElement* main_ = nullptr;
};

XMLParser::XMLParser(const BehaviorTreeFactory& factory) : factory_(factory)
{}

XMLParser::~XMLParser() = default;

void XMLParser::loadFromFile(const std::string& filename)
{
    auto document = std::make_unique<Document>();
    document->readFile(filename);
    document_ = std::move(document);
}

void XMLParser::loadFromText(const std::string& xml_text)
{
    auto document = std::make_unique<Document>();
    document->readText(xml_text);
    document_ = std::move(document);
}

TreeNode::Ptr XMLParser::instantiateTree(std::vector<TreeNode::Ptr>& nodes, const Blackboard::Ptr& blackboard)
{
    if (document_ == nullptr)
        throw BehaviorTreeException("no XML was loaded");
    Tree tree = document_->make(factory_, blackboard);
    TreeNode::Ptr root = tree.nodes.front();
    levelsOf(*root);
    nodes.insert(nodes.end(), std::make_move_iterator(tree.nodes.begin()),
                 std::make_move_iterator(tree.nodes.end()));
    return root;
}

namespace {

Tree build(XMLParser& parser, const Blackboard::Ptr& blackboard)
{
    Tree tree;
    tree.root_node = parser.instantiateTree(tree.nodes, blackboard).get();
    return tree;
}

void append(XMLElement& parent, const TreeNode& node, bool compact)
{
    const std::string& id = node.registrationName().empty() ? node.name() : node.registrationName();
    const bool generic = !compact && (node.type() == NodeType::ACTION || node.type() == NodeType::CONDITION);
    XMLElement* element = parent.InsertNewChildElement(generic ? toStr(node.type()) : id.c_str());
    if (generic)
        element->SetAttribute("ID", id.c_str());
    if (node.name() != id)
        element->SetAttribute("name", node.name().c_str());
    std::vector<const Port*> ports;
    for (const Port& port : node.ports())
        ports.push_back(&port);
    std::sort(ports.begin(), ports.end(), [](const Port* a, const Port* b) { return a->name() < b->name(); });
    for (const Port* port : ports)
        element->SetAttribute(std::string(port->name()).c_str(), std::string(port->raw()).c_str());
    if (const auto* control = dynamic_cast<const ControlNode*>(&node))
        for (const TreeNode* child : control->children())
            append(*element, *child, compact);
    else if (const auto* decorator = dynamic_cast<const DecoratorNode*>(&node); decorator != nullptr)
        if (const TreeNode* child = decorator->child())
            append(*element, *child, compact);
}

}  // namespace

Tree buildTreeFromText(const BehaviorTreeFactory& factory, const std::string& text,
                       const Blackboard::Ptr& blackboard)
{
    XMLParser parser(factory);
    parser.loadFromText(text);
    return build(parser, blackboard);
}

Tree buildTreeFromFile(const BehaviorTreeFactory& factory, const std::string& filename,
                       const Blackboard::Ptr& blackboard)
{
    XMLParser parser(factory);
    parser.loadFromFile(filename);
    return build(parser, blackboard);
}

std::string writeXML(const BehaviorTreeFactory& factory, const TreeNode* root_node,
                     bool compact_representation)
{
    tinyxml2::XMLDocument xml;
    XMLElement* root = xml.NewElement("root");
    xml.InsertEndChild(root);
    root->SetAttribute("main_tree_to_execute", "MainTree");
    XMLElement* tree = root->InsertNewChildElement("BehaviorTree");
    tree->SetAttribute("ID", "MainTree");
    if (root_node != nullptr)
        append(*tree, *root_node, compact_representation);
    XMLElement* models = root->InsertNewChildElement("TreeNodesModel");
    for (const TreeNodeManifest& manifest : factory.manifests()) {
        XMLElement* model = models->InsertNewChildElement(toStr(manifest.type));
        model->SetAttribute("ID", manifest.registration_ID.c_str());
        for (const auto& [name, text] :
             std::map(manifest.required_parameters.begin(), manifest.required_parameters.end())) {
            XMLElement* port = model->InsertNewChildElement("input_port");
            port->SetAttribute("name", name.c_str());
            if (!text.empty())
                port->SetAttribute("default", text.c_str());
        }
    }
    tinyxml2::XMLPrinter printer;
    xml.Print(&printer);
    return printer.CStr();
}

}  // namespace BT
