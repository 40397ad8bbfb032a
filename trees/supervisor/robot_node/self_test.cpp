// The self test of the factory.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/mode_runner.h"

namespace vemra::trees::robot_node {

namespace {

Node back_to_standby()
{
    return ChangeRobotModeTo{.IsAimMode_Standby = "true"};
}

// The mop of this product has nothing to test.
Node mop_test(const Node& test)
{
    return IfThenElse(switched_off(), test, AlwaysSuccess{});
}

// The app picks the tests: one that it has not asked for passes.
Node tests_of_app()
{
    return Sequence(
        Fallback(Is_calibration_test{}, RobotSelfTest_Calibration{}),
        Fallback(Is_bump_test{}, RobotSelfTest_Bump{}), Fallback(Is_cliff_test{}, RobotSelfTest_Cliff{}),
        Fallback(Is_frontir_test{}, RobotSelfTest_FrontIR{}), Fallback(Is_psd_test{}, RobotSelfTest_PSD{}),
        Fallback(Is_tof_test{}, RobotSelfTest_TOF{}), Fallback(Is_lds_test{}, RobotSelfTest_LDS{}),
        Fallback(Is_move_test{}, RobotSelfTest_Move{}), Fallback(Is_turn_test{}, RobotSelfTest_Turn{}),
        Fallback(Is_mag_test{}, RobotSelfTest_Mag{}), Fallback(Is_dustbox_test{}, RobotSelfTest_DustBox{}),
        Fallback(Is_waterbox_test{}, RobotSelfTest_WaterBox{}), Fallback(Is_fan_test{}, RobotSelfTest_Fan{}),
        Fallback(Is_sidebrush_test{}, RobotSelfTest_SideBrush{}),
        Fallback(Is_brush_test{}, RobotSelfTest_Brush{}),
        mop_test(Fallback(Is_mop_test{}, RobotSelfTest_MOP{})), SequenceStar(NotifyTrd{}, back_to_standby()));
}

// All tests in a row. One that fails is tried again on the next tick until it passes.
Node all_tests()
{
    return SubTree(
        "BitTestMode",
        SequenceStarKeepingPlace(RobotSelfTest_Calibration{}, RobotSelfTest_Bump{}, RobotSelfTest_Cliff{},
                                 RobotSelfTest_FrontIR{}, RobotSelfTest_PSD{}, RobotSelfTest_TOF{},
                                 RobotSelfTest_LDS{}, RobotSelfTest_Move{}, RobotSelfTest_Turn{},
                                 RobotSelfTest_Mag{}, RobotSelfTest_DustBox{}, RobotSelfTest_WaterBox{},
                                 RobotSelfTest_Fan{}, RobotSelfTest_SideBrush{}, RobotSelfTest_Brush{},
                                 mop_test(RobotSelfTest_MOP{}), SelfTestTestOver{}, back_to_standby()));
}

}  // namespace

Node self_test()
{
    return SubTree(
        "SelfTestIndex",
        SequenceStar(
            IfThenElseStar(IsOnceTest{}, SequenceStar(Stop{}, RobotSelfTestInit{}, RobotSelfTest_mr133{}),
                           Stop{}),
            IfThenElseStar(IsAPPTest{},
                           IfThenElseStar(IsStopTest{}, SequenceStar(SelfTestTestOver{}, back_to_standby()),
                                          tests_of_app()),
                           all_tests())));
}

}  // namespace vemra::trees::robot_node
