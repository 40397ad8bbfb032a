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

// Trees that a test replaces, and what it puts above a tree, are none of the plug-in's.
VisitedBoard::~VisitedBoard()
{
    if (folder_.empty())
        return;
    std::ofstream out(freeFile(folder_));
    out << R"({"trees":{)";
    const char* before_tree = "";
    for (const auto& [name, rows] : counter_.trees()) {
        if (name.empty())
            continue;
        out << before_tree << '"' << name << "\":[";
        const char* before_row = "";
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const robot::Visits& v = rows[i].visits;
            if (v.ticks == 0 || rows[i].id.empty())
                continue;
            out << before_row << '[' << i << ",\"" << rows[i].id << "\"," << v.ticks << ',' << v.success
                << ',' << v.failure << ',' << v.running << ',' << v.halts << ']';
            before_row = ",";
        }
        out << ']';
        before_tree = ",";
    }
    out << "}}\n";
}

}  // namespace vemra::test
