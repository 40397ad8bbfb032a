#pragma once

/// The language in which a tree is written. A file holds one tree, named after it:
///
///     TREE(Back2cm)
///     {
///         return Sequence(SubtreeCondition{"Escape"}, Frameout(4, GoBackwards{}));
///     }
///
/// A leaf is a struct of the contract whose members are its ports; a control node is a call whose
/// arguments are its children. What cannot be right does not compile; what the compiler cannot see,
/// `treegen` refuses (description/check.h).

#include <concepts>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "description/node.h"
#include "leaves/leaves.h"

namespace vemra::description {

using leaf::Port;

template <class T>
concept NodeLike = std::convertible_to<T, Node>;

/// A row of steps. Given to a composite it stands for its nodes, so that a step may be missing and a function
/// may return several.
using Nodes = std::vector<Node>;

template <class T>
concept Steps = NodeLike<T> || std::same_as<std::remove_cvref_t<T>, Nodes>;

namespace detail {

template <NodeLike T>
void append(Nodes& below, T&& node)
{
    below.push_back(Node(std::forward<T>(node)));
}
inline void append(Nodes& below, const Nodes& row)
{
    below.insert(below.end(), row.begin(), row.end());
}

template <Steps... Children>
Node control(const char* id, std::vector<PortText> ports, Children&&... children)
{
    Nodes below;
    below.reserve(sizeof...(children));
    (append(below, std::forward<Children>(children)), ...);
    return {id, std::move(ports), std::move(below)};
}

template <Steps... Children>
Node resettable(const char* id, const char* reset, Children&&... children)
{
    return control(id, {{"reset_on_failure", reset}}, std::forward<Children>(children)...);
}

}  // namespace detail

/// The steps as a row.
template <Steps... Children>
Nodes row(Children&&... children)
{
    Nodes steps;
    (detail::append(steps, std::forward<Children>(children)), ...);
    return steps;
}

/// The steps of a tree that its sisters do not have: none unless `given`.
template <Steps... Children>
Nodes only_if(bool given, Children&&... children)
{
    return given ? row(std::forward<Children>(children)...) : Nodes{};
}

// --- composites ---------------------------------------------------------------------------------

template <Steps... Children>
requires(sizeof...(Children) >= 1) Node Sequence(Children&&... children)
{
    return detail::control("Sequence", {}, std::forward<Children>(children)...);
}

template <Steps... Children>
requires(sizeof...(Children) >= 1) Node SequenceStar(Children&&... children)
{
    return detail::resettable("SequenceStar", "true", std::forward<Children>(children)...);
}

/// A `SequenceStar` that keeps its place over a failure and tries the failed child again.
template <Steps... Children>
requires(sizeof...(Children) >= 1) Node SequenceStarKeepingPlace(Children&&... children)
{
    return detail::resettable("SequenceStar", "false", std::forward<Children>(children)...);
}

template <Steps... Children>
requires(sizeof...(Children) >= 1) Node Fallback(Children&&... children)
{
    return detail::control("Fallback", {}, std::forward<Children>(children)...);
}

template <Steps... Children>
requires(sizeof...(Children) >= 1) Node FallbackStar(Children&&... children)
{
    return detail::resettable("FallbackStar", "true", std::forward<Children>(children)...);
}

/// Companions first, the body last.
template <Steps... Children>
requires(sizeof...(Children) >= 2) Node DoWhile(Children&&... children)
{
    return detail::control("DoWhile", {}, std::forward<Children>(children)...);
}

template <Steps... Children>
requires(sizeof...(Children) >= 2) Node ParallelNode(const Port& threshold, Children&&... children)
{
    return detail::control("ParallelNode", {{"threshold", threshold.text()}},
                           std::forward<Children>(children)...);
}

template <NodeLike C, NodeLike T, NodeLike E>
Node IfThenElse(C&& condition, T&& then_branch, E&& else_branch)
{
    return detail::control("IfThenElse", {{"halt_on_switch", "true"}}, std::forward<C>(condition),
                           std::forward<T>(then_branch), std::forward<E>(else_branch));
}

/// An `IfThenElse` that leaves the old branch unhalted when the condition turns.
template <NodeLike C, NodeLike T, NodeLike E>
Node IfThenElseWithoutHalt(C&& condition, T&& then_branch, E&& else_branch)
{
    return detail::control("IfThenElse", {{"halt_on_switch", "false"}}, std::forward<C>(condition),
                           std::forward<T>(then_branch), std::forward<E>(else_branch));
}

template <NodeLike C, NodeLike T, NodeLike E>
Node IfThenElseStar(C&& condition, T&& then_branch, E&& else_branch)
{
    return detail::resettable("IfThenElseStar", "true", std::forward<C>(condition),
                              std::forward<T>(then_branch), std::forward<E>(else_branch));
}

/// `final_child` runs on every way out of `main_child`, a halt included.
template <NodeLike M, NodeLike F>
Node PostProcess(M&& main_child, F&& final_child)
{
    return detail::control("PostProcess", {{"tick_on_halt", "true"}}, std::forward<M>(main_child),
                           std::forward<F>(final_child));
}

// --- decorators ---------------------------------------------------------------------------------

template <NodeLike C>
Node ForceSuccess(C&& child)
{
    return detail::control("ForceSuccess", {}, std::forward<C>(child));
}

template <NodeLike C>
Node ForceFailure(C&& child)
{
    return detail::control("ForceFailure", {}, std::forward<C>(child));
}

template <NodeLike C>
Node Inverter(C&& child)
{
    return detail::control("Inverter", {}, std::forward<C>(child));
}

/// Makes a block one action: a memory-less `Sequence` or `Fallback` does not enter it again once done.
template <NodeLike C>
Node ActionDecorator(C&& child)
{
    return detail::control("ActionDecorator", {}, std::forward<C>(child));
}

template <NodeLike C>
Node RetryUntilSuccesful(const Port& num_attempts, C&& child)
{
    return detail::control("RetryUntilSuccesful", {{"num_attempts", num_attempts.text()}},
                           std::forward<C>(child));
}

template <NodeLike C>
Node Repeat(const Port& num_cycles, C&& child)
{
    return detail::control("Repeat", {{"num_cycles", num_cycles.text()}}, std::forward<C>(child));
}

template <NodeLike C>
Node Loop(const Port& num_cycles, C&& child)
{
    return detail::control("Loop", {{"num_cycles", num_cycles.text()}}, std::forward<C>(child));
}

template <NodeLike C>
Node Frameout(const Port& frames, C&& child)
{
    return detail::control("Frameout", {{"frames", frames.text()}}, std::forward<C>(child));
}

template <NodeLike C>
Node Timeout(const Port& msec, C&& child)
{
    return detail::control("Timeout", {{"msec", msec.text()}}, std::forward<C>(child));
}

/// Runs `child` as long as the break flag `key` is "false".
template <NodeLike C>
Node BB_Precondition(const Port& key, C&& child)
{
    return detail::control("BB_Precondition", {{"key", key.text()}, {"expected", "false"}},
                           std::forward<C>(child));
}

// --- trees within trees -------------------------------------------------------------------------

/// An inner tree: gives a stretch of this file a name. Each use is a copy of its own.
template <NodeLike C>
Node SubTree(const char* name, C&& body)
{
    Node node =
        detail::control("SubTree", {{"name", name}, {"display_name", "SubTree"}}, std::forward<C>(body));
    node.name = name;
    return node;
}

/// Enters another tree by its path ("Escape", "Escape.xml", "reuse/Escape"). The second value is for
/// viewers alone.
struct SubtreeCondition
{
    static constexpr const char* id = "SubtreeCondition";
    Port subtree_file_path{};
    Port expand_in_logger = "false";

    template <class F>
    void each_port(F&& f) const
    {
        f("subtree_file_path", subtree_file_path);
        f("expand_in_logger", expand_in_logger);
    }
};

/// A reference to a tree that does not exist, kept as it is in a place that is never ticked.
inline Node StandsForNoTree(const SubtreeCondition& reference)
{
    Node node(reference);
    node.stands_for_no_tree = true;
    return node;
}

/// Gives a node a label of its own.
template <NodeLike C>
Node Named(const char* name, C&& node)
{
    Node named(std::forward<C>(node));
    named.name = name;
    return named;
}

}  // namespace vemra::description

// Descriptions speak the language unqualified; nothing but descriptions includes this header.
using namespace vemra::description;  // NOLINT(google-global-names-in-headers, google-build-using-namespace)
using namespace vemra::leaf;         // NOLINT(google-global-names-in-headers, google-build-using-namespace)

/// Opens the description of tree NAME, which is also the name of its file.
#define TREE(NAME) ::vemra::description::Node describe_##NAME()  // NOLINT(cppcoreguidelines-macro-usage)
