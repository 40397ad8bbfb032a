#include "app_support.h"

namespace vemra::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

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
                testing::Eq("Whistle \"a \\\\ label\" tune=\"a \\\"quoted\\\"\\n<tune> & more\"\n"));
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

}  // namespace
}  // namespace vemra::test
