#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace BT::detail {

inline bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// `text` without the blanks around it.
inline std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Equality of texts that are short more often than not: port names and values, compared in every tick.
[[gnu::always_inline]] inline bool sameText(std::string_view a, std::string_view b)
{
    const std::size_t size = a.size();
    if (size != b.size())
        return false;
    const auto differ = [&a, &b]<class Word>(Word, std::size_t at) {
        Word x;
        Word y;
        std::memcpy(&x, a.data() + at, sizeof(Word));
        std::memcpy(&y, b.data() + at, sizeof(Word));
        return x != y;
    };
    // Two words that overlap cover all of a text between one and two words long.
    if (size > 16)
        return std::memcmp(a.data(), b.data(), size) == 0;
    if (size >= 8)
        return !differ(std::uint64_t{}, 0) && !differ(std::uint64_t{}, size - 8);
    if (size >= 4)
        return !differ(std::uint32_t{}, 0) && !differ(std::uint32_t{}, size - 4);
    if (size >= 2)
        return !differ(std::uint16_t{}, 0) && !differ(std::uint16_t{}, size - 2);
    return size == 0 || a.front() == b.front();
}

/// The first eight bytes of a text, zeros behind its end, as the number that has them in memory; a constant
/// where the text is one.
[[gnu::always_inline]] inline std::uint64_t headOf(std::string_view text)
{
    const auto byte = [text](std::size_t at) {
        constexpr bool kLowestFirst = std::endian::native == std::endian::little;
        return at < text.size()
                   ? std::uint64_t{static_cast<unsigned char>(text[at])} << 8 * (kLowestFirst ? at : 7 - at)
                   : 0;
    };
    return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
}

}  // namespace BT::detail
