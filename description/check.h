#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "description/node.h"

namespace vemra::description {

/// A tree under its name.
struct NamedTree
{
    std::string name;
    Node root;
};

/// What is wrong with a description, and where: `path` leads from the root to the node, with indices.
struct Fault
{
    std::string tree;
    std::string path;
    std::string message;
};

/// Holds the trees against the rules that the compiler cannot see:
///  - each node is known, a control node, or a leaf of the contract, and has as many children as it takes;
///  - each port belongs to its node, each one that is needed is given, and its text can be read: a "${" is
///  closed, a number port holds a
///    number, a reference or an expression, a port with a closed set of values one of these; as many
///    successes as a `ParallelNode` waits for can come;
///  - each tree entered is one of `registry`, but for what `StandsForNoTree` says, and no tree can be
///    entered from inside itself;
///  - within a tree all uses of an inner name have the same body;
///  - each tree is one of `registry` and told once.
[[nodiscard]] std::vector<Fault> check(const std::vector<NamedTree>& trees,
                                       const std::vector<std::string>& registry);

/// "tree: path: message"
[[nodiscard]] std::string toText(const Fault& fault);

}  // namespace vemra::description
