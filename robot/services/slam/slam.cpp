#include "robot/services/slam/slam.h"

#include <fmt/format.h>

#include <cmath>
#include <string>

#include "robot/base/clock.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr double kFullTurnDeg = 350;
constexpr double kFrameS = kFrameMs / 1000.0;
/// By then the map of the surroundings has its first scan.
constexpr std::uint64_t kFirstScanFrames = 10;
/// Standing still, or turning without getting round: then it looks from where it is.
constexpr std::uint64_t kLongTurnFrames = 1500;
/// A tree of the dialogue answers in the next frames; one that does not knows no dialogue.
constexpr std::uint64_t kNoAnswerFrames = 100;
constexpr std::uint64_t kLookInPassingFrames = 100;
constexpr std::uint64_t kAloneFrames = 6000;

}  // namespace

void SlamService::enter(Stage stage)
{
    stage_ = stage;
    turned_deg_ = 0;
    begun_ = parts_.state.frame;
}

void SlamService::update()
{
    const bool on_stored = store_.present && store_.in_use;
    if (on_stored_ != on_stored) {
        on_stored_ = on_stored;
        parts_.blackboard.set("map_id_in_map_ids", on_stored);
    }
    const bool knows = localisation_.localised();
    if (knows != knew_ && !knows) {
        parts_.report(event::Note{"SLAM has lost the place", "slam", {{"localised", false}}});
        // One that was pushed still has its place about right; one that was lifted may stand anywhere.
        if (parts_.body.wheelDrop().any()) {
            known_ = map_.known();
            known_resets_ = map_.resets();
        }
    } else if (knows) {
        known_.reset();
    }
    knew_ = knows;
    turned_deg_ += std::abs(parts_.body.turnRate()) * kFrameS;
}

bool SlamService::take(const Happening& what)
{
    const auto* mood = std::get_if<SlamMood>(&what);
    if (mood != nullptr)
        mood_ = *mood;
    return mood != nullptr;
}

void SlamService::steer()
{
    if (mood_ == SlamMood::Silent)
        return;
    BT::Blackboard& keys = parts_.blackboard;
    switch (stage_) {
        case Stage::FirstTurn:
        case Stage::Looking:
            if (turned_deg_ >= kFullTurnDeg || parts_.state.frame - begun_ >= kLongTurnFrames) {
                lookOnce();
            }
            break;
        case Stage::Told:
            keys.set("rotate_reloc_finish", "");
            if (parts_.state.frame - begun_ >= kNoAnswerFrames)
                enter(Stage::Alone);
            break;
        case Stage::Alone:
            lookInPassing();
            break;
        case Stage::Walking:
            // Reached or not, the tree reports.
            keys.erase("cant_reach_exp");
            break;
        case Stage::Again:
            if (!keys.contains("relocalize_start_move") && !keys.contains("static_exp") &&
                parts_.state.frame - begun_ >= kFirstScanFrames) {
                offerPoint();
            }
            break;
        case Stage::Off:
        case Stage::GoingBack:
        case Stage::Found:
        case Stage::GaveUp:
            break;
    }
}

bool SlamService::isSure()
{
    return search_.look(keepsKnown() ? *known_ : map_.known()) && mood_ != SlamMood::Unsure;
}

void SlamService::setAside()
{
    const bool keeps = keepsKnown();
    map_.setAside();
    if (keeps) {
        known_resets_ = map_.resets();
    }
}

void SlamService::bringBack()
{
    const bool keeps = keepsKnown();
    const std::uint64_t resets = map_.resets();
    map_.bringBack();
    if (keeps && map_.resets() != resets) {
        map_.occupancy() = *known_;
        known_resets_ = map_.resets();
    }
}

void SlamService::giveUp()
{
    parts_.report(event::Note{"SLAM does not know the place", "slam", {{"localised", false}}});
    enter(Stage::GaveUp);
}

void SlamService::lookInPassing()
{
    const std::uint64_t now = parts_.state.frame;
    if (now - begun_ >= kAloneFrames) {
        giveUp();
    } else if (now - looked_ >= kLookInPassingFrames) {
        looked_ = now;
        if (isSure())
            believe();
    }
}

void SlamService::lookOnce()
{
    BT::Blackboard& keys = parts_.blackboard;
    const bool sure = isSure();
    if (stage_ == Stage::FirstTurn) {
        if (sure) {
            believe();
        } else {
            enter(Stage::Told);
        }
        return;
    }
    if (sure) {
        keys.set("exp_reloc_result", "true");
        enter(Stage::GoingBack);
    } else if (search_.pointsLeft() && !crossing_done_) {
        keys.set("rotate_reloc_finish", "");
        keys.set("ready_exp_again", "");
        enter(Stage::Again);
    } else {
        keys.set("exp_reloc_result", "false");
        enter(Stage::GoingBack);
    }
}

