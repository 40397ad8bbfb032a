#include "app_support.h"

namespace vemra::test {
namespace {

namespace fs = std::filesystem;

struct BadInput : testing::Test
{
    static void expectRefusal(const std::vector<std::string>& arguments, const std::string& message)
    {
        const ProgramResult result = runVemra(arguments);
        EXPECT_EQ(result.exit_code, 2) << message;
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr("vemra: "));
        EXPECT_THAT(result.err, HasSubstr(message));
    }

    Folder folder_;
};

TEST_F(BadInput, UnknownNamesComeBackWithNearOnes)
{
    expectRefusal({"trees", "show", "Bakc2cm"}, "no tree 'Bakc2cm'; did you mean 'Back2cm'");
    expectRefusal({"trees", "show", "robotnode"}, "did you mean 'RobotNode'?");
    expectRefusal({"trees", "show", "qqqqqqqq"}, "no tree 'qqqqqqqq'\n");
    expectRefusal({"trees", "export", "Escape", "Excape"}, "no tree 'Excape'; did you mean 'Escape'?");
    expectRefusal({"leaves", "show", "Rotat"}, "no leaf 'Rotat'; did you mean 'Rotate'");
    expectRefusal({"leaves", "list", "--family", "music"}, "no family 'music'; the families are: Blackboard");
    expectRefusal({"trees", "where", "Rotat"}, "no node type 'Rotat'; did you mean 'Rotate'");
    expectRefusal({"trees", "callers", "Escap"}, "no tree 'Escap'; did you mean 'Escape'");
    expectRefusal({"trees", "keys", "finish_escap"}, "key 'finish_escap'; did you mean 'finish_escape'");
    expectRefusal({"tres"}, "'tres'; did you mean 'trees'?");
    expectRefusal({"trees", "shwo", "Escape"}, "'shwo'; did you mean 'show'?\nSee vemra trees --help");
    expectRefusal({"trees", "show", "Escape", "--expnad"}, "no option '--expnad'; did you mean '--expand'?");
}

TEST_F(BadInput, ValuesOutOfRangeAndMissingOnes)
{
    expectRefusal({}, "See vemra --help");
    expectRefusal({"trees", "show"}, "expected a TREE");
    expectRefusal({"trees", "show", "Escape", "--depth", "0"}, "--depth");
    expectRefusal({"trees", "show", "Escape", "--depth", "two"}, "--depth");
    expectRefusal({"trees", "show", "Escape", "--color", "red"}, "{auto,always,never}");
    expectRefusal({"trees", "export", "--format", "yaml"}, "{json,xml,dot}");
    expectRefusal({"trees", "where", "Rotate", "--port", "angle_deg"}, "expected PORT=VALUE");
    expectRefusal({"trees", "list", "--names", "--json"}, "--names excludes --json");
}

TEST_F(BadInput, LibrariesThatAreNone)
{
    const std::string text = folder_.write("text.so", "no library").string();
    const std::string whole = bytesOf(std::string(VEMRA_LIB_DIR) + "/libvemra_tree.so");
    const std::string half = folder_.write("half.so", whole.substr(0, whole.size() / 2)).string();
    expectRefusal({"trees", "list", "--plugin", (folder_ / "none.so").string()}, "none.so: no such file");
    expectRefusal({"trees", "list", "--plugin", text}, "text.so: cannot be loaded");
    expectRefusal({"trees", "list", "--plugin", half}, "the file ends early");
    expectRefusal({"trees", "list", "--plugin", std::string(VEMRA_LIB_DIR) + "/libbehaviortree_cpp.so"},
                  "BT_RegisterNodesFromPlugin");
    expectRefusal({"trees", "show", "UnknownLeaf", "--plugin", foreignTrees()}, "NobodyKnowsThis");
}

TEST_F(BadInput, ExportsThatAreNone)
{
    const auto refused = [this](const std::string& text, const std::string& message) {
        const std::string file = (folder_ / "old.json").string();
        std::ofstream(file) << text;
        expectRefusal({"trees", "diff", file}, "old.json: " + message);
    };
    expectRefusal({"trees", "diff", (folder_ / "none.json").string()}, "none.json: cannot be read");
    expectRefusal({"trees", "diff", folder_.path().string()}, "cannot be read");
    refused("{\"trees\":[\n{]}", "parse error at line 2, column 2");
    refused("[1]", "the file: expected an object with \"trees\"");
    refused(R"({"trees":[{"name":"A"}]})", "tree 0: expected an object with \"nodes\"");
    refused(R"({"trees":[{"name":"A","nodes":[{"id":"Stop","name":"Stop","parent":-1,"ports":{}},
                                            {"id":"Stop","name":"Stop","parent":1,"ports":{}}]}]})",
            "tree \"A\", node 1: expected the index of an earlier node as \"parent\"");
    refused(
        R"({"trees":[{"name":"A","nodes":[{"id":"Delay","name":"Delay","parent":-1,"ports":{"ticks":1}}]}]})",
        "tree \"A\", node 0: expected a text as port \"ticks\"");
}

