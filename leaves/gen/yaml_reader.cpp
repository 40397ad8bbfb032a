#include "leaves/gen/yaml_reader.h"

#include <fstream>
#include <set>

namespace vemra::leafgen {

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

bool isKeyName(std::string_view text)
{
    return !text.empty() &&
           text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") ==
               std::string_view::npos;
}

YAML::Node YamlReader::open(const std::filesystem::path& path)
{
    file_ = path.string();
    std::ifstream in(path);
    try {
        return YAML::Load(in);
    } catch (const YAML::Exception& fault) {
        throw CatalogueError(fmt::format("{}:{}: not YAML: {}", file_, fault.mark.line + 1, fault.msg));
    }
}

std::vector<YAML::Node> YamlReader::list(const YAML::Node& node, const char* field) const
{
    const YAML::Node found = node[field];
    if (!found.IsSequence() || found.size() == 0)
        fail(found, fmt::format("\"{}\": expected a list with at least one entry", field));
    return {found.begin(), found.end()};
}

std::string YamlReader::text(const YAML::Node& node, const char* field) const
{
    const YAML::Node found = node[field];
    if (!found.IsScalar() || found.Scalar().empty())
        fail(found, fmt::format("\"{}\": expected a text", field));
    return found.Scalar();
}

std::string YamlReader::name(const YAML::Node& node, const char* field) const
{
    std::string found = text(node, field);
    if (!isName(found))
        fail(node[field], fmt::format("\"{}\": \"{}\" cannot be a name in C++", field, found));
    return found;
}

void YamlReader::expectFields(const YAML::Node& node, const char* what, const Names& needed,
                              const Names& allowed) const
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

void YamlReader::claim(std::map<std::string, std::string>& taken, const std::string& key, const char* what,
                       const YAML::Node& node) const
{
    const auto [first, added] = taken.try_emplace(key, place(node));
    if (!added)
        fail(node, fmt::format("{} \"{}\" is told at {} already", what, key, first->second));
}

std::string YamlReader::place(const YAML::Node& node) const
{
    return node.Mark().is_null() ? file_ + ":1" : fmt::format("{}:{}", file_, node.Mark().line + 1);
}

void YamlReader::fail(const YAML::Node& node, const std::string& message) const
{
    throw CatalogueError(place(node) + ": " + message);
}

}  // namespace vemra::leafgen
