#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

#include "robot/files.h"
#include "support/program.h"

namespace vemra::robot {
namespace {

using test::ProgramResult;
using test::runVemra;

struct Runs
{
    ProgramResult result;
    std::string bytes;
    std::vector<nlohmann::json> lines;
    int good = 0;
};

Runs batch(std::vector<std::string> words)
{
    const Folder folder;
    const std::string file = (folder / "runs.jsonl").string();
    words.insert(words.begin(), "batch");
    words.insert(words.end(), {"--out", file});
    Runs runs{runVemra(words), {}, {}, 0};
    if (runs.result.exit_code != 0)
        return runs;
    runs.bytes = bytesOf(file);
    for (const std::string& line : test::linesOf(runs.bytes)) {
        runs.lines.push_back(nlohmann::json::parse(line));
        runs.good += runs.lines.back().at("good").get<bool>() ? 1 : 0;
    }
    return runs;
}

std::string sample(const std::string& file)
{
    return std::string(VEMRA_SOURCE_DIR) + "/scenarios/" + file;
}

TEST(BatchCommand, EachSearchDocksFromMostPlacesBeforeItsDock)
{
    for (const std::string tree : {"SearchForCharger_lds", "SearchForCharger_vslam",
                                   "SearchForChargerWithoutMap", "SearchForCharger_CleanDock"}) {
        const Runs runs = batch({"--poses", "12", "--tree", tree});
        EXPECT_THAT(runs.good, Ge(11)) << tree << '\n' << runs.result.out << runs.result.err;
    }
}

TEST(BatchCommand, TheWayHomeBeginsAnywhereInTheHome)
{
    const Runs runs =
        batch({"--poses", "6", "--anywhere", "--scenario", sample("home_over_a_known_map.yaml")});
    EXPECT_EQ(runs.good, 6) << runs.result.out << runs.result.err;
    double farthest_mm = 0;
    for (const auto& line : runs.lines)
        farthest_mm = std::max(farthest_mm, line.at("away_mm").get<double>());
    EXPECT_THAT(farthest_mm, Ge(3000)) << runs.result.out;
    EXPECT_THAT(batch({"--poses", "1", "--anywhere", "--within", "2"}).result.err, HasSubstr("--within"));
}

TEST(BatchCommand, GivesTheSameRunsWhoeverPlaysThemAndTellsHowToPlayThemAgain)
{
    const Runs two = batch({"--poses", "3", "--seed", "7", "--jobs", "2"});
    ASSERT_EQ(two.lines.size(), 3U) << two.result.err;
    EXPECT_EQ(batch({"--poses", "3", "--seed", "7", "--jobs", "1"}).bytes, two.bytes);
    std::vector<std::string> again;
    std::istringstream words(two.lines[1].at("replay").get<std::string>());
    for (std::string word; words >> word;)
        again.push_back(word);
    ASSERT_EQ(again[0], "vemra");
    again.erase(again.begin());
    again.emplace_back("--json");
    const ProgramResult run = runVemra(again);
    const auto frame = two.lines[1].at("frames").get<int>() - 1;
    EXPECT_THAT(run.out, HasSubstr("{\"frame\":" + std::to_string(frame)));
    EXPECT_THAT(run.out, HasSubstr("on the dock"));
}

TEST(BatchCommand, SaysWhyASearchAtAWrongDockWasInVainAndDrawsWhereEachBegan)
{
    const Folder folder;
    const std::string picture = (folder / "runs.png").string();
    // Its emitters are exchanged: nobody docks at it.
    const std::string search =
        folder
            .write("search.yaml",
                   "name: Search\nhome: " + std::string(VEMRA_SOURCE_DIR) +
                       "/homes/room/room.yaml\ntree: SearchForCharger_lds\n"
                       "start: {on_dock: false, dock: {exchanged: true}}\nframes: 90s\nevents: []\n")
            .string();
    const Runs wrong = batch({"--poses", "6", "--scenario", search, "--picture", picture});
    ASSERT_EQ(wrong.lines.size(), 6U) << wrong.result.err;
    for (const auto& line : wrong.lines)
        EXPECT_TRUE(line.contains("why") && !line.at("good").get<bool>()) << line;
    EXPECT_THAT(wrong.result.out, HasSubstr("final approaches"));
    EXPECT_THAT(bytesOf(picture), StartsWith("\x89PNG"));
    EXPECT_THAT(batch({"--homes", "1", "--picture", picture}).result.err, HasSubstr("goes with --poses"));
}

TEST(BatchCommand, AHomeMadeFromASeedIsCleanedAndTheRobotComesHome)
{
    const Folder folder;
    const Runs runs = batch({"--homes", "1", "--seed", "13", "--keep", (folder / "homes").string()});
    ASSERT_EQ(runs.lines.size(), 1U) << runs.result.err;
    const auto& line = runs.lines[0];
    EXPECT_EQ(line.at("ended"), "docked");
    EXPECT_THAT(line.at("coverage").get<double>(), Ge(0.95));
    EXPECT_THAT(line.at("replay").get<std::string>(), HasSubstr("home_13.scenario.yaml"));
    EXPECT_EQ(
        runVemra({"run", "--scenario", (folder / "homes/home_13.scenario.yaml").string(), "--frames", "50"})
            .exit_code,
        0);
}

TEST(BatchCommand, RefusesWhatItCannotPlay)
{
    EXPECT_THAT(batch({}).result.err, HasSubstr("expected --homes N, --poses N, --lost N or --shrink SEED"));
    EXPECT_THAT(batch({"--poses", "2", "--tree", "SearchForCharge_lds"}).result.err,
                HasSubstr("SearchForCharger_lds"));
    EXPECT_EQ(batch({"--poses", "0"}).result.exit_code, 2);
}

}  // namespace
}  // namespace vemra::robot