TEST_F(BadInput, NothingIsHalfWritten)
{
    const std::string kept = (folder_ / "kept.json").string();
    std::ofstream(kept) << "as before";
    expectRefusal({"trees", "export", "Escape", "Nope_", "--out", kept}, "no tree 'Nope_'");
    expectRefusal({"trees", "export", "UnknownLeaf", "--plugin", foreignTrees(), "--out", kept},
                  "NobodyKnowsThis");
    expectRefusal({"trees", "export", "--out", (folder_ / "no" / "such.json").string()}, "cannot be written");
    expectRefusal({"trees", "export", "--out", folder_.path().string()}, "cannot be written");
    std::ifstream in(kept);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "as before");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()), 1);

    EXPECT_EQ(vemraOutput({"trees", "export", "--out", kept}), "");
    EXPECT_GT(fs::file_size(kept), 1000U);
}

TEST_F(BadInput, LinksAndDevicesAreWrittenToAndNotReplaced)
{
    const fs::path kept = folder_ / "kept.json";
    const fs::path link = folder_ / "link.json";
    const fs::path device = folder_ / "device";
    std::ofstream(kept) << "as before";
    fs::create_symlink(kept, link);
    fs::create_symlink("/dev/full", device);
    EXPECT_EQ(vemraOutput({"trees", "export", "--out", link.string()}), "");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_GT(fs::file_size(kept), 1000U);
    expectRefusal({"trees", "export", "--out", device.string()}, "device: cannot be written");
    EXPECT_TRUE(fs::is_symlink(device));
    EXPECT_EQ(vemraOutput({"trees", "export", "Escape", "--out", "/dev/stdout"}),
              vemraOutput({"trees", "export", "Escape"}));
}

TEST_F(BadInput, FullOutputIsNoSuccess)
{
    const ProgramResult result =
        runProgram({"sh", "-c", "\"$0\" trees export > /dev/full", std::string(VEMRA_BIN_DIR) + "/vemra"});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, HasSubstr("standard output"));
}

TEST(Manual, IsReadByManAndTellsAllThatHelpTells)
{
    const Folder folder;
    const std::string page = folder.write("vemra.1", vemraOutput({"manual"})).string();
    const ProgramResult made = runProgram({"groff", "-man", "-ww", "-Tascii", "-P-cbou", page});
    EXPECT_EQ(made.exit_code, 0);
    EXPECT_EQ(made.err, "");
    const std::vector<std::vector<std::string>> commands{{"run"},
                                                         {"trees", "list"},
                                                         {"trees", "export"},
                                                         {"trees", "where"},
                                                         {"leaves", "list"},
                                                         {"completion", "zsh"}};
    for (std::vector<std::string> command : commands) {
        EXPECT_THAT(made.out, HasSubstr(command.back()));
        command.emplace_back("--help");
        for (const std::string& line : linesOf(vemraOutput(command)))
            if (const std::size_t at = line.find("--"); line.starts_with("  -") && at != std::string::npos) {
                const std::string option = line.substr(at, line.find_first_of(" ,=", at) - at);
                EXPECT_THAT(made.out, HasSubstr(option)) << command.front();
            }
    }
}

TEST(Version, NamesTheCommit)
{
    EXPECT_THAT(vemraOutput({"--version"}), MatchesRegex("commit-.+-[0-9]+-g[0-9a-f]{7,}\n"));
}

}  // namespace
}  // namespace vemra::test
