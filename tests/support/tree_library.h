#pragma once

#include <cstdlib>
#include <string>

namespace vemra::test {

// The library of trees that tests load: that of this build, unless they are to be tried on changed trees
// (scripts/mutants).
inline std::string treeLibrary()
{
    const char* const other = std::getenv("VEMRA_TREE_LIBRARY");
    return other != nullptr ? other : VEMRA_LIB_DIR "/libvemra_tree.so";
}

}  // namespace vemra::test
