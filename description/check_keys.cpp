#include "description/check_keys.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string_view>

namespace vemra::description {

namespace {

using leaf::KeyContract;
using leaf::KeyOrigin;
using leaf::PortType;

/// The keys that a text refers to by "${...}". A reference that is put together from others is left out.
std::vector<std::string> references(std::string_view text)
{
    std::vector<std::string> keys;
    for (std::size_t at = text.find("${"); at != std::string_view::npos; at = text.find("${", at + 2)) {
        const std::size_t end = text.find_first_of("}$", at + 2);
        if (end != std::string_view::npos && text[end] == '}')
            keys.emplace_back(text.substr(at + 2, end - at - 2));
    }
    return keys;
}

/// The key whose value the text is, and nothing else; empty if there is none.
std::string onlyReference(const std::string& text)
{
    const std::vector<std::string> keys = references(text);
    return keys.size() == 1 && text.size() == keys.front().size() + 3 ? keys.front() : std::string();
}

PortType typeOf(const Node& node, std::string_view port)
{
    std::span<const leaf::PortContract> ports;
    if (const auto* contract = leaf::find(node.id))
        ports = contract->ports;
    else if (const auto* control = leaf::findControl(node.id))
        ports = control->ports;
    const auto found = std::find_if(ports.begin(), ports.end(),
                                    [port](const leaf::PortContract& other) { return other.name == port; });
    return found == ports.end() ? PortType::Text : found->type;
}

class KeyChecker
{
public:
    KeyChecker(std::span<const KeyContract> keys, std::span<const OnPurpose> on_purpose)
        : on_purpose_(on_purpose), applied_(on_purpose.size(), false)
    {
        for (const KeyContract& key : keys)
            keys_.emplace(key.name, &key);
    }

    std::vector<Fault> run(const std::vector<NamedTree>& trees, bool complete)
    {
        for (const NamedTree& tree : trees) {
            tree_ = &tree.name;
            walk(tree.root, tree.root.id);
        }
        if (complete)
            checkUse();
        for (std::size_t i = 0; i < on_purpose_.size(); ++i)
            if (!applied_[i])
                faults_.push_back(
                    {on_purpose_[i].tree, "",
                     "'" + on_purpose_[i].what + "' is said to be there on purpose, and is not"});
        return std::move(faults_);
    }

private:
    struct Use
    {
        std::string tree;
        std::string path;
        bool read = false;
        bool written = false;
    };

    void report(const std::string& what, const std::string& path, std::string message)
    {
        for (std::size_t i = 0; i < on_purpose_.size(); ++i)
            if (on_purpose_[i].tree == *tree_ && on_purpose_[i].what == what) {
                applied_[i] = true;
                return;
            }
        faults_.push_back({*tree_, path, std::move(message)});
    }

    void walk(const Node& node, const std::string& path)
    {
        for (const PortText& port : node.ports) {
            const std::vector<std::string> referred = references(port.text);
            for (const std::string& key : referred)
                use(key, path, true);
            const PortType type = typeOf(node, port.name);
            const bool names_key = type == PortType::Key || type == PortType::OutKey;
            if (names_key && !port.text.empty() && port.text.find("${") == std::string::npos)
                use(port.text, path, type == PortType::Key);
        }
        checkTexts(node, path);
        checkType(node, path);
        for (std::size_t i = 0; i < node.children.size(); ++i)
            walk(node.children[i], path + "/" + std::to_string(i) + ":" + node.children[i].name);
    }

    void use(const std::string& key, const std::string& path, bool reads)
    {
        if (!keys_.contains(key)) {
            report(key, path, "there is no key '" + key + "' in the catalogue");
            return;
        }
        Use& use = uses_.try_emplace(key, Use{*tree_, path}).first->second;
        (reads ? use.read : use.written) = true;
    }

    void checkTexts(const Node& node, const std::string& path)
    {
        const auto hold = [&](const std::string& key, const std::string* text) {
            if (text == nullptr || text->find("${") != std::string::npos)
                return;
            const auto found = keys_.find(key);
            if (found == keys_.end() || found->second->values.empty())
                return;
            const auto values = found->second->values;
            if (std::find(values.begin(), values.end(), *text) != values.end())
                return;
            std::string list;
            for (const std::string_view value : values)
                list.append(list.empty() ? "" : ", ").append(value);
            report(key + "=" + *text, path,
                   "key '" + key + "' never holds \"" + *text + "\"; it holds one of: " + list);
        };
        if (node.id == "SetBlackboard" && node.port("key") != nullptr)
            hold(*node.port("key"), node.port("value"));
        if (node.id != "StringMatch")
            return;
        const std::string* a = node.port("string_a");
        const std::string* b = node.port("string_b");
        if (a == nullptr || b == nullptr)
            return;
        if (const std::string key = onlyReference(*a); !key.empty())
            hold(key, b);
        if (const std::string key = onlyReference(*b); !key.empty())
            hold(key, a);
    }

    void checkType(const Node& node, const std::string& path)
    {
        const std::string* key = node.port("key");
        const std::string* type = node.port("type");
        if (node.id != "SetBlackboardWithType" || key == nullptr || type == nullptr)
            return;
        const auto found = keys_.find(*key);
        if (found != keys_.end() && leaf::toText(found->second->type) != *type)
            report(*key, path,
                   "key '" + *key + "' is written as " + *type + ", and holds " +
                       std::string(leaf::toText(found->second->type)));
    }

    void checkUse()
    {
        static const std::string kNoTree = "the catalogue of keys";
        for (const auto& [name, key] : keys_) {
            const auto use = uses_.find(name);
            tree_ = use == uses_.end() ? &kNoTree : &use->second.tree;
            const std::string text(name);
            if (use == uses_.end())
                report(text, "", "no tree uses the key '" + text + "'");
            else if (use->second.read && !use->second.written && key->from == KeyOrigin::Trees)
                report(text, use->second.path, "key '" + text + "' is read, and nothing writes it");
        }
    }

    std::span<const OnPurpose> on_purpose_;
    std::vector<bool> applied_;
    std::map<std::string, const KeyContract*, std::less<>> keys_;
    std::map<std::string, Use, std::less<>> uses_;
    const std::string* tree_ = nullptr;
    std::vector<Fault> faults_;
};

}  // namespace

std::vector<Fault> checkKeys(const std::vector<NamedTree>& trees, std::span<const KeyContract> keys,
                             std::span<const OnPurpose> on_purpose, bool complete)
{
    return KeyChecker(keys, on_purpose).run(trees, complete);
}

std::vector<OnPurpose> readOnPurpose(const std::string& file)
{
    std::ifstream in(file);
    if (!in)
        throw std::runtime_error(file + ": cannot be read");
    std::vector<OnPurpose> entries;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line.front() == '#')
            continue;
        const std::size_t blank = line.find(' ');
        const std::size_t colon = line.find(": ");
        if (blank == std::string::npos || colon == std::string::npos || colon < blank ||
            colon + 2 >= line.size())
            throw std::runtime_error(file + ":" + std::to_string(number) + ": expected \"TREE WHAT: WHY\"");
        entries.push_back(
            {line.substr(0, blank), line.substr(blank + 1, colon - blank - 1), line.substr(colon + 2)});
    }
    return entries;
}

}  // namespace vemra::description
