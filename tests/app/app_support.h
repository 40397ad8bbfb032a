#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/folder.h"
#include "support/matchers.h"
#include "support/program.h"

namespace vemra::test {

inline std::string foreignTrees()
{
    return std::string(VEMRA_LIB_DIR) + "/libforeign_trees.so";
}

// What the command prints, when it is to go well.
inline std::string vemraOutput(const std::vector<std::string>& arguments)
{
    const ProgramResult result = runVemra(arguments);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return result.out;
}

// The nodes of the trees, by tree.
inline std::map<std::string, nlohmann::json> exportedNodes(std::vector<std::string> arguments = {})
{
    arguments.insert(arguments.begin(), {"trees", "export", "--format", "json"});
    std::map<std::string, nlohmann::json> trees;
    const nlohmann::json parsed = nlohmann::json::parse(vemraOutput(arguments));
    for (const nlohmann::json& tree : parsed.at("trees"))
        trees[tree.at("name").get<std::string>()] = tree.at("nodes");
    return trees;
}

}  // namespace vemra::test
