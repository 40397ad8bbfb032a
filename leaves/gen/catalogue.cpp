#include "leaves/gen/catalogue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <string_view>
#include <system_error>

#include "leaves/gen/yaml_reader.h"

namespace vemra::leafgen {
namespace {

template <class Number>
bool readsAs(std::string_view text)
{
    Number number{};
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc{} && end == text.data() + text.size();
}

bool fits(leaf::PortType type, std::string_view literal)
{
    switch (type) {
        case leaf::PortType::Int:
            return readsAs<std::int64_t>(literal);
        case leaf::PortType::Float:
            return readsAs<double>(literal);
        case leaf::PortType::Bool:
            return literal == "false" || literal == "true";
        case leaf::PortType::Key:
        case leaf::PortType::OutKey:
            return !literal.empty();
        default:
            return true;
    }
}

class Reader : YamlReader
{
public:
    /// A file holds a family of leaves, the control nodes, or the keys.
    void readFile(const std::filesystem::path& path, Catalogue& into)
    {
        const YAML::Node root = open(path);
        if (root.IsMap() && root["keys"])
            readKeys(root, into);
        else if (root.IsMap() && root["control_nodes"])
            readControls(root, into);
        else
            into.families.push_back(readFamily(root));
    }

private:
    Family readFamily(const YAML::Node& root)
    {
        expectFields(root, "a family", {"family", "about", "leaves"}, {"family", "about", "leaves"});
        Family family{text(root, "family"), text(root, "about"), {}};
        claim(families_, family.name, "family", root["family"]);
        for (const YAML::Node& leaf : list(root, "leaves"))
            family.leaves.push_back(readLeaf(leaf));
        return family;
    }

    void readControls(const YAML::Node& root, Catalogue& into)
    {
        expectFields(root, "the control nodes", {"control_nodes"}, {"control_nodes"});
        for (const YAML::Node& node : list(root, "control_nodes")) {
            expectFields(node, "a control node", {"id", "children", "about"},
                         {"id", "children", "about", "ports"});
            ControlEntry control;
            control.id = name(node, "id");
            claim(leaves_, control.id, "node", node["id"]);
            readChildren(node, control);
            control.about = text(node, "about");
            control.ports = readPorts(node, control.id);
            into.controls.push_back(std::move(control));
        }
    }

    /// "2" children, or "2+": two or more.
    void readChildren(const YAML::Node& node, ControlEntry& control)
    {
        std::string_view number = node["children"].Scalar();
        const bool open_end = number.ends_with('+');
        if (open_end)
            number.remove_suffix(1);
        const auto [end, fault] =
            std::from_chars(number.data(), number.data() + number.size(), control.least_children);
        if (fault != std::errc{} || end != number.data() + number.size())
            fail(node["children"], "\"children\": expected a number, or a number and '+'");
        control.most_children = open_end ? leaf::kAnyNumber : control.least_children;
    }

    void readKeys(const YAML::Node& root, Catalogue& into)
    {
        expectFields(root, "the keys", {"keys"}, {"keys"});
        for (const YAML::Node& node : list(root, "keys")) {
            expectFields(node, "a key", {"name", "type", "about"},
                         {"name", "type", "values", "from", "about"});
            KeyEntry key;
            key.name = text(node, "name");
            if (!isKeyName(key.name))
                fail(node["name"], fmt::format("\"name\": \"{}\" cannot be a key's name", key.name));
            claim(keys_, key.name, "key", node["name"]);
            key.type = oneOf<leaf::KeyType>(node, "type", leaf::kKeyTypeNames);
            if (node["from"])
                key.from = oneOf<leaf::KeyOrigin>(node, "from", leaf::kKeyOriginNames);
            key.about = text(node, "about");
            if (node["values"])
                for (const YAML::Node& value : list(node, "values"))
                    key.values.push_back(value.Scalar());
            into.keys.push_back(std::move(key));
        }
    }

