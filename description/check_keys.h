#pragma once

#include <span>
#include <string>
#include <vector>

#include "description/check.h"
#include "leaves/contract.h"

namespace vemra::description {

/// What a tree holds against a rule of the keys on purpose: the key or the text, and why.
struct OnPurpose
{
    std::string tree;
    std::string what;
    std::string why;
};

/// Holds the trees against the keys of the contract:
///  - a key that is named by a port, or referred to by "${...}", is known;
///  - a text that is written to a key with a closed set of texts, or compared with it, is one of the set;
///  - a key is given the type that it has;
///  - where all trees of the registry are told (`complete`): a key that is read is written by a tree or comes
///  from
///    elsewhere, and each key is used.
/// What stands in `on_purpose` is passed over; an entry that no longer applies is a fault.
[[nodiscard]] std::vector<Fault> checkKeys(const std::vector<NamedTree>& trees,
                                           std::span<const leaf::KeyContract> keys,
                                           std::span<const OnPurpose> on_purpose, bool complete);

/// Reads lines "TREE WHAT: WHY"; empty lines and lines that begin with '#' are passed over. Throws
/// std::runtime_error with file and line.
[[nodiscard]] std::vector<OnPurpose> readOnPurpose(const std::string& file);

}  // namespace vemra::description
