#include "robot/host/services.h"

#include <utility>

#include "robot/services/cleaning_system.h"
#include "robot/services/commands.h"
#include "robot/services/dock_contacts.h"
#include "robot/services/escape.h"
#include "robot/services/fittings.h"
#include "robot/services/health.h"
#include "robot/services/maps.h"
#include "robot/services/modes.h"
#include "robot/services/motion.h"
#include "robot/services/power.h"
#include "robot/services/self_test.h"
#include "robot/services/sensing.h"
#include "robot/services/settings.h"
#include "robot/services/sound_and_light.h"
#include "robot/services/station.h"
#include "robot/services/timers.h"

namespace vemra::robot {

std::vector<std::unique_ptr<Service>> makeServices(const RobotParts& parts, Knowledge& knowledge,
                                                   const ScenarioStart& start)
{
    std::vector<std::unique_ptr<Service>> services;
    services.push_back(std::make_unique<CleaningSystemService>(parts));
    services.push_back(std::make_unique<CommandService>(parts, start));
    services.push_back(std::make_unique<DockContactService>(parts));
    services.push_back(std::make_unique<FittingService>(parts));
    services.push_back(std::make_unique<HealthService>(parts));
    services.push_back(std::make_unique<MapService>(parts, start));
    services.push_back(std::make_unique<ModeService>(parts));
    services.push_back(std::make_unique<MotionService>(parts, knowledge.localisation));
    services.push_back(std::make_unique<PowerService>(parts, start));
    services.push_back(std::make_unique<SelfTestService>(parts));
    auto sensing = std::make_unique<SensingService>(parts, knowledge.localisation, knowledge.switches,
                                                    knowledge.map.virtualWalls());
    services.push_back(std::make_unique<EscapeService>(parts, *sensing));
    services.push_back(std::move(sensing));
    services.push_back(std::make_unique<SettingsService>(parts, start));
    services.push_back(std::make_unique<SoundAndLightService>(parts));
    services.push_back(std::make_unique<StationService>(parts));
    services.push_back(std::make_unique<TimerService>(parts));
    return services;
}

}  // namespace vemra::robot
