#include <gmock/gmock.h>

#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "support/folder.h"

namespace vemra::test {
namespace {

namespace fs = std::filesystem;

const fs::path kSource = VEMRA_SOURCE_DIR;

using Rooms = std::map<std::string, std::set<std::string>>;

// The names in `...` of a cell.
std::set<std::string> namesIn(const std::string& cell)
{
    static const std::regex name("`([^`]+)`");
    std::set<std::string> names;
    for (std::sregex_iterator at(cell.begin(), cell.end(), name); at != std::sregex_iterator(); ++at)
        names.insert((*at)[1]);
    return names;
}

// What the rows of docs/architecture.md tell that look so.
Rooms toldIn(const std::string& rows)
{
    Rooms told;
    std::istringstream page(bytesOf(kSource / "docs/architecture.md"));
    for (std::string line; std::getline(page, line);) {
        std::smatch row;
        if (std::regex_match(line, row, std::regex(rows)))
            told[row[1]] = namesIn(row[2]);
    }
    return told;
}

// The rooms and what each knows, and the families of services and whom each knows.
const Rooms kRooms = toldIn(R"(\| `([a-z_/]+)` \|[^|]*\|([^|]*)\|)");
const Rooms kFamilies = toldIn(R"(\| `([a-z_]+)` \|([^|]*)\|)");

// The room of a path: the longest name that it begins with; empty for none.
std::string roomOf(const Rooms& rooms, const std::string& path)
{
    std::string found;
    for (const auto& [room, known] : rooms)
        if (path.starts_with(room + "/") && room.size() > found.size())
            found = room;
    return found;
}

TEST(Arrows, RunAsThePageTellsAndNowhereElse)
{
    const Rooms& all = kRooms;
    ASSERT_GT(all.size(), 15U);
    std::map<std::string, int> seen;
    for (const char* top :
         {"runtime", "leaves", "description", "trees", "generator", "version", "plugin", "robot", "app"}) {
        for (const auto& file : fs::recursive_directory_iterator(kSource / top)) {
            const std::string extension = file.path().extension();
            if (extension != ".cpp" && extension != ".h" && extension != ".hpp")
                continue;
            const std::string path = fs::relative(file.path(), kSource).string();
            const std::string room = roomOf(all, path);
            EXPECT_NE(room, "") << path << " stands in no room of docs/architecture.md";
            std::istringstream text(bytesOf(file.path()));
            for (std::string line; std::getline(text, line);) {
                std::smatch include;
                if (!std::regex_match(line, include, std::regex(R"re(#include "([^"]+/[^"]+)".*)re")))
                    continue;
                const std::string named = include[1];
                const std::string other =
                    named.starts_with("behaviortree_cpp/") ? "runtime" : roomOf(all, named);
                EXPECT_TRUE(other == room || (all.contains(room) && all.at(room).contains(other)))
                    << path << " includes \"" << named << "\": " << room << " does not know "
                    << (other.empty() ? "that" : other);
                ++seen[room];
            }
        }
    }
    EXPECT_GT(seen["robot/services"], 50);
}

// Beside what all stand on, a family of services knows those that the page names, and each of these still.
TEST(Arrows, FamiliesOfServicesKnowOneAnotherAsThePageTells)
{
    ASSERT_FALSE(kFamilies.empty());
    Rooms found;
    for (const auto& file : fs::recursive_directory_iterator(kSource / "robot/services")) {
        if (!file.is_regular_file())
            continue;
        const std::string family = fs::relative(file.path(), kSource / "robot/services").begin()->string();
        const std::string text = bytesOf(file.path());
        static const std::regex include(R"re(#include "robot/services/([a-z_]+)/)re");
        for (std::sregex_iterator at(text.begin(), text.end(), include); at != std::sregex_iterator(); ++at)
            if (const std::string other = (*at)[1];
                other != family && other != "core" && other != "blackboard")
                found[family].insert(other);
    }
    EXPECT_EQ(found, kFamilies);
}

TEST(Arrows, RunInNoCircle)
{
    Rooms left = kRooms;
    left.insert(kFamilies.begin(), kFamilies.end());
    for (bool moved = true; moved;) {
        moved = false;
        for (auto room = left.begin(); room != left.end();) {
            const bool free =
                std::none_of(room->second.begin(), room->second.end(),
                             [&left](const std::string& known) { return left.contains(known); });
            room = free ? left.erase(room) : std::next(room);
            moved = moved || free;
        }
    }
    for (const auto& [room, known] : left)
        ADD_FAILURE() << room << " stands in a circle, or on one";
}

}  // namespace
}  // namespace vemra::test
