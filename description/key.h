#pragma once

/// The keys of the blackboard in tree descriptions: a key is named once, in leaves/catalogue/keys.yaml, and
/// has the verbs of the language. description/keys.h is made from there.

#include <string>

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
    /// The whole number plus `number`, into itself.
    [[nodiscard]] Node plus(int number) const
    {
        return leaf::IntAdd{.int_a = value(), .int_b = number, .out_sum = name};
    }

    // --- tests
    [[nodiscard]] Node present() const { return leaf::BlackboardContains{name}; }
    [[nodiscard]] Node absent() const { return Inverter(leaf::BlackboardContains{name}); }
    [[nodiscard]] Node is(const char* text) const { return leaf::StringMatch{value(), text}; }
    [[nodiscard]] Node is_true() const { return is("true"); }
};

}  // namespace vemra::description
