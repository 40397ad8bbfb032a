#include "robot/host/passes.h"

namespace vemra::robot {

void Passes::take(const LogEntry& entry)
{
    begins_ = begins_ || std::holds_alternative<event::PassBegins>(entry.event);
}

void Passes::frame(std::uint64_t frame, const Body& body, SweptFloor& swept, PointMm from)
{
    if (!begins_)
        return;
    begins_ = false;
    ended_ = upTo(frame, body, swept, from);
    since_ = frame;
    run_mm_ = body.runMm();
    swept.beginPass();
}

std::vector<Passes::Pass> Passes::upTo(std::uint64_t frame, const Body& body, const SweptFloor& swept,
                                       PointMm from) const
{
    std::vector<Pass> all = ended_;
    all.push_back(
        {frame - since_, body.runMm() - run_mm_, swept.passShareOf(from).part(), swept.passAgainM2()});
    return all;
}

}  // namespace vemra::robot
