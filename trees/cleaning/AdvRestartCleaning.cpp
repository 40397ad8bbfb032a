#include "trees/cleaning/shared.h"

namespace {

Node copy_odom_after()
{
    return SubTree("CopyOdomAfter",
                   SequenceStar(erase("odom_pos_after"), BlackboardCopy{"current_odom", "odom_pos_after"}));
}

Node forget_requests()
{
    return SequenceStar(erase("reuse_relocalize_just_in_init"), erase("init_status_must_reloc_flag"),
                        erase("reuse_relocalize_just_in_flash"));
}

Node unless_silent(Node music)
{
    return unless(present("disable_reuse_reloc_music"), std::move(music));
}

// On the way home to a wash the music is another.
Node by_purpose_of_way_home(const char* for_wash, const char* otherwise)
{
    return IfThenElseStar(SequenceStar(present("hand_wash_flag"), DoesTuobuInstall{}), queue(for_wash),
                          queue(otherwise));
}

Node just_failed()
{
    return FallbackStar(key_is_true("just_damode_reuse_failed"), key_is_true("disable_reuse_reloc_once"));
}

// --- four ways to the stored map ----------------------------------------------------------------

// The map is taken over unseen, which the task remembers.
Node start_from_stored_map()
{
    return SequenceStar(SlamStartFromReuse{}, SetBlackboard{"pretend_reuse_cleaning_token", "true"},
                        SaySomething{"AdvRestartCleaning pretend reuse cleaning"});
}

// The robot stands where the dock was when the map was stored.
Node way_from_dock()
{
    return SequenceStar(key_is_true("reuse_from_charger"), erase("reuse_from_charger"), copy_odom_after(),
                        SaySomething{"AdvRestartCleaning 1"},
                        optionally(present("on_charger_pose"),
                                   IfThenElseStar(SlamIsResumable{}, SlamStart{}, start_from_stored_map())));
}

// SLAM goes on with its map, and that is a stored one.
Node way_of_the_map_in_use()
{
    return SequenceStar(
        Inverter(SequenceStar(present("mapping_no_reloc"), erase("mapping_no_reloc"), forget_requests())),
        SaySomething{"here is in check reloc state"}, SlamIsResumable{},
        absent("init_status_must_reloc_flag"),
        FallbackStar(BoolMatch{"${map_id_in_map_ids}", "true"},
                     Inverter(SequenceStar(present("reuse_relocalize_just_in_init"),
                                           SetBlackboard{"reuse_relocalize_just_in_flash", "true"}))),
        erase("reuse_relocalize_just_in_init"), copy_odom_after(), SaySomething{"AdvRestartCleaning 2"},
        SlamStart{});
}

// The robot looks for its place. A pose beside the map is not believed.
Node way_of_looking()
{
    return SequenceStar(
        Inverter(key_is_true("just_damode_reuse_failed")), Inverter(key_is_true("disable_reuse_reloc_once")),
        unless_silent(queue("30")), SubtreeCondition{"ForceDelay"}, quiet_cleaning_system(),
        SetBlackboard{"reuse_relocalize_flag", "true"},
        IfThenElseStar(
            FallbackStar(DoesGetRobotChargeWarnning{}, key_is_true("kicked")), AlwaysFailure{},
            IfThenElseStar(SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"},
                           ForceSuccess(GenerateCleaningLog{""}), ForceFailure(GenerateCleaningLog{""}))),
        copy_odom_after(), SaySomething{"AdvRestartCleaning 3"},
        IsPointInRectangle{.point = "${current_coord}", .rectangle = "${gridmap_limit}"},
        FallbackStar(AlwaysSuccess{},
                     SequenceStar(key_is("task_state", "init"), SetBlackboard{"OutOfSegReset", "true"})),
        unless_silent(
            IfThenElseStar(in_mode("BackHomeMode"), by_purpose_of_way_home("145", "55"), queue("54"))));
}

// A selected task makes no sense without its map: the whole home is cleaned instead, without a sound.
Node restart_to_auto()
{
    return SubTree(
        "RestartToAuto",
        SequenceStar(in_any_mode({"DrawAreaCleanMode", "SelectAreaCleanMode", "SelectPointCleanMode",
                                  "FastMapBuildMode"}),
                     when(key_is("robot_moved", "false"), SaySomething{"charge pose cache test..."},
                          set_flag("from_charge_fake_flag")),
                     SubtreeCondition{"AdvCleanComplete"}, SetBlackboard{"WorkStartMusic_shield", "true"},
                     SetBlackboard{"moved_during_pause", "false"}, SetBlackboard{"task_state", "init"},
                     SetBlackboard{"just_damode_reuse_failed", "true"},
                     ChangeRobotModeTo{.IsAimMode_Auto = "true"}));
}

// A new map is begun. The way fails on purpose, so that nothing is set up for a stored one.
Node way_without_map()
{
    return SequenceStar(
        copy_odom_after(), SaySomething{"AdvRestartCleaning 4"},
        FallbackStar(
            just_failed(),
            SequenceStar(in_mode("BackHomeMode"), unless_silent(by_purpose_of_way_home("140", "64"))),
            ForceFailure(unless_silent(queue("31"))), ForceSuccess(restart_to_auto())),
        ForceFailure(SubtreeCondition{"RestartCleaning"}));
}

Node begin_on_stored_map()
{
    return SequenceStar(SaySomething{"进入AdvRestartCleaning subtree1"}, ResetReuseInfoTrans{},
                        ForceSuccess(SequenceStar(FallbackStar(way_from_dock(), way_of_the_map_in_use(),
                                                               way_of_looking(), way_without_map()),
                                                  SubtreeCondition{"ReuseRestartCleaning"})),
                        SaySomething{"退出AdvRestartCleaning subtree1"});
}

Node begin_on_new_map()
{
    return SequenceStar(SaySomething{"进入AdvRestartCleaning subtree2"},
                        BlackboardCopy{"current_odom", "odom_pos_after"}, quiet_cleaning_system(),
                        forget_requests(), SubtreeCondition{"RestartCleaning"},
                        SaySomething{"退出AdvRestartCleaning subtree2"});
}

}  // namespace

// Decides on which map a task is done: the stored one, if the robot finds itself on it, or a new one.
TREE(AdvRestartCleaning)
{
    return SequenceStar(
        SaySomething{"进入AdvRestartCleaning xml"},
        optionally(absent("mica_on_charger"), UpdateReuseAppMap{"adv_rc"}),
        SetBlackboard{"ElecCalculate", "false"},
        SubTree("AdvRestartCleaning",
                Sequence(first_escape(),
                         Named("has history map?", IfThenElseStar(IsReuseInfoExist{}, begin_on_stored_map(),
                                                                  begin_on_new_map())))),
        SetBlackboard{"OdomAfterCopied", "true"}, Delay{50});
}
