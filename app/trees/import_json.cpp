#include "app/trees/import_json.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "app/user_error.h"

namespace vemra::app {

namespace {

using Json = nlohmann::json;

struct Reader
{
    std::string file;

    [[noreturn]] void refuse(const std::string& place, const std::string& expected) const
    {
        throw UserError(file + ": " + place + ": expected " + expected);
    }

    const Json& field(const Json& object, const char* name, const std::string& place) const
    {
        if (!object.is_object() || !object.contains(name))
            refuse(place, std::string("an object with \"") + name + "\"");
        return object[name];
    }

    std::string text(const Json& object, const char* name, const std::string& place) const
    {
        const Json& value = field(object, name, place);
        if (!value.is_string())
            refuse(place, std::string("a text as \"") + name + "\"");
        return value.get<std::string>();
    }

    ModelNode node(const Json& given, std::size_t index, const std::string& place) const
    {
        ModelNode node;
        node.id = text(given, "id", place);
        node.name = text(given, "name", place);
        const Json& parent = field(given, "parent", place);
        const bool valid = parent.is_number_integer() &&
                           (index == 0 ? parent == -1 : parent >= 0 && parent < static_cast<int>(index));
        if (!valid)
            refuse(place, index == 0 ? "-1 as \"parent\" of the root"
                                     : "the index of an earlier node as \"parent\"");
        node.parent = parent.get<int>();
        const Json& ports = field(given, "ports", place);
        if (!ports.is_object())
            refuse(place, "an object as \"ports\"");
        for (const auto& [name, value] : ports.items()) {
            if (!value.is_string())
                refuse(place, "a text as port \"" + name + "\"");
            node.ports.emplace_back(name, value.get<std::string>());
        }
        orderPorts(node.id, node.ports);
        return node;
    }

    TreeModel tree(const Json& given, const std::string& place) const
    {
        TreeModel tree{text(given, "name", place), {}};
        const Json& nodes = field(given, "nodes", place);
        if (!nodes.is_array())
            refuse(place, "a list as \"nodes\"");
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            tree.nodes.push_back(node(nodes[i], i, "tree \"" + tree.name + "\", node " + std::to_string(i)));
            if (i == 0)
                continue;
            ModelNode& above = tree.nodes[static_cast<std::size_t>(tree.nodes[i].parent)];
            above.children.push_back(i);
            tree.nodes[i].depth = above.depth + 1;
        }
        return tree;
    }
};

}  // namespace

std::vector<TreeModel> importJson(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    Json given;
    if (!in || !(in.peek(), in))
        throw UserError(file.string() +
                        ": cannot be read; expected trees as trees export --format json writes them");
    try {
        given = Json::parse(in);
    } catch (const Json::parse_error& fault) {
        // What the library says begins with a mark of its own in brackets.
        const std::string reason = fault.what();
        throw UserError(file.string() + ": " + reason.substr(std::min(reason.find(' ') + 1, reason.size())));
    }
    const Reader reader{file.string()};
    const Json& trees = reader.field(given, "trees", "the file");
    if (!trees.is_array())
        reader.refuse("the file", "a list as \"trees\"");
    std::vector<TreeModel> models;
    for (std::size_t i = 0; i < trees.size(); ++i)
        models.push_back(reader.tree(trees[i], "tree " + std::to_string(i)));
    return models;
}

}  // namespace vemra::app
