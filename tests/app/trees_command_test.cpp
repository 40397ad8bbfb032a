#include <algorithm>

#include "app_support.h"
#include "leaves/contract.h"

namespace vemra::test {
namespace {

using nlohmann::json;

TEST(Outline, HasANodeALineIndentedByItsLevel)
{
    EXPECT_THAT(
        linesOf(vemraOutput({"trees", "show", "Back2cm"})),
        ElementsAre("SequenceStar reset_on_failure=\"true\"",  //
                    "  Sequence",                              //
                    "    SubtreeCondition subtree_file_path=\"Escape\" expand_in_logger=\"false\"",
                    "    SubtreeCondition subtree_file_path=\"BTBack2cm.xml\" expand_in_logger=\"false\"",
                    "  SubtreeCondition subtree_file_path=\"AlwaysSuccess.xml\" expand_in_logger=\"false\""));
    EXPECT_THAT(vemraOutput({"trees", "show", "OwnLeaf", "--plugin", foreignTrees()}),
                Eq("Whistle \"a \\\\ label\" tune=\"a \\\"quoted\\\"\\n<tune> & </script>\"\n"));
    EXPECT_THAT(vemraOutput({"trees", "show", "Back2cm", "--color", "always"}),
                HasSubstr("\n    \033[1;36mSubtreeCondition\033[0m"));
    for (const auto& [name, nodes] : exportedNodes({"Escape", "RobotNode", "NavigateProc"}))
        EXPECT_EQ(linesOf(vemraOutput({"trees", "show", name})).size(), nodes.size()) << name;
}

TEST(Outline, DepthCutsAndSaysWhatIsBelow)
{
    EXPECT_THAT(linesOf(vemraOutput({"trees", "show", "Back2cm", "--depth", "2"})),
                ElementsAre(Not(HasSubstr("...")), "  Sequence  ... 2 children", Not(HasSubstr("..."))));
    EXPECT_THAT(linesOf(vemraOutput({"trees", "show", "Back2cm", "--depth=1"})),
                ElementsAre("SequenceStar reset_on_failure=\"true\"  ... 2 children"));
}

TEST(Outline, ExpandGoesIntoEachEnteredTreeOnce)
{
    const auto lines = linesOf(vemraOutput({"trees", "show", "Back2cm", "--expand"}));
    const std::vector<std::string> escape = linesOf(vemraOutput({"trees", "show", "Escape", "--expand"}));
    // The gate stands below the node that enters it, three levels down.
    ASSERT_GT(lines.size(), 3 + escape.size());
    EXPECT_EQ(lines[3], "      " + escape[0]);
    EXPECT_EQ(lines.back(), "    AlwaysSuccess");

    EXPECT_THAT(
        linesOf(vemraOutput({"trees", "show", "EntersItself", "--expand", "--plugin", foreignTrees()})),
        ElementsAre("Fallback",
                    "  SubtreeCondition subtree_file_path=\"reuse/EntersItself.xml\"  (as from line 1)",
                    "  SubtreeCondition subtree_file_path=\"Nowhere\"  (no such tree)"));
}

TEST(TreesList, GivesTheSizesAsTheTreesAreBuilt)
{
    const auto nodes = exportedNodes();
    const json list = json::parse(vemraOutput({"trees", "list", "--json"}));
    ASSERT_EQ(list.size(), nodes.size());
    for (const json& tree : list) {
        EXPECT_EQ(tree["nodes"], nodes.at(tree["name"]).size());
        EXPECT_TRUE(tree["name"] != "Back2cm" || tree["levels"] == 3);
        EXPECT_EQ(tree["written"], true) << tree["name"];
    }
    const std::string odd = std::string(VEMRA_LIB_DIR) + "/libodd_trees.so";
    EXPECT_THAT(linesOf(vemraOutput({"trees", "list", "--plugin", odd})),
                Contains(EndsWith(" not written")).Times(1));
}

struct TreeSearch : testing::Test
{
    // What `matches` finds in the exported trees, as places.
    template <class Match>
    static std::vector<std::string> places(Match matches)
    {
        std::vector<std::string> found;
        for (const auto& [tree, nodes] : exportedNodes())
            for (std::size_t i = 0; i < nodes.size(); ++i)
                if (matches(nodes[i]))
                    found.push_back(tree + ":" + std::to_string(i + 1));
        return found;
    }

