#pragma once

#include <stdexcept>
#include <string>

namespace BT {

/// What a factory, a builder or a misused node throws. No tick of a built-in node throws it.
class BehaviorTreeException : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

}  // namespace BT
