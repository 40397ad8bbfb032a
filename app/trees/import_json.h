#pragma once

#include <filesystem>
#include <vector>

#include "app/trees/tree_model.h"

namespace vemra::app {

/// Reads what `vemra trees export --format json` wrote. Kinds of nodes are not in it and stay undefined.
/// Throws UserError that names file and place when the file cannot be read or says something else.
[[nodiscard]] std::vector<TreeModel> importJson(const std::filesystem::path& file);

}  // namespace vemra::app
