#include "behaviortree_cpp/basic_types.h"

#include <ostream>

#include "behaviortree_cpp/blackboard/safe_any.hpp"

namespace BT {

namespace {

[[noreturn]] void refuse(const StringView& text, const char* what)
{
    throw std::invalid_argument("'" + std::string(text) + "' is not " + what);
}

template <class T>
T readInteger(const StringView& text)
{
    T out{};
    if (!Any(text).tryCast(out))
        refuse(text, "an integer in range");
    return out;
}

}  // namespace

const char* toStr(NodeStatus status)
{
    switch (status) {
        case NodeStatus::IDLE:
            return "IDLE";
        case NodeStatus::RUNNING:
            return "RUNNING";
        case NodeStatus::SUCCESS:
            return "SUCCESS";
        case NodeStatus::FAILURE:
            return "FAILURE";
    }
    return "UNDEFINED";
}

const char* toStr(NodeType type)
{
    switch (type) {
        case NodeType::ACTION:
            return "Action";
        case NodeType::CONDITION:
            return "Condition";
        case NodeType::CONTROL:
            return "Control";
        case NodeType::DECORATOR:
            return "Decorator";
        case NodeType::SUBTREE:
            return "SubTree";
        case NodeType::UNDEFINED:
            break;
    }
    return "Undefined";
}

std::ostream& operator<<(std::ostream& out, NodeStatus status)
{
    return out << toStr(status);
}

std::ostream& operator<<(std::ostream& out, NodeType type)
{
    return out << toStr(type);
}

std::vector<StringView> splitString(const StringView& text, char delimiter)
{
    std::vector<StringView> parts;
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t to = std::min(text.find(delimiter, from), text.size());
        parts.push_back(text.substr(from, to - from));
        from = to + 1;
    }
    return parts;
}

template <>
std::string convertFromString<std::string>(const StringView& text)
{
    return std::string(text);
}

// Points into the text, as long as that lives.
template <>
const char* convertFromString<const char*>(const StringView& text)
{
    return text.data();
}

template <>
int convertFromString<int>(const StringView& text)
{
    return readInteger<int>(text);
}

template <>
unsigned convertFromString<unsigned>(const StringView& text)
{
    return readInteger<unsigned>(text);
}

template <>
long convertFromString<long>(const StringView& text)
{
    return readInteger<long>(text);
}

template <>
long long convertFromString<long long>(const StringView& text)
{
    return readInteger<long long>(text);
}

template <>
unsigned long convertFromString<unsigned long>(const StringView& text)
{
    return readInteger<unsigned long>(text);
}

template <>
double convertFromString<double>(const StringView& text)
{
    double value = 0;
    if (!parseReal(text, value))
        refuse(text, "a number");
    return value;
}

template <>
float convertFromString<float>(const StringView& text)
{
    return static_cast<float>(convertFromString<double>(text));
}

template <>
bool convertFromString<bool>(const StringView& text)
{
    bool value = false;
    if (!parseBoolean(text, value))
        refuse(text, "a truth value");
    return value;
}

template <>
std::vector<int> convertFromString<std::vector<int>>(const StringView& text)
{
    std::vector<int> values;
    for (const StringView part : splitString(text, ';'))
        values.push_back(convertFromString<int>(part));
    return values;
}

template <>
std::vector<double> convertFromString<std::vector<double>>(const StringView& text)
{
    std::vector<double> values;
    for (const StringView part : splitString(text, ';'))
        values.push_back(convertFromString<double>(part));
    return values;
}

template <>
NodeStatus convertFromString<NodeStatus>(const StringView& text)
{
    for (const NodeStatus status :
         {NodeStatus::IDLE, NodeStatus::RUNNING, NodeStatus::SUCCESS, NodeStatus::FAILURE})
        if (text == toStr(status))
            return status;
    refuse(text, "a node status");
}

template <>
NodeType convertFromString<NodeType>(const StringView& text)
{
    for (const NodeType type :
         {NodeType::ACTION, NodeType::CONDITION, NodeType::CONTROL, NodeType::DECORATOR, NodeType::SUBTREE})
        if (text == toStr(type))
            return type;
    refuse(text, "a node type");
}

}  // namespace BT
