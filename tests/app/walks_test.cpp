#include "app_support.h"

namespace vemra::test {
namespace {

const std::string kLiveTrees = std::string(VEMRA_LIB_DIR) + "/liblive_trees.so";
const std::string kShippedTrees = std::string(VEMRA_LIB_DIR) + "/libvemra_tree.so";

ProgramResult walks(std::vector<std::string> words)
{
    words.insert(words.begin(), {"trees", "walks"});
    return runVemra(words);
}

TEST(Walk, IsTheSameWheneverItIsTakenAndTellsDeedsFromChance)
{
    const std::vector<std::string> words{"trees", "walk", "BTBack2cm", "--number", "12"};
    const std::string walk = vemraOutput(words);
    EXPECT_EQ(vemraOutput(words), walk);
    EXPECT_NE(vemraOutput({"trees", "walk", "BTBack2cm", "--number", "13"}), walk);
    std::string deeds;
    for (const std::string& line : linesOf(walk))
        if (const std::string verb = line.substr(7, 5); verb != "given" && verb != "asked" && verb != "ended")
            deeds += line + "\n";
    EXPECT_THAT(deeds, AllOf(HasSubstr("  begins  GoBackwards"), HasSubstr("  halted  GoBackwards"),
                             HasSubstr("  tree ended: ")));
    EXPECT_EQ(vemraOutput({"trees", "walk", "BTBack2cm", "--number", "12", "--deeds"}), deeds);
}

TEST(Walks, AreHeldAgainstARecordTreeByTree)
{
    const Folder folder;
    const std::string file = folder / "walks.json";
    EXPECT_EQ(walks({"Escape", "BTBack2cm", "--record", file, "--count", "60"}).exit_code, 0);
    EXPECT_EQ(walks({"Escape", "BTBack2cm", "--check", file}).exit_code, 0);

    nlohmann::json record = nlohmann::json::parse(bytesOf(file));
    const nlohmann::json as_it_was = record;
    auto words = record["trees"]["Escape"].get<std::string>();
    const std::string first = words.substr(0, words.find(':'));
    words.replace(first.size() + 1, 8, "00000000");
    record["trees"]["Escape"] = words;
    record["trees"]["NoMore"] = "0:00000000";
    (void)folder.write("walks.json", record.dump());
    const ProgramResult changed = walks({"Escape", "BTBack2cm", "--check", file});
    EXPECT_EQ(changed.exit_code, 1);
    EXPECT_THAT(linesOf(changed.out),
                ElementsAre(AllOf(StartsWith("Escape: 1 of "),
                                  HasSubstr("as vemra trees walk Escape --number " + first)),
                            StartsWith("1 of 2 trees do something else")));
    EXPECT_THAT(walks({"--check", file}).out,
                AllOf(HasSubstr("NoMore: in "), HasSubstr("RobotNode: not in ")));

    EXPECT_EQ(walks({"Escape", "--record", file, "--count", "60"}).exit_code, 0);
    EXPECT_EQ(nlohmann::json::parse(bytesOf(file))["trees"]["Escape"], as_it_was["trees"]["Escape"]);
    EXPECT_TRUE(nlohmann::json::parse(bytesOf(file))["trees"].contains("NoMore"));
}

TEST(Walks, ShowWhereTwoLibrariesPart)
{
    EXPECT_EQ(walks({"--plugin", kLiveTrees, "--against", kLiveTrees, "--count", "5"}).exit_code, 0);
    EXPECT_THAT(walks({"Living", "--plugin", kLiveTrees, "--against", kShippedTrees}).out,
                StartsWith("Living: not in "));
    const ProgramResult other =
        walks({"RobotNode", "--plugin", kLiveTrees, "--against", kShippedTrees, "--count", "5"});
    EXPECT_EQ(other.exit_code, 1);
    EXPECT_THAT(linesOf(other.out), AllOf(Contains(StartsWith("RobotNode, walk 0:")),
                                          Contains(StartsWith("- ")), Contains(StartsWith("+ "))));
}

TEST(Walks, SayWhatIsWrongWithWhatTheyAreGiven)
{
    const Folder folder;
    const std::string file = folder / "walks.json";
    for (const auto& [text, fault] : std::vector<std::pair<std::string, std::string>>{
             {"no json", "parse error"},
             {R"({"trees": {"Escape": "x:12345678"}})",
              "tree Escape: 'x:12345678', expected NUMBER:8 hexadecimal digits"},
             {R"({"trees": {"Escape": "1:1234567"}})", "expected NUMBER:8"},
             {R"({"trees": {"Escape": ""}})", "expected a walk at least"}}) {
        (void)folder.write("walks.json", text);
        const ProgramResult result = walks({"Escape", "--check", file});
        EXPECT_EQ(result.exit_code, 2) << text;
        EXPECT_THAT(result.err, AllOf(HasSubstr(file), HasSubstr(fault)));
    }
    EXPECT_THAT(walks({"Escape"}).err, HasSubstr("expected --record, --check or --against"));
    EXPECT_THAT(walks({"Escpae", "--record", file}).err, HasSubstr("did you mean"));
    EXPECT_EQ(walks({"--check", folder / "none.json"}).exit_code, 2);
}

}  // namespace
}  // namespace vemra::test
