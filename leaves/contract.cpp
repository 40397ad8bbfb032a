#include "leaves/contract.h"

#include <unordered_map>

namespace vemra::leaf {

const LeafContract* find(std::string_view id)
{
    static const std::unordered_map<std::string_view, const LeafContract*> kById = [] {
        std::unordered_map<std::string_view, const LeafContract*> by_id;
        for (const LeafContract& leaf : all())
            by_id.emplace(leaf.id, &leaf);
        return by_id;
    }();
    const auto found = kById.find(id);
    return found == kById.end() ? nullptr : found->second;
}

}  // namespace vemra::leaf
