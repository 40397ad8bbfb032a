#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "app/trees/liveness.h"
#include "app/trees/tree_model.h"
#include "app/visits/visit_file.h"

namespace vemra::app {

/// What the page of all trees shows.
struct PageContent
{
    const std::vector<TreeModel>& trees;
    const std::map<std::string, TreeLife>& lives;
    const VisitTable* visits = nullptr;  ///< null: without visits
    std::string opened;                  ///< the tree that is shown first
};

/// Writes one page of HTML that needs nothing beside it: an outline of each tree that folds, with links to
/// what is entered and back, a search, the users of each key, and, where there are visits, how often nodes
/// ran.
void writePage(std::ostream& out, const PageContent& content);

}  // namespace vemra::app
