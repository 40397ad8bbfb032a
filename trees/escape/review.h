#pragma once

#include <vector>

#include "trees/idioms.h"

namespace vemra::trees {

// A review is a short break of a wall follow: the robot backs away from a spot that it has doubts about,
// turns so that the laser or the camera sweeps it, and drives back to where it was.

/// One review step of a wall follow: each of `detectors` gets its turn and moves the robot only where it
/// finds something to look at. Without the flag `enable` the step fails. A step that has moved the robot
/// leaves `review_halt_token`, which lets the follow rest.
Node review_step(const Key& enable, std::vector<Node> detectors);

/// The way back and forth of a review, in steps for a `SequenceStar`: backwards until the robot is
/// `back_off_mm` away, hits something behind or 100 frames are over, then `look`, then forward for as many
/// frames as it took back.
std::vector<Node> there_and_back(int back_off_mm, int mm_s, const std::vector<Node>& look);

/// Marks whether it is a review that moves the robot: 1 or 0.
Node under_review(int yes);

/// Starts the count of frames that the robot drives in an arc.
Node start_arc_count();

/// `motion` for at most 60 frames, counted.
Node counted_arc(const Node& motion);

/// How the gate in front of a backward motion differs between the reviews.
struct BackingGate
{
    /// The camera's arc leads the side brush past things that its point cloud would take for bumps.
    bool ignore_side_brush = false;

    /// Keeps the pose at a bump.
    bool note_pose_of_bump = false;

    /// A bump in front is not the end of the backing: once the robot is free of it, it goes on.
    bool go_on_after_front_bump = false;

    /// The camera may have seen enough before the motion is over.
    bool stop_when_scanned = false;
};

/// Stands in front of a backward motion and fails when it must end: after a bump behind, or after a bump
/// elsewhere from which the robot has then stepped back.
Node backing_gate(const BackingGate& gate);

}  // namespace vemra::trees
