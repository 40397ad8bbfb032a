#include <nlohmann/json.hpp>
#include <ostream>

#include "app/trees/export.h"

namespace vemra::app {

namespace {

using Json = nlohmann::ordered_json;

std::string text(const Json& json)
{
    // A foreign library's label need not be UTF-8; it is shown as well as can be.
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json toJson(const ModelNode& node)
{
    Json ports = Json::object();
    for (const auto& [name, value] : node.ports)
        ports[name] = value;
    return {{"id", node.id}, {"name", node.name}, {"parent", node.parent}, {"ports", std::move(ports)}};
}

}  // namespace

void exportJson(std::ostream& out, std::span<const TreeModel> trees)
{
    out << "{\"trees\":[";
    const char* between_trees = "\n";
    for (const TreeModel& tree : trees) {
        out << between_trees << "{\"name\":" << text(tree.name) << ",\"nodes\":[";
        const char* between_nodes = "\n";
        for (const ModelNode& node : tree.nodes) {
            out << between_nodes << text(toJson(node));
            between_nodes = ",\n";
        }
        out << "]}";
        between_trees = ",\n";
    }
    out << "]}\n";
}

}  // namespace vemra::app
