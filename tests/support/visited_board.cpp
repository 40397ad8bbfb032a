#include "support/visited_board.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace vemra::test {
namespace {

// A test may have several robots, one after the other.
std::filesystem::path freeFile(const std::filesystem::path& folder)
{
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string name =
        test == nullptr ? "test" : std::string(test->test_suite_name()) + '.' + test->name();
    for (int number = 0;; ++number) {
        std::filesystem::path file = folder / (name + '-' + std::to_string(number) + ".json");
        if (std::error_code unseen; !std::filesystem::exists(file, unseen))
            return file;
    }
}

}  // namespace

VisitedBoard::VisitedBoard()
{
    if (const char* folder = std::getenv("VEMRA_VISITS"); folder != nullptr) {
        folder_ = folder;
        setStatusObserver(&counter_);
    }
}

VisitedBoard::~VisitedBoard()
{
    if (!folder_.empty())
        std::ofstream(freeFile(folder_)) << robot::visitFileText(counter_, "a test", 0);
}

}  // namespace vemra::test
