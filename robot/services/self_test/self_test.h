#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// The self-test of the factory and the workshop. A test of one part takes half a second and fails while that
/// part has an error. Led by the board all parts are tested; led by the app, until the app ends it.
class SelfTestService final : public Service
{
public:
    explicit SelfTestService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    bool take(const Happening& what) override;

private:
    struct Part
    {
        const char* asked;  ///< leaf that passes unless the part is to be tested now; null: not asked
        const char* test;
        std::string_view code;  ///< health code of its error; empty: it has none
    };
    static const Part kParts[];

    void installSteps(leaf::LeafHost& host);
    BT::NodeStatus test(const Part& part, const BT::TreeNode& node);

    RobotParts parts_;
    bool led_by_app_ = false;
    bool stopped_ = false;
    bool begun_ = false;  ///< the first pass of a self-test is under way or over
    std::set<std::string_view> passed_;
    std::uint64_t test_began_ = 0;
};

}  // namespace vemra::robot
