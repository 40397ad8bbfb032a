#include <fstream>
#include <iostream>
#include <string>

#include "behaviortree_cpp/bt_factory.h"
#include "plugin/tree_table.h"
#include "version/version.h"

namespace {

/// One line for each load; a trace, and no more: where it cannot be written, it is left out.
void recordVersion(const char* version)
{
    std::ofstream record("/tmp/version_check", std::ios::app);
    if (record)
        record << "name: vemra_tree, version: " << version << std::endl;
}

}  // namespace

BT_REGISTER_NODES(factory)
{
    std::cout << "vemra_tree git commit: " << vemra::version() << std::endl;
    recordVersion(vemra::version());
    for (const vemra::plugin::TreeEntry& tree : vemra::plugin::treeEntries())
        factory.registerTreeBuilder(tree.name, tree.builder);
}
