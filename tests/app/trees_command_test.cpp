#include <algorithm>

#include "app_support.h"

namespace vemra::test {
namespace {

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

TEST(Outline, ColoursOnlyWhereWanted)
{
    // Standard output is no terminal here.
    const std::string plain = vemraOutput({"trees", "show", "Back2cm"});
    EXPECT_THAT(plain, Not(HasSubstr("\033")));
    std::string colored = vemraOutput({"trees", "show", "Back2cm", "--color", "always"});
    EXPECT_THAT(colored, HasSubstr("\033[1;36mSubtreeCondition\033[0m"));
    // Without its colours it is the same.
    for (std::size_t at = 0; (at = colored.find('\033')) != std::string::npos;)
        colored.erase(at, colored.find('m', at) - at + 1);
    EXPECT_EQ(colored, plain);
}

TEST(TreesList, GivesTheSizesAsTheTreesAreBuilt)
{
    const auto nodes = exportedNodes();
    const auto list = nlohmann::json::parse(vemraOutput({"trees", "list", "--json"}));
    ASSERT_EQ(list.size(), nodes.size());
    std::size_t not_written = 0;
    for (const auto& tree : list) {
        EXPECT_EQ(tree["nodes"], nodes.at(tree["name"]).size());
        if (tree["name"] == "Back2cm") {
            EXPECT_EQ(tree["levels"], 3);
        }
        // A lone AlwaysFailure is a stand-in unless that is the tree.
        const bool stand_in = tree["nodes"] == 1 && nodes.at(tree["name"])[0]["id"] == "AlwaysFailure";
        EXPECT_EQ(tree["written"], !stand_in || tree["name"] == "AlwaysFailure") << tree["name"];
        not_written += tree["written"] == false;
    }
    const auto lines = linesOf(vemraOutput({"trees", "list"}));
    EXPECT_EQ(lines.size(), list.size());
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& line) { return line.ends_with(" not written"); }),
              static_cast<long>(not_written));
}

using nlohmann::json;

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

    const auto lines =
        linesOf(vemraOutput({"trees", "where", "BumpdirMerge", "--port", "out_bumpdir=bump_dir"}));
    const auto in_back = std::find_if(lines.begin(), lines.end(),
                                      [](const std::string& line) { return line.starts_with("BTBack2cm:"); });
    ASSERT_NE(in_back, lines.end());
    const std::size_t colon = in_back->find(':');
    const auto outline = linesOf(vemraOutput({"trees", "show", "BTBack2cm"}));
    EXPECT_THAT(outline.at(std::stoul(in_back->substr(colon + 1)) - 1),
                EndsWith(in_back->substr(in_back->find(": ") + 2)));
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

}  // namespace
}  // namespace vemra::test
