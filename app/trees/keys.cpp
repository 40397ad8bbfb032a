#include "app/trees/keys.h"

#include <algorithm>
#include <set>

#include "leaves/contract.h"

namespace vemra::app {

namespace {

/// Whether the text of the port is the name of a key, and what the node does with that key.
bool namesKey(const ModelNode& node, const std::string& port, KeyUse& use)
{
    std::span<const leaf::PortContract> ports;
    if (const leaf::LeafContract* contract = leaf::find(node.id))
        ports = contract->ports;
    else if (const leaf::ControlContract* control = leaf::findControl(node.id))
        ports = control->ports;
    const auto found = std::find_if(ports.begin(), ports.end(),
                                    [&port](const leaf::PortContract& other) { return other.name == port; });
    if (found == ports.end())
        return false;
    if (found->type == leaf::PortType::OutKey) {
        use = node.id == "EraseBlackboard" ? KeyUse::Erases : KeyUse::Writes;
        return true;
    }
    use = node.id == "BlackboardContains" ? KeyUse::Tests : KeyUse::Reads;
    return found->type == leaf::PortType::Key;
}

std::vector<std::string> references(const std::string& text)
{
    std::vector<std::string> keys;
    for (std::size_t at = text.find("${"); at != std::string::npos; at = text.find("${", at)) {
        const std::size_t end = text.find('}', at);
        if (end == std::string::npos)
            break;
        keys.push_back(text.substr(at + 2, end - at - 2));
        at = end;
    }
    return keys;
}

}  // namespace

const char* toText(KeyUse use)
{
    switch (use) {
        case KeyUse::Writes:
            return "writes";
        case KeyUse::Erases:
            return "erases";
        case KeyUse::Tests:
            return "tests";
        default:
            return "reads";
    }
}

std::map<std::string, std::vector<KeyPlace>> keysOf(std::span<const TreeModel> trees)
{
    std::map<std::string, std::vector<KeyPlace>> keys;
    for (const TreeModel& tree : trees)
        for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
            // A node that does the same to a key in two ports is one place.
            std::set<std::pair<std::string, KeyUse>> uses;
            for (const auto& [port, text] : tree.nodes[i].ports) {
                KeyUse use{};
                const std::vector<std::string> referred = references(text);
                for (const std::string& key : referred)
                    uses.emplace(key, KeyUse::Reads);
                if (referred.empty() && !text.empty() && namesKey(tree.nodes[i], port, use))
                    uses.emplace(text, use);
            }
            for (const auto& [key, use] : uses)
                keys[key].push_back({&tree, i, use});
        }
    return keys;
}

}  // namespace vemra::app
