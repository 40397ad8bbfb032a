#include <fmt/format.h>

#include "robot/scenario/scenario_fields.h"

namespace vemra::robot {
namespace {

std::string modeName(const YamlFields& fields, std::string_view name, const std::string& text)
{
    if (!modeFromText(text) || text.empty()) {
        fields.fail(name, fmt::format("names of modes, as in ChargingMode, not \"{}\"", text));
    }
    return text;
}

std::vector<std::string> texts(const YamlFields& fields, std::string_view name)
{
    std::vector<std::string> read;
    for (const YAML::Node& node : fields.list(name)) {
        if (!node.IsScalar()) {
            fields.failAt(node, fmt::format("\"{}\": expected a list of texts", name));
        }
        read.push_back(node.Scalar());
    }
    return read;
}

class ExpectationReader
{
public:
    ExpectationReader(const YamlFields& fields, Expectation& into) : fields_(fields), into_(into) {}

    void read()
    {
        readState();
        readEvents();
        if (into_.state == ExpectedState{} && into_.events == ExpectedEvents{}) {
            fields_.failAt(fields_.whole(), "\"expect\": expected something to look for");
        }
    }

private:
    void text(std::string_view name, std::optional<std::string>& value) const
    {
        if (fields_.has(name)) {
            value = fields_.text(name);
        }
    }
    void flag(std::string_view name, std::optional<bool>& value) const
    {
        if (fields_.has(name)) {
            value = fields_.flag(name);
        }
    }

    void readState()
    {
        ExpectedState& state = into_.state;
        if (fields_.has("mode")) {
            state.mode = modeFromText(modeName(fields_, "mode", fields_.text("mode")));
        }
        text("task_state", state.task_state);
        text("robot_status", state.robot_status);
        text("light", state.light);
        text("station_light", state.station_light);
        text("error", state.error);
        flag("docked", state.docked);
        flag("powered_off", state.powered_off);
        if (fields_.has("keys")) {
            state.keys = keysOf(fields_, "keys").values;
        }
        state.absent = texts(fields_, "absent");
        if (fields_.has("coverage")) {
            state.coverage = fields_.number("coverage", 0, 100);
        }
        if (fields_.has("known")) {
            state.known = fields_.number("known", 0, 100);
        }
        if (fields_.has("floor") != fields_.has("swept")) {
            fields_.failAt(fields_.whole(),
                           "expected \"floor\" and \"swept\" together, as in floor: [0, 0, 2.5, 3], swept: "
                           "[95, 100]");
        }
        if (fields_.has("floor")) {
            state.floor = sweptBox();
        }
        if (fields_.has("place") != fields_.has("mm")) {
            fields_.failAt(fields_.whole(),
                           "expected \"place\" and \"mm\" together, as in place: [1.2, 3], mm: 100");
        }
        if (fields_.has("place")) {
            const std::vector<double> at = fields_.places("place", 2);
            state.place = PointMm{1e3 * at[0], 1e3 * at[1]};
            state.place_mm = fields_.number("mm", 0, 1e6);
        }
    }

    [[nodiscard]] ExpectedState::SweptBox sweptBox() const
    {
        const std::vector<double> edges = fields_.places("floor", 4);
        const std::vector<double> share = fields_.places("swept", 2);
        if (edges[0] >= edges[2] || edges[1] >= edges[3]) {
            fields_.fail("floor", "[x0, y0, x1, y1] with x0 < x1 and y0 < y1");
        }
        if (share[0] < 0 || share[0] > share[1] || share[1] > 100) {
            fields_.fail("swept", "the least and the most percent, as in [95, 100]");
        }
        return {{{1e3 * edges[0], 1e3 * edges[1]}, {1e3 * edges[2], 1e3 * edges[3]}}, share[0], share[1]};
    }

    void readEvents()
    {
        ExpectedEvents& events = into_.events;
        text("message", events.message);
        text("told", events.told);
        if (fields_.has("times")) {
            events.times = static_cast<std::uint64_t>(fields_.integer("times", 0, 1'000'000));
            if (events.message.has_value() == events.told.has_value()) {
                fields_.fail("times", "it with either \"message\" or \"told\"");
            }
        }
        if (fields_.has("modes")) {
            events.modes = texts(fields_, "modes");
            for (const std::string& mode : *events.modes) {
                modeName(fields_, "modes", mode);
            }
        }
        if (fields_.has("music")) {
            events.music = texts(fields_, "music");
        }
        if (into_.never && (events.times || events.modes || events.music)) {
            fields_.failAt(fields_.whole(), "\"never\": expected no \"times\", \"modes\" or \"music\" in it");
        }
    }

    const YamlFields& fields_;
    Expectation& into_;
};

const std::vector<std::string_view> kWhatMayBe{
    "mode",  "task_state", "robot_status", "light",    "station_light", "docked", "powered_off",
    "error", "keys",       "absent",       "coverage", "known",         "floor",  "swept",
    "place", "mm",         "message",      "told",     "times",         "modes",  "music"};

}  // namespace

Expectation readExpectation(const YamlFields& event, std::uint64_t frames)
{
    Expectation read;
    read.line = event.line("expect");
    read.from = framesOf(event, "at");
    read.text = asText(event.node("expect"));
    const YamlFields expect = event.fields("expect");
    read.never = expect.has("never");
    std::vector<std::string_view> allowed = kWhatMayBe;
    if (read.never) {
        allowed = {"never"};
    }
    allowed.push_back("within");
    expect.allowOnly(allowed);
    const YamlFields what = read.never ? expect.fields("never") : expect;
    if (read.never) {
        what.allowOnly(kWhatMayBe);
    }
    ExpectationReader(what, read).read();
    // What may not be is looked for to the end; so is what is counted. A state is to be there at once.
    const bool to_the_end = read.never || read.events != ExpectedEvents{};
    read.to = expect.has("within") ? read.from + framesOf(expect, "within")
              : to_the_end         ? frames - 1
                                   : read.from;
    if (read.to >= frames) {
        expect.fail("within", fmt::format("a time before the end of the run, {} frames", frames));
    }
    return read;
}

}  // namespace vemra::robot
