#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "leaves/port.h"

namespace vemra::description {

/// One port of a node: its name and its text, as the node will get it.
struct PortText
{
    std::string name;
    std::string text;

    bool operator==(const PortText&) const = default;
};

/// A struct of the leaf contract: has an `id` and shows its ports to a visitor `f(name, port)`.
template <class L>
concept Leaf = requires(const L& leaf)
{
    {
        L::id
        } -> std::convertible_to<const char*>;
    leaf.each_port([](const char*, const leaf::Port&) {});
};

/// A node of a described tree, with all below it.
struct Node
{
    std::string id;    ///< under which the factory knows the node type
    std::string name;  ///< label for logs and viewers; the identifier unless `Named`
    std::vector<PortText> ports;
    std::vector<Node> children;
    bool stands_for_no_tree = false;  ///< a reference that is known to lead nowhere

    Node(std::string identifier, std::vector<PortText> port_texts, std::vector<Node> below)
        : id(std::move(identifier)), name(id), ports(std::move(port_texts)), children(std::move(below))
    {}

    // Implicit on purpose: a leaf stands wherever a node may stand.
    template <Leaf L>
    Node(const L& leaf)  // NOLINT(google-explicit-constructor)
        : id(L::id), name(L::id)
    {
        leaf.each_port([this](const char* port, const leaf::Port& value) {
            if (value.given())
                ports.push_back({port, value.text()});
        });
    }

    [[nodiscard]] const std::string* port(std::string_view port_name) const
    {
        for (const PortText& port : ports)
            if (port.name == port_name)
                return &port.text;
        return nullptr;
    }

    bool operator==(const Node&) const = default;
};

}  // namespace vemra::description
