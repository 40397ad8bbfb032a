#include "description/check.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>

#include "behaviortree_cpp/bt_factory.h"
#include "behaviortree_cpp/port_value.h"
#include "leaves/contract.h"

namespace vemra::description {

namespace {

bool readsAs(leaf::PortType type, std::string_view literal)
{
    std::int64_t integer = 0;
    double real = 0;
    bool truth = false;
    switch (type) {
        case leaf::PortType::Int:
            return BT::parseInteger(literal, integer);
        case leaf::PortType::Float:
            return BT::parseReal(literal, real);
        case leaf::PortType::Bool:
            return BT::parseBoolean(literal, truth);
        default:
            return true;
    }
}

const char* nameOf(leaf::PortType type)
{
    return type == leaf::PortType::Int     ? "an integer"
           : type == leaf::PortType::Float ? "a number"
                                           : "a truth value";
}

bool isNumeric(leaf::PortType type)
{
    return type == leaf::PortType::Int || type == leaf::PortType::Float || type == leaf::PortType::Bool;
}

class Checker
{
public:
    Checker(const std::vector<NamedTree>& trees, const std::vector<std::string>& registry)
        : trees_(trees), registry_(registry.begin(), registry.end())
    {}

    std::vector<Fault> run()
    {
        std::set<std::string_view> seen;
        for (const NamedTree& tree : trees_) {
            tree_ = &tree;
            inner_.clear();
            if (!registry_.contains(tree.name))
                report("", "is not in the registry of trees");
            if (!seen.insert(tree.name).second)
                report("", "is told twice");
            walk(tree.root, tree.root.id);
        }
        findCircles();
        return std::move(faults_);
    }

private:
    void report(const std::string& path, std::string message)
    {
        faults_.push_back({tree_->name, path, std::move(message)});
    }

    void walk(const Node& node, const std::string& path)
    {
        const leaf::LeafContract* contract = leaf::find(node.id);
        const leaf::ControlContract* shape = leaf::findControl(node.id);
        if (contract == nullptr && shape == nullptr)
            report(path, "no node type '" + node.id + "'");
        else {
            checkChildren(node, shape, path);
            checkPorts(node, shape, contract, path);
            checkThreshold(node, path);
        }
        if (node.id == "SubtreeCondition")
            checkReference(node, path);
        if (node.id == "SubTree")
            checkInner(node, path);
        for (std::size_t i = 0; i < node.children.size(); ++i)
            walk(node.children[i], path + "/" + std::to_string(i) + ":" + labelOf(node.children[i]));
    }

    static std::string labelOf(const Node& node)
    {
        return node.name == node.id ? node.id : node.id + "(" + node.name + ")";
    }

    void checkChildren(const Node& node, const leaf::ControlContract* shape, const std::string& path)
    {
        const std::size_t least = shape != nullptr ? shape->least_children : 0;
        const std::size_t most = shape != nullptr ? shape->most_children : 0;
        const std::size_t have = node.children.size();
        if (have < least || have > most)
            report(path,
                   node.id + " takes " +
                       (least == most              ? "exactly " + std::to_string(least)
                        : most == leaf::kAnyNumber ? "at least " + std::to_string(least)
                                                   : std::to_string(least) + " to " + std::to_string(most)) +
                       (least == 1 ? " child" : " children") + ", has " + std::to_string(have));
    }

    /// A number of children that are never all there can never succeed.
    void checkThreshold(const Node& node, const std::string& path)
    {
        const std::string* text = node.port("threshold");
        std::int64_t threshold = 0;
        if (node.id != "ParallelNode" || text == nullptr || !BT::parseInteger(*text, threshold))
            return;
        if (threshold < 1 || threshold > static_cast<std::int64_t>(node.children.size()))
            report(path, "port threshold=\"" + *text + "\": expected 1 to the number of children, " +
                             std::to_string(node.children.size()));
    }

    void checkPorts(const Node& node, const leaf::ControlContract* shape, const leaf::LeafContract* contract,
                    const std::string& path)
    {
        const std::span<const leaf::PortContract> ports = shape != nullptr ? shape->ports : contract->ports;
        std::set<std::string_view> seen;
        for (const PortText& port : node.ports) {
            if (!seen.insert(port.name).second)
                report(path, "port " + port.name + " is given twice");
            const auto known = std::find_if(ports.begin(), ports.end(), [&port](const leaf::PortContract& p) {
                return p.name == port.name;
            });
            if (known == ports.end())
                report(path, node.id + " has no port " + port.name);
            else
                checkText(port, typeToldBeside(node, port).value_or(known->type), known->values, path);
        }
        for (const leaf::PortContract& needed : ports)
            if (needed.required && node.port(needed.name) == nullptr)
                report(path, node.id + " lacks port " + std::string(needed.name));
    }

