#include "app/trees/compare.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "app/trees/outline.h"

namespace vemra::app {

namespace {

constexpr std::size_t kAround = 2;
constexpr std::size_t kLargestTable = 25'000'000;

struct Line
{
    char mark;  ///< '-' gone, '+' new, ' ' in both
    std::string text;
};

std::vector<std::string> outlineOf(const TreeModel& tree)
{
    std::vector<std::string> lines;
    for (const ModelNode& node : tree.nodes)
        lines.push_back(std::string(node.depth * 2, ' ') + nodeText(node));
    return lines;
}

/// Both outlines as one, along a longest common subsequence of their lines.
std::vector<Line> merged(const std::vector<std::string>& before, const std::vector<std::string>& after)
{
    std::size_t head = 0;
    while (head < before.size() && head < after.size() && before[head] == after[head])
        ++head;
    std::size_t tail = 0;
    while (tail < before.size() - head && tail < after.size() - head &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;

    const std::size_t rows = before.size() - head - tail;
    const std::size_t columns = after.size() - head - tail;
    // Beyond this the table would outgrow the memory of a small machine; the whole middle counts as new then.
    const bool too_large = rows * columns > kLargestTable;
    // common[i][j]: how many lines the rests from i and j on have in common.
    std::vector<std::vector<std::uint32_t>> common(too_large ? 0 : rows + 1,
                                                   std::vector<std::uint32_t>(columns + 1));
    for (std::size_t i = too_large ? 0 : rows; i-- > 0;)
        for (std::size_t j = columns; j-- > 0;)
            common[i][j] = before[head + i] == after[head + j] ? common[i + 1][j + 1] + 1
                                                               : std::max(common[i + 1][j], common[i][j + 1]);

    std::vector<Line> lines;
    for (std::size_t i = 0; i < head; ++i)
        lines.push_back({' ', before[i]});
    for (std::size_t i = 0, j = 0; i < rows || j < columns;) {
        if (too_large) {
            lines.push_back(i < rows ? Line{'-', before[head + i++]} : Line{'+', after[head + j++]});
        } else if (i < rows && j < columns && before[head + i] == after[head + j]) {
            lines.push_back({' ', before[head + i]});
            ++i;
            ++j;
        } else if (i < rows && (j == columns || common[i + 1][j] >= common[i][j + 1]))
            lines.push_back({'-', before[head + i++]});
        else
            lines.push_back({'+', after[head + j++]});
    }
    for (std::size_t i = before.size() - tail; i < before.size(); ++i)
        lines.push_back({' ', before[i]});
    return lines;
}

class Report
{
public:
    Report(std::ostream& out, bool color) : out_(out), color_(color) {}

    void gone(const TreeModel& tree)
    {
        paint("\033[31m", "- " + tree.name + ": gone, had " + nodes(tree.nodes.size()));
        ++gone_;
    }
    void fresh(const TreeModel& tree)
    {
        paint("\033[32m", "+ " + tree.name + ": new, " + nodes(tree.nodes.size()));
        ++new_;
    }
    void compare(const TreeModel& before, const TreeModel& after)
    {
        const std::vector<Line> lines = merged(outlineOf(before), outlineOf(after));
        if (std::all_of(lines.begin(), lines.end(), [](const Line& line) { return line.mark == ' '; }))
            return;
        ++changed_;
        std::string title = after.name + ": " + nodes(after.nodes.size());
        if (before.nodes.size() != after.nodes.size())
            title += ", had " + std::to_string(before.nodes.size());
        paint("\033[1m", title);
        hunks(lines);
    }
    bool end()
    {
        const bool differs = changed_ + new_ + gone_ > 0;
        if (differs)
            out_ << changed_ << " changed, " << new_ << " new, " << gone_ << " gone\n";
        return differs;
    }

private:
    static std::string nodes(std::size_t count)
    {
        return std::to_string(count) + (count == 1 ? " node" : " nodes");
    }

    void hunks(const std::vector<Line>& lines)
    {
        std::size_t shown = 0;  // lines before this one are done with
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].mark == ' ')
                continue;
            const std::size_t from = std::max(shown, i - std::min(i, kAround));
            if (from > shown)
                paint("\033[2m", "  ...");
            std::size_t end = i;
            for (std::size_t j = i; j < lines.size() && j <= end + 2 * kAround; ++j)
                if (lines[j].mark != ' ')
                    end = j;
            const std::size_t to = std::min(lines.size(), end + 1 + kAround);
            for (std::size_t j = from; j < to; ++j)
                paint(lines[j].mark == '-'   ? "\033[31m"
                      : lines[j].mark == '+' ? "\033[32m"
                                             : "",
                      std::string(1, lines[j].mark) + " " + lines[j].text);
            shown = to;
            i = to - 1;
        }
        if (shown < lines.size())
            paint("\033[2m", "  ...");
    }

    void paint(std::string_view color, const std::string& text)
    {
        if (color_ && !color.empty())
            out_ << color << text << "\033[0m\n";
        else
            out_ << text << '\n';
    }

    std::ostream& out_;
    bool color_;
    std::size_t changed_ = 0;
    std::size_t new_ = 0;
    std::size_t gone_ = 0;
};

const TreeModel* find(std::span<const TreeModel> trees, const std::string& name)
{
    const auto found = std::find_if(trees.begin(), trees.end(),
                                    [&name](const TreeModel& tree) { return tree.name == name; });
    return found == trees.end() ? nullptr : &*found;
}

}  // namespace

bool writeDifferences(std::ostream& out, std::span<const TreeModel> before, std::span<const TreeModel> after,
                      bool color)
{
    Report report(out, color);
    for (const TreeModel& tree : before)
        if (find(after, tree.name) == nullptr)
            report.gone(tree);
    for (const TreeModel& tree : after)
        if (const TreeModel* old = find(before, tree.name))
            report.compare(*old, tree);
        else
            report.fresh(tree);
    return report.end();
}

}  // namespace vemra::app
