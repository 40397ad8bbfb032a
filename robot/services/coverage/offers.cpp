#include "robot/services/coverage/offers.h"

#include <algorithm>

namespace vemra::robot {
namespace {

constexpr double kSameMm = 100;
constexpr double kAroundMm = 300;
constexpr int kFreely = 2;
constexpr int kMost = 3;

}  // namespace

const OfferBook::Offer* OfferBook::find(std::string_view kind, PointMm place) const
{
    const auto found = std::find_if(offers_.begin(), offers_.end(), [&](const Offer& offer) {
        return offer.kind == kind && distance(offer.place, place) <= kSameMm;
    });
    return found == offers_.end() ? nullptr : &*found;
}

OfferBook::Offer& OfferBook::entry(std::string_view kind, PointMm place)
{
    if (const Offer* known = find(kind, place)) {
        return offers_[static_cast<std::size_t>(known - offers_.data())];
    }
    return offers_.emplace_back(Offer{std::string(kind), place, 0, false});
}

bool OfferBook::isOpen(std::string_view kind, PointMm place) const
{
    const Offer* offer = find(kind, place);
    return offer == nullptr || offer->given < kFreely || (offer->given < kMost && offer->fresh);
}

bool OfferBook::take(std::string_view kind, PointMm place)
{
    if (!isOpen(kind, place)) {
        return false;
    }
    Offer& offer = entry(kind, place);
    ++offer.given;
    offer.fresh = false;
    return true;
}

void OfferBook::useUp(std::string_view kind, PointMm place)
{
    Offer& offer = entry(kind, place);
    offer.given = std::max(offer.given, kFreely);
    offer.fresh = false;
}

void OfferBook::changed(PointMm place)
{
    for (Offer& offer : offers_) {
        offer.fresh = offer.fresh || distance(offer.place, place) <= kAroundMm;
    }
}

}  // namespace vemra::robot
