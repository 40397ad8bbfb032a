#include "generator/built_tree.h"
#include "generator/described_trees.h"
#include "generator/emit.h"
#include "plugin/plugin_rig.h"

namespace vemra::test {
namespace {

TEST_F(Plugin, BuildsWhatIsDescribed)
{
    registerAllLeaves();
    for (const auto& tree : generator::completed(generator::describedTrees(), registry())) {
        const BT::Tree built = factory.createTree(tree.name, blackboard);
        EXPECT_TRUE(described(*built.root_node) == asBuilt(tree.root)) << tree.name;
        EXPECT_TRUE(isInCreationOrder(built)) << tree.name;
    }
}

}  // namespace
}  // namespace vemra::test
