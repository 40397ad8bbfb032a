#pragma once

#include <memory>
#include <string>

#include "robot/body/body.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

/// A motion over many ticks. Each tick gives the wheels an order; when it ends or is halted they stop, unless
/// another motion has taken them over by then.
class MotionAction : public BT::ActionNodeBase
{
public:
    MotionAction(const std::string& name, const BT::NodeParameters& ports, Body& body)
        : ActionNodeBase(name, ports), body_(body)
    {}

    void halt() override { body_.release(this); }

    /// Makes nodes of a class whose constructor takes name, ports, body and `more`, which are kept by
    /// reference.
    template <class T, class... More>
    static BT::NodeBuilder builder(Body& body, More&... more)
    {
        return [&body, &more...](const std::string& name, const BT::NodeParameters& ports) {
            return BT::makeNode<T>(name, ports, body, more...);
        };
    }

protected:
    /// Reads the ports and remembers where the motion begins; false: it cannot begin.
    virtual bool begin() { return true; }
    /// One tick: an order to the wheels, or the end.
    virtual BT::NodeStatus advance() = 0;

    void drive(WheelSpeeds speeds) { body_.drive(speeds, this); }
    void driveArc(double forward_mm_s, double turn_deg_s) { body_.driveArc(forward_mm_s, turn_deg_s, this); }
    [[nodiscard]] Body& body() { return body_; }

private:
    BT::NodeStatus tick() final
    {
        BT::NodeStatus result = BT::NodeStatus::FAILURE;
        if (status() == BT::NodeStatus::RUNNING || begin()) {
            result = advance();
        }
        if (result != BT::NodeStatus::RUNNING) {
            body_.release(this);
        }
        return result;
    }

    Body& body_;
};

}  // namespace vemra::robot
