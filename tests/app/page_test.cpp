// The page of all trees, in a browser.

#include "app_support.h"

namespace vemra::test {
namespace {

using nlohmann::json;

std::string unescaped(std::string text)
{
    for (const auto& [entity, sign] :
         {std::pair("&lt;", "<"), {"&gt;", ">"}, {"&nbsp;", " "}, {"&amp;", "&"}})
        for (std::size_t at = 0; (at = text.find(entity, at)) != std::string::npos; ++at)
            text.replace(at, std::string_view(entity).size(), sign);
    return text;
}

// What page_checks.js saw on a page while it did what is called `what` there.
json seenOn(const std::filesystem::path& page, const std::string& what)
{
    const Folder folder;
    const std::string script = bytesOf(std::string(VEMRA_SOURCE_DIR) + "/tests/app/page_checks.js");
    const auto checked = folder.write(
        "page.html", bytesOf(page) + "<script>const WHAT = \"" + what + "\";\n" + script + "</script>");
    const ProgramResult browser =
        runProgram({"chromium-headless-shell", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                    "--user-data-dir=" + (folder / "profile").string(), "--window-size=1400,900",
                    "--virtual-time-budget=5000", "--dump-dom", "file://" + checked.string()});
    const std::size_t from = browser.out.find("SEEN");
    const std::size_t to = browser.out.rfind("SEEN");
    if (browser.exit_code != 0 || from == to)
        throw std::runtime_error("the browser did not say what it saw: " + browser.out.substr(0, 500) +
                                 browser.err);
    json seen = json::parse(unescaped(browser.out.substr(from + 4, to - from - 4)));
    EXPECT_FALSE(seen.contains("fault")) << seen["fault"];
    return seen;
}

TEST(Page, ShowsAllTreesAndFindsWhatTheyHold)
{
    const Folder folder;
    const std::string page = folder / "trees.html";
    EXPECT_EQ(vemraOutput({"trees", "show", "--html", page}), "");
    EXPECT_THAT(bytesOf(page), AllOf(Not(HasSubstr(" src=")), Not(HasSubstr("://"))));
    const json seen = seenOn(page, "robot");

    const auto trees = exportedNodes();
    std::size_t nodes = 0;
    std::size_t says = 0;
    std::vector<std::string> saying;
    for (const auto& [name, rows] : trees) {
        nodes += rows.size();
        std::size_t here = 0;
        for (const json& node : rows)
            here += node["id"] == "SaySomething";
        says += here;
        if (here > 0)
            saying.push_back(name);
    }
    EXPECT_EQ(seen["opened"], "RobotNode");
    EXPECT_EQ(seen["trees"], trees.size());
    EXPECT_EQ(seen["allNodes"], nodes);
    EXPECT_EQ(seen["rowsOfFirst"], trees.at("RobotNode").size());
    EXPECT_EQ(seen["lastRow"].get<std::string>().find(std::to_string(trees.at("RobotNode").size())), 0U);
    EXPECT_EQ(seen["foundTypes"], says);
    EXPECT_EQ(seen["treesOfTypes"], json(saying));
    // However much there is, the browser has few elements to lay out.
    EXPECT_LT(seen["elementsOfFirst"], 150);
    EXPECT_LT(seen["elementsFound"], 150);
    RecordProperty("search_ms", seen["milliseconds"].dump());

    EXPECT_EQ(seen["foundFirst"], "treeEscape");
    EXPECT_EQ(seen["afterLink"], "Escape");
    EXPECT_EQ(seen["queryAfterLink"], "");
    std::vector<std::string> callers;
    for (const std::string& line : linesOf(vemraOutput({"trees", "callers", "Escape"})))
        callers.push_back(line.substr(0, line.find(": ")));
    EXPECT_EQ(seen["callers"], json(callers));
    const auto users = linesOf(vemraOutput({"trees", "keys", "task_state"}));
    EXPECT_EQ(seen["users"].size(), users.size());
    EXPECT_EQ(seen["stillShown"], "Escape");
}

TEST(Page, FoldsAndLinksAndTellsLiveFromOff)
{
    const std::string plugin = std::string(VEMRA_LIB_DIR) + "/liblive_trees.so";
    const Folder folder;
    const std::string visits = folder / "visits.json";
    vemraOutput({"run", "--plugin", plugin, "--tree", "RobotNode", "--frames", "5", "--visits", visits});
    const std::string page = folder / "trees.html";
    vemraOutput({"trees", "show", "--html", page, "--plugin", plugin, "--visits", visits});
    const json seen = seenOn(page, "live");

    EXPECT_EQ(seen["opened"], "RobotNode");
    EXPECT_EQ(seen["visitsShown"], true);
    ASSERT_EQ(seen["rows"].size(), 12U);
    const std::vector<bool> off{false, false, false, true,  false, false,
                                false, true,  true,  false, false, true};
    EXPECT_EQ(seen["off"], json(off));
    const json report = json::parse(vemraOutput({"trees", "visits", visits, "--json", "--plugin", plugin}));
    for (const json& tree : report["trees"])
        if (tree["name"] == "RobotNode")
            for (std::size_t i = 0; i < 12; ++i) {
                const bool ran = tree["nodes"][i]["ticks"] > 0;
                EXPECT_EQ(seen["shades"][i], ran) << i;
                EXPECT_EQ(seen["missed"][i], !ran && !off[i]) << i;
            }
    EXPECT_EQ(seen["liveRows"], json({1, 2, 3, 5, 6, 7, 10, 11}));
    EXPECT_EQ(seen["folded"], json({1, 2, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_THAT(seen["foldedAll"].get<std::vector<std::string>>(), ElementsAre(HasSubstr("11 nodes")));
    EXPECT_EQ(seen["oneLevel"], json({1, 2, 6, 10, 12}));
    EXPECT_EQ(seen["openedByAddress"], json({1, 2, 3, 4, 5, 6, 10, 12}));
    EXPECT_THAT(seen["chosen"].get<std::string>(), HasSubstr("subtree_file_path=Dead"));
    EXPECT_THAT(seen["aboutOff"].get<std::string>(), HasSubstr("Off by RobotNode:3 StringMatch"));
    EXPECT_THAT(seen["afterDown"].get<std::string>(), HasSubstr("subtree_file_path=Living.xml"));
    EXPECT_THAT(seen["visitsOfNode"].get<std::string>(), HasSubstr("1 ticks, 1 success"));
    EXPECT_EQ(seen["entered"], "Living");
    EXPECT_EQ(seen["enteredBy"], json({"RobotNode:5", "y"}));
    EXPECT_EQ(seen["linkedKey"], json::array({"#key/y"}));
    EXPECT_EQ(seen["words"].size(), 3U);
    EXPECT_EQ(seen["marks"], json({"Always", "Succ"}));
    EXPECT_EQ(seen["none"], "0 places");
    EXPECT_EQ(seen["back"], "Living");
    EXPECT_EQ(seen["byKey"].size(), 2U);
    EXPECT_THAT(seen["afterClick"].get<std::string>(), HasSubstr("BlackboardContains key=y"));
}

TEST(Page, TextsOfTreesAreTextsThere)
{
    const Folder folder;
    const std::string page = folder / "trees.html";
    vemraOutput({"trees", "show", "OwnLeaf", "--html", page, "--plugin",
                 std::string(VEMRA_LIB_DIR) + "/libodd_trees.so"});
    const json seen = seenOn(page, "odd");
    EXPECT_THAT(
        seen["text"].get<std::vector<std::string>>(),
        ElementsAre(HasSubstr("Whistle \u201ca \\ label\u201d tune=a \"quoted\"\u21b5<tune> & </script>")));
    EXPECT_EQ(seen["elements"], 0);
}

TEST(Page, RefusesWhatDoesNotFit)
{
    const Folder folder;
    EXPECT_EQ(runVemra({"trees", "show"}).exit_code, 2);
    EXPECT_EQ(runVemra({"trees", "show", "--visits", "visits.json"}).exit_code, 2);
    EXPECT_EQ(runVemra({"trees", "show", "--html", folder / "a.html", "--depth", "2"}).exit_code, 2);
    const ProgramResult unknown = runVemra({"trees", "show", "Escap", "--html", folder / "a.html"});
    EXPECT_EQ(unknown.exit_code, 2);
    EXPECT_THAT(unknown.err, HasSubstr("Escape"));
    EXPECT_THAT(runVemra({"trees", "show", "--html", folder / "no/such/a.html"}).err,
                HasSubstr("no/such/a.html"));
    EXPECT_FALSE(std::filesystem::exists(folder / "a.html"));
}

}  // namespace
}  // namespace vemra::test
