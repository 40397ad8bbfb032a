#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vemra::leaf {

/// A condition answers at once; an action may take ticks and is not started again once done.
enum class LeafKind : std::uint8_t
{
    Condition,
    Action
};

/// What the text of a port stands for once its references are filled in.
enum class PortType : std::uint8_t
{
    Text,
    Int,
    Float,
    Bool,
    Key,     ///< names a key to read or to test
    OutKey,  ///< names a key to write
    Value    ///< whatever the blackboard can hold: a pose, a line, a map
};

inline constexpr std::array<std::string_view, 2> kLeafKindNames{"condition", "action"};
inline constexpr std::array<std::string_view, 7> kPortTypeNames{"text", "int",     "float", "bool",
                                                                "key",  "out_key", "value"};

constexpr std::string_view toText(LeafKind kind)
{
    return kLeafKindNames[static_cast<std::size_t>(kind)];
}

constexpr std::string_view toText(PortType type)
{
    return kPortTypeNames[static_cast<std::size_t>(type)];
}

}  // namespace vemra::leaf
