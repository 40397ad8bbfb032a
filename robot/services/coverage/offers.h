#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "robot/geometry/points.h"

namespace vemra::robot {

/// The book of all that leaves hand out as a goal: lines, blocks, ends of chains, places to flood to. The
/// loops of the trees count nothing and end because searches fail in the end: the same offer, of one kind
/// within 100 mm, is given twice, and once more only when the floor or the walls around it have changed
/// since.
class OfferBook
{
public:
    /// May it be given?
    [[nodiscard]] bool isOpen(std::string_view kind, PointMm place) const;
    /// It is given; false if it may not be.
    bool take(std::string_view kind, PointMm place);
    /// It came to nothing and is not given again until something changes.
    void useUp(std::string_view kind, PointMm place);
    /// Floor was swept, or a wall traced, here.
    void changed(PointMm place);
    /// What is offered of a kind begins anew.
    void forget(std::string_view kind)
    {
        std::erase_if(offers_, [kind](const Offer& offer) { return offer.kind == kind; });
    }
    void reset() { offers_.clear(); }

private:
    struct Offer
    {
        std::string kind;
        PointMm place;
        int given = 0;
        bool fresh = false;  ///< something around it has changed since
    };
    [[nodiscard]] const Offer* find(std::string_view kind, PointMm place) const;
    Offer& entry(std::string_view kind, PointMm place);

    std::vector<Offer> offers_;
};

}  // namespace vemra::robot
