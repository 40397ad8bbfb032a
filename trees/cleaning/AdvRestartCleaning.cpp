#include "trees/cleaning/shared.h"

namespace {

Node copy_odom_after()
{
    return SubTree("CopyOdomAfter",
                   SequenceStar(key::odom_pos_after.erase(), key::current_odom.copy_to(key::odom_pos_after)));
}

Node forget_requests()
{
    return SequenceStar(erase(key::reuse_relocalize_just_in_init, key::init_status_must_reloc_flag,
                              key::reuse_relocalize_just_in_flash));
}

Node unless_silent(Node music)
{
    return unless(key::disable_reuse_reloc_music.present(), std::move(music));
}

// On the way home to a wash the music is another.
Node by_purpose_of_way_home(const char* for_wash, const char* otherwise)
{
    return IfThenElseStar(Sequence(key::hand_wash_flag.present(), DoesTuobuInstall{}), queue(for_wash),
                          queue(otherwise));
}

Node just_failed()
{
    return FallbackStar(key::just_damode_reuse_failed.is_true(), key::disable_reuse_reloc_once.is_true());
}

// --- four ways to the stored map ----------------------------------------------------------------

// The map is taken over unseen, which the task remembers.
Node start_from_stored_map()
{
    return SequenceStar(SlamStartFromReuse{}, key::pretend_reuse_cleaning_token.set("true"),
                        SaySomething{"AdvRestartCleaning pretend reuse cleaning"});
}

// The robot stands where the dock was when the map was stored.
Node way_from_dock()
{
    return SequenceStar(key::reuse_from_charger.is_true(), key::reuse_from_charger.erase(), copy_odom_after(),
                        SaySomething{"AdvRestartCleaning 1"},
                        optionally(key::on_charger_pose.present(),
                                   IfThenElseStar(SlamIsResumable{}, SlamStart{}, start_from_stored_map())));
}

// SLAM goes on with its map, and that is a stored one.
Node way_of_the_map_in_use()
{
    return SequenceStar(Inverter(SequenceStar(key::mapping_no_reloc.take(), forget_requests())),
                        SaySomething{"here is in check reloc state"}, SlamIsResumable{},
                        key::init_status_must_reloc_flag.absent(),
                        FallbackStar(key::map_id_in_map_ids.holds("true"),
                                     Inverter(SequenceStar(key::reuse_relocalize_just_in_init.present(),
                                                           key::reuse_relocalize_just_in_flash.set("true")))),
                        key::reuse_relocalize_just_in_init.erase(), copy_odom_after(),
                        SaySomething{"AdvRestartCleaning 2"}, SlamStart{});
}

// The robot looks for its place. A pose beside the map is not believed.
Node way_of_looking()
{
    return SequenceStar(
        Inverter(key::just_damode_reuse_failed.is_true()), Inverter(key::disable_reuse_reloc_once.is_true()),
        unless_silent(queue(30)), SubtreeCondition{"ForceDelay"}, quiet_cleaning_system(),
        key::reuse_relocalize_flag.set("true"),
        choose({{FallbackStar(DoesGetRobotChargeWarnning{}, key::kicked.is_true()), AlwaysFailure{}},
                {SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"},
                 ForceSuccess(GenerateCleaningLog{""})}},
               ForceFailure(GenerateCleaningLog{""})),
        copy_odom_after(), SaySomething{"AdvRestartCleaning 3"},
        IsPointInRectangle{.point = "${current_coord}", .rectangle = "${gridmap_limit}"},
        FallbackStar(AlwaysSuccess{},
                     SequenceStar(key::task_state.is("init"), key::OutOfSegReset.set("true"))),
        unless_silent(
            IfThenElseStar(in_mode("BackHomeMode"), by_purpose_of_way_home("145", "55"), queue(54))));
}

// A selected task makes no sense without its map: the whole home is cleaned instead, without a sound.
Node restart_to_auto()
{
    return SubTree(
        "RestartToAuto",
        SequenceStar(in_any_mode("DrawAreaCleanMode", "SelectAreaCleanMode", "SelectPointCleanMode",
                                 "FastMapBuildMode"),
                     when(key::robot_moved.is("false"), SaySomething{"charge pose cache test..."},
                          key::from_charge_fake_flag.flag()),
                     SubtreeCondition{"AdvCleanComplete"}, key::WorkStartMusic_shield.set("true"),
                     key::moved_during_pause.set("false"), key::task_state.set("init"),
                     key::just_damode_reuse_failed.set("true"), ChangeRobotModeTo{.IsAimMode_Auto = "true"}));
}

// A new map is begun. The way fails on purpose, so that nothing is set up for a stored one.
Node way_without_map()
{
    return SequenceStar(copy_odom_after(), SaySomething{"AdvRestartCleaning 4"},
                        FallbackStar(just_failed(),
                                     SequenceStar(in_mode("BackHomeMode"),
                                                  unless_silent(by_purpose_of_way_home("140", "64"))),
                                     ForceFailure(unless_silent(queue(31))), ForceSuccess(restart_to_auto())),
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
                        key::current_odom.copy_to(key::odom_pos_after), quiet_cleaning_system(),
                        forget_requests(), SubtreeCondition{"RestartCleaning"},
                        SaySomething{"退出AdvRestartCleaning subtree2"});
}

}  // namespace

// Decides on which map a task is done: the stored one, if the robot finds itself on it, or a new one.
TREE(AdvRestartCleaning)
{
    return SequenceStar(
        SaySomething{"进入AdvRestartCleaning xml"},
        optionally(key::mica_on_charger.absent(), UpdateReuseAppMap{"adv_rc"}),
        key::ElecCalculate.set("false"),
        SubTree("AdvRestartCleaning",
                Sequence(first_escape(),
                         Named("has history map?", IfThenElseStar(IsReuseInfoExist{}, begin_on_stored_map(),
                                                                  begin_on_new_map())))),
        key::OdomAfterCopied.set("true"), Delay{50});
}
