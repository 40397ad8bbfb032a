#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include "behaviortree_cpp/basic_types.h"
#include "behaviortree_cpp/text.h"

namespace BT {

/// Reads all of `text` (blanks around it aside) as an integer or a real number.
[[nodiscard]] bool parseInteger(std::string_view text, std::int64_t& out);
[[nodiscard]] bool parseUnsigned(std::string_view text, std::uint64_t& out);
[[nodiscard]] bool parseReal(std::string_view text, double& out);
/// "true", "True", "TRUE" and "1", and likewise for false.
[[nodiscard]] bool parseBoolean(std::string_view text, bool& out);

/// Cuts `real` towards zero; false when it is then out of range, or not a number.
[[nodiscard]] bool realToInteger(double real, std::int64_t& out);
[[nodiscard]] bool realToInteger(double real, std::uint64_t& out);

/// Shortest text that reads back as the same number.
void appendNumber(std::string& text, std::int64_t number);
void appendNumber(std::string& text, std::uint64_t number);
void appendNumber(std::string& text, float number);
void appendNumber(std::string& text, double number);

/// A value on the blackboard: nothing, an integer (int64, or uint64 above its range), a real number (double),
/// a truth value, a text, or an object of any copyable type, pointers included. Converts between the first
/// four and text; an object comes back as the type it was stored as. Keeps the buffer of its text over
/// changes, and writes an object over in place, so that a value that changes in every tick takes no memory.
class Any
{
public:
    enum class Kind : std::uint8_t
    {
        Empty,
        Integer,
        Real,
        Boolean,
        Text,
        Object,
        Unsigned  ///< an integer above the range of int64
    };

    Any() = default;

    template <class T>
    requires(!std::is_same_v<std::decay_t<T>, Any>) explicit Any(const T& value) { set(value); }

    template <class T>
    void set(const T& value)
    {
        if constexpr (std::is_same_v<T, Any>)
            assign(value);
        else if constexpr (std::is_same_v<T, bool>)
            setBoolean(value);
        else if constexpr (std::is_same_v<T, unsigned long> || std::is_same_v<T, unsigned long long>)
            setUnsigned(value);
        else if constexpr (std::is_integral_v<T>)
            setInteger(static_cast<std::int64_t>(value));
        else if constexpr (std::is_floating_point_v<T>) {
            setReal(static_cast<double>(value));
            is_single_ = std::is_same_v<T, float>;
        } else if constexpr (std::is_convertible_v<const T&, std::string_view>)
            setText(std::string_view(value));
        else
            takeObject(value);
    }

    void setInteger(std::int64_t value)
    {
        become(Kind::Integer);
        number_.integer = value;
    }
    void setUnsigned(std::uint64_t value)
    {
        const auto integer = static_cast<std::int64_t>(value);
        become(integer < 0 ? Kind::Unsigned : Kind::Integer);
        number_.integer = integer;
    }
    void setReal(double value)
    {
        become(Kind::Real);
        number_.real = value;
        is_single_ = false;
    }
    void setBoolean(bool value)
    {
        become(Kind::Boolean);
        number_.integer = value ? 1 : 0;
    }
    [[gnu::always_inline]] void setText(std::string_view value)
    {
        if (kind_ != Kind::Text || !detail::sameText(text_, value))
            takeText(value);
    }
    void assign(const Any& other);
    void clear() { become(Kind::Empty); }

    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] bool empty() const { return kind_ == Kind::Empty; }
    [[nodiscard]] bool isText() const { return kind_ == Kind::Text; }
    [[nodiscard]] bool isNumber() const
    {
        return kind_ == Kind::Integer || kind_ == Kind::Real || kind_ == Kind::Unsigned;
    }
    [[nodiscard]] bool isString() const { return isText(); }
    [[nodiscard]] const std::type_info& type() const;

    // What is held, for who has looked at the kind.
    [[nodiscard]] std::int64_t integer() const { return number_.integer; }
    [[nodiscard]] double real() const { return number_.real; }
    [[nodiscard]] bool boolean() const { return number_.integer != 0; }
    [[nodiscard]] const std::string& text() const { return text_; }

    /// The value as an integer: reals are cut towards zero, texts are read. False when it is none.
    [[nodiscard]] bool toInteger(std::int64_t& out) const;
    [[nodiscard]] bool toUnsigned(std::uint64_t& out) const;
    [[nodiscard]] bool toReal(double& out) const;
    [[nodiscard]] bool toBoolean(bool& out) const;
    /// Appends the value as text; an object that cannot be printed stands as its type's name in brackets.
    void appendText(std::string& out) const;
    /// The value's text: of a text its own, else `scratch` filled with it.
    [[nodiscard]] std::string_view view(std::string& scratch) const;

