#include <algorithm>

#include "app_support.h"

namespace vemra::test {
namespace {

// What bash offers behind these words, the last one being typed.
std::vector<std::string> offered(const std::vector<std::string>& words, const std::string& folder = "/")
{
    std::vector<std::string> call{
        "bash", "-c",
        R"(cd "$1" && source <("$0" completion bash) && complete -p vemra >/dev/null &&
           COMP_WORDS=("$0" "${@:2}") COMP_CWORD=$(($# - 1)) && _vemra && printf '%s\n' "${COMPREPLY[@]}")",
        std::string(VEMRA_BIN_DIR) + "/vemra", folder};
    call.insert(call.end(), words.begin(), words.end());
    const ProgramResult result = runProgram(call);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.err, "");
    std::vector<std::string> lines = linesOf(result.out);
    std::erase(lines, "");
    return lines;
}

TEST(BashCompletion, OffersCommandsAndOptionsWhereTheyStand)
{
    EXPECT_THAT(offered({"tr"}), ElementsAre("trees"));
    EXPECT_THAT(offered({"trees", ""}), IsSupersetOf({"list", "show", "export", "keys"}));
    EXPECT_THAT(offered({"trees", "export", "--f"}), ElementsAre("--format"));
    EXPECT_THAT(offered({"leaves", "list", "--"}), Not(Contains("--format")));
    EXPECT_THAT(offered({"run", "--tree", "RobotN"}), ElementsAre("RobotNode"));
    // The value of an option is no command.
    EXPECT_THAT(offered({"trees", "show", "--plugin", "list", "--e"}), ElementsAre("--expand"));
}

TEST(BashCompletion, OffersValues)
{
    EXPECT_THAT(offered({"trees", "export", "--format", ""}), UnorderedElementsAre("json", "xml", "dot"));
    EXPECT_THAT(offered({"trees", "export", "--format", "=", "x"}), ElementsAre("xml"));
    EXPECT_THAT(offered({"trees", "export", "--format", "="}), UnorderedElementsAre("json", "xml", "dot"));
    EXPECT_THAT(offered({"trees", "show", "--depth", ""}), IsEmpty());
    EXPECT_THAT(offered({"trees", "show", "EscapeC"}), ElementsAre("EscapeCoat"));
    EXPECT_THAT(offered({"trees", "export", "Escape", "--format", "xml", "RobotN"}),
                ElementsAre("RobotNode"));
    EXPECT_THAT(offered({"leaves", "show", "Rotat"}), Contains("Rotate"));
    EXPECT_THAT(offered({"trees", "where", "IfThen"}), UnorderedElementsAre("IfThenElse", "IfThenElseStar"));
    EXPECT_THAT(offered({"trees", "where", "Rotat"}), Contains("Rotate"));
    EXPECT_THAT(offered({"trees", "keys", "finish_esc"}), ElementsAre("finish_escape"));
    EXPECT_THAT(offered({"leaves", "list", "--family", "D"}), ElementsAre("Dock"));
}

TEST(BashCompletion, OffersFilesAlsoWithBlanks)
{
    const Folder folder;
    folder.write("my trees.so", "");
    folder.write("other", "");
    EXPECT_THAT(offered({"trees", "list", "--plugin", "my"}, folder.path().string()),
                ElementsAre("my trees.so"));
}

// What zsh offers; its own functions of completion are replaced by such as print.
std::vector<std::string> offeredByZsh(const std::vector<std::string>& words)
{
    std::vector<std::string> call{
        "zsh", "-fc",
        R"(compadd() { shift; print -l -- "$@" }; _files() { print files "$@" }; compset() { :; }
           source <("$0" completion zsh) && words=("$0" "$@") CURRENT=$(($# + 1)) && _vemra)",
        std::string(VEMRA_BIN_DIR) + "/vemra"};
    call.insert(call.end(), words.begin(), words.end());
    const ProgramResult result = runProgram(call);
    EXPECT_EQ(result.err, "");
    return linesOf(result.out);
}

TEST(ZshCompletion, OffersWhatBashDoesAndLeavesThePrefixToTheShell)
{
    EXPECT_THAT(offeredByZsh({"tr"}), IsSupersetOf({"run", "trees", "leaves", "completion"}));
    EXPECT_THAT(offeredByZsh({"trees", ""}), IsSupersetOf({"list", "show", "export", "keys"}));
    EXPECT_THAT(offeredByZsh({"trees", "export", "--f"}), IsSupersetOf({"--format", "--out"}));
    EXPECT_THAT(offeredByZsh({"trees", "export", "--format", ""}), ElementsAre("json", "xml", "dot"));
    EXPECT_THAT(offeredByZsh({"trees", "export", "--format=x"}), ElementsAre("json", "xml", "dot"));
    EXPECT_THAT(offeredByZsh({"trees", "show", "--plugin", "list", "E"}), Contains("EscapeCoat"));
    EXPECT_THAT(offeredByZsh({"trees", "where", "Ro"}), IsSupersetOf({"IfThenElse", "Rotate"}));
    EXPECT_THAT(offeredByZsh({"run", "--home", ""}), ElementsAre("files"));
    EXPECT_THAT(offeredByZsh({"run", "--out", ""}), ElementsAre("files -/"));
    EXPECT_THAT(offeredByZsh({"trees", "show", "--depth", ""}), IsEmpty());
}

}  // namespace
}  // namespace vemra::test
