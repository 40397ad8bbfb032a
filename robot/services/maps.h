#pragma once

#include "leaves/host/host.h"
#include "robot/services/report.h"

namespace vemra::robot {

/// The stored map of the home and SLAM's part in opening and closing it.
class MapService
{
public:
    struct Config
    {
        bool stored = true;        ///< a map of the home was saved by an earlier run
        double check_result = 0;   ///< what SLAM's check of it gives; 0 is good
        bool segment_map = true;   ///< it can be opened as a map of rooms
        bool segments_ok = true;   ///< the list of maps is sound
        bool reuse_enabled = true; ///< the user's setting
    };

    MapService(BT::Blackboard& blackboard, Report report, const Config& config);

    void install(leaf::LeafHost& host);

    [[nodiscard]] bool stored() const { return config_.stored; }

private:
    void installSlam(leaf::LeafHost& host);
    void presetKeys();
    void cleanComplete();

    BT::Blackboard& blackboard_;
    Report report_;
    Config config_;
    bool slam_running_ = false;
    bool slam_resumable_ = false;
};

}  // namespace vemra::robot
