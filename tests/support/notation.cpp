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

void setKeys(BT::Blackboard& keys, std::string_view notes)
{
    for (const KeyNote& note : keysOf(notes)) {
        std::int64_t integer = 0;
        double real = 0.0;
        if (note.kind == KeyNote::Kind::Gone)
            keys.erase(note.key);
        else if (BT::parseInteger(note.value, integer))
            keys.set(note.key, integer);
        else if (BT::parseReal(note.value, real))
            keys.set(note.key, real);
        else
            keys.set(note.key, note.value);
    }
}

testing::AssertionResult keysAre(const BT::Blackboard& keys, std::string_view notes)
{
    std::string wrong;
    for (const KeyNote& note : keysOf(notes)) {
        const BT::Any* const value = keys.getAny(note.key);
        std::string text;
        if (value != nullptr)
            value->appendText(text);
        const bool as_noted = (value != nullptr) == (note.kind != KeyNote::Kind::Gone) &&
                              (note.kind != KeyNote::Kind::Valued || text == note.value);
        if (!as_noted)
            wrong += "\n  " + note.key + (value != nullptr ? " is \"" + text + "\"" : " is not there");
    }
    if (wrong.empty())
        return testing::AssertionSuccess() << notes;
    return testing::AssertionFailure() << "not " << notes << ":" << wrong;
}

}  // namespace vemra::test
