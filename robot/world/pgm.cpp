#include "robot/world/pgm.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <string>
#include <vector>

#include "robot/base/input_error.h"

namespace vemra::robot {
namespace {

constexpr int kMaxSide = 1 << 16;
constexpr std::size_t kMaxPixels = 64'000'000;

// Reads a PGM file as far as it is asked for and knows the line for messages.
class PgmScanner
{
public:
    explicit PgmScanner(const std::filesystem::path& file) : file_(file.string()), in_(file, std::ios::binary)
    {
        if (!in_ || std::filesystem::is_directory(file)) {
            throw InputError(file_, 0, "cannot be read: expected a PGM picture");
        }
    }

    [[noreturn]] void fail(const std::string& message) const { throw InputError(file_, line_, message); }
    [[noreturn]] void failRaw(const std::string& message) const { throw InputError(file_, 0, message); }

    int take() { return bytes().sbumpc(); }

    // The next decimal number; white space and comments before it are skipped.
    int number(const char* what, int low, int high)
    {
        skipBlanks();
        if (bytes().sgetc() == kEnd) {
            fail(fmt::format("the picture ends early: expected {}", what));
        }
        if (!isDigit()) {
            fail(fmt::format("expected {}, a number from {} to {}", what, low, high));
        }
        long long value = 0;
        for (; isDigit(); bytes().sbumpc()) {
            value = std::min<long long>(value * 10 + (bytes().sgetc() - '0'), high + 1LL);
        }
        if (value < low || value > high) {
            fail(fmt::format("{} is out of range: expected {} to {}", what, low, high));
        }
        return static_cast<int>(value);
    }

    // The one white space that stands between the head and raw values.
    void endOfHead()
    {
        if (std::isspace(bytes().sbumpc()) == 0) {
            fail("expected a white space after the greatest grey value");
        }
    }

    // That many raw bytes, or as many as there are. Memory is taken as they come.
    std::string raw(std::size_t count)
    {
        constexpr std::size_t portion = 1 << 20;
        std::string all;
        while (all.size() < count) {
            const std::size_t before = all.size();
            const std::size_t wanted = std::min(portion, count - before);
            all.resize(before + wanted);
            const std::streamsize got = bytes().sgetn(&all[before], static_cast<std::streamsize>(wanted));
            if (got < static_cast<std::streamsize>(wanted)) {
                all.resize(before + static_cast<std::size_t>(got));
                break;
            }
        }
        return all;
    }

private:
    static constexpr int kEnd = std::char_traits<char>::eof();

    std::filebuf& bytes() { return *in_.rdbuf(); }
    bool isDigit() { return std::isdigit(bytes().sgetc()) != 0; }

    void skipBlanks()
    {
        bool comment = false;
        for (int byte = bytes().sgetc(); byte != kEnd; byte = bytes().snextc()) {
            comment = byte != '\n' && (comment || byte == '#');
            if (!comment && std::isspace(byte) == 0) {
                return;
            }
            line_ += byte == '\n' ? 1 : 0;
        }
    }

    std::string file_;
    std::ifstream in_;
    int line_ = 1;
};

std::vector<std::uint16_t> plainPixels(PgmScanner& scanner, std::size_t count, int max_value)
{
    std::vector<std::uint16_t> pixels;
    while (pixels.size() < count) {
        pixels.push_back(static_cast<std::uint16_t>(scanner.number("a grey value", 0, max_value)));
    }
    return pixels;
}

std::vector<std::uint16_t> rawPixels(PgmScanner& scanner, const GreyImage& head, std::size_t count)
{
    const std::size_t bytes_a_pixel = head.max_value > 255 ? 2 : 1;
    const std::string bytes = scanner.raw(count * bytes_a_pixel);
    if (bytes.size() < count * bytes_a_pixel) {
        scanner.failRaw(fmt::format("the picture ends early: {} x {} pixels expected, {} found", head.width,
                                    head.height, bytes.size() / bytes_a_pixel));
    }
    std::vector<std::uint16_t> pixels;
    pixels.reserve(count);
    for (std::size_t at = 0; at < bytes.size(); at += bytes_a_pixel) {
        int value = static_cast<unsigned char>(bytes[at]);
        if (bytes_a_pixel == 2) {
            value = value * 256 + static_cast<unsigned char>(bytes[at + 1]);
        }
        if (value > head.max_value) {
            scanner.failRaw(
                fmt::format("pixel {} is {}: expected at most {}", pixels.size(), value, head.max_value));
        }
        pixels.push_back(static_cast<std::uint16_t>(value));
    }
    return pixels;
}

}  // namespace

GreyImage readPgm(const std::filesystem::path& file)
{
    PgmScanner scanner(file);
    const bool named = scanner.take() == 'P';
    const int kind = named ? scanner.take() : 0;
    if (kind != '2' && kind != '5') {
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
    if (kind == '2') {
        image.pixels = plainPixels(scanner, count, image.max_value);
    } else {
        scanner.endOfHead();
        image.pixels = rawPixels(scanner, image, count);
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
