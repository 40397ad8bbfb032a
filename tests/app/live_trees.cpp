// A library of small trees in which constants switch branches off, written as outlines.

#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/hang.h"

namespace {

// A node a line, two blanks a level: identifier and ports.
class Outline
{
public:
    explicit Outline(std::string text) : text_(std::move(text)) {}

    BT::Tree operator()(const BT::BehaviorTreeFactory& factory, const BT::Blackboard::Ptr& blackboard) const
    {
        BT::Tree tree;
        std::vector<BT::TreeNode*> above;
        std::istringstream lines(text_);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t depth = line.find_first_not_of(' ') / 2;
            std::smatch id;
            std::regex_search(line, id, std::regex(R"(\w+)"));
            BT::NodeParameters ports;
            const std::regex port(R"re((\w+)="([^"]*)")re");
            for (std::sregex_iterator at(line.begin(), line.end(), port); at != std::sregex_iterator(); ++at)
                ports[(*at)[1]] = (*at)[2];
            tree.nodes.push_back(factory.instantiateTreeNode(id[0], id[0], ports, blackboard));
            above.resize(depth);
            if (depth > 0)
                vemra::test::hang(*above.back(), *tree.nodes.back());
            above.push_back(tree.nodes.back().get());
        }
        tree.root_node = tree.nodes.front().get();
        return tree;
    }

private:
    std::string text_;
};

constexpr const char* kRobotNode = R"(SequenceStar
  IfThenElseStar
    StringMatch string_a="a" string_b="b"
    SubtreeCondition subtree_file_path="Dead"
    SubtreeCondition subtree_file_path="Living.xml"
  Fallback
    BoolMatch bool_a="true" bool_b="true"
    Inverter
      AlwaysFailure
  Loop num_cycles="-1"
    BlackboardContains key="x"
  AlwaysSuccess)";

constexpr const char* kLiving = R"(FallbackStar
  ForceFailure
    BlackboardContains key="y"
  AlwaysSuccess
  AlwaysFailure)";

constexpr const char* kDead = R"(Sequence
  AlwaysSuccess)";

}  // namespace

BT_REGISTER_NODES(factory)
{
    factory.registerTreeBuilder("Dead", Outline(kDead));
    factory.registerTreeBuilder("Living", Outline(kLiving));
    factory.registerTreeBuilder("RobotNode", Outline(kRobotNode));
}
