#include "leaves/host/host.h"

#include <algorithm>
#include <stdexcept>

namespace vemra::leaf {
namespace {

BT::NodeType typeOf(LeafKind kind)
{
    return kind == LeafKind::Condition ? BT::NodeType::CONDITION : BT::NodeType::ACTION;
}

void expectKind(const LeafContract& leaf, BT::NodeType type)
{
    if (type == typeOf(leaf.kind))
        return;
    const std::string given = type == BT::NodeType::CONDITION ? "a condition"
                              : type == BT::NodeType::ACTION  ? "an action"
                                                              : "neither condition nor action";
    throw std::invalid_argument("leaf '" + std::string(leaf.id) + "' is " +
                                (leaf.kind == LeafKind::Condition ? "a condition" : "an action") +
                                " in the contract, and its implementation is " + given);
}

}  // namespace

const LeafContract& LeafHost::claim(const std::string& id) const
{
    const LeafContract* leaf = find(id);
    if (leaf == nullptr)
        throw std::invalid_argument("leaf '" + id + "' is not in the contract");
    if (implemented(id))
        throw std::invalid_argument("leaf '" + id + "' is implemented already");
    return *leaf;
}

void LeafHost::claim(const std::string& id, BT::NodeType type) const
{
    expectKind(claim(id), type);
}

void LeafHost::condition(const std::string& id, const Functor& functor)
{
    claim(id, BT::NodeType::CONDITION);
    factory_.registerSimpleCondition(id, functor);
    implemented_.insert(id);
}

void LeafHost::action(const std::string& id, const Functor& functor)
{
    claim(id, BT::NodeType::ACTION);
    factory_.registerSimpleAction(id, functor);
    implemented_.insert(id);
}

void LeafHost::builder(const std::string& id, const BT::NodeBuilder& make)
{
    const LeafContract& leaf = claim(id);
    factory_.registerBuilder({typeOf(leaf.kind), id, {}},
                             [make, &leaf](const std::string& name, const BT::NodeParameters& ports) {
                                 auto node = make(name, ports);
                                 expectKind(leaf, node->type());
                                 return node;
                             });
    implemented_.insert(id);
}

void LeafHost::use_runtime_builtin()
{
    for (const BT::TreeNodeManifest& known : factory_.manifests()) {
        const LeafContract* leaf = find(known.registration_ID);
        if (leaf == nullptr)
            continue;
        expectKind(*leaf, known.type);
        implemented_.insert(known.registration_ID);
    }
}

std::vector<std::string> LeafHost::register_defaults(const Observer& met)
{
    std::vector<std::string> defaults;
    for (const LeafContract& leaf : all()) {
        const std::string id(leaf.id);
        if (implemented(id))
            continue;
        const auto answer = [met, &leaf](BT::NodeStatus status) {
            return [met, &leaf, status](BT::TreeNode&) {
                if (met)
                    met(leaf.id);
                return status;
            };
        };
        if (leaf.kind == LeafKind::Condition)
            condition(id, answer(BT::NodeStatus::FAILURE));
        else
            action(id, answer(BT::NodeStatus::SUCCESS));
        defaults.push_back(id);
    }
    std::sort(defaults.begin(), defaults.end());
    return defaults;
}

}  // namespace vemra::leaf
