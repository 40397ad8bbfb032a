#pragma once

#include "behaviortree_cpp/bt_factory.h"
#include "robot/host/visit_counter.h"

namespace vemra::test {

/// A blackboard that counts what is visited on it. With VEMRA_VISITS=FOLDER in the environment it leaves
/// there, as it goes, a file for `vemra trees visits` that bears the name of the test.
class VisitedBoard final : public BT::Blackboard
{
public:
    VisitedBoard();
    ~VisitedBoard();
    VisitedBoard(const VisitedBoard&) = delete;
    VisitedBoard& operator=(const VisitedBoard&) = delete;

private:
    std::string folder_;
    robot::VisitCounter counter_;
};

}  // namespace vemra::test
