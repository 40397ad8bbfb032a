#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/trees/tree_model.h"
#include "behaviortree_cpp/blackboard/safe_any.hpp"

namespace vemra::app {

/// What keys may hold, so that the conditions of trees come out both ways: the texts and numbers with which
/// the trees compare a key and which they set, numbers beside those, and what the contract says of the key.
class KeyPool
{
public:
    explicit KeyPool(std::span<const TreeModel> trees);

    /// One of the values, by chance. A value that is added or taken away changes the choice only where it is,
    /// or was, the one that is chosen.
    [[nodiscard]] const BT::Any& choose(const std::string& key, std::uint64_t chance) const;

private:
    using Values = std::map<std::string, BT::Any, std::less<>>;  ///< by their texts

    void addComparison(const ModelNode& node);
    void add(std::string_view key, std::string_view text);
    [[nodiscard]] static Values usualValues(std::string_view key);
    Values& valuesOf(std::string_view key);

    std::map<std::string, Values, std::less<>> keys_;
    Values unknown_ = usualValues({});
};

}  // namespace vemra::app
