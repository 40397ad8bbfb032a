#include "support/notation.h"

#include <stdexcept>

namespace vemra::test {
namespace {

/// Cut at blanks, but not between quotes.
std::vector<std::string> wordsOf(std::string_view text)
{
    std::vector<std::string> words;
    bool quoted = false;
    bool inside = false;
    for (const char c : text) {
        if (c == ' ' && !quoted) {
            inside = false;
            continue;
        }
        if (!inside)
            words.emplace_back();
        inside = true;
        if (c == '\'')
            quoted = !quoted;
        else
            words.back() += c;
    }
    if (quoted)
        throw std::invalid_argument("a quote without its end: " + std::string(text));
    return words;
}

}  // namespace

std::vector<Step> stepsOf(std::string_view text)
{
    std::vector<Step> steps;
    bool begins = true;
    for (const std::string& word : wordsOf(text)) {
        const auto sign = word.find('=');
        const bool names = sign == std::string::npos && word != "|";
        if (begins != names)
            throw std::invalid_argument("not \"Node port=value ... | Node ...\": " + std::string(text));
        if (names)
            steps.push_back({word, {}});
        else if (word != "|")
            steps.back().values.emplace_back(word.substr(0, sign), word.substr(sign + 1));
        begins = word == "|";
    }
    if (begins)
        throw std::invalid_argument("a node is missing at the end of: " + std::string(text));
    return steps;
}

Step stepOf(std::string_view text)
{
    std::vector<Step> steps = stepsOf(text);
    if (steps.size() != 1)
        throw std::invalid_argument("one node, not several: " + std::string(text));
    return std::move(steps.front());
}

std::vector<KeyNote> keysOf(std::string_view text)
{
    std::vector<KeyNote> notes;
    for (const std::string& word : wordsOf(text)) {
        const auto sign = word.find('=');
        if (word.front() == '-')
            notes.push_back({word.substr(1), KeyNote::Kind::Gone, {}});
        else if (sign == std::string::npos)
            notes.push_back({word, KeyNote::Kind::Plain, {}});
        else
            notes.push_back({word.substr(0, sign), KeyNote::Kind::Valued, word.substr(sign + 1)});
    }
    return notes;
}

}  // namespace vemra::test
