#pragma once

/// The keys of the blackboard in tree descriptions: a key is named once, in leaves/catalogue/keys.yaml, and
/// has the verbs of the language that suit what it holds. description/keys.h is made from there.

#include <initializer_list>
#include <string>
#include <utility>

#include "description/tree.h"

namespace vemra::description {

/// The name of a key. Stands wherever a port takes a key's name.
struct Key
{
    const char* name;

    // Implicit on purpose: a key is given where its name is asked for.
    operator leaf::Port() const { return name; }   // NOLINT(google-explicit-constructor)
    operator std::string() const { return name; }  // NOLINT(google-explicit-constructor)

    /// What it holds, as a port reads it: "${name}".
    [[nodiscard]] std::string value() const { return "${" + std::string(name) + "}"; }

    // --- steps
    [[nodiscard]] Node set(const leaf::Port& text) const { return leaf::SetBlackboard{name, text}; }
    /// Its presence is the whole meaning.
    [[nodiscard]] Node flag() const { return set(""); }
    [[nodiscard]] Node erase() const { return leaf::EraseBlackboard{name}; }
    [[nodiscard]] Node copy_to(const Key& target) const { return leaf::BlackboardCopy{name, target}; }
    /// Keeps what is there, and copies from `other` where there is nothing.
    [[nodiscard]] Node default_from(const Key& other) const
    {
        return FallbackStar(present(), other.copy_to(*this));
    }
    /// A companion: what it holds now is given back when the scope ends.
    [[nodiscard]] Node kept() const { return leaf::StackBlackboard{name}; }

    // --- tests
    [[nodiscard]] Node present() const { return leaf::BlackboardContains{name}; }
    [[nodiscard]] Node absent() const { return Inverter(leaf::BlackboardContains{name}); }
    [[nodiscard]] Node is(const leaf::Port& text) const { return leaf::StringMatch{value(), text}; }
    [[nodiscard]] Node is_true() const { return is("true"); }
    /// Passes where it is there, and uses it up.
    [[nodiscard]] Nodes take() const { return row(present(), erase()); }
    /// The first of the texts that it is decides.
    [[nodiscard]] Node is_any(std::initializer_list<const char*> texts) const
    {
        Nodes tests;
        for (const char* text : texts)
            tests.push_back(is(text));
        return {"FallbackStar", {{"reset_on_failure", "true"}}, std::move(tests)};
    }
};

/// A key that holds a whole number.
struct IntKey : Key
{
    [[nodiscard]] Node set_typed(const leaf::Port& number) const
    {
        return leaf::SetBlackboardWithType{.key = name, .type = "int", .value = number};
    }
    /// `number` more, into itself.
    [[nodiscard]] Node plus(const leaf::Port& number) const
    {
        return leaf::IntAdd{.int_a = value(), .int_b = number, .out_sum = name};
    }
    /// A companion: counts the frames of its scope, on from what it holds.
    [[nodiscard]] Node counts_frames() const
    {
        return leaf::ConditionTimerFrames{.frames_out_key = name, .start_from = value()};
    }
    [[nodiscard]] Node counts_seconds() const
    {
        return leaf::ConditionTimerSecs{.secs_out_key = name, .start_from = value()};
    }

    [[nodiscard]] Node above(const leaf::Port& limit) const
    {
        return leaf::IsAGreaterThanBInt{.A = value(), .B = limit};
    }
    [[nodiscard]] Node below(const leaf::Port& limit) const
    {
        return leaf::IsAGreaterThanBInt{.A = limit, .B = value()};
    }
};

/// A key that holds a number.
struct FloatKey : Key
{
    [[nodiscard]] Node set_typed(const leaf::Port& number) const
    {
        return leaf::SetBlackboardWithType{.key = name, .type = "float", .value = number};
    }
    /// `number` more, into `target`.
    [[nodiscard]] Node plus(const leaf::Port& number, const Key& target) const
    {
        return leaf::FloatAdd{.a = value(), .b = number, .out_sum = target};
    }

    [[nodiscard]] Node above(const leaf::Port& limit) const
    {
        return leaf::IsAGreaterThanBFloat{.A = value(), .B = limit};
    }
    [[nodiscard]] Node below(const leaf::Port& limit) const
    {
        return leaf::IsAGreaterThanBFloat{.A = limit, .B = value()};
    }
};

/// A key that holds a truth value.
struct BoolKey : Key
{
    [[nodiscard]] Node set_typed(const leaf::Port& truth) const
    {
        return leaf::SetBlackboardWithType{.key = name, .type = "bool", .value = truth};
    }
    /// Read as a truth value; the text "1" is true as well.
    [[nodiscard]] Node holds(const char* truth) const
    {
        return leaf::BoolMatch{.bool_a = value(), .bool_b = truth};
    }
};

}  // namespace vemra::description
