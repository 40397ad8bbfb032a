#include <algorithm>

#include "app_support.h"

namespace vemra::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;

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

}  // namespace
}  // namespace vemra::test
