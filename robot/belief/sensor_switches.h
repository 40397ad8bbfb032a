#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vemra::robot {

/// Which sensors and virtual edges count at present. Each is on or off by itself; a tree switches one for as
/// long as it needs that. The youngest of several such scopes decides, unless an older one is locked.
class SensorSwitches
{
public:
    void open(const void* scope, std::string sensor, bool on, bool locked)
    {
        close(scope);
        scopes_.push_back({scope, std::move(sensor), on, locked});
    }
    /// A scope that is not open is left alone.
    void close(const void* scope)
    {
        std::erase_if(scopes_, [scope](const Scope& open) { return open.id == scope; });
    }

    [[nodiscard]] bool isOn(std::string_view sensor) const
    {
        bool on = onByItself(sensor);
        for (const Scope& scope : scopes_) {
            if (scope.sensor == sensor) {
                on = scope.on;
                if (scope.locked) {
                    break;
                }
            }
        }
        return on;
    }

    [[nodiscard]] static bool onByItself(std::string_view sensor)
    {
        constexpr std::array<std::string_view, 6> off = {
            "BackWardsBump",         "FollowUncleanedContour", "FollowWallVirtualWallMap",
            "SegmentVirtualWallMap", "SubregionBorder",        "SubregionVirtualWall"};
        return std::find(off.begin(), off.end(), sensor) == off.end();
    }

private:
    struct Scope
    {
        const void* id;
        std::string sensor;
        bool on;
        bool locked;
    };

    std::vector<Scope> scopes_;  ///< the oldest first
};

}  // namespace vemra::robot
