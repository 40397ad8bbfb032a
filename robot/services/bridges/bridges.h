#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/services/blackboard/navigation_plan.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// What came of the bridges that were tried. A bridge is known by where its ends lie.
class BridgeBook
{
public:
    struct Entry
    {
        PointMm from;
        PointMm to;
        int failures = 0;
    };

    /// Another failure, or none any more.
    void record(const Bridge& bridge, bool crossed);
    /// All get another chance.
    void forgive();
    /// Grows with each change.
    [[nodiscard]] std::uint64_t version() const { return version_; }

    [[nodiscard]] int failuresOf(PointMm from, PointMm to) const;
    /// The most failures of a bridge that passes by a place.
    [[nodiscard]] int failuresAt(PointMm place) const;

private:
    [[nodiscard]] std::optional<std::size_t> find(PointMm from, PointMm to) const;

    std::vector<Entry> entries_;
    std::uint64_t version_ = 0;
};

/// Where steps were really crossed. A bridge over a step is known by where its ends lie, either way.
class StepCrossings
{
public:
    struct Ends
    {
        PointMm from;
        PointMm to;
    };

    /// A bridge was crossed from one place to another.
    void learn(const Ends& bridge, const Ends& crossed);
    /// The ends to take instead, where they were learnt otherwise than told.
    [[nodiscard]] std::optional<Ends> better(const Ends& bridge) const;
    void forget(const Ends& bridge);

private:
    struct Learnt
    {
        Ends bridge;
        Ends crossed;
    };
    std::vector<Learnt> learnt_;
};

/// Leaves that take bridges apart, watch a crossing and write its outcome into the book. The bridge in hand
/// is the one taken by `BridgeDestructor`, until `UpdateBridgeCost` has booked it: searches and follows
/// within the crossing change `navigation_bridge`. A crossing that went well is known by the key
/// `cross_bridge_success`. A temporary bridge that fails leaves `tmp_bridge_cross_failed`.
class BridgeService final : public Service
{
public:
    BridgeService(const RobotParts& parts, const RobotMap& map, const SensorSwitches& switches)
        : parts_(parts), map_(map), switches_(switches)
    {}

    void install(leaf::LeafHost& host) override;

    [[nodiscard]] const BridgeBook& book() const { return book_; }

private:
    void installCrossing(leaf::LeafHost& host);
    void installSteps(leaf::LeafHost& host);
    [[nodiscard]] BridgePtr inHand() const;
    void settle();
    [[nodiscard]] bool crossed(const BT::TreeNode& node) const;
    [[nodiscard]] bool stillFits(const Bridge& bridge) const;

    RobotParts parts_;
    const RobotMap& map_;
    const SensorSwitches& switches_;
    BridgeBook book_;
    StepCrossings steps_;
    BridgePtr crossing_;
    int frames_across_ = 0;
};

}  // namespace vemra::robot
