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

/// What a key of the blackboard holds.
enum class KeyType : std::uint8_t
{
    Flag,  ///< its presence is the fact
    Text,
    Int,
    Float,
    Bool,
    Point,  ///< a place in mm or in cells
    Pose,
    Box,
    Line,
    Path,
    Map,
    Bridge,
    List,
    Time,
    Key  ///< the name of another key
};

/// Who writes a key when no tree does.
enum class KeyOrigin : std::uint8_t
{
    Trees,
    App,
    Station,
    Board,
    Leaf,
    Slam
};

inline constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

inline constexpr std::array<std::string_view, 15> kKeyTypeNames{"flag",  "text",   "int",  "float", "bool",
                                                                "point", "pose",   "box",  "line",  "path",
                                                                "map",   "bridge", "list", "time",  "key"};
inline constexpr std::array<std::string_view, 6> kKeyOriginNames{"trees", "app",  "station",
                                                                 "board", "leaf", "slam"};
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

constexpr std::string_view toText(KeyType type)
{
    return kKeyTypeNames[static_cast<std::size_t>(type)];
}

constexpr std::string_view toText(KeyOrigin origin)
{
    return kKeyOriginNames[static_cast<std::size_t>(origin)];
}

}  // namespace vemra::leaf
