#include "app_support.h"

namespace vemra::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

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
