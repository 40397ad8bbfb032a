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
};

inline constexpr std::size_t kEscapeKinds = 15;

inline constexpr std::array<EscapeName, kEscapeKinds> kEscapes = {{
    {EscapeKind::Cliff, "cliff", "at an edge", "IsCliffWarning", "EscapeCliffDeal"},
    {EscapeKind::Drop, "drop", "a wheel hangs", "IsDropWarning", "EscapeDropDeal"},
    {EscapeKind::Virtual, "virtual", "held by a virtual wall", "IsVirtualWarning", "EscapeVirtualDeal"},
    {EscapeKind::Bump, "bump", "the bumper stays pressed", "IsBumpWarning", "EscapeBumpDeal"},
    {EscapeKind::Immovable, "immovable", "does not move at all", "is_immovable_warning", "immovable_motion"},
    {EscapeKind::LeftWheelCurrent, "left_wheel", "the left wheel is blocked", "IsLeftWheelCurrentWarning",
     "EscapeLeftWheelCurrentDeal"},
    {EscapeKind::RightWheelCurrent, "right_wheel", "the right wheel is blocked", "IsRightWheelCurrentWarning",
     "EscapeRightWheelCurrentDeal"},
    {EscapeKind::BrushCurrent, "brush", "the main brush is blocked", "IsBrushCurrentWarning",
     "EscapeBrushCurrentDeal"},
    {EscapeKind::SideCurrent, "side_brush", "the side brush is blocked", "IsSideCurrentWarning",
     "EscapeSideCurrentDeal"},
    {EscapeKind::Gesture, "gesture", "stands tilted", "IsGestureWarning", "EscapeGestureDeal"},
    {EscapeKind::BumpRepeat, "bump_repeat", "bumps again and again", "IsBumpRepeatWarning",
     "EscapeBumpRepeatDeal"},
    {EscapeKind::DropRepeat, "drop_repeat", "a wheel drops again and again", "IsDropRepeatWarning",
     "EscapeDropRepeatDeal"},
    {EscapeKind::TurnSuffocate, "turn", "turns and gets nowhere", "IsTurnSuffocateWarning",
     "EscapeTurnSuffocateDeal"},
    {EscapeKind::ForwardSuffocate, "forward", "pushes and gets nowhere", "IsForwardSuffocateWarning",
     "EscapeForwardSuffocateDeal"},
    {EscapeKind::LdsBump, "laser_cap", "the laser's cap stays pressed", "IsLDSBumpWarning",
     "EscapeLDSBumpDeal"},
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