    /// What a value must read as where another port of the node tells its type.
    static std::optional<leaf::PortType> typeToldBeside(const Node& node, const PortText& port)
    {
        const std::string* type = node.port("type");
        if (node.id != "SetBlackboardWithType" || port.name != "value" || type == nullptr)
            return std::nullopt;
        if (*type == "int")
            return leaf::PortType::Int;
        if (*type == "float")
            return leaf::PortType::Float;
        return *type == "bool" ? std::optional(leaf::PortType::Bool) : std::nullopt;
    }

    void checkText(const PortText& port, leaf::PortType type, std::span<const std::string_view> values,
                   const std::string& path)
    {
        const std::string shown = "port " + port.name + "=\"" + port.text + "\": ";
        BT::PortForm form{};
        try {
            form = BT::classifyPortText(port.text);
        } catch (const std::invalid_argument& fault) {
            report(path, shown + fault.what());
            return;
        }
        if (form == BT::PortForm::Template && isNumeric(type))
            report(path,
                   shown + "expected " + nameOf(type) + ", a reference or an expression that can be read");
        if (form != BT::PortForm::Literal)
            return;
        if (!values.empty() && !port.text.empty() &&
            std::find(values.begin(), values.end(), port.text) == values.end()) {
            std::string list;
            for (const std::string_view value : values)
                list += (list.empty() ? "" : ", ") + std::string(value);
            report(path, shown + "expected one of: " + list);
        } else if (isNumeric(type) && !readsAs(type, port.text) && !isKeyWithoutReference(type, port.text))
            report(path, shown + "expected " + nameOf(type) + ", a reference or an expression");
    }

    /// A bare word in a truth port stands for a branch that is off: the word is not true.
    static bool isKeyWithoutReference(leaf::PortType type, std::string_view text)
    {
        return type == leaf::PortType::Bool && !text.empty() &&
               std::all_of(text.begin(), text.end(),
                           [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; });
    }

    void checkReference(const Node& node, const std::string& path)
    {
        const std::string* text = node.port("subtree_file_path");
        if (text == nullptr || text->find("${") != std::string::npos)
            return;
        const std::string name(BT::treeNameOfPath(*text));
        if (node.stands_for_no_tree) {
            if (registry_.contains(name))
                report(path, "'" + *text + "' is said to stand for no tree, but there is one");
        } else if (!registry_.contains(name))
            report(path, "there is no tree '" + name + "' (path \"" + *text + "\")");
        else
            edges_[tree_->name].push_back({name, path});
    }

    void checkInner(const Node& node, const std::string& path)
    {
        const auto [at, added] = inner_.try_emplace(node.name, &node, path);
        if (!added && !(at->second.first->children == node.children))
            report(path, "inner tree '" + node.name + "' has another body than at " + at->second.second);
    }

    void findCircles()
    {
        enum class Mark
        {
            Open,
            Done
        };
        std::map<std::string, Mark> marks;
        std::vector<std::string> way;
        const std::function<void(const std::string&)> visit = [&](const std::string& name) {
            marks[name] = Mark::Open;
            way.push_back(name);
            for (const auto& [target, path] : edges_[name]) {
                const auto mark = marks.find(target);
                if (mark == marks.end())
                    visit(target);
                else if (mark->second == Mark::Open) {
                    std::string message = "trees enter each other in a circle: ";
                    for (auto from = std::find(way.begin(), way.end(), target); from != way.end(); ++from)
                        message.append(*from).append(" -> ");
                    faults_.push_back({name, path, message + target});
                }
            }
            way.pop_back();
            marks[name] = Mark::Done;
        };
        for (const NamedTree& tree : trees_)
            if (!marks.contains(tree.name))
                visit(tree.name);
    }

    struct Edge
    {
        std::string target;
        std::string path;
    };

    const std::vector<NamedTree>& trees_;
    std::set<std::string, std::less<>> registry_;
    const NamedTree* tree_ = nullptr;
    std::map<std::string, std::pair<const Node*, std::string>> inner_;
    std::map<std::string, std::vector<Edge>> edges_;
    std::vector<Fault> faults_;
};

}  // namespace

std::vector<Fault> check(const std::vector<NamedTree>& trees, const std::vector<std::string>& registry)
{
    return Checker(trees, registry).run();
}

std::string toText(const Fault& fault)
{
    return fault.tree + ": " + (fault.path.empty() ? "" : fault.path + ": ") + fault.message;
}

}  // namespace vemra::description