// A place to look from; where the robot gets nowhere, a short way to and fro; else it gives up.
void SlamService::offerPoint()
{
    BT::Blackboard& keys = parts_.blackboard;
    keys.erase("ready_exp_again");
    keys.erase("rotate_reloc_finish");
    keys.set("reloc_back_pose", map_.pose().at);
    if (const auto point = search_.nextPoint()) {
        keys.set("slam_exp_pose", *point);
        keys.set("relocalize_start_move", "");
    } else if (!crossing_done_) {
        crossing_done_ = true;
        keys.set("static_exp", "");
    } else {
        giveUp();
        return;
    }
    enter(Stage::Walking);
}

void SlamService::reached(const std::string& what)
{
    if (what == "reach_reloc") {
        if (stage_ == Stage::Walking) {
            enter(Stage::Looking);
        }
    } else if (stage_ == Stage::GoingBack) {
        if (search_.pose() && mood_ != SlamMood::Unsure) {
            believe();
        } else {
            giveUp();
        }
    }
}

void SlamService::believe()
{
    const PoseMm pose = *search_.pose();
    bringBack();
    localisation_.believe(pose);
    parts_.report(
        event::Note{fmt::format("SLAM knows the place: {:.2f}, {:.2f} m", pose.at.x / 1e3, pose.at.y / 1e3),
                    "slam",
                    {{"localised", true}}});
    enter(Stage::Found);
}

BT::NodeStatus SlamService::relocalise(bool begins)
{
    if (begins) {
        crossing_done_ = false;
        search_.begin();
        enter(Stage::FirstTurn);
        for (const char* key : {"rotate_reloc_finish", "exp_reloc_result", "ready_exp_again", "slam_exp_pose",
                                "relocalize_start_move", "static_exp", "cant_reach_exp"}) {
            parts_.blackboard.erase(key);
        }
        // Who knows where it is has nothing to look for.
        if (localisation_.localised()) {
            enter(Stage::Found);
        }
    }
    steer();
    if (stage_ == Stage::Found || stage_ == Stage::GaveUp) {
        const bool found = stage_ == Stage::Found;
        store_.slam_holds = store_.slam_holds || (found && store_.present);
        stop();
        return passed(found);
    }
    return BT::NodeStatus::RUNNING;
}

void SlamService::stop()
{
    enter(Stage::Off);
}

void SlamService::install(leaf::LeafHost& host)
{
    host.builder("SlamActiveRelocalize", RunningAction::builder(
                                             [this](BT::TreeNode& node) {
                                                 return relocalise(node.status() != BT::NodeStatus::RUNNING);
                                             },
                                             [this] { stop(); }));
    host.action("SlamReachReloc", [this](BT::TreeNode& node) {
        reached(textOf(node, "send_cmd"));
        return BT::NodeStatus::SUCCESS;
    });
    // "start": the turn is over, and the robot draws a map of where it is. "end" comes on every way out, and
    // more than once.
    host.action("RelocMap", [this](BT::TreeNode& node) {
        if (textOf(node, "reloc_state") != "start") {
            bringBack();
            return BT::NodeStatus::SUCCESS;
        }
        if (stage_ == Stage::Told || stage_ == Stage::Alone) {
            setAside();
            // The first scan of the new map comes with the next frame.
            enter(Stage::Again);
        }
        return BT::NodeStatus::SUCCESS;
    });
    installMaps(host);
    host.action("SetOdometry", [this](BT::TreeNode& node) {
        const auto pose = poseOf(node, "pose");
        if (!pose) {
            return BT::NodeStatus::FAILURE;
        }
        parts_.body.setOdometry(*pose);
        return BT::NodeStatus::SUCCESS;
    });
    for (const char* leaf :
         {"SlamPrestart", "SlamPreend", "SlamCheckFastStart", "SlamCheckFastEnd", "UpdateSlamInfo"}) {
        host.action(leaf, [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    }
}

// Which map the places are told on: a new one, the one in hand, the stored one.
void SlamService::installMaps(leaf::LeafHost& host)
{
    host.action("SlamReset", [this](BT::TreeNode&) {
        localisation_.restart(poseOf(parts_.blackboard, "initial_pose").value_or(PoseMm{}));
        store_.in_use = false;
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SlamStart", [this](BT::TreeNode&) {
        store_.slam_holds = true;
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SlamStartFromReuse", [this](BT::TreeNode&) {
        if (!store_.present) {
            return BT::NodeStatus::FAILURE;
        }
        startFromStoredMap();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SlamPause", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.condition("SlamIsResumable", [this](BT::TreeNode&) { return passed(store_.slam_holds); });
}

// The map is taken over unseen: a docked robot stands where it stood on its dock when the map was stored.
void SlamService::startFromStoredMap()
{
    if (!store_.in_use && store_.map && store_.map->docked && parts_.state.contacts.touching()) {
        localisation_.believe(*store_.map->docked);
    }
    store_.slam_holds = true;
    store_.in_use = true;
}

}  // namespace vemra::robot
