#include "app/trees/page/page.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "app/trees/keys.h"
#include "app/trees/page/page_parts.h"
#include "leaves/contract.h"
#include "version/version.h"

namespace vemra::app {
namespace {

using nlohmann::ordered_json;

const char* kindOf(BT::NodeType type)
{
    switch (type) {
        case BT::NodeType::CONTROL:
            return "control";
        case BT::NodeType::DECORATOR:
            return "decorator";
        case BT::NodeType::CONDITION:
            return "condition";
        case BT::NodeType::SUBTREE:
            return "inner";
        default:
            return "action";
    }
}

ordered_json portsOf(std::span<const leaf::PortContract> ports)
{
    ordered_json about = ordered_json::object();
    for (const leaf::PortContract& port : ports)
        about[std::string(port.name)] = port.about;
    return about;
}

ordered_json typeOf(const ModelNode& node)
{
    ordered_json type{{"name", node.id}, {"kind", enteredTree(node).empty() ? kindOf(node.type) : "enters"}};
    if (const leaf::LeafContract* contract = leaf::find(node.id))
        type.update(ordered_json{{"about", contract->about}, {"ports", portsOf(contract->ports)}});
    else if (const leaf::ControlContract* control = leaf::findControl(node.id))
        type.update(ordered_json{{"about", control->about}, {"ports", portsOf(control->ports)}});
    return type;
}

/// Nodes as columns, which keeps the page small; what only some nodes have stands by index.
class Writer
{
public:
    explicit Writer(const PageContent& content) : content_(content) {}

    ordered_json data()
    {
        ordered_json trees = ordered_json::array();
        for (const TreeModel& tree : content_.trees)
            trees.push_back(columns(tree));
        return {{"version", vemra::version()},
                {"opened", content_.opened},
                {"visits", content_.visits != nullptr},
                {"types", types_},
                {"trees", trees},
                {"keys", keys()}};
    }

private:
    ordered_json columns(const TreeModel& tree)
    {
        const TreeLife& life = content_.lives.at(tree.name);
        ordered_json types = ordered_json::array();
        ordered_json parents = ordered_json::array();
        ordered_json ports = ordered_json::array();
        ordered_json labels = ordered_json::object();
        ordered_json enters = ordered_json::object();
        ordered_json off_by = ordered_json::object();
        std::string live;
        for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
            const ModelNode& node = tree.nodes[i];
            types.push_back(typeIndex(node));
            parents.push_back(node.parent);
            ordered_json row = ordered_json::array();
            for (const auto& [name, text] : node.ports)
                row.insert(row.end(), {name, text});
            ports.push_back(std::move(row));
            live += life.live[i] ? '1' : '0';
            const std::string at = std::to_string(i);
            if (node.hasOwnName())
                labels[at] = node.name;
            if (!enteredTree(node).empty())
                enters[at] = enteredTree(node);
            if (life.off_by[i] != TreeLife::kNone)
                off_by[at] = life.off_by[i];
        }
        return {{"name", tree.name}, {"written", tree.written()}, {"entered", life.entered},
                {"types", types},    {"parents", parents},        {"ports", ports},
                {"labels", labels},  {"enters", enters},          {"live", live},
                {"offBy", off_by},   {"visits", visitsOf(tree)}};
    }

    ordered_json visitsOf(const TreeModel& tree) const
    {
        ordered_json rows = ordered_json::object();
        if (content_.visits == nullptr)
            return rows;
        const std::vector<robot::Visits>& visits = content_.visits->of(tree.name);
        for (std::size_t i = 0; i < visits.size(); ++i)
            if (const robot::Visits& v = visits[i]; v.ticks > 0)
                rows[std::to_string(i)] = {v.ticks, v.success, v.failure, v.running, v.halts};
        return rows;
    }

    std::size_t typeIndex(const ModelNode& node)
    {
        const auto [place, fresh] = type_index_.emplace(node.id, types_.size());
        if (fresh)
            types_.push_back(typeOf(node));
        return place->second;
    }

    ordered_json keys() const
    {
        ordered_json all = ordered_json::object();
        for (const auto& [key, places] : keysOf(content_.trees)) {
            ordered_json users = ordered_json::array();
            for (const KeyPlace& place : places)
                users.push_back({place.tree - content_.trees.data(), place.node, toText(place.use)});
            const leaf::KeyContract* contract = leaf::findKey(key);
            all[key] = {{"about", contract == nullptr ? std::string_view() : contract->about},
                        {"users", users}};
        }
        return all;
    }

    const PageContent& content_;
    ordered_json types_ = ordered_json::array();
    std::map<std::string, std::size_t> type_index_;
};

/// Data that may stand inside a script element, whatever its texts are.
std::string embedded(const ordered_json& data)
{
    std::string text;
    for (const char c : data.dump(-1, ' ', false, ordered_json::error_handler_t::replace))
        text += c == '<' ? std::string("\\u003c") : std::string(1, c);
    return text;
}

}  // namespace

void writePage(std::ostream& out, const PageContent& content)
{
    const std::map<std::string_view, std::string> parts{{"style", std::string(kPageStyle)},
                                                        {"script", std::string(kPageScript)},
                                                        {"data", embedded(Writer(content).data())}};
    std::string_view rest = kPageFrame;
    for (std::size_t at = rest.find("{{"); at != std::string_view::npos; at = rest.find("{{")) {
        const std::size_t end = rest.find("}}", at);
        out << rest.substr(0, at) << parts.at(rest.substr(at + 2, end - at - 2));
        rest = rest.substr(end + 2);
    }
    out << rest;
}

}  // namespace vemra::app
