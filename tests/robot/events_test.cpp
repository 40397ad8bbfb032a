#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "robot/events/json_lines.h"
#include "robot/events/timeline_printer.h"
#include "support/matchers.h"

namespace vemra::robot {
namespace {

void shortRun(EventLog& log)
{
    log.record(0, event::BatteryLevel{80});
    log.record(9, event::ModeChange{Mode::None, Mode::Charging});
    for (std::uint64_t frame = 10; frame < 13; ++frame)
        log.record(frame, event::Message{"charging"});
    log.record(14, event::Message{"two\nlines \"quoted\" \xff"});
    log.record(20, event::BatteryLevel{79});
    log.record(21, event::ChargeBegins{1, 79});
    log.record(22, event::StationCode{"DUST_BOX", true, true});
    log.record(23, event::Note{"map cleared", "map", {{"cleared", true}}});
    log.record(180001, event::BatteryLevel{70});
    log.finish({{"frames", 180002}});
}

TEST(JsonLines, BytesAreFixedAndNothingIsFolded)
{
    std::ostringstream out;
    JsonLines json(out);
    EventLog log;
    log.addSink(json);
    shortRun(log);
    EXPECT_EQ(out.str(), R"({"frame":0,"ms":0,"event":"body","text":"battery 80 %","battery":80}
{"frame":9,"ms":180,"event":"mode","text":"ChargingMode","from":"","to":"ChargingMode"}
{"frame":10,"ms":200,"event":"message","text":"charging"}
{"frame":11,"ms":220,"event":"message","text":"charging"}
{"frame":12,"ms":240,"event":"message","text":"charging"}
{"frame":14,"ms":280,"event":"message","text":"two\nlines \"quoted\" )"
                         "\xEF\xBF\xBD"
                         R"("}
{"frame":20,"ms":400,"event":"body","text":"battery 79 %","battery":79}
{"frame":21,"ms":420,"event":"body","text":"charges from 79 %","charge":1,"battery":79}
{"frame":22,"ms":440,"event":"error","text":"station: warning DUST_BOX raised","code":"DUST_BOX","raised":true}
{"frame":23,"ms":460,"event":"custom","text":"map cleared","what":"map","cleared":true}
{"frame":180001,"ms":3600020,"event":"body","text":"battery 70 %","battery":70}
{"report":{"frames":180002}}
)");
}

TEST(TimelinePrinter, FoldsWhatIsSaidFrameAfterFrameAndSkipsSingleBatteryPercents)
{
    std::ostringstream out;
    TimelinePrinter printer(out, TimelinePrinter::Colour::Off);
    EventLog log;
    log.addSink(printer);
    shortRun(log);
    EXPECT_EQ(out.str(),
              "   frame         time  what\n"
              "       0  0:00:00.000  body           battery 80 %\n"
              "       9  0:00:00.180  mode           ChargingMode\n"
              "      10  0:00:00.200  message        charging  x3\n"
              "      14  0:00:00.280  message        two lines \"quoted\" \xff\n"
              "      21  0:00:00.420  body           charges from 79 %\n"
              "      22  0:00:00.440  error          station: warning DUST_BOX raised\n"
              "      23  0:00:00.460  custom         map cleared\n"
              "  180001  1:00:00.020  body           battery 70 %\n"
              "\n180002 frames, 1:00:00.040\n");
}

TEST(TimelinePrinter, HasColoursOfItsOwnAloneAndEndsWithWhatTheRunCameTo)
{
    std::ostringstream out;
    TimelinePrinter printer(out, TimelinePrinter::Colour::On);
    EventLog log;
    log.addSink(printer);
    log.record(0, event::ModeChange{Mode::None, Mode::Sleep});
    log.record(1, event::Message{"a \033[31m trick"});
    log.finish({{"frames", 1},
                {"mode", "SleepMode"},
                {"battery", 7.6},
                {"leaves_without_service", {{"Rotate", 3}}}});
    EXPECT_THAT(out.str(),
                EndsWith("\n1 frames, 0:00:00.020, SleepMode, battery 8 %\n"
                         "leaves that nothing on this robot answers, and how often they were asked: "
                         "Rotate 3\n"));
    EXPECT_THAT(out.str(), HasSubstr("\033[1;34mmode"));
    EXPECT_THAT(out.str(), Not(HasSubstr("\033[31m")));
}

TEST(EventLog, RefusesTimeGoingBackAndFieldsThatHideItsOwn)
{
    EventLog log;
    LogKeeper kept([](const Event&) { return true; });
    log.addSink(kept);
    log.record(5, event::Note{"a"});
    EXPECT_THROW(log.record(4, event::Note{"b"}), std::logic_error);
    EXPECT_THROW(log.record(5, event::Note{"b", "", {{"frame", std::int64_t{1}}}}), std::logic_error);
    EXPECT_EQ(kept.entries().size(), 1U);
}

}  // namespace
}  // namespace vemra::robot
