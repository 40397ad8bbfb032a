#include "robot/host/start_field.h"

#include <utility>

namespace vemra::robot {

DockField fieldAtStart(const Dock& dock, const DockStart& start)
{
    DockField::Config config;
    config.exchanged = start.exchanged;
    config.dropouts = start.dropouts.value_or(config.dropouts);
    for (const AreaMm& mirror : start.mirrors) {
        config.mirrors.push_back({mirror.low, mirror.high});
    }
    return {dock, std::move(config)};
}

}  // namespace vemra::robot
