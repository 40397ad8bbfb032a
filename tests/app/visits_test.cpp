#include "app_support.h"

namespace vemra::test {
namespace {

using nlohmann::json;

const std::string kPlugin = std::string(VEMRA_LIB_DIR) + "/liblive_trees.so";

TEST(Live, WhatConstantsEndlessLoopsAndNobodySwitchOn)
{
    const auto lines = linesOf(vemraOutput({"trees", "list", "--plugin", kPlugin}));
    EXPECT_THAT(lines, ElementsAre(AllOf(StartsWith("Dead "), HasSubstr(" 2 nodes     0 live ")),
                                   AllOf(StartsWith("Living "), HasSubstr(" 5 nodes     4 live ")),
                                   AllOf(StartsWith("RobotNode "), HasSubstr(" 12 nodes     8 live "))));
    EXPECT_THAT(
        linesOf(vemraOutput({"trees", "list", "--off", "--plugin", kPlugin})),
        ElementsAre("Dead: off: no live node enters it",
                    "Living:5: AlwaysFailure  off by line 4: AlwaysSuccess",
                    "RobotNode:4: SubtreeCondition subtree_file_path=\"Dead\"  off by line 3: StringMatch "
                    "string_a=\"a\" string_b=\"b\"",
                    "RobotNode:8: Inverter  off by line 7: BoolMatch bool_a=\"true\" bool_b=\"true\"",
                    "RobotNode:12: AlwaysSuccess  off by line 10: Loop num_cycles=\"-1\""));
    EXPECT_THAT(linesOf(vemraOutput({"trees", "show", "RobotNode", "--off", "--plugin", kPlugin})),
                SizeIs(3));
    const std::string shown =
        vemraOutput({"trees", "show", "RobotNode", "--color", "always", "--plugin", kPlugin});
    EXPECT_THAT(shown, HasSubstr("\033[2mSubtreeCondition subtree_file_path=\"Dead\"\033[0m"));
    EXPECT_THAT(shown, Not(HasSubstr("\033[2mSubtreeCondition subtree_file_path=\"Living")));
}

TEST(Live, IsWhatARunComesToAndNothingElse)
{
    const Folder folder;
    const std::string file = folder / "visits.json";
    vemraOutput({"run", "--visits", file, "--frames", "3000"});
    const json report = json::parse(vemraOutput({"trees", "visits", file, "--json"}));
    EXPECT_GT(report["visited"], 500);
    for (const json& tree : report["trees"])
        for (const json& node : tree["nodes"])
            EXPECT_TRUE(node["live"] == true || node["ticks"] == 0) << tree["name"] << " " << node;
}

struct VisitsOf : testing::Test
{
    VisitsOf() : file_(folder_ / "visits.json")
    {
        vemraOutput({"run", "--plugin", kPlugin, "--tree", "RobotNode", "--frames", "5", "--visits", file_});
    }

    static ProgramResult visits(std::vector<std::string> words)
    {
        words.insert(words.begin(), {"trees", "visits", "--plugin", kPlugin});
        return runVemra(words);
    }

