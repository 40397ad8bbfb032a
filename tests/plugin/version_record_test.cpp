#include <unistd.h>

#include <algorithm>

#include "plugin/plugin_rig.h"

namespace vemra::test {
namespace {

namespace fs = std::filesystem;

const fs::path kRecord = "/tmp/version_check";
const std::string kVersion = "commit-[^ ]+-[0-9]+-g[0-9a-f]+";

/// The record of this machine is put aside, and comes back in the end.
struct VersionRecord : testing::Test
{
    void SetUp() override
    {
        std::error_code fault;
        if (fs::exists(kRecord))
            fs::rename(kRecord, aside_, fault);
        if (fault)
            GTEST_SKIP() << kRecord << " belongs to somebody else: " << fault.message();
    }
    void TearDown() override
    {
        if (!fs::exists(aside_))
            return;
        fs::remove(kRecord);
        fs::rename(aside_, kRecord);
    }

    const fs::path aside_ = "/tmp/version_check.aside." + std::to_string(getpid());
};

TEST_F(VersionRecord, GrowsByALineWithEachLoad)
{
    std::string banner;
    std::string record;
    // Another test may load the plug-in at the same moment; then it is tried again.
    for (int tries = 0; tries < 5; ++tries) {
        std::ofstream(kRecord, std::ios::trunc) << "name: other, version: 1\n";
        BT::BehaviorTreeFactory first;
        BT::BehaviorTreeFactory second;
        banner = load(first) + load(second);
        record = bytesOf(kRecord);
        if (std::count(record.begin(), record.end(), '\n') == 3)
            break;
    }
    const std::string said = "vemra_tree git commit: " + kVersion + "\n";
    EXPECT_THAT(banner, MatchesRegex(said + said));
    const std::string line = "name: vemra_tree, version: " + kVersion + "\n";
    EXPECT_THAT(record, MatchesRegex("name: other, version: 1\n" + line + line));
    const auto last = [](const std::string& text) { return text.substr(text.rfind("commit-")); };
    EXPECT_EQ(last(banner), last(record));
}

TEST_F(VersionRecord, IsMadeWhereThereIsNone)
{
    fs::remove(kRecord);
    BT::BehaviorTreeFactory factory;
    load(factory);
    EXPECT_THAT(bytesOf(kRecord), MatchesRegex("(name: vemra_tree, version: " + kVersion + "\n)+"));
}

TEST_F(VersionRecord, IsLeftOutWhereItCannotBeWritten)
{
    fs::remove(kRecord);
    fs::create_directory(kRecord);
    BT::BehaviorTreeFactory factory;
    const std::string banner = load(factory);
    fs::remove(kRecord);
    EXPECT_THAT(banner, MatchesRegex("vemra_tree git commit: " + kVersion + "\n"));
    EXPECT_TRUE(factory.hasTree("RobotNode"));
}

TEST_F(VersionRecord, ASecondLoadIntoOneFactoryTakesThePlaceOfTheFirst)
{
    BT::BehaviorTreeFactory factory;
    load(factory);
    const std::vector<std::string> once = factory.treeNames();
    load(factory);
    EXPECT_EQ(factory.treeNames(), once);
    const auto blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    EXPECT_EQ(factory.createTree("AlwaysSuccess", blackboard).nodes.size(), 1u);
}

}  // namespace
}  // namespace vemra::test
