#include "behaviortree_cpp/blackboard/safe_any.hpp"

#include <array>
#include <charconv>
#include <cmath>

namespace BT {

namespace {

/// A plus sign may stand before a number.
std::string_view withoutPlus(std::string_view text)
{
    if (text.size() > 1 && text.front() == '+' && text[1] != '-')
        text.remove_prefix(1);
    return text;
}

template <class T>
bool parseWhole(std::string_view text, T& out)
{
    text = withoutPlus(detail::trimmed(text));
    const char* end = text.data() + text.size();
    const auto [stop, fault] = std::from_chars(text.data(), end, out);
    return fault == std::errc{} && stop == end;
}

template <class T>
void appendDigits(std::string& text, T number)
{
    std::array<char, 32> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text.append(digits.data(), result.ptr);
}

}  // namespace

bool parseInteger(std::string_view text, std::int64_t& out)
{
    return parseWhole(text, out);
}

bool parseUnsigned(std::string_view text, std::uint64_t& out)
{
    return parseWhole(text, out);
}

bool parseReal(std::string_view text, double& out)
{
    return parseWhole(text, out) && std::isfinite(out);
}

bool parseBoolean(std::string_view text, bool& out)
{
    text = withoutPlus(detail::trimmed(text));
    if (text == "true" || text == "1" || text == "True" || text == "TRUE")
        out = true;
    else if (text == "false" || text == "0" || text == "False" || text == "FALSE")
        out = false;
    else
        return false;
    return true;
}

// The powers of two are exact as doubles; what lies between them fits.

bool realToInteger(double real, std::int64_t& out)
{
    constexpr double kLimit = 9223372036854775808.0;
    if (!(real > -kLimit && real < kLimit))
        return false;
    out = static_cast<std::int64_t>(real);
    return true;
}

bool realToInteger(double real, std::uint64_t& out)
{
    constexpr double kLimit = 18446744073709551616.0;
    if (!(real > -1 && real < kLimit))
        return false;
    out = static_cast<std::uint64_t>(real);
    return true;
}

void appendNumber(std::string& text, std::int64_t number)
{
    appendDigits(text, number);
}

void appendNumber(std::string& text, std::uint64_t number)
{
    appendDigits(text, number);
}

void appendNumber(std::string& text, float number)
{
    appendDigits(text, number);
}

void appendNumber(std::string& text, double number)
{
    appendDigits(text, number);
}

void Any::assign(const Any& other)
{
    if (this == &other)
        return;
    switch (other.kind_) {
        case Kind::Text:
            setText(other.text_);
            break;
        case Kind::Object:
            setObject(other.object_);
            break;
        default:
            become(other.kind_);
            number_ = other.number_;
            is_single_ = other.is_single_;
            break;
    }
}

void Any::takeText(std::string_view value)
{
    become(Kind::Text);
    text_.assign(value);
}

void Any::setObject(std::shared_ptr<HolderBase> object)
{
    kind_ = Kind::Object;
    object_ = std::move(object);
}

const std::type_info& Any::type() const
{
    switch (kind_) {
        case Kind::Empty:
            return typeid(void);
        case Kind::Integer:
            return typeid(std::int64_t);
        case Kind::Real:
            return typeid(double);
        case Kind::Boolean:
            return typeid(bool);
        case Kind::Text:
            return typeid(std::string);
        case Kind::Object:
            return object_->type();
        case Kind::Unsigned:
            return typeid(std::uint64_t);
    }
    return typeid(void);
}

bool Any::toInteger(std::int64_t& out) const
{
    switch (kind_) {
        case Kind::Integer:
        case Kind::Boolean:
            out = number_.integer;
            return true;
        case Kind::Real:
            return realToInteger(number_.real, out);
        case Kind::Text: {
            if (parseInteger(text_, out))
                return true;
            double real = 0;
            return parseReal(text_, real) && realToInteger(real, out);
        }
        default:
            return false;
    }
}

bool Any::toUnsigned(std::uint64_t& out) const
{
    switch (kind_) {
        case Kind::Integer:
        case Kind::Boolean:
            return detail::fitInteger(number_.integer, out);
        case Kind::Unsigned:
            out = static_cast<std::uint64_t>(number_.integer);
            return true;
        case Kind::Real:
            return realToInteger(number_.real, out);
        case Kind::Text: {
            if (parseUnsigned(text_, out))
                return true;
            double real = 0;
            return parseReal(text_, real) && realToInteger(real, out);
        }
        default:
            return false;
    }
}

bool Any::toReal(double& out) const
{
    switch (kind_) {
        case Kind::Integer:
        case Kind::Boolean:
            out = static_cast<double>(number_.integer);
            return true;
        case Kind::Unsigned:
            out = static_cast<double>(static_cast<std::uint64_t>(number_.integer));
            return true;
        case Kind::Real:
            out = number_.real;
            return true;
        case Kind::Text:
            return parseReal(text_, out);
        default:
            return false;
    }
}

bool Any::toBoolean(bool& out) const
{
    switch (kind_) {
        case Kind::Integer:
        case Kind::Unsigned:
        case Kind::Boolean:
            out = number_.integer != 0;
            return true;
        case Kind::Real:
            out = number_.real != 0;
            return true;
        case Kind::Text: {
            if (parseBoolean(text_, out))
                return true;
            double real = 0;
            if (!parseReal(text_, real))
                return false;
            out = real != 0;
            return true;
        }
        default:
            return false;
    }
}

void Any::appendText(std::string& out) const
{
    switch (kind_) {
        case Kind::Empty:
            break;
        case Kind::Integer:
            appendNumber(out, number_.integer);
            break;
        case Kind::Unsigned:
            appendNumber(out, static_cast<std::uint64_t>(number_.integer));
            break;
        case Kind::Real:
            if (is_single_)
                appendNumber(out, static_cast<float>(number_.real));
            else
                appendNumber(out, number_.real);
            break;
        case Kind::Boolean:
            out += boolean() ? "true" : "false";
            break;
        case Kind::Text:
            out += text_;
            break;
        case Kind::Object:
            object_->print(out);
            break;
    }
}

std::string_view Any::view(std::string& scratch) const
{
    if (kind_ == Kind::Text)
        return text_;
    scratch.clear();
    appendText(scratch);
    return scratch;
}

}  // namespace BT
