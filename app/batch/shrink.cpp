#include "app/batch/shrink.h"

#include <fmt/format.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "app/batch/home_case.h"
#include "app/interrupt.h"
#include "app/user_error.h"

namespace vemra::app {
namespace {

/// A thing in the home, low or not.
struct Thing
{
    robot::BoxMm box;
    bool low;
};

robot::RandomHome withThings(const robot::RandomHome& made, const std::vector<Thing>& things)
{
    robot::RandomHome home = made;
    home.plan.furniture.clear();
    home.low.clear();
    for (const Thing& thing : things)
        (thing.low ? home.low : home.plan.furniture).push_back(thing.box);
    return home;
}

}  // namespace

// Delta debugging over the things (Zeller and Hildebrandt 2002), without its complements: halves first, then
// ever smaller pieces.
int shrink(std::uint64_t seed, const std::optional<std::filesystem::path>& keep,
           const std::filesystem::path& plugin)
{
    const robot::RandomHome made = robot::randomHome(seed);
    std::vector<Thing> things;
    for (const robot::BoxMm& box : made.plan.furniture)
        things.push_back({box, false});
    for (const robot::BoxMm& box : made.low)
        things.push_back({box, true});

    const Interrupt interrupt;
    std::string ended;
    const auto fails = [&](const std::vector<Thing>& some) {
        const auto line = runCase(caseOfHome(withThings(made, some), seed), plugin);
        if (!line.at("good").get<bool>())
            ended = line.at("ended").get<std::string>();
        return !line.at("good").get<bool>();
    };
    if (!fails(things))
        throw UserError(fmt::format("the clean of seed {} comes out well", seed));
    std::cerr << fmt::format("seed {} ends with \"{}\" among {} things\n", seed, ended, things.size());
    for (std::size_t piece = std::max<std::size_t>(1, things.size() / 2); !things.empty(); piece /= 2) {
        for (std::size_t from = 0; from < things.size() && !interrupt.waits();) {
            std::vector<Thing> fewer = things;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(from),
                        fewer.begin() + static_cast<std::ptrdiff_t>(std::min(from + piece, things.size())));
            if (fails(fewer)) {
                things = std::move(fewer);
                std::cerr << fmt::format("{} things are enough for \"{}\"\n", things.size(), ended);
            } else {
                from += piece;
            }
        }
        if (piece <= 1 || interrupt.waits())
            break;
    }
    std::cout << fmt::format("seed {}: \"{}\" with {} of {} things left\n", seed, ended, things.size(),
                             made.plan.furniture.size() + made.low.size());
    for (const Thing& thing : things)
        std::cout << fmt::format("  {:.2f}, {:.2f} to {:.2f}, {:.2f} m{}\n", thing.box.low.x / 1e3,
                                 thing.box.low.y / 1e3, thing.box.high.x / 1e3, thing.box.high.y / 1e3,
                                 thing.low ? ", low" : "");
    if (keep)
        std::cout << keepHome(withThings(made, things), seed, *keep) << '\n';
    return kDone;
}

}  // namespace vemra::app
