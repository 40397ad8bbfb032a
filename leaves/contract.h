#pragma once

/// The contract between the trees and whoever answers them: every leaf a tree may name, with its ports.
/// The table behind it is made from leaves/catalogue during the build.

#include <optional>
#include <span>
#include <string_view>

#include "leaves/kinds.h"

namespace vemra::leaf {

struct PortContract
{
    std::string_view name;
    PortType type;
    std::span<const std::string_view> values;    ///< all literals there are; empty: not a closed set
    std::span<const std::string_view> examples;  ///< some literals of an open set
    std::optional<std::string_view> default_text;
    std::string_view about;
    bool required = false;  ///< a node without it is refused
};

struct LeafContract
{
    std::string_view id;
    std::string_view family;
    LeafKind kind;
    std::string_view about;
    std::span<const PortContract> ports;
};

struct FamilyContract
{
    std::string_view name;
    std::string_view about;
    std::span<const LeafContract> leaves;
};

/// A node that orders others.
struct ControlContract
{
    std::string_view id;
    std::size_t least_children;
    std::size_t most_children;  ///< kAnyNumber: no limit
    std::string_view about;
    std::span<const PortContract> ports;
};

/// A key of the blackboard, through which trees and robot talk with each other.
struct KeyContract
{
    std::string_view name;
    KeyType type;
    std::span<const std::string_view> values;  ///< all texts that it may hold; empty: not a closed set
    KeyOrigin from;
    std::string_view about;
};

/// All leaves, family by family.
[[nodiscard]] std::span<const LeafContract> all();
[[nodiscard]] std::span<const FamilyContract> families();
/// Null when there is no such leaf.
[[nodiscard]] const LeafContract* find(std::string_view id);

[[nodiscard]] std::span<const ControlContract> controls();
/// Null when there is no such control node.
[[nodiscard]] const ControlContract* findControl(std::string_view id);

/// All keys, in the order of their names.
[[nodiscard]] std::span<const KeyContract> keys();
/// Null when there is no such key.
[[nodiscard]] const KeyContract* findKey(std::string_view name);

}  // namespace vemra::leaf