    LeafEntry readLeaf(const YAML::Node& node)
    {
        expectFields(node, "a leaf", {"id", "kind", "about"}, {"id", "kind", "about", "ports"});
        LeafEntry leaf{name(node, "id"),
                       oneOf<leaf::LeafKind>(node, "kind", leaf::kLeafKindNames),
                       text(node, "about"),
                       {}};
        claim(leaves_, leaf.id, "leaf", node["id"]);
        leaf.ports = readPorts(node, leaf.id);
        return leaf;
    }

    std::vector<PortEntry> readPorts(const YAML::Node& node, const std::string& id)
    {
        std::vector<PortEntry> ports;
        if (!node["ports"])
            return ports;
        for (const YAML::Node& entry : list(node, "ports")) {
            PortEntry port = readPort(entry);
            if (port.name == id)
                fail(entry["name"], fmt::format("port \"{}\" has the name of its leaf", port.name));
            if (std::any_of(ports.begin(), ports.end(),
                            [&port](const PortEntry& other) { return other.name == port.name; }))
                fail(entry["name"], fmt::format("{} has a port \"{}\" already", id, port.name));
            ports.push_back(std::move(port));
        }
        return ports;
    }

    PortEntry readPort(const YAML::Node& node)
    {
        expectFields(node, "a port", {"name", "type", "about"},
                     {"name", "type", "required", "values", "examples", "default", "about"});
        PortEntry port;
        port.name = name(node, "name");
        port.type = oneOf<leaf::PortType>(node, "type", leaf::kPortTypeNames);
        port.values = literals(node, "values", port);
        port.examples = literals(node, "examples", port);
        port.about = text(node, "about");
        if (node["required"]) {
            if (node["required"].Scalar() != "true")
                fail(node["required"], "\"required\": expected true, or no such field");
            if (node["default"])
                fail(node["default"],
                     fmt::format("\"{}\": expected required or a default, not both", port.name));
            port.required = true;
        }
        if (!port.values.empty() && !port.examples.empty())
            fail(node["examples"],
                 fmt::format("\"{}\": expected values (a closed set) or examples, not both", port.name));
        if (node["default"]) {
            port.default_text = literal(node["default"], port);
            if (!port.values.empty() &&
                std::find(port.values.begin(), port.values.end(), *port.default_text) == port.values.end())
                fail(node["default"],
                     fmt::format("default \"{}\" of \"{}\": expected one of {}", *port.default_text,
                                 port.name, fmt::join(port.values, ", ")));
        }
        return port;
    }

    std::vector<std::string> literals(const YAML::Node& node, const char* field, const PortEntry& port)
    {
        std::vector<std::string> texts;
        if (!node[field])
            return texts;
        for (const YAML::Node& item : list(node, field)) {
            std::string text = literal(item, port);
            if (std::find(texts.begin(), texts.end(), text) != texts.end())
                fail(item, fmt::format("\"{}\" stands twice in {} of \"{}\"", text, field, port.name));
            texts.push_back(std::move(text));
        }
        return texts;
    }

    std::string literal(const YAML::Node& node, const PortEntry& port)
    {
        if (!node.IsScalar() || !fits(port.type, node.Scalar()))
            fail(node, fmt::format("{} of \"{}\": expected a literal of type {}",
                                   node.IsScalar() ? "\"" + node.Scalar() + "\"" : "an entry", port.name,
                                   leaf::toText(port.type)));
        return node.Scalar();
    }

    std::map<std::string, std::string> families_;
    std::map<std::string, std::string> leaves_;
    std::map<std::string, std::string> keys_;
};

}  // namespace

Catalogue readCatalogue(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    std::error_code fault;
    for (const auto& entry : std::filesystem::directory_iterator(folder, fault))
        if (entry.path().extension() == ".yaml")
            files.push_back(entry.path());
    if (fault || files.empty())
        throw CatalogueError(folder.string() + ": expected a folder with *.yaml files");
    std::sort(files.begin(), files.end());
    Reader reader;
    Catalogue catalogue;
    for (const auto& file : files)
        reader.readFile(file, catalogue);
    return catalogue;
}

}  // namespace vemra::leafgen
