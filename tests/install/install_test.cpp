// What `cmake --install` lays down, as somebody finds it who has nothing else.

#include <gmock/gmock.h>

#include "support/folder.h"
#include "support/program.h"

namespace vemra::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

std::string outputOf(const std::vector<std::string>& words)
{
    const ProgramResult result = runProgram(words);
    EXPECT_EQ(result.exit_code, 0) << testing::PrintToString(words) << '\n' << result.out << result.err;
    return result.out;
}

class Installed : public testing::Test
{
protected:
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

private:
    static std::unique_ptr<Folder> folder_;
};

std::unique_ptr<Folder> Installed::folder_;

TEST_F(Installed, AHostThatIsNoPartOfThisIsBuiltAndRuns)
{
    const std::string source = folder() / "own_project";
    fs::copy(std::string(VEMRA_SOURCE_DIR) + "/examples/own_project", source);
    const std::string build = folder() / "build";
    outputOf({VEMRA_CMAKE, "-S", source, "-B", build, "-G", "Ninja",
              "-DCMAKE_PREFIX_PATH=" + prefix().string(),
              std::string("-DCMAKE_CXX_COMPILER=") + VEMRA_COMPILER,
              std::string("-DCMAKE_CXX_FLAGS=") + VEMRA_FLAGS});
    outputOf({VEMRA_CMAKE, "--build", build});
    const std::string said = outputOf({build + "/own_host"});
    EXPECT_THAT(said,
                AllOf(HasSubstr("frame 50: cleaning"), HasSubstr("nobody answers NeedInitialAutoMode")));
}

TEST_F(Installed, HostsReadTreesFromXmlWhereTheyAskForIt)
{
    const std::string source = folder() / "xml_project";
    fs::create_directory(source);
    folder().write("xml_project/CMakeLists.txt",
                   "cmake_minimum_required(VERSION 3.25)\n"
                   "project(xml_host CXX)\n"
                   "find_package(vemra 0.1 REQUIRED COMPONENTS xml)\n"
                   "add_executable(xml_host main.cpp)\n"
                   "target_link_libraries(xml_host PRIVATE vemra::xml)\n");
    folder().write(
        "xml_project/main.cpp",
        "#include \"behaviortree_cpp/bt_factory.h\"\n"
        "#include \"behaviortree_cpp/xml_parsing.h\"\n"
        "int main()\n"
        "{\n"
        "    BT::BehaviorTreeFactory factory;\n"
        "    BT::buildTreeFromText(factory, R\"(<root main_tree_to_execute=\"T\"><BehaviorTree ID=\"T\">"
        "<AlwaysSuccess/></BehaviorTree></root>)\", BT::Blackboard::create());\n"
        "}\n");
    const std::string build = folder() / "xml_build";
    outputOf({VEMRA_CMAKE, "-S", source, "-B", build, "-G", "Ninja",
              "-DCMAKE_PREFIX_PATH=" + prefix().string(),
              std::string("-DCMAKE_CXX_COMPILER=") + VEMRA_COMPILER,
              std::string("-DCMAKE_CXX_FLAGS=") + VEMRA_FLAGS});
    outputOf({VEMRA_CMAKE, "--build", build});
    outputOf({build + "/xml_host"});
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
    EXPECT_THAT(bytesOf(prefix() / "share/zsh/site-functions/_vemra"), testing::StartsWith("#compdef vemra"));
}

}  // namespace
}  // namespace vemra::test
