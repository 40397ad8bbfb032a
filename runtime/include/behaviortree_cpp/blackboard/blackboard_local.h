#pragma once

#include "behaviortree_cpp/blackboard/blackboard.h"

namespace BT {

/// A blackboard of this process: `Blackboard::create<BlackboardLocal>()`.
class BlackboardLocal : public Blackboard
{
public:
    using Blackboard::Blackboard;
};

}  // namespace BT
