#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "app/trees/tree_model.h"

namespace vemra::app {

/// What a node does with a key of the blackboard.
enum class KeyUse
{
    Writes,
    Erases,
    Tests,  ///< asks whether it is there
    Reads
};

[[nodiscard]] const char* toText(KeyUse use);

struct KeyPlace
{
    const TreeModel* tree;
    std::size_t node;
    KeyUse use;
};

/// Who uses which key: by what the contract says of ports, and by the references ${key} in their texts. A key
/// whose name is itself read from the blackboard counts for the key that holds the name. The trees must
/// outlive the result.
[[nodiscard]] std::map<std::string, std::vector<KeyPlace>> keysOf(std::span<const TreeModel> trees);

}  // namespace vemra::app
