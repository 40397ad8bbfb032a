#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::string read(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class Leafgen : public testing::Test
{
protected:
    void SetUp() override
    {
        fs::remove_all(folder_);
        fs::create_directories(folder_ / "catalogue");
    }
    void TearDown() override { fs::remove_all(folder_); }

    void write(const std::string& name, const std::string& text) const
    {
        std::ofstream(folder_ / "catalogue" / name) << text;
    }

    /// Runs leafgen; what it says on both streams is in `said_`.
    int run(const std::string& arguments)
    {
        const std::string command = LEAFGEN " " + arguments + " 2>&1";
        FILE* pipe = popen(command.c_str(), "r");
        said_.clear();
        char buffer[512];
        while (std::fgets(buffer, sizeof buffer, pipe) != nullptr)
            said_ += buffer;
        const int status = pclose(pipe);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    int generate()
    {
        return run("--catalogue " + (folder_ / "catalogue").string() + " --header " + header_.string() +
                   " --table " + (folder_ / "table.cpp").string());
    }

    const fs::path folder_ =
        fs::path(testing::TempDir()) /
        (std::string("leafgen_") + testing::UnitTest::GetInstance()->current_test_info()->name());
    const fs::path header_ = folder_ / "leaves.h";
    std::string said_;
};

const std::string kHead = "family: Motion\nabout: What moves.\nleaves:\n";
const std::string kStop = "  - {id: Stop, kind: action, about: Stands still.}\n";

std::string leafWithPort(const std::string& port)
{
    return kHead + "  - id: Turn\n    kind: action\n    about: Turns.\n    ports:\n      - {" + port + "}\n";
}

TEST_F(Leafgen, NamesFileAndLineOfWhatItRefuses)
{
    const struct
    {
        std::string text;
        std::string where;
        std::string why;
    } cases[] = {
        {leafWithPort("name: dir, type: word, about: x"), "a.yaml:8", "unknown type \"word\""},
        {leafWithPort("name: dir, type: text, values: [left, right], default: up, about: x"), "a.yaml:8",
         "expected one of left, right"},
        {leafWithPort("name: deg, type: int, examples: [\"90\", \"9O\"], about: x"), "a.yaml:8",
         "\"9O\" of \"deg\": expected a literal of type int"},
        {leafWithPort("name: deg, type: int, unit: deg, about: x"), "a.yaml:8", "no field \"unit\""},
        {leafWithPort("name: dir, type: text, values: [a], examples: [b], about: x"), "a.yaml:8", "not both"},
        {leafWithPort("name: default, type: text, about: x"), "a.yaml:8", "cannot be a name"},
        {leafWithPort("name: Turn, type: text, about: x"), "a.yaml:8", "the name of its leaf"},
        {leafWithPort("name: dir, type: text, about: x}\n      - {name: dir, type: text, about: x"),
         "a.yaml:9", "a port \"dir\" already"},
        {leafWithPort("name: dir, type: text"), "a.yaml:8", "lacks the field \"about\""},
        {kHead + kStop + kStop, "a.yaml:5", "leaf \"Stop\" is told at"},
        {kHead + "  - {id: Stop, kind: deed, about: x}\n", "a.yaml:4", "expected one of condition, action"},
        {kHead + "  - {id: Stop, kind: action, kind: action, about: x}\n", "a.yaml:4", "given twice"},
        {"family: Motion\nabout: What moves.\nleaves: []\n", "a.yaml:3", "at least one"},
        {leafWithPort("name: dir, type: text, required: no, about: x"), "a.yaml:8", "expected true"},
        {leafWithPort("name: dir, type: text, required: true, default: a, about: x"), "a.yaml:8",
         "required or a default"},
        {"keys:\n  - {name: a-b, type: text, about: x}\n", "a.yaml:2", "cannot be a key's name"},
        {"keys:\n  - {name: a, type: word, about: x}\n", "a.yaml:2", "unknown type \"word\""},
        {"keys:\n  - {name: a, type: text, from: sky, about: x}\n", "a.yaml:2", "unknown from \"sky\""},
        {"keys:\n  - {name: a, type: int, about: x}\n  - {name: a, type: int, about: x}\n", "a.yaml:3",
         "key \"a\" is told at"},
        {"control_nodes:\n  - {id: Twice, children: some, about: x}\n", "a.yaml:2", "expected a number"},
        {kHead + "  - {id: [\n", "a.yaml:5", "not YAML"},
        {"- Stop\n", "a.yaml:1", "expected a family"},
    };
    for (const auto& [text, where, why] : cases) {
        write("a.yaml", text);
        EXPECT_EQ(generate(), 2) << text;
        EXPECT_THAT(said_, HasSubstr(where)) << text;
        EXPECT_THAT(said_, HasSubstr(why)) << text;
    }
    EXPECT_FALSE(fs::exists(header_));
}

TEST_F(Leafgen, RefusesALeafThatAnotherFileHas)
{
    write("a.yaml", kHead + kStop);
    write("b.yaml", "family: Other\nabout: More.\nleaves:\n" + kStop);
    EXPECT_EQ(generate(), 2);
    EXPECT_THAT(said_, HasSubstr("b.yaml:4: leaf \"Stop\" is told at"));
    EXPECT_THAT(said_, HasSubstr("a.yaml:4 already"));
}

TEST_F(Leafgen, LeavesAFileAloneThatSaysTheSameAlready)
{
    write("a.yaml", kHead + kStop);
    ASSERT_EQ(generate(), 0) << said_;
    const auto long_ago = fs::last_write_time(header_) - std::chrono::hours(1);
    fs::last_write_time(header_, long_ago);
    ASSERT_EQ(generate(), 0) << said_;
    EXPECT_EQ(fs::last_write_time(header_), long_ago);

    write("a.yaml", leafWithPort("name: dir, type: text, about: \"a \\\"side\\\"\", default: \"a\\\\b\""));
    ASSERT_EQ(generate(), 0) << said_;
    EXPECT_THAT(read(header_), HasSubstr("Port dir = \"a\\\\b\";"));
}

TEST_F(Leafgen, TellsWrongUsageFromAWrongCatalogue)
{
    EXPECT_EQ(run("--help"), 0);
    EXPECT_THAT(said_, HasSubstr("--catalogue"));
    EXPECT_EQ(run("--catalogue " + folder_.string()), 1);
    EXPECT_EQ(run("--catalogue " + (folder_ / "nowhere").string() + " --header " + header_.string()), 2);
    write("a.yaml", kHead + kStop);
    EXPECT_EQ(run("--catalogue " + (folder_ / "catalogue").string() + " --header " + folder_.string()), 1);
}

TEST_F(Leafgen, TheReferencePagesAreUpToDate)
{
    const fs::path leaves = folder_ / "leaves.md";
    const fs::path keys = folder_ / "keys.md";
    ASSERT_EQ(run("--catalogue " VEMRA_SOURCE_DIR "/leaves/catalogue --docs " + leaves.string() +
                  " --keys-docs " + keys.string()),
              0)
        << said_;
    EXPECT_TRUE(read(leaves) == read(VEMRA_SOURCE_DIR "/docs/leaves.md"))
        << "docs/leaves.md is out of date: build the target docs";
    EXPECT_TRUE(read(keys) == read(VEMRA_SOURCE_DIR "/docs/keys.md"))
        << "docs/keys.md is out of date: build the target docs";
}

}  // namespace
