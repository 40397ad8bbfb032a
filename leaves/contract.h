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

/// All leaves, family by family.
[[nodiscard]] std::span<const LeafContract> all();
[[nodiscard]] std::span<const FamilyContract> families();
/// Null when there is no such leaf.
[[nodiscard]] const LeafContract* find(std::string_view id);

}  // namespace vemra::leaf
