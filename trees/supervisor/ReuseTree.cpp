#include <string>
#include <utility>
#include <vector>

#include "description/tree.h"

namespace {

// The list has its own spelling of one name, under which no tree is to be found.
constexpr const char* misspelt = "CrossLineSearch";

constexpr const char* reusable[] = {
    "ActiveRelocalize_Crossline",
    "ActiveRelocalize_InPlace",
    "ActiveRelocalize_Triangle",
    "AdvCleanComplete",
    "AdvPreAutoOnCharger",
    "AdvRestartCleaning",
    "AlwaysFailure",
    "AlwaysSuccess",
    "AreaSelectModeIndex",
    "AutoModeIndex",
    "AutoMode_FollowGong",
    "AutoMode_GongFollow",
    "BTBack2cm",
    "Back2cm",
    "BackHomeIndex",
    "BackToMapLimit",
    "BackToMarkedCharger_WithSearch",
    "BackToMarkedCharger_WithoutSearch",
    "BackToOrigin",
    "BlindAdvance",
    "BlindAdvanceDouble",
    "CalcChargerPositionOrNot",
    "ChargingJumpToSleepMode",
    "CheckInVirtualWall",
    "CleanFromChargerJudgment",
    "CleanSelectedAreas",
    "CrossBridge",
    "CrossLineSearch",
    "DrawAreaModeIndex",
    "ErrorReportIndex",
    "Escape",
    "EscapeCoat",
    "EscapeLDSBump",
    "Explore",
    "FactoryModeIndex",
    "FactoryRunModeIndex",
    "FixOrientation",
    "FollowWallDeal",
    "FollowWallModeIndex",
    "FollowWallProc",
    "FollowWallTillRectLimit",
    "FollowWallTillRectLimitIgnoreCharger",
    "GoChargingFullRoundTurn",
    "GoCharging_CleanDock",
    "GoCharging_lds",
    "GoCharging_vslam",
    "GotoPoint",
    "GotoPointExplore",
    "GotoPointNoUnknown",
    "GotoPointWithHistoryMap",
    "IMUCalib",
    "IMUCalibrateDrift",
    "IncreaseCoverage",
    "IncreaseCoverage_mod",
    "JumpToSleepMode",
    "LDS_CTRL",
    "LFwarningMusic",
    "LowpowerResume",
    "MapBuildModeIndex",
    "NaviOnePointProc",
    "NavigateExploreProc",
    "NavigateFollowWall",
    "NavigateProc",
    "NavigateProcNoUnknown",
    "NavigateProcWithHistoryMap",
    "NavigateProcWithHistoryMapNoneStop",
    "NeighborCleaningMode",
    "OTAModeDealIndex",
    "OtherModePreset",
    "PartCleanModeIndex",
    "PlanInSubregion_FollowGong",
    "PlanInSubregion_GongFollow",
    "PointSelectModeIndex",
    "PowerOffModeIndex",
    "PreAutoOnCharger",
    "PreciseFollowWallProc",
    "PreprocessDealsBeforeCleaning.xml",
    "ReadyToSearchForCharger",
    "RecursiveAutoMode_FollowGong",
    "RecursiveAutoMode_GongFollow",
    "RemoteCtrlModeIndex",
    "RestartCleaning",
    "ReuseRestartCleaning",
    "RobotNode",
    "SearchChargeEnding",
    "SearchForChargerGreedyNavigate",
    "SearchForChargerLoopSolvGoToDockSector",
    "SearchForChargerLoopSolvGoTowardCharger",
    "SearchForChargerOverturnSolv",
    "SearchForChargerRandomWalk",
    "SearchForCharger_CleanDock",
    "SearchForCharger_lds",
    "SearchForCharger_vslam",
    "SetWIFIModeIndex",
    "ShakeAndBack",
    "SleepModeDealIndex",
    "StandbyModeIndex",
    "StopChargingIndex",
    "StopModeIndex",
    "StopModePreset",
    "SwitchLineFollowWall",
    "SwitchLineFollowWallCoat",
    "SwitchLineTurn",
    "ThroughObstacleNavigation",
    "WakeFromSleep",
    "WashBeforeClean",
    "WashModeJudge",
    "auto_cleanmode_set",
};

Node reference_to(const std::string& tree)
{
    Node reference = SubtreeCondition{.subtree_file_path = "reuse/" + tree, .expand_in_logger = "true"};
    reference.stands_for_no_tree = tree == misspelt;
    return reference;
}

}  // namespace

// The list of the trees that belong to the set for reuse. It is never gone through: the first child ends it.
TREE(ReuseTree)
{
    std::vector<Node> children{AlwaysSuccess{}};
    for (const char* tree : reusable)
        children.push_back(reference_to(tree));
    return {"Fallback", {}, std::move(children)};
}
