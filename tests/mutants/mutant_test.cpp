#include "mutants/mutant.h"

#include "support/hang.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

// Sequence(AlwaysSuccess, SequenceStar(BoolMatch, AlwaysFailure)), as identifiers in creation order.
struct MutantOf : testing::Test
{
    BT::Tree original() const
    {
        BT::Tree tree;
        const auto add = [&](const std::string& id, int parent, const BT::NodeParameters& ports = {}) {
            tree.nodes.push_back(factory_.instantiateTreeNode(id, id, ports, blackboard_));
            if (parent >= 0)
                hang(*tree.nodes[static_cast<std::size_t>(parent)], *tree.nodes.back());
        };
        add("Sequence", -1);
        add("AlwaysSuccess", 0);
        add("SequenceStar", 0, {{"reset_on_failure", "true"}});
        add("BoolMatch", 2, {{"bool_a", "true"}, {"bool_b", "true"}});
        add("AlwaysFailure", 2);
        tree.root_node = tree.nodes.front().get();
        return tree;
    }

    std::string changed(const std::string& how) const
    {
        const BT::Tree tree = changedTree(original(), parsedMutant("T/" + how), factory_, blackboard_);
        std::string text;
        for (const auto& node : tree.nodes) {
            text += (text.empty() ? "" : " ") + node->registrationName();
            for (const auto& [name, value] : node->initializationParameters())
                if (name == "bool_b")
                    text += "=" + value;
        }
        return text;
    }

private:
    BT::BehaviorTreeFactory factory_;
    BT::Blackboard::Ptr blackboard_ = BT::Blackboard::create<BT::BlackboardLocal>();
};

TEST_F(MutantOf, ATreeDiffersInOnePlace)
{
    EXPECT_EQ(changed("1/exchange"), "Sequence SequenceStar BoolMatch=true AlwaysFailure AlwaysSuccess");
    EXPECT_EQ(changed("0/star"), "SequenceStar AlwaysSuccess SequenceStar BoolMatch=true AlwaysFailure");
    EXPECT_EQ(changed("2/star"), "Sequence AlwaysSuccess Sequence BoolMatch=true AlwaysFailure");
    EXPECT_EQ(changed("3/port/bool_b=a=b"),
              "Sequence AlwaysSuccess SequenceStar BoolMatch=a=b AlwaysFailure");
    EXPECT_EQ(changed("3/drop"), "Sequence AlwaysSuccess SequenceStar AlwaysFailure");
    EXPECT_EQ(changed("2/succeed"), "Sequence AlwaysSuccess AlwaysSuccess");
    EXPECT_EQ(changed("3/invert"),
              "Sequence AlwaysSuccess SequenceStar Inverter BoolMatch=true AlwaysFailure");
}

TEST_F(MutantOf, AChangeThatCannotBeMadeIsRefused)
{
    for (const char* how : {"2/exchange", "1/star", "1/port/x=1", "0/drop", "9/invert", "1/melt", "x/drop"})
        EXPECT_THROW(changed(how), std::invalid_argument) << how;
    EXPECT_THROW(parsedMutant("T"), std::invalid_argument);
}

}  // namespace
}  // namespace vemra::test
