#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <iostream>  // for the sources of hosts and leaves, which rely on it, and on <set>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "behaviortree_cpp/optional.hpp"
#include "behaviortree_cpp/string_view.hpp"

namespace BT {

enum class NodeType
{
    UNDEFINED = 0,
    ACTION,
    CONDITION,
    CONTROL,
    DECORATOR,
    SUBTREE
};

enum class NodeStatus : std::uint8_t
{
    IDLE = 0,
    RUNNING,
    SUCCESS,
    FAILURE
};

/// Port name to port text.
using NodeParameters = std::unordered_map<std::string, std::string>;

using TimePoint = std::chrono::high_resolution_clock::time_point;
using Duration = std::chrono::high_resolution_clock::duration;

[[nodiscard]] const char* toStr(NodeStatus status);
[[nodiscard]] const char* toStr(NodeType type);
std::ostream& operator<<(std::ostream& out, NodeStatus status);
std::ostream& operator<<(std::ostream& out, NodeType type);

/// Reads a value of type T from the text of a port. Specialise it for a type of your own; throw what
/// derives from std::exception when the text is no T. `getParam` turns the throw into `false`.
/// Numbers may stand between blanks; lists are separated by ';'.
template <class T>
T convertFromString(const StringView& text)
{
    throw std::invalid_argument("no convertFromString for this type; the text was '" + std::string(text) +
                                "'");
}

template <>
std::string convertFromString<std::string>(const StringView& text);
template <>
const char* convertFromString<const char*>(const StringView& text);
template <>
int convertFromString<int>(const StringView& text);
template <>
unsigned convertFromString<unsigned>(const StringView& text);
template <>
long convertFromString<long>(const StringView& text);
template <>
long long convertFromString<long long>(const StringView& text);
template <>
unsigned long convertFromString<unsigned long>(const StringView& text);
template <>
float convertFromString<float>(const StringView& text);
template <>
double convertFromString<double>(const StringView& text);
template <>
bool convertFromString<bool>(const StringView& text);
template <>
std::vector<int> convertFromString<std::vector<int>>(const StringView& text);
template <>
std::vector<double> convertFromString<std::vector<double>>(const StringView& text);
template <>
NodeStatus convertFromString<NodeStatus>(const StringView& text);
template <>
NodeType convertFromString<NodeType>(const StringView& text);

/// The parts of `text` between the delimiters; one at the end opens no further part.
[[nodiscard]] std::vector<StringView> splitString(const StringView& text, char delimiter);

}  // namespace BT
