#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/contract.h"

namespace vemra::leaf {

/// Through this a host registers what answers the trees. It holds every registration against the contract:
/// a leaf that is not in it, that is of the other kind or that is implemented already is a
/// std::invalid_argument. The factory must outlive it; it need not outlive the trees.
class LeafHost
{
public:
    using Functor = std::function<BT::NodeStatus(BT::TreeNode&)>;
    using Observer = std::function<void(std::string_view id)>;

    explicit LeafHost(BT::BehaviorTreeFactory& factory) : factory_(factory) {}

    /// T is a node class of the kind that the contract asks for.
    template <class T>
    void implement(const std::string& id);
    /// A condition made of a function.
    void condition(const std::string& id, const Functor& functor);
    /// An action made of a function, done within its tick.
    void action(const std::string& id, const Functor& functor);
    /// Nodes made by a function; their kind is looked at when one is made.
    void builder(const std::string& id, const BT::NodeBuilder& make);

    /// Takes what the factory knows already, the runtime's own leaves above all, as implemented.
    void use_runtime_builtin();

    [[nodiscard]] bool implemented(std::string_view id) const { return implemented_.contains(id); }

    /// Gives every leaf that is still without an implementation one that does nothing: a condition fails, an
    /// action succeeds. Returns their identifiers, sorted. `met` is called each time one of them is ticked.
    std::vector<std::string> register_defaults(const Observer& met = {});

private:
    const LeafContract& claim(const std::string& id) const;
    void claim(const std::string& id, BT::NodeType type) const;

    BT::BehaviorTreeFactory& factory_;
    std::set<std::string, std::less<>> implemented_;
};

template <class T>
void LeafHost::implement(const std::string& id)
{
    claim(id, BT::getType<T>());
    factory_.registerNodeType<T>(id);
    implemented_.insert(id);
}

}  // namespace vemra::leaf
