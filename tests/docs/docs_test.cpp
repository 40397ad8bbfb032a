#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "support/folder.h"
#include "support/matchers.h"
#include "support/program.h"

namespace vemra::test {
namespace {

namespace fs = std::filesystem;

const fs::path kSource = VEMRA_SOURCE_DIR;
const std::string kVemra = std::string(VEMRA_BIN_DIR) + "/vemra";
const std::string kExampleTrees = std::string(VEMRA_LIB_DIR) + "/libexample_trees.so";

std::vector<fs::path> pages()
{
    std::vector<fs::path> all{kSource / "README.md", kSource / "scenarios/README.md",
                              kSource / "examples/README.md"};
    for (const auto& page : fs::directory_iterator(kSource / "docs"))
        if (page.path().extension() == ".md")
            all.push_back(page.path());
    return all;
}

// The blocks of code of a page that are in this language.
std::vector<std::string> blocksOf(const fs::path& page, const std::string& language)
{
    std::vector<std::string> blocks;
    const std::string text = bytesOf(page);
    const std::string opening = "\n```" + language + "\n";
    for (std::size_t at = text.find(opening); at != std::string::npos; at = text.find(opening, at)) {
        at += opening.size();
        blocks.push_back(text.substr(at, text.find("\n```", at) + 1 - at));
    }
    return blocks;
}

// The examples that were built of the pages (see CMakeLists.txt), by the name of their tree.
std::vector<std::string> builtExamples()
{
    std::vector<std::string> names;
    std::istringstream lines(bytesOf(std::string(VEMRA_EXAMPLES) + "/names.txt"));
    for (std::string name; std::getline(lines, name);)
        names.push_back(name);
    return names;
}

TEST(Docs, EachTreeThatIsShownIsOneOfTheRobotsOrWasBuilt)
{
    const std::vector<std::string> built = builtExamples();
    int shown = 0;
    for (const fs::path& page : pages()) {
        for (const std::string& block : blocksOf(page, "cpp")) {
            std::smatch name;
            if (!std::regex_search(block, name, std::regex(R"((?:^|\n)TREE\((\w+)\))")))
                continue;
            std::string source;
            for (const auto& file : fs::recursive_directory_iterator(kSource / "trees"))
                if (file.path().filename() == name[1].str() + ".cpp")
                    source = bytesOf(file.path());
            if (source.empty())
                EXPECT_THAT(built, Contains(name[1].str())) << page;
            else
                EXPECT_THAT(source, HasSubstr(block))
                    << page << " shows another " << name[1] << " than there is";
            ++shown;
        }
    }
    EXPECT_GE(shown, 2);
}

TEST(Docs, ExamplesRun)
{
    for (const std::string& name : builtExamples()) {
        const ProgramResult run =
            runProgram({kVemra, "run", "--tree", name, "--plugin", kExampleTrees, "--frames", "3000"});
        EXPECT_EQ(run.exit_code, 0) << run.err;
        if (name == "BackOff") {
            EXPECT_THAT(run.out, HasSubstr("tree BackOff ends: SUCCESS")) << "and does not turn for ever";
        }
    }
}

// All calls of vemra in blocks of the shell are made, in a folder where the files that they name are.
TEST(Docs, CommandsDoWhatIsSaid)
{
    const Folder folder;
    fs::create_symlink(kSource / "scenarios", folder / "scenarios");
    for (const char* library : {"before.so", "shipped.so"})
        fs::create_symlink(kExampleTrees, folder / library);
    ASSERT_EQ(
        runProgram({kVemra, "trees", "export", "--plugin", kExampleTrees, "--out", folder / "before.json"})
            .exit_code,
        0);
    int calls = 0;
    for (const fs::path& page : pages()) {
        for (const std::string& block : blocksOf(page, "sh")) {
            std::istringstream lines(block);
            for (std::string line; std::getline(lines, line);) {
                std::smatch call;
                if (!std::regex_match(line, call, std::regex(R"((\$?vemra|\./run)( [^#|<>]*)?(#.*)?)")) ||
                    line.find("my_") != std::string::npos)
                    continue;
                const std::string words = (call[1] == "./run" ? " run" : "") + call[2].str();
                const bool loads = words.starts_with(" trees") || words.starts_with(" run");
                const ProgramResult result = runProgram(
                    {"sh", "-c",
                     "cd \"$1\" && \"$0\"" + words + (loads ? " --plugin \"$2\"" : "") + " >/dev/null",
                     kVemra, folder.path(), kExampleTrees});
                // Keys want a terminal, which no test has.
                const bool by_keys = words.find("--keyboard") != std::string::npos;
                EXPECT_EQ(result.exit_code, by_keys ? 2 : 0) << page << ": " << line << '\n' << result.err;
                ++calls;
            }
        }
    }
    EXPECT_GT(calls, 8);
}

TEST(Docs, ScenariosThatAreShownRun)
{
    const Folder folder;
    for (const std::string& block : blocksOf(kSource / "scenarios/README.md", "yaml")) {
        const std::string file = folder.write("shown.yaml", block).string();
        const ProgramResult run = runProgram({kVemra, "run", "--scenario", file, "--frames", "1"});
        EXPECT_NE(run.exit_code, 2) << run.err;
    }
}

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
    ASSERT_GT(kRooms.size(), 15U);
    std::map<std::string, int> seen;
    for (const char* top :
         {"runtime", "leaves", "description", "trees", "generator", "version", "plugin", "robot", "app"}) {
        for (const auto& file : fs::recursive_directory_iterator(kSource / top)) {
            const std::string extension = file.path().extension();
            if (extension != ".cpp" && extension != ".h" && extension != ".hpp")
                continue;
            const std::string path = fs::relative(file.path(), kSource).string();
            const std::string room = roomOf(kRooms, path);
            EXPECT_NE(room, "") << path << " stands in no room of docs/architecture.md";
            std::istringstream text(bytesOf(file.path()));
            for (std::string line; std::getline(text, line);) {
                std::smatch include;
                if (!std::regex_match(line, include, std::regex(R"re(#include "([^"]+/[^"]+)".*)re")))
                    continue;
                const std::string named = include[1];
                const std::string other =
                    named.starts_with("behaviortree_cpp/") ? "runtime" : roomOf(kRooms, named);
                EXPECT_TRUE(other == room || (kRooms.contains(room) && kRooms.at(room).contains(other)))
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
