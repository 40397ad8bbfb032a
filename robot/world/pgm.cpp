#include "robot/world/pgm.h"

#include <fmt/format.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <string_view>

#include "robot/base/input_error.h"

namespace vemra::robot {
namespace {

constexpr int kMaxSide = 1 << 16;
constexpr std::size_t kMaxPixels = 64'000'000;

// Walks over the bytes of a PGM file and knows the line for messages.
class PgmScanner
{
public:
    PgmScanner(std::string file, std::string bytes) : file_(std::move(file)), bytes_(std::move(bytes)) {}

    [[noreturn]] void fail(const std::string& message) const { throw InputError(file_, line_, message); }
    [[noreturn]] void failRaw(const std::string& message) const { throw InputError(file_, 0, message); }

    bool take(std::string_view text)
    {
        if (!std::string_view(bytes_).substr(at_).starts_with(text)) {
            return false;
        }
        at_ += text.size();
        return true;
    }

    // The next decimal number; white space and comments before it are skipped.
    int number(const char* what, int low, int high)
    {
        skipBlanks();
        if (at_ >= bytes_.size()) {
            fail(fmt::format("the picture ends early: expected {}", what));
        }
        if (!isDigit()) {
            fail(fmt::format("expected {}, a number from {} to {}", what, low, high));
        }
        long long value = 0;
        for (; isDigit(); ++at_) {
            value = std::min<long long>(value * 10 + (bytes_[at_] - '0'), high + 1LL);
        }
        if (value < low || value > high) {
            fail(fmt::format("{} is out of range: expected {} to {}", what, low, high));
        }
        return static_cast<int>(value);
    }

    // The one white space that stands between the head and raw values.
    void endOfHead()
    {
        if (at_ >= bytes_.size() || std::isspace(byte()) == 0) {
            fail("expected a white space after the greatest grey value");
        }
        ++at_;
    }

    std::size_t left() const { return bytes_.size() - at_; }
    unsigned char nextByte() { return static_cast<unsigned char>(bytes_[at_++]); }

private:
    unsigned char byte() const { return static_cast<unsigned char>(bytes_[at_]); }
    bool isDigit() const { return at_ < bytes_.size() && std::isdigit(byte()) != 0; }

    void skipBlanks()
    {
        while (at_ < bytes_.size() && (std::isspace(byte()) != 0 || bytes_[at_] == '#')) {
            if (bytes_[at_] == '#') {
                at_ = std::min(bytes_.find('\n', at_), bytes_.size());
                continue;
            }
            line_ += bytes_[at_] == '\n' ? 1 : 0;
            ++at_;
        }
    }

    std::string file_;
    std::string bytes_;
    std::size_t at_ = 0;
    int line_ = 1;
};

std::string readBytes(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in || std::filesystem::is_directory(file)) {
        throw InputError(file.string(), 0, "cannot be read: expected a PGM picture");
    }
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

GreyImage readPgm(const std::filesystem::path& file)
{
    PgmScanner scanner(file.string(), readBytes(file));
    const bool plain = scanner.take("P2");
    if (!plain && !scanner.take("P5")) {
        scanner.fail("not a PGM picture: expected it to start with P2 or P5");
    }
    GreyImage image;
    image.width = scanner.number("the width", 1, kMaxSide);
    image.height = scanner.number("the height", 1, kMaxSide);
    image.max_value = scanner.number("the greatest grey value", 1, 65535);

    const std::size_t count = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    if (count > kMaxPixels) {
        scanner.fail(fmt::format("{} x {} pixels are too many: expected at most {} in all", image.width,
                                 image.height, kMaxPixels));
    }
    if (!plain) {
        scanner.endOfHead();
    }
    // Looked at before any memory is taken for a size that the file only claims.
    const std::size_t bytes_a_pixel = !plain && image.max_value > 255 ? 2 : 1;
    if (scanner.left() < count * bytes_a_pixel) {
        scanner.failRaw(fmt::format("the picture ends early: {} x {} pixels expected, {} found", image.width,
                                    image.height, scanner.left() / bytes_a_pixel));
    }

    image.pixels.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (plain) {
            image.pixels.push_back(
                static_cast<std::uint16_t>(scanner.number("a grey value", 0, image.max_value)));
            continue;
        }
        int value = scanner.nextByte();
        if (bytes_a_pixel == 2) {
            value = value * 256 + scanner.nextByte();
        }
        if (value > image.max_value) {
            scanner.failRaw(fmt::format("pixel {} is {}: expected at most {}", i, value, image.max_value));
        }
        image.pixels.push_back(static_cast<std::uint16_t>(value));
    }
    return image;
}

std::string pgmBytes(const GreyImage& image)
{
    std::string bytes = fmt::format("P5\n{} {}\n{}\n", image.width, image.height, image.max_value);
    for (const std::uint16_t value : image.pixels) {
        if (image.max_value > 255) {
            bytes.push_back(static_cast<char>(value >> 8));
        }
        bytes.push_back(static_cast<char>(value & 0xff));
    }
    return bytes;
}

}  // namespace vemra::robot
