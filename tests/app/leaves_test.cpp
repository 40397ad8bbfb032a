#include "app_support.h"
#include "leaves/contract.h"

namespace vemra::test {
namespace {

using nlohmann::json;

TEST(Leaves, ListHoldsTheWholeContract)
{
    const json all = json::parse(vemraOutput({"leaves", "list", "--json"}));
    ASSERT_EQ(all.size(), leaf::all().size());
    EXPECT_EQ(linesOf(vemraOutput({"leaves", "list"})).size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i]["id"], leaf::all()[i].id);
        EXPECT_EQ(all[i]["ports"].size(), leaf::all()[i].ports.size()) << all[i]["id"];
    }
}

TEST(Leaves, FamilyIsFoundByTheBeginningOfItsName)
{
    const leaf::FamilyContract* dock = nullptr;
    for (const leaf::FamilyContract& family : leaf::families())
        if (family.name.starts_with("Dock"))
            dock = &family;
    ASSERT_NE(dock, nullptr);
    for (const std::string& name : {std::string(dock->name), std::string("dock")}) {
        const json some = json::parse(vemraOutput({"leaves", "list", "--family", name, "--json"}));
        ASSERT_EQ(some.size(), dock->leaves.size()) << name;
        for (const json& one : some)
            EXPECT_EQ(one["family"], dock->name);
    }
}

TEST(Leaves, ShowTellsKindAndPorts)
{
    EXPECT_THAT(vemraOutput({"leaves", "show", "Rotate"}),
                AllOf(HasSubstr("Rotate  action, Motion"), HasSubstr("\n  angle_deg: float"),
                      HasSubstr("one of \"false\", \"true\"")));
    const json leaf = json::parse(vemraOutput({"leaves", "show", "BlackboardContains", "--json"}));
    EXPECT_EQ(leaf["kind"], "condition");
    EXPECT_EQ(leaf["ports"][0]["name"], "key");
    EXPECT_EQ(leaf["ports"][0]["type"], "key");
}

TEST(FirstLeaf, BacksTheRobotOff)
{
    const std::string program = std::string(VEMRA_BIN_DIR) + "/first_leaf";
    const ProgramResult freed = runProgram({program});
    EXPECT_EQ(freed.exit_code, 0) << freed.err;
    EXPECT_THAT(freed.out, AllOf(HasSubstr("draws on the map: BlockOnly"),
                                 HasSubstr("mm from the obstacle, backing"), HasSubstr("SUCCESS")));
    const ProgramResult lost = runProgram({program, "NoSuchTree"});
    EXPECT_EQ(lost.exit_code, 2);
    EXPECT_THAT(lost.err, HasSubstr("NoSuchTree"));
}

}  // namespace
}  // namespace vemra::test
