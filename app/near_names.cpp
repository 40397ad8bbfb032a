#include "app/near_names.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace vemra::app {

namespace {

constexpr std::size_t kAtMost = 3;
constexpr std::size_t kShortestPart = 3;

std::string lowerCase(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

std::size_t distance(std::string_view a, std::string_view b)
{
    // Three rows of the table are enough: a swap looks back two.
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> above(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        above[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = above[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        std::swap(before, above);
        std::swap(above, row);
    }
    return above[b.size()];
}

}  // namespace

std::vector<std::string> nearNames(std::string_view given, std::span<const std::string> known)
{
    const std::string wanted = lowerCase(given);
    std::vector<std::pair<std::size_t, std::string>> found;
    for (const std::string& name : known) {
        const std::string candidate = lowerCase(name);
        const std::size_t slips = distance(wanted, candidate);
        const bool part = wanted.size() >= kShortestPart && candidate.find(wanted) != std::string::npos;
        if (slips * 3 <= std::max(wanted.size(), candidate.size()))
            found.emplace_back(slips, name);
        else if (part)
            found.emplace_back(wanted.size() + slips, name);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(found.size(), kAtMost); ++i)
        names.push_back(found[i].second);
    return names;
}

std::string didYouMean(std::string_view given, std::span<const std::string> known)
{
    const std::vector<std::string> names = nearNames(given, known);
    if (names.empty())
        return {};
    std::string text = "; did you mean ";
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0)
            text += i + 1 == names.size() ? " or " : ", ";
        text += "'" + names[i] + "'";
    }
    return text + "?";
}

}  // namespace vemra::app