    /// The held object, or nullptr when it is of another type.
    template <class T>
    [[nodiscard]] const T* object() const
    {
        if (kind_ != Kind::Object || object_->type() != typeid(T))
            return nullptr;
        return static_cast<const T*>(object_->address());
    }

    /// The value as a T, converted where that loses nothing but fractions; false when it cannot be.
    template <class T>
    [[nodiscard]] bool tryCast(T& out) const;

    /// As tryCast, but throws std::runtime_error.
    template <class T>
    [[nodiscard]] T cast() const
    {
        T out{};
        if (!tryCast(out))
            throw std::runtime_error("a blackboard value cannot be read as the type asked for");
        return out;
    }

private:
    struct HolderBase
    {
        virtual ~HolderBase() = default;
        [[nodiscard]] virtual const std::type_info& type() const = 0;
        [[nodiscard]] virtual void* address() = 0;
        virtual void print(std::string& out) const = 0;
    };

    template <class T>
    struct Holder final : HolderBase
    {
        explicit Holder(const T& v) : value(v) {}
        [[nodiscard]] const std::type_info& type() const override { return typeid(T); }
        [[nodiscard]] void* address() override { return &value; }
        void print(std::string& out) const override
        {
            if constexpr (requires(std::ostream & stream, const T& v) { stream << v; }) {
                std::ostringstream stream;
                stream << value;
                out += stream.str();
            } else {
                out += '<';
                out += typeid(T).name();
                out += '>';
            }
        }
        T value;
    };

    void become(Kind kind)
    {
        if (kind_ == Kind::Object)
            object_.reset();
        kind_ = kind;
    }
    void takeText(std::string_view value);
    template <class T>
    void takeObject(const T& value)
    {
        if constexpr (std::is_copy_assignable_v<T>)
            if (kind_ == Kind::Object && object_.use_count() == 1 && object_->type() == typeid(T)) {
                // Whoever held it too has read what it wanted.
                std::atomic_thread_fence(std::memory_order_acquire);
                *static_cast<T*>(object_->address()) = value;
                return;
            }
        setObject(std::make_shared<Holder<T>>(value));
    }
    void setObject(std::shared_ptr<HolderBase> object);

    union Number {
        std::int64_t integer;
        double real;
    };

    Number number_{0};
    std::string text_;
    std::shared_ptr<HolderBase> object_;
    Kind kind_ = Kind::Empty;
    bool is_single_ = false;  ///< a real number that was stored as a float, and reads as one in texts
};

namespace detail {

/// Integers that int64 does not hold all of.
template <class T>
inline constexpr bool kIsUnsigned64 = std::is_integral_v<T>&& std::is_unsigned_v<T> &&
                                      sizeof(T) == sizeof(std::uint64_t);

template <class T>
bool fitInteger(std::int64_t value, T& out)
{
    if (std::is_unsigned_v<T> && value < 0)
        return false;
    const T narrow = static_cast<T>(value);
    if (static_cast<std::int64_t>(narrow) != value)
        return false;
    out = narrow;
    return true;
}

template <class T>
bool convertText(std::string_view text, T& out)
{
    try {
        out = convertFromString<T>(text);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace detail

template <class T>
bool Any::tryCast(T& out) const
{
    if constexpr (std::is_same_v<T, Any>) {
        out = *this;
        return !empty();
    } else if constexpr (std::is_same_v<T, bool>)
        return toBoolean(out);
    else if constexpr (detail::kIsUnsigned64<T>) {
        std::uint64_t value = 0;
        if (!toUnsigned(value))
            return false;
        out = value;
        return true;
    } else if constexpr (std::is_integral_v<T>) {
        std::int64_t value = 0;
        return toInteger(value) && detail::fitInteger(value, out);
    } else if constexpr (std::is_floating_point_v<T>) {
        double value = 0;
        if (!toReal(value))
            return false;
        out = static_cast<T>(value);
        return true;
    } else if constexpr (std::is_same_v<T, std::string>) {
        if (empty())
            return false;
        out.clear();
        appendText(out);
        return true;
    } else {
        if (const T* held = object<T>()) {
            out = *held;
            return true;
        }
        return isText() && detail::convertText(text_, out);
    }
}

}  // namespace BT

namespace SafeAny {
using Any = BT::Any;
}
