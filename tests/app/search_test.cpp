#include <algorithm>

#include "app_support.h"

namespace vemra::test {
namespace {

using nlohmann::json;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class TreeSearch : public testing::Test
{
protected:
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
    EXPECT_THAT(printed({"trees", "where", "BumpdirMerge"}),
                testing::UnorderedElementsAreArray(
                    places([](const json& node) { return node["id"] == "BumpdirMerge"; })));
    EXPECT_THAT(printed({"trees", "where", "EraseBlackboard", "--port", "key=finish_escape"}),
                testing::UnorderedElementsAreArray(places([](const json& node) {
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
                testing::EndsWith(in_back->substr(in_back->find(": ") + 2)));
}

TEST_F(TreeSearch, CallersFindsATreeInAllFormsOfItsPath)
{
    // Bare, with ".xml", behind a folder, and with both.
    EXPECT_THAT(printed({"trees", "callers", "Escape"}),
                testing::UnorderedElementsAreArray(places([](const json& node) {
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
        return testing::AllOf(testing::StartsWith("BTBack2cm:"),
                              HasSubstr(std::string(use) + "  BumpdirMerge"));
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
