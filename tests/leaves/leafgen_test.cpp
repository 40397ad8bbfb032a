#include "support/folder.h"
#include "support/matchers.h"
#include "support/program.h"

namespace vemra::test {
namespace {

namespace fs = std::filesystem;

struct Leafgen : testing::Test
{
    Leafgen() { fs::create_directory(folder_ / "catalogue"); }

    void write(const std::string& name, const std::string& text) const
    {
        folder_.write("catalogue/" + name, text);
    }

    /// Runs leafgen; what it says on both streams is in `said_`.
    int run(std::vector<std::string> words)
    {
        words.insert(words.begin(), LEAFGEN);
        const ProgramResult result = runProgram(words);
        said_ = result.out + result.err;
        return result.exit_code;
    }

    int generate()
    {
        return run(
            {"--catalogue", folder_ / "catalogue", "--header", header_, "--table", folder_ / "table.cpp"});
    }

    const Folder folder_;
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
    EXPECT_THAT(bytesOf(header_), HasSubstr("Port dir = \"a\\\\b\";"));
}

TEST_F(Leafgen, TellsWrongUsageFromAWrongCatalogue)
{
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_THAT(said_, HasSubstr("--catalogue"));
    EXPECT_EQ(run({"--catalogue", folder_.path()}), 1);
    EXPECT_EQ(run({"--catalogue", folder_ / "nowhere", "--header", header_}), 2);
    write("a.yaml", kHead + kStop);
    EXPECT_EQ(run({"--catalogue", folder_ / "catalogue", "--header", folder_.path()}), 1);
}

TEST_F(Leafgen, TheReferencePagesAreUpToDate)
{
    const fs::path leaves = folder_ / "leaves.md";
    const fs::path keys = folder_ / "keys.md";
    ASSERT_EQ(run({"--catalogue", std::string(VEMRA_SOURCE_DIR) + "/leaves/catalogue", "--docs", leaves,
                   "--keys-docs", keys}),
              0)
        << said_;
    EXPECT_TRUE(bytesOf(leaves) == bytesOf(VEMRA_SOURCE_DIR "/docs/leaves.md"))
        << "docs/leaves.md is out of date: build the target docs";
    EXPECT_TRUE(bytesOf(keys) == bytesOf(VEMRA_SOURCE_DIR "/docs/keys.md"))
        << "docs/keys.md is out of date: build the target docs";
}

}  // namespace
}  // namespace vemra::test
