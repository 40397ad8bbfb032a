#include "app/walks/key_pool.h"

#include <algorithm>
#include <cctype>
#include <span>
#include <string>
#include <vector>

#include "app/walks/chance.h"
#include "behaviortree_cpp/port_value.h"
#include "leaves/contract.h"

namespace vemra::app {
namespace {

/// Whole numbers and fractions in a formula, outside of its references.
std::vector<std::string> numbersIn(std::string_view text)
{
    std::vector<std::string> numbers;
    for (std::size_t i = 0; i < text.size();) {
        if (text.substr(i).starts_with("${")) {
            i = std::min(text.find('}', i), text.size() - 1) + 1;
            continue;
        }
        const std::size_t start = i;
        while (i < text.size() && (std::isdigit(static_cast<unsigned char>(text[i])) != 0 || text[i] == '.'))
            ++i;
        if (i > start)
            numbers.emplace_back(text.substr(start, i - start));
        else
            ++i;
    }
    return numbers;
}

std::string textOf(const BT::Any& value)
{
    std::string text;
    value.appendText(text);
    return text;
}

/// The text as the value that a key of its type would hold; a text where it reads as nothing else.
BT::Any valueOf(std::string_view key, std::string_view text)
{
    const leaf::KeyContract* contract = leaf::findKey(key);
    const leaf::KeyType type = contract == nullptr ? leaf::KeyType::Text : contract->type;
    std::int64_t integer = 0;
    double real = 0;
    bool truth = false;
    if (type == leaf::KeyType::Int && BT::parseInteger(text, integer))
        return BT::Any(integer);
    if (type == leaf::KeyType::Float && BT::parseReal(text, real))
        return BT::Any(real);
    if (type == leaf::KeyType::Bool && BT::parseBoolean(text, truth))
        return BT::Any(truth);
    return BT::Any(std::string(text));
}

}  // namespace

KeyPool::Values KeyPool::usualValues(std::string_view key)
{
    Values values;
    const auto add = [&values](const auto& value) {
        const BT::Any any(value);
        values.emplace(textOf(any), any);
    };
    const leaf::KeyContract* contract = leaf::findKey(key);
    switch (contract == nullptr ? leaf::KeyType::Text : contract->type) {
        case leaf::KeyType::Flag:
            add(std::string());
            break;
        case leaf::KeyType::Int:
            for (const int number : {0, 1, 2, 5})
                add(number);
            break;
        case leaf::KeyType::Float:
            for (const double number : {0.0, 90.0, -45.5, 1000.0})
                add(number);
            break;
        case leaf::KeyType::Bool:
            add(true);
            add(false);
            break;
        case leaf::KeyType::Text:
            for (const std::string_view text :
                 contract == nullptr ? std::span<const std::string_view>{} : contract->values)
                add(std::string(text));
            if (values.empty())
                for (const char* text : {"true", "false", "other"})
                    add(std::string(text));
            break;
        default:
            for (const char* text : {"one", "another", "a third"})
                add(std::string(text));
    }
    return values;
}

KeyPool::Values& KeyPool::valuesOf(std::string_view key)
{
    auto found = keys_.find(key);
    if (found == keys_.end())
        found = keys_.emplace(key, usualValues(key)).first;
    return found->second;
}

void KeyPool::add(std::string_view key, std::string_view text)
{
    const BT::Any value = valueOf(key, text);
    Values& values = valuesOf(key);
    values.emplace(textOf(value), value);
    if (double number = 0; value.isNumber() && value.toReal(number))
        for (const double beside : {number - 1, number + 1, -number}) {
            std::string other;
            BT::appendNumber(other, beside);
            const BT::Any near = valueOf(key, other);
            values.emplace(textOf(near), near);
        }
}

void KeyPool::addComparison(const ModelNode& node)
{
    const bool compares = node.id == "StringMatch" || node.id.starts_with("IsAGreaterThanB");
    for (const auto& [port, text] : node.ports)
        for (const std::string& key : BT::referencedKeys(text)) {
            for (const std::string& number : numbersIn(text))
                add(key, number);
            for (const auto& [other_port, other] : node.ports)
                if (compares && other_port != port && BT::referencedKeys(other).empty())
                    add(key, other);
        }
}

KeyPool::KeyPool(std::span<const TreeModel> trees)
{
    for (const leaf::KeyContract& key : leaf::keys())
        keys_.emplace(key.name, usualValues(key.name));
    for (const TreeModel& tree : trees)
        for (const ModelNode& node : tree.nodes) {
            addComparison(node);
            const std::string* key = node.port("key");
            for (const char* port : {"value", "expected", "expected_value"})
                if (const std::string* text = node.port(port);
                    key != nullptr && text != nullptr && BT::referencedKeys(*text).empty())
                    add(*key, *text);
        }
}

const BT::Any& KeyPool::choose(const std::string& key, std::uint64_t chance) const
{
    const auto found = keys_.find(key);
    const Values& values = found == keys_.end() ? unknown_ : found->second;
    const BT::Any* best = nullptr;
    std::uint64_t highest = 0;
    for (const auto& [text, value] : values)
        if (const std::uint64_t weight = drawn(chance, text); best == nullptr || weight > highest) {
            best = &value;
            highest = weight;
        }
    return *best;
}

}  // namespace vemra::app