    Folder folder_;
    std::string file_;
};

TEST_F(VisitsOf, ManyRunsAreAddedUp)
{
    const json report = json::parse(visits({file_, file_, "--json"}).out);
    const json& nodes = report["trees"][2]["nodes"];
    EXPECT_EQ(nodes[0]["running"], 10) << nodes;
    EXPECT_EQ(nodes[0]["halts"], 0);
    EXPECT_EQ(nodes[2]["failure"], 2);
    EXPECT_EQ(nodes[10]["failure"], 10) << "a round of the loop in each frame";
    EXPECT_EQ(nodes[10]["success"], 0);
    EXPECT_EQ(report["never_visited"].size(), 0U);
    EXPECT_THAT(report["never_both_ways"].dump(), AllOf(HasSubstr("\"index\":10"), HasSubstr("Living")));
    EXPECT_EQ(report["never_both_ways"].size(), 2U) << "constants are as they are";
}

TEST_F(VisitsOf, TheOutlineShowsCountsAndWhatIsOff)
{
    const auto lines = linesOf(visits({file_}).out);
    EXPECT_EQ(lines.back(), "visited 12 of 12 live nodes");
    EXPECT_THAT(lines, Contains("RobotNode: visited 8 of 8 live nodes"));
    EXPECT_THAT(
        lines, Contains("        5         0         5         0       0      BlackboardContains key=\"x\""));
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("      off"), HasSubstr("Inverter"))));
    EXPECT_THAT(lines, Contains("  RobotNode:11: BlackboardContains key=\"x\"  (only FAILURE, 5 times)"));
    EXPECT_THAT(linesOf(visits({file_, "--tree", "Living"}).out).back(), "visited 4 of 4 live nodes");
    EXPECT_THAT(linesOf(visits({file_, "--summary"}).out),
                Contains(AllOf(StartsWith("Dead "), HasSubstr("not entered"))));

    const std::string nothing = folder_.write("nothing.json", R"({"trees":{}})").string();
    const auto missed = linesOf(visits({nothing}).out);
    EXPECT_THAT(missed, Contains("  RobotNode:1: SequenceStar  (and 7 below)"));
    EXPECT_EQ(missed.back(), "visited 0 of 12 live nodes");
}

TEST_F(VisitsOf, FilesThatDoNotFitAreRefused)
{
    const auto refused = [this](const std::string& text) {
        const ProgramResult result = visits({folder_.write("bad.json", text).string()});
        EXPECT_EQ(result.exit_code, 2);
        return result.err;
    };
    EXPECT_THAT(refused("{"), HasSubstr("bad.json: "));
    EXPECT_THAT(refused("[]"), HasSubstr("expected an object with \"trees\""));
    EXPECT_THAT(refused(R"({"trees":{"Nope":[]}})"), HasSubstr("tree \"Nope\": there is no such tree"));
    EXPECT_THAT(refused(R"({"trees":{"Dead":[[0,"Sequence",1]]}})"),
                HasSubstr("expected rows of index, type"));
    EXPECT_THAT(refused(R"({"trees":{"Dead":[[1,"Stop",1,1,0,0,0]]}})"), HasSubstr("node 1 was Stop there"));
    EXPECT_THAT(refused(R"({"trees":{"Dead":[[9,"Stop",1,1,0,0,0]]}})"), HasSubstr("node 9 was Stop there"));
}

TEST(Watch, PrintsWhatIsTickedWheneverItChanges)
{
    const auto watched = [](const std::string& part) {
        return linesOf(vemraOutput(
            {"run", "--plugin", kPlugin, "--tree", "RobotNode", "--frames", "4", "--watch", part}));
    };
    const auto lines = watched("RobotNode");
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const auto& line) { return line.starts_with("frame "); }),
              2);
    EXPECT_EQ(lines[0], "frame 0  0:00:00.000  RobotNode");
    EXPECT_EQ(lines[1], "  runs: RobotNode:10: Loop num_cycles=\"-1\"");
    EXPECT_EQ(lines[2], "  RUNNING  SequenceStar");
    EXPECT_THAT(lines, Contains("  FAILURE      StringMatch string_a=\"a\" string_b=\"b\""));
    EXPECT_THAT(watched("RobotNode:2"),
                ElementsAre("frame 0  0:00:00.000  RobotNode", "  SUCCESS  IfThenElseStar",
                            "  FAILURE    StringMatch string_a=\"a\" string_b=\"b\"",
                            "  SUCCESS    SubtreeCondition subtree_file_path=\"Living.xml\"",
                            "frame 1  0:00:00.020  RobotNode", "  not ticked"));
    for (const char* bad : {"RobotNode:", "RobotNode:x", "RobotNode:0", "RobotNode:99", "Nope"})
        EXPECT_EQ(runVemra({"run", "--plugin", kPlugin, "--tree", "RobotNode", "--watch", bad}).exit_code, 2)
            << bad;
}

}  // namespace
}  // namespace vemra::test
