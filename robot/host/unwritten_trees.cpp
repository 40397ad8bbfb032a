#include "robot/host/unwritten_trees.h"

#include <string_view>
#include <utility>

#include "behaviortree_cpp/actions/always_failure_node.h"

namespace vemra::robot {
namespace {

// The stand-in is a lone node of this type with this label.
constexpr const char* kType = "AlwaysFailure";
constexpr std::string_view kLabel = "not written";

using Met = std::function<void(const std::string&)>;

class UnwrittenNode final : public BT::AlwaysFailureNode
{
public:
    UnwrittenNode(const std::string& name, Met met) : AlwaysFailureNode(name), met_(std::move(met)) {}

protected:
    BT::NodeStatus tick() override
    {
        met_(std::string(place().tree));
        return AlwaysFailureNode::tick();
    }

private:
    Met met_;
};

}  // namespace

bool isUnwritten(const BT::Tree& tree)
{
    return tree.nodes.size() == 1 && tree.nodes.front()->registrationName() == kType &&
           tree.nodes.front()->name() == kLabel;
}

void watchUnwritten(BT::BehaviorTreeFactory& factory, Met met)
{
    const BT::NodeBuilder plain = factory.builders().at(kType);
    factory.unregisterBuilder(kType);
    factory.registerBuilder(
        {BT::NodeType::ACTION, kType, {}},
        [plain, met = std::move(met)](const std::string& name,
                                      const BT::NodeParameters& ports) -> std::unique_ptr<BT::TreeNode> {
            if (name == kLabel)
                return std::make_unique<UnwrittenNode>(name, met);
            return plain(name, ports);
        });
}

}  // namespace vemra::robot
