#include "app/walks/walk_leaves.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "app/walks/walk_field.h"
#include "leaves/host/holding.h"
#include "leaves/host/host.h"

namespace vemra::app {
namespace {

using BT::NodeStatus;
using Names = std::span<const std::string_view>;

/// What only a log or a picture tells is no deed.
constexpr std::array<std::string_view, 2> kSilent{"SaySomething", "Log"};
constexpr std::array<std::string_view, 3> kSilentPorts{"name", "expand_in_logger", "display_name"};

bool isOneOf(Names names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// What a leaf is asked: its identifier and what its ports read now, in the order of their names.
std::string questionOf(const BT::TreeNode& node, const std::string& id)
{
    std::map<std::string_view, std::string> texts;
    for (const BT::Port& port : node.ports())
        if (std::string text; !isOneOf(kSilentPorts, port.name()) && port.toText(text))
            texts.emplace(port.name(), std::move(text));
    std::string question = id;
    for (const auto& [name, text] : texts)
        question.append(" ").append(name).append("=\"").append(text).append("\"");
    return question;
}

/// Writes the keys that the node's ports name for it to write.
void writeKeys(const BT::TreeNode& node, const std::string& id, WalkField& field, const std::string& question,
               std::uint64_t count)
{
    const leaf::LeafContract* contract = leaf::find(id);
    if (contract == nullptr)
        return;
    for (const leaf::PortContract& port : contract->ports)
        if (std::string key;
            port.type == leaf::PortType::OutKey && node.getParam(port.name, key) && !key.empty())
            field.write(key, question, count);
}

std::string answered(const std::string& question, bool good)
{
    return question + (good ? " -> SUCCESS" : " -> FAILURE");
}

NodeStatus resultOf(bool good)
{
    return good ? NodeStatus::SUCCESS : NodeStatus::FAILURE;
}

/// A leaf that may take time.
template <class Base>
class WalkAction final : public Base
{
public:
    WalkAction(const std::string& name, const BT::NodeParameters& ports, std::string id, WalkField& field)
        : Base(name, ports), id_(std::move(id)), field_(field)
    {}

    void halt() override
    {
        if (this->status() == NodeStatus::RUNNING)
            field_.tell(WalkEventKind::Halted, question_);
        this->setStatus(NodeStatus::IDLE);
    }

private:
    NodeStatus tick() override
    {
        if (isOneOf(kSilent, id_))
            return NodeStatus::SUCCESS;
        if (this->status() != NodeStatus::RUNNING) {
            question_ = questionOf(*this, id_);
            field_.tell(WalkEventKind::Begun, question_);
            count_ = field_.countOf(question_);
            ticks_left_ = field_.duration(question_, count_, leaf::isHolding(id_));
        }
        if (ticks_left_ != 0) {
            if (ticks_left_ > 0)
                --ticks_left_;
            return NodeStatus::RUNNING;
        }
        const bool good = field_.succeeds(question_, count_);
        if (good)
            writeKeys(*this, id_, field_, question_, count_);
        field_.tell(WalkEventKind::Ended, answered(question_, good));
        return resultOf(good);
    }

    std::string id_;
    WalkField& field_;
    std::string question_;
    std::uint64_t count_ = 0;
    int ticks_left_ = 0;
};

class WalkCondition final : public BT::ConditionNode
{
public:
    WalkCondition(const std::string& name, const BT::NodeParameters& ports, std::string id, WalkField& field)
        : ConditionNode(name, ports), id_(std::move(id)), field_(field)
    {}

private:
    NodeStatus tick() override
    {
        const std::string question = questionOf(*this, id_);
        const bool good = field_.holds(question);
        field_.tell(WalkEventKind::Answered, answered(question, good));
        if (good)
            writeKeys(*this, id_, field_, question, field_.span());
        return resultOf(good);
    }

    std::string id_;
    WalkField& field_;
};

/// What a node that enters a tree is to those above it: no action, and yet it may take time.
class EntryNode : public BT::LeafNode
{
public:
    using LeafNode::LeafNode;
    [[nodiscard]] BT::NodeType type() const override { return BT::NodeType::CONDITION; }
};

}  // namespace

void registerWalkLeaves(BT::BehaviorTreeFactory& factory, WalkField& field)
{
    static const std::string kEntry = "SubtreeCondition";
    factory.unregisterBuilder(kEntry);
    factory.registerBuilder({BT::NodeType::CONDITION, kEntry, {}},
                            [&field](const std::string& name, const BT::NodeParameters& ports) {
                                return std::make_unique<WalkAction<EntryNode>>(name, ports, kEntry, field);
                            });
    leaf::LeafHost host(factory);
    host.use_runtime_builtin();
    for (const leaf::LeafContract& contract : leaf::all()) {
        const std::string id(contract.id);
        if (host.implemented(id))
            continue;
        const auto make = [id, &field, kind = contract.kind](const std::string& name,
                                                             const BT::NodeParameters& ports) {
            std::unique_ptr<BT::TreeNode> node;
            if (kind == leaf::LeafKind::Condition)
                node = std::make_unique<WalkCondition>(name, ports, id, field);
            else
                node = std::make_unique<WalkAction<BT::ActionNodeBase>>(name, ports, id, field);
            return node;
        };
        host.builder(id, make);
    }
}

}  // namespace vemra::app
