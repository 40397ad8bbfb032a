#pragma once

#include "leaves/host/host.h"

namespace vemra::robot {

/// Leaves that reckon with points, rectangles and lines and know nothing else. A line is a SegmentMm on the
/// blackboard. A leaf whose input is not there fails.
void installPointLeaves(leaf::LeafHost& host);

}  // namespace vemra::robot
