#include "mutants/mutant.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include "app/trees/node_children.h"
#include "support/hang.h"

namespace vemra::test {
namespace {

// A tree as data that can be changed.
struct Branch
{
    std::string id;
    std::string name;
    BT::NodeParameters ports;
    std::vector<Branch> below;
    std::size_t index = 0;
};

Branch branchOf(const BT::TreeNode& node, std::size_t& index)
{
    Branch branch{node.registrationName(), node.name(), node.initializationParameters(), {}, index++};
    for (const BT::TreeNode* child : app::childrenOf(node))
        branch.below.push_back(branchOf(*child, index));
    return branch;
}

// The node and the list in which it stands.
std::pair<std::vector<Branch>*, std::size_t> find(std::vector<Branch>& row, std::size_t index)
{
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (row[i].index == index)
            return {&row, i};
        if (const auto below = find(row[i].below, index); below.first != nullptr)
            return below;
    }
    return {nullptr, 0};
}

Branch leaf(const std::string& id)
{
    return {id, id, {}, {}, 0};
}

void exchangeKind(Branch& branch)
{
    static constexpr std::array<std::pair<const char*, const char*>, 3> kPairs{
        {{"Sequence", "SequenceStar"}, {"Fallback", "FallbackStar"}, {"IfThenElse", "IfThenElseStar"}}};
    const std::string old = branch.id;
    for (const auto& [plain, star] : kPairs)
        if (old == plain || old == star)
            branch.id = old == plain ? star : plain;
    if (branch.id == old)
        throw std::invalid_argument(old + " has no sibling with a star");
    if (branch.name == old)
        branch.name = branch.id;
    branch.ports.erase("reset_on_failure");
}

void change(std::vector<Branch>& row, std::size_t at, const Mutant& mutant)
{
    Branch& branch = row[at];
    if (mutant.kind == "exchange" && at + 1 < row.size())
        std::swap(branch, row[at + 1]);
    else if (mutant.kind == "star")
        exchangeKind(branch);
    else if (mutant.kind == "port" && branch.ports.contains(mutant.port))
        branch.ports[mutant.port] = mutant.text;
    else if (mutant.kind == "drop" && row.size() > 1)
        row.erase(row.begin() + static_cast<std::ptrdiff_t>(at));
    else if (mutant.kind == "succeed")
        branch = leaf("AlwaysSuccess");
    else if (mutant.kind == "invert") {
        Branch inverter = leaf("Inverter");
        inverter.below.push_back(std::move(branch));
        row[at] = std::move(inverter);
    } else
        throw std::invalid_argument("a change that cannot be made there: " + mutant.kind);
}

BT::TreeNode* plant(const Branch& branch, BT::Tree& tree, const BT::BehaviorTreeFactory& factory,
                    const BT::Blackboard::Ptr& blackboard)
{
    tree.nodes.push_back(factory.instantiateTreeNode(branch.id, branch.name, branch.ports, blackboard));
    BT::TreeNode* const node = tree.nodes.back().get();
    for (const Branch& below : branch.below)
        hang(*node, *plant(below, tree, factory, blackboard));
    return node;
}

}  // namespace

Mutant parsedMutant(const std::string& text)
{
    Mutant mutant;
    const std::size_t first = text.find('/');
    const std::size_t second = text.find('/', first + 1);
    if (first == std::string::npos || second == std::string::npos)
        throw std::invalid_argument("expected TREE/NODE/KIND: " + text);
    mutant.tree = text.substr(0, first);
    const char* const end = text.data() + second;
    if (const auto read = std::from_chars(text.data() + first + 1, end, mutant.node); read.ptr != end)
        throw std::invalid_argument("expected the index of a node: " + text);
    mutant.kind = text.substr(second + 1);
    if (mutant.kind.starts_with("port/")) {
        const std::size_t sign = mutant.kind.find('=');
        if (sign == std::string::npos)
            throw std::invalid_argument("expected port/NAME=TEXT: " + text);
        mutant.port = mutant.kind.substr(5, sign - 5);
        mutant.text = mutant.kind.substr(sign + 1);
        mutant.kind = "port";
    }
    return mutant;
}

BT::Tree changedTree(const BT::Tree& tree, const Mutant& mutant, const BT::BehaviorTreeFactory& factory,
                     const BT::Blackboard::Ptr& blackboard)
{
    std::size_t index = 0;
    std::vector<Branch> root{branchOf(*tree.root_node, index)};
    const auto [row, at] = find(root, mutant.node);
    if (row == nullptr)
        throw std::invalid_argument(mutant.tree + " has no node " + std::to_string(mutant.node));
    change(*row, at, mutant);
    BT::Tree changed;
    changed.root_node = plant(root.front(), changed, factory, blackboard);
    return changed;
}

}  // namespace vemra::test
