#include "app/walks/walk_compare.h"

#include <algorithm>
#include <ostream>
#include <string>

namespace vemra::app {
namespace {

constexpr std::size_t kBefore = 6;
constexpr std::size_t kBehind = 4;

/// The first deed from `at` on; the number of events where there is none.
std::size_t nextDeed(const std::vector<WalkEvent>& events, std::size_t at)
{
    while (at < events.size() && !isDeed(events[at].kind))
        ++at;
    return at;
}

void writeLines(std::ostream& out, const std::vector<WalkEvent>& events, std::size_t from, std::size_t count,
                char mark, const char* paint)
{
    for (std::size_t i = from; i < std::min(events.size(), from + count); ++i)
        out << paint << mark << ' ' << lineOf(events[i]) << (*paint == '\0' ? "" : "\033[0m") << '\n';
    if (from >= events.size())
        out << paint << mark << " nothing more" << (*paint == '\0' ? "" : "\033[0m") << '\n';
}

}  // namespace

void writeFirstDifference(std::ostream& out, const std::vector<WalkEvent>& before,
                          const std::vector<WalkEvent>& after, bool color)
{
    std::size_t old_at = nextDeed(before, 0);
    std::size_t new_at = nextDeed(after, 0);
    while (old_at < before.size() && new_at < after.size() &&
           lineOf(before[old_at]) == lineOf(after[new_at])) {
        old_at = nextDeed(before, old_at + 1);
        new_at = nextDeed(after, new_at + 1);
    }
    const std::size_t from = new_at - std::min(new_at, kBefore);
    writeLines(out, after, from, new_at - from, ' ', "");
    writeLines(out, before, old_at, kBehind, '-', color ? "\033[31m" : "");
    writeLines(out, after, new_at, kBehind, '+', color ? "\033[32m" : "");
}

}  // namespace vemra::app
