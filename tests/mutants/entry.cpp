// The library of trees with one change made in it: VEMRA_MUTANT names it (mutant.h), none leaves all as it
// is. The names of the trees that are made are appended to the file VEMRA_TREES_MADE, each once.

#include <cstdlib>
#include <fstream>
#include <memory>
#include <set>
#include <string>

#include "behaviortree_cpp/bt_factory.h"
#include "mutants/mutant.h"
#include "plugin/tree_table.h"

namespace {

std::string environment(const char* name)
{
    const char* const text = std::getenv(name);
    return text == nullptr ? "" : text;
}

class TreesMade
{
public:
    void note(const std::string& tree)
    {
        if (!file_.empty() && noted_.insert(tree).second)
            std::ofstream(file_, std::ios::app) << tree << '\n';
    }

private:
    std::string file_ = environment("VEMRA_TREES_MADE");
    std::set<std::string> noted_;
};

}  // namespace

BT_REGISTER_NODES(factory)
{
    const auto made = std::make_shared<TreesMade>();
    const std::string wanted = environment("VEMRA_MUTANT");
    const vemra::test::Mutant mutant =
        wanted.empty() ? vemra::test::Mutant{} : vemra::test::parsedMutant(wanted);
    for (const vemra::plugin::TreeEntry& tree : vemra::plugin::treeEntries())
        factory.registerTreeBuilder(
            tree.name, [tree, made, mutant](const BT::BehaviorTreeFactory& host,
                                            const std::shared_ptr<BT::Blackboard>& blackboard) {
                made->note(tree.name);
                BT::Tree built = tree.builder(host, blackboard);
                return mutant.tree == tree.name ? vemra::test::changedTree(built, mutant, host, blackboard)
                                                : std::move(built);
            });
}
