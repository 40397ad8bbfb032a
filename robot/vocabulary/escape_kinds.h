#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vemra::robot {

/// The ways in which a robot can be stuck, the more urgent first.
enum class EscapeKind : std::uint8_t
{
    Cliff,
    Drop,
    Virtual,
    Bump,
    Immovable,
    LeftWheelCurrent,
    RightWheelCurrent,
    BrushCurrent,
    SideCurrent,
    Gesture,
    BumpRepeat,
    DropRepeat,
    TurnSuffocate,
    ForwardSuffocate,
    LdsBump
};

struct EscapeName
{
    EscapeKind kind;
    std::string_view word;     ///< in scenarios and logs
    std::string_view about;    ///< for people
    std::string_view warning;  ///< the leaf that asks for it
    std::string_view deal;     ///< the leaf that deals with it
    std::string_view error;    ///< the health code of a robot that does not get free
};

inline constexpr std::size_t kEscapeKinds = 15;

inline constexpr std::array<EscapeName, kEscapeKinds> kEscapes = {{
    {EscapeKind::Cliff, "cliff", "at an edge", "IsCliffWarning", "EscapeCliffDeal", "CLIFF"},
    {EscapeKind::Drop, "drop", "a wheel hangs", "IsDropWarning", "EscapeDropDeal", "DROP"},
    {EscapeKind::Virtual, "virtual", "held by a virtual wall", "IsVirtualWarning", "EscapeVirtualDeal",
     "TRAP"},
    {EscapeKind::Bump, "bump", "the bumper stays pressed", "IsBumpWarning", "EscapeBumpDeal", "BUMPER"},
    {EscapeKind::Immovable, "immovable", "does not move at all", "is_immovable_warning", "immovable_motion",
     "TRAP"},
    {EscapeKind::LeftWheelCurrent, "left_wheel", "the left wheel is blocked", "IsLeftWheelCurrentWarning",
     "EscapeLeftWheelCurrentDeal", "LEFT_WHEEL_MOTOR"},
    {EscapeKind::RightWheelCurrent, "right_wheel", "the right wheel is blocked", "IsRightWheelCurrentWarning",
     "EscapeRightWheelCurrentDeal", "RIGHT_WHEEL_MOTOR"},
    {EscapeKind::BrushCurrent, "brush", "the main brush is blocked", "IsBrushCurrentWarning",
     "EscapeBrushCurrentDeal", "BRUSH"},
    {EscapeKind::SideCurrent, "side_brush", "the side brush is blocked", "IsSideCurrentWarning",
     "EscapeSideCurrentDeal", "SIDEBRUSH"},
    {EscapeKind::Gesture, "gesture", "stands tilted", "IsGestureWarning", "EscapeGestureDeal", "GESTURE"},
    {EscapeKind::BumpRepeat, "bump_repeat", "bumps again and again", "IsBumpRepeatWarning",
     "EscapeBumpRepeatDeal", "TRAP"},
    {EscapeKind::DropRepeat, "drop_repeat", "a wheel drops again and again", "IsDropRepeatWarning",
     "EscapeDropRepeatDeal", "DROP"},
    {EscapeKind::TurnSuffocate, "turn", "turns and gets nowhere", "IsTurnSuffocateWarning",
     "EscapeTurnSuffocateDeal", "TURN_SUFFOCATE"},
    {EscapeKind::ForwardSuffocate, "forward", "pushes and gets nowhere", "IsForwardSuffocateWarning",
     "EscapeForwardSuffocateDeal", "FORWARD_SUFFOCATE"},
    {EscapeKind::LdsBump, "laser_cap", "the laser's cap stays pressed", "IsLDSBumpWarning",
     "EscapeLDSBumpDeal", "I_LDS_BUMPER"},
}};

constexpr const EscapeName& nameOf(EscapeKind kind)
{
    return kEscapes[static_cast<std::size_t>(kind)];
}

/// Nothing for a word that is none of theirs.
constexpr std::optional<EscapeKind> escapeKindOf(std::string_view word)
{
    for (const EscapeName& escape : kEscapes) {
        if (escape.word == word) {
            return escape.kind;
        }
    }
    return std::nullopt;
}

}  // namespace vemra::robot