    // The places that the command prints, sorted as places() has them.
    static std::vector<std::string> printed(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> found;
        for (const std::string& line : linesOf(vemraOutput(arguments)))
            found.push_back(line.substr(0, line.find(": ")));
        return found;
    }
};

TEST_F(TreeSearch, WhereFindsEachNodeOfATypeOnTheLineOfItsOutline)
{
    EXPECT_THAT(
        printed({"trees", "where", "BumpdirMerge"}),
        UnorderedElementsAreArray(places([](const json& node) { return node["id"] == "BumpdirMerge"; })));
    EXPECT_THAT(printed({"trees", "where", "EraseBlackboard", "--port", "key=finish_escape"}),
                UnorderedElementsAreArray(places([](const json& node) {
                    return node["id"] == "EraseBlackboard" && node["ports"]["key"] == "finish_escape";
                })));
}

TEST_F(TreeSearch, CallersFindsATreeInAllFormsOfItsPath)
{
    // Bare, with ".xml", behind a folder, and with both.
    EXPECT_THAT(printed({"trees", "callers", "Escape"}),
                UnorderedElementsAreArray(places([](const json& node) {
                    if (node["id"] != "SubtreeCondition")
                        return false;
                    const std::string path = node["ports"]["subtree_file_path"];
                    return path == "Escape" || path == "Escape.xml" || path.ends_with("/Escape") ||
                           path.ends_with("/Escape.xml");
                })));
}

TEST_F(TreeSearch, KeysTellsWhatNodesDoWithAKey)
{
    const auto escape = linesOf(vemraOutput({"trees", "keys", "finish_escape"}));
    EXPECT_THAT(escape, Contains("Escape:4: tests  BlackboardContains key=\"finish_escape\""));
    EXPECT_THAT(escape, Contains("Escape:8: erases  EraseBlackboard key=\"finish_escape\""));
    const auto bump = linesOf(vemraOutput({"trees", "keys", "bump_dir"}));
    EXPECT_THAT(bump, Contains("Escape:10: writes  SensorCheckBumped out_bump_dir=\"bump_dir\""));
    // Reads one way in and writes the same key: two uses at one place.
    const auto merges = [](const char* use) {
        return AllOf(StartsWith("BTBack2cm:"), HasSubstr(std::string(use) + "  BumpdirMerge"));
    };
    EXPECT_THAT(bump, Contains(merges("reads")));
    EXPECT_THAT(bump, Contains(merges("writes")));

    const json one = json::parse(vemraOutput({"trees", "keys", "finish_escape", "--json"}));
    EXPECT_EQ(one.size(), escape.size());
    for (const json& key : json::parse(vemraOutput({"trees", "keys", "--json"})))
        if (key["key"] == "finish_escape") {
            EXPECT_EQ(key["erases"], std::count_if(one.begin(), one.end(),
                                                   [](const json& use) { return use["use"] == "erases"; }));
        }
}

TEST_F(TreeSearch, DiffShowsWhatCameAndWent)
{
    const Folder folder;
    const std::filesystem::path file = folder / "old.json";
    vemraOutput({"trees", "export", "--out", file.string()});
    EXPECT_EQ(vemraOutput({"trees", "diff", file.string()}), "");

    json old = json::parse(std::ifstream(file));
    for (json& tree : old["trees"]) {
        if (tree["name"] == "Back2cm") {
            tree["nodes"][2]["ports"]["subtree_file_path"] = "EscapeOld";
            tree["nodes"].erase(4);
        }
        if (tree["name"] == "Escape")
            tree["name"] = "EscapeOld";
    }
    std::ofstream(file) << old;
    const ProgramResult result = runVemra({"trees", "diff", file.string(), "--color", "never"});
    EXPECT_EQ(result.exit_code, 1);
    const auto lines = linesOf(result.out);
    EXPECT_THAT(
        lines,
        ElementsAre(HasSubstr("- EscapeOld: gone, had "), "Back2cm: 5 nodes, had 4",
                    "  SequenceStar reset_on_failure=\"true\"", "    Sequence",
                    "-     SubtreeCondition subtree_file_path=\"EscapeOld\" expand_in_logger=\"false\"",
                    "+     SubtreeCondition subtree_file_path=\"Escape\" expand_in_logger=\"false\"",
                    "      SubtreeCondition subtree_file_path=\"BTBack2cm.xml\" expand_in_logger=\"false\"",
                    "+   SubtreeCondition subtree_file_path=\"AlwaysSuccess.xml\" expand_in_logger=\"false\"",
                    HasSubstr("+ Escape: new, "), "1 changed, 1 new, 1 gone"));
}

TEST(Leaves, ListHoldsTheContractWholeOrByTheBeginningOfAFamilysName)
{
    const json all = json::parse(vemraOutput({"leaves", "list", "--json"}));
    ASSERT_EQ(all.size(), leaf::all().size());
    EXPECT_EQ(linesOf(vemraOutput({"leaves", "list"})).size(), all.size());
    std::size_t docking = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i]["id"], leaf::all()[i].id);
        EXPECT_EQ(all[i]["ports"].size(), leaf::all()[i].ports.size()) << all[i]["id"];
        docking += leaf::all()[i].family.starts_with("Dock") ? 1U : 0U;
    }
    EXPECT_EQ(linesOf(vemraOutput({"leaves", "list", "--family", "dock"})).size(), docking);
}

TEST(Leaves, ShowTellsKindAndPorts)
{
    EXPECT_THAT(vemraOutput({"leaves", "show", "Rotate"}),
                AllOf(HasSubstr("Rotate  action, Motion"), HasSubstr("\n  angle_deg: float"),
                      HasSubstr("one of \"false\", \"true\"")));
    const json leaf = json::parse(vemraOutput({"leaves", "show", "BlackboardContains", "--json"}));
    EXPECT_EQ(leaf["kind"], "condition");
    EXPECT_EQ(leaf["ports"][0]["name"], "key");
    EXPECT_EQ(leaf["ports"][0]["type"], "key");
}

TEST(FirstLeaf, BacksTheRobotOff)
{
    const std::string program = std::string(VEMRA_BIN_DIR) + "/first_leaf";
    const ProgramResult freed = runProgram({program});
    EXPECT_EQ(freed.exit_code, 0) << freed.err;
    EXPECT_THAT(freed.out, AllOf(HasSubstr("draws on the map: BlockOnly"),
                                 HasSubstr("mm from the obstacle, backing"), HasSubstr("SUCCESS")));
    const ProgramResult lost = runProgram({program, "NoSuchTree"});
    EXPECT_EQ(lost.exit_code, 2);
    EXPECT_THAT(lost.err, HasSubstr("NoSuchTree"));
}

}  // namespace
}  // namespace vemra::test
