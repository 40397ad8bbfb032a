// What `cmake --install` lays down, as somebody finds it who has nothing else.

#include "support/folder.h"
#include "support/matchers.h"
#include "support/program.h"

namespace vemra::test {
namespace {

namespace fs = std::filesystem;

std::string outputOf(const std::vector<std::string>& words)
{
    const ProgramResult result = runProgram(words);
    EXPECT_EQ(result.exit_code, 0) << testing::PrintToString(words) << '\n' << result.out << result.err;
    return result.out;
}

struct Installed : testing::Test
{
    static void SetUpTestSuite()
    {
        folder_ = std::make_unique<Folder>();
        outputOf({VEMRA_CMAKE, "--install", VEMRA_BINARY_DIR, "--prefix", *folder_ / "first"});
        // A package may be laid down in one place and used in another.
        fs::rename(*folder_ / "first", prefix());
    }
    static void TearDownTestSuite() { folder_.reset(); }

    static fs::path prefix() { return *folder_ / "prefix"; }
    static const Folder& folder() { return *folder_; }

    // Builds a project against the installation and runs its program.
    static std::string builtAndRun(const std::string& source, const std::string& program)
    {
        const std::string build = source + "/build";
        outputOf({VEMRA_CMAKE, "-S", source, "-B", build, "-G", "Ninja",
                  "-DCMAKE_PREFIX_PATH=" + prefix().string(),
                  std::string("-DCMAKE_CXX_COMPILER=") + VEMRA_COMPILER,
                  std::string("-DCMAKE_CXX_FLAGS=") + VEMRA_FLAGS});
        outputOf({VEMRA_CMAKE, "--build", build});
        return outputOf({build + "/" + program});
    }

private:
    static std::unique_ptr<Folder> folder_;
};

std::unique_ptr<Folder> Installed::folder_;

TEST_F(Installed, AHostThatIsNoPartOfThisIsBuiltAndRuns)
{
    const std::string source = folder() / "own_project";
    fs::copy(std::string(VEMRA_SOURCE_DIR) + "/examples/own_project", source);
    const std::string said = builtAndRun(source, "own_host");
    EXPECT_THAT(said,
                AllOf(HasSubstr("frame 50: cleaning"), HasSubstr("nobody answers NeedInitialAutoMode")));
}

TEST_F(Installed, HostsReadTreesFromXmlWhereTheyAskForIt)
{
    const std::string source = folder() / "xml_project";
    fs::create_directory(source);
    folder().write("xml_project/CMakeLists.txt", R"(cmake_minimum_required(VERSION 3.25)
project(xml_host CXX)
find_package(vemra 0.1 REQUIRED COMPONENTS xml)
add_executable(xml_host main.cpp)
target_link_libraries(xml_host PRIVATE vemra::xml))");
    folder().write("xml_project/main.cpp",
                   R"cpp(#include "behaviortree_cpp/xml_parsing.h"
                         int main()
                         {
                             BT::BehaviorTreeFactory factory;
                             BT::buildTreeFromText(
                                 factory, "<root><BehaviorTree ID='T'><AlwaysSuccess/></BehaviorTree></root>",
                                 BT::Blackboard::create());
                         })cpp");
    builtAndRun(source, "xml_host");
}

TEST_F(Installed, TheCommandFindsWhatItWorksOn)
{
    const std::string vemra = prefix() / "bin/vemra";
    // Started from somewhere else, by a link.
    fs::create_symlink(vemra, folder() / "linked");
    EXPECT_EQ(outputOf({folder() / "linked", "trees", "list", "--names"}),
              outputOf({VEMRA_BIN_DIR "/vemra", "trees", "list", "--names"}));
    EXPECT_THAT(outputOf({vemra, "run", "--frames", "20"}), HasSubstr("on the dock"));
    EXPECT_TRUE(fs::exists(prefix() / "share/vemra/scenarios/whole_home.yaml"));
    EXPECT_THAT(bytesOf(prefix() / "share/man/man1/vemra.1"), HasSubstr(".SH NAME"));
    EXPECT_THAT(bytesOf(prefix() / "share/bash-completion/completions/vemra"), HasSubstr("complete -F"));
    EXPECT_THAT(bytesOf(prefix() / "share/zsh/site-functions/_vemra"), StartsWith("#compdef vemra"));
}

}  // namespace
}  // namespace vemra::test
