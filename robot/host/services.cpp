#include "robot/host/services.h"

#include <utility>

#include "robot/services/blackboard/timers.h"
#include "robot/services/cleaning/cleaning_log.h"
#include "robot/services/cleaning/cleaning_system.h"
#include "robot/services/cleaning/fittings.h"
#include "robot/services/coverage/coverage.h"
#include "robot/services/dock/dock_contacts.h"
#include "robot/services/dock/dock_place.h"
#include "robot/services/dock_signal/dock_signal.h"
#include "robot/services/escape/escape.h"
#include "robot/services/health/health.h"
#include "robot/services/maps/maps.h"
#include "robot/services/modes/modes.h"
#include "robot/services/modes/remote_control.h"
#include "robot/services/motion/motion.h"
#include "robot/services/navigation/navigation.h"
#include "robot/services/panel/commands.h"
#include "robot/services/panel/notices.h"
#include "robot/services/panel/settings.h"
#include "robot/services/power/power.h"
#include "robot/services/self_test/factory_run.h"
#include "robot/services/self_test/self_test.h"
#include "robot/services/sensing/attitude.h"
#include "robot/services/sensing/gyro_watch.h"
#include "robot/services/sensing/sensing.h"
#include "robot/services/sensing/sensing_review.h"
#include "robot/services/slam/slam.h"
#include "robot/services/sound_and_light/sound_and_light.h"
#include "robot/services/station/station.h"
#include "robot/services/wall_following/wall_following.h"

namespace vemra::robot {

Services makeServices(const RobotParts& parts, Knowledge& knowledge, const ScenarioStart& start)
{
    Services services;
    const auto add = [&services](auto service) { services.push_back(std::move(service)); };
    add(std::make_unique<AttitudeService>(parts));
    add(std::make_unique<CleaningLogService>(parts, knowledge.map));
    add(std::make_unique<CleaningSystemService>(parts));
    add(std::make_unique<CommandService>(parts, start));
    add(std::make_unique<DockContactService>(parts));
    add(std::make_unique<DockPlace>(parts, knowledge.localisation, knowledge.store, knowledge.map,
                                    knowledge.switches));
    auto dock_signal = std::make_unique<DockSignalService>(parts, knowledge.localisation);
    const DockSignalService& dock = *dock_signal;
    add(std::move(dock_signal));
    add(std::make_unique<FactoryRun>(parts, knowledge.localisation));
    add(std::make_unique<FittingService>(parts));
    add(std::make_unique<GyroWatch>(parts));
    add(std::make_unique<HealthService>(parts));
    add(std::make_unique<MapService>(parts, knowledge.map, knowledge.store, start));
    add(std::make_unique<ModeService>(parts));
    add(std::make_unique<MotionService>(parts, knowledge.localisation));
    auto navigation = std::make_unique<NavigationService>(parts, knowledge.map, knowledge.switches);
    const BorderLeaves& borders = navigation->borders();
    const StepLeaves& steps = navigation->steps();
    add(std::make_unique<CoverageService>(parts, knowledge.map, knowledge.store, knowledge.switches,
                                          navigation->search()));
    add(std::make_unique<WallFollowing>(parts, navigation->view(), navigation->search()));
    add(std::move(navigation));
    add(std::make_unique<NoticeService>(parts));
    add(std::make_unique<PowerService>(parts, start));
    add(std::make_unique<RemoteControl>(parts));
    add(std::make_unique<ReviewService>(parts, knowledge.localisation));
    add(std::make_unique<SelfTestService>(parts));
    auto sensing = std::make_unique<SensingService>(parts, knowledge.localisation, knowledge.switches,
                                                    knowledge.map.virtualWalls());
    sensing->addEdge("DockField", [&dock] { return dock.edgeOfDock(); });
    borders.feltBy(*sensing);
    steps.feltBy(*sensing);
    add(std::make_unique<EscapeService>(parts, *sensing));
    add(std::move(sensing));
    add(std::make_unique<SettingsService>(parts, start));
    add(std::make_unique<SlamService>(parts, knowledge.localisation, knowledge.map, knowledge.store,
                                      knowledge.switches));
    add(std::make_unique<SoundAndLightService>(parts));
    add(std::make_unique<StationService>(parts));
    add(std::make_unique<TimerService>(parts));
    return services;
}

}  // namespace vemra::robot
