#include "leaves/gen/catalogue.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <map>
#include <set>
#include <string_view>
#include <system_error>

namespace vemra::leafgen {
namespace {

using Names = std::vector<std::string_view>;

/// Identifiers and ports become names in C++: what cannot be one there is refused here, where a line can
/// be told.
bool isName(std::string_view text)
{
    static const std::set<std::string_view> kTaken{
        "and",       "auto",    "bool",   "break",    "case",   "catch",    "char",   "class",  "const",
        "continue",  "default", "delete", "do",       "double", "else",     "enum",   "export", "extern",
        "false",     "float",   "for",    "friend",   "goto",   "if",       "inline", "int",    "long",
        "mutable",   "new",     "not",    "operator", "or",     "private",  "public", "return", "short",
        "signed",    "sizeof",  "static", "struct",   "switch", "template", "this",   "throw",  "true",
        "try",       "typedef", "union",  "unsigned", "using",  "virtual",  "void",   "while",  "id",
        "each_port", "visit",   "Port"};
    const auto in = [](char c, char low, char high) { return c >= low && c <= high; };
    return !text.empty() && !in(text.front(), '0', '9') && !kTaken.contains(text) &&
           std::all_of(text.begin(), text.end(), [&in](char c) {
               return in(c, 'a', 'z') || in(c, 'A', 'Z') || in(c, '0', '9') || c == '_';
           });
}

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

class Reader
{
public:
    Family readFile(const std::filesystem::path& path)
    {
        file_ = path.string();
        std::ifstream in(path);
        YAML::Node root;
        try {
            root = YAML::Load(in);
        } catch (const YAML::Exception& fault) {
            throw CatalogueError(fmt::format("{}:{}: not YAML: {}", file_, fault.mark.line + 1, fault.msg));
        }
        expectFields(root, "a family", {"family", "about", "leaves"}, {"family", "about", "leaves"});
        Family family{text(root, "family"), text(root, "about"), {}};
        claim(families_, family.name, "family", root["family"]);
        for (const YAML::Node& leaf : list(root, "leaves"))
            family.leaves.push_back(readLeaf(leaf));
        return family;
    }

private:
    LeafEntry readLeaf(const YAML::Node& node)
    {
        expectFields(node, "a leaf", {"id", "kind", "about"}, {"id", "kind", "about", "ports"});
        LeafEntry leaf{name(node, "id"),
                       oneOf<leaf::LeafKind>(node, "kind", leaf::kLeafKindNames),
                       text(node, "about"),
                       {}};
        claim(leaves_, leaf.id, "leaf", node["id"]);
        if (!node["ports"])
            return leaf;
        for (const YAML::Node& entry : list(node, "ports")) {
            PortEntry port = readPort(entry);
            if (port.name == leaf.id)
                fail(entry["name"], fmt::format("port \"{}\" has the name of its leaf", port.name));
            if (std::any_of(leaf.ports.begin(), leaf.ports.end(),
                            [&port](const PortEntry& other) { return other.name == port.name; }))
                fail(entry["name"], fmt::format("{} has a port \"{}\" already", leaf.id, port.name));
            leaf.ports.push_back(std::move(port));
        }
        return leaf;
    }

    PortEntry readPort(const YAML::Node& node)
    {
        expectFields(node, "a port", {"name", "type", "about"},
                     {"name", "type", "values", "examples", "default", "about"});
        PortEntry port;
        port.name = name(node, "name");
        port.type = oneOf<leaf::PortType>(node, "type", leaf::kPortTypeNames);
        port.values = literals(node, "values", port);
        port.examples = literals(node, "examples", port);
        port.about = text(node, "about");
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

    std::vector<YAML::Node> list(const YAML::Node& node, const char* field)
    {
        const YAML::Node found = node[field];
        if (!found.IsSequence() || found.size() == 0)
            fail(found, fmt::format("\"{}\": expected a list with at least one entry", field));
        return {found.begin(), found.end()};
    }

    std::string text(const YAML::Node& node, const char* field)
    {
        const YAML::Node found = node[field];
        if (!found.IsScalar() || found.Scalar().empty())
            fail(found, fmt::format("\"{}\": expected a text", field));
        return found.Scalar();
    }

    std::string name(const YAML::Node& node, const char* field)
    {
        std::string found = text(node, field);
        if (!isName(found))
            fail(node[field], fmt::format("\"{}\": \"{}\" cannot be a name in C++", field, found));
        return found;
    }

    template <class Enum, class Texts>
    Enum oneOf(const YAML::Node& node, const char* field, const Texts& names)
    {
        const std::string found = text(node, field);
        const auto at = std::find(names.begin(), names.end(), found);
        if (at == names.end())
            fail(node[field],
                 fmt::format("unknown {} \"{}\": expected one of {}", field, found, fmt::join(names, ", ")));
        return static_cast<Enum>(at - names.begin());
    }

    void expectFields(const YAML::Node& node, const char* what, const Names& needed, const Names& allowed)
    {
        if (!node.IsMap())
            fail(node, fmt::format("expected {} with fields {}", what, fmt::join(allowed, ", ")));
        std::set<std::string> seen;
        for (const auto& field : node) {
            const std::string key = field.first.IsScalar() ? field.first.Scalar() : "?";
            if (std::find(allowed.begin(), allowed.end(), key) == allowed.end())
                fail(field.first, fmt::format("{} has no field \"{}\": expected one of {}", what, key,
                                              fmt::join(allowed, ", ")));
            if (!seen.insert(key).second)
                fail(field.first, fmt::format("field \"{}\" is given twice", key));
        }
        for (const std::string_view field : needed)
            if (!seen.contains(std::string(field)))
                fail(node, fmt::format("{} lacks the field \"{}\"", what, field));
    }

    void claim(std::map<std::string, std::string>& taken, const std::string& key, const char* what,
               const YAML::Node& node)
    {
        const auto [first, added] = taken.try_emplace(key, place(node));
        if (!added)
            fail(node, fmt::format("{} \"{}\" is told at {} already", what, key, first->second));
    }

    std::string place(const YAML::Node& node) const
    {
        return node.Mark().is_null() ? file_ + ":1" : fmt::format("{}:{}", file_, node.Mark().line + 1);
    }

    [[noreturn]] void fail(const YAML::Node& node, const std::string& message) const
    {
        throw CatalogueError(place(node) + ": " + message);
    }

    std::string file_;
    std::map<std::string, std::string> families_;
    std::map<std::string, std::string> leaves_;
};

}  // namespace

std::vector<Family> readCatalogue(const std::filesystem::path& folder)
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
    std::vector<Family> families;
    families.reserve(files.size());
    for (const auto& file : files)
        families.push_back(reader.readFile(file));
    return families;
}

}  // namespace vemra::leafgen
