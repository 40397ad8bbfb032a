#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "app/trees/tree_model.h"
#include "robot/host/visit_counter.h"

namespace vemra::app {

/// The visits of many runs, added up; robot/host/visit_counter.h tells the form of their files.
class VisitTable
{
public:
    /// Throws UserError when the file is none or does not fit the trees: what was expected and where.
    void add(const std::filesystem::path& file, const std::vector<TreeModel>& trees);

    /// Of each node of a tree, in creation order.
    [[nodiscard]] const std::vector<robot::Visits>& of(const std::string& tree) const
    {
        return trees_.at(tree);
    }

private:
    std::map<std::string, std::vector<robot::Visits>> trees_;
};

}  // namespace vemra::app
