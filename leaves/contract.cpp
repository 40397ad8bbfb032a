#include "leaves/contract.h"

#include <unordered_map>

namespace vemra::leaf {

namespace {

template <class Entry>
using ByName = std::unordered_map<std::string_view, const Entry*>;

template <class Entry>
ByName<Entry> byName(std::span<const Entry> entries, std::string_view Entry::*name)
{
    ByName<Entry> by_name;
    for (const Entry& entry : entries)
        by_name.emplace(entry.*name, &entry);
    return by_name;
}

template <class Entry>
const Entry* at(const ByName<Entry>& entries, std::string_view name)
{
    const auto found = entries.find(name);
    return found == entries.end() ? nullptr : found->second;
}

}  // namespace

const LeafContract* find(std::string_view id)
{
    static const auto kLeaves = byName(all(), &LeafContract::id);
    return at(kLeaves, id);
}

const ControlContract* findControl(std::string_view id)
{
    static const auto kControls = byName(controls(), &ControlContract::id);
    return at(kControls, id);
}

const KeyContract* findKey(std::string_view name)
{
    static const auto kKeys = byName(keys(), &KeyContract::name);
    return at(kKeys, name);
}

}  // namespace vemra::leaf
