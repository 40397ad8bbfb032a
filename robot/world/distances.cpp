#include "robot/world/distances.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace vemra::robot {
namespace {

constexpr float kFar = 1e12F;

// The lower envelope of the parabolas that stand on the values of one line.
class Envelope
{
public:
    explicit Envelope(std::size_t longest) : at_(longest), from_(longest + 1), line_(longest) {}

    std::vector<float>& line() { return line_; }

    template <class Write>
    void transform(std::size_t length, const Write& write)
    {
        std::size_t last = 0;
        at_[0] = 0;
        from_[0] = -std::numeric_limits<float>::infinity();
        from_[1] = std::numeric_limits<float>::infinity();
        for (std::size_t q = 1; q < length; ++q) {
            float cross = crossing(q, at_[last]);
            while (cross <= from_[last]) {
                --last;
                cross = crossing(q, at_[last]);
            }
            ++last;
            at_[last] = q;
            from_[last] = cross;
            from_[last + 1] = std::numeric_limits<float>::infinity();
        }
        std::size_t of = 0;
        for (std::size_t q = 0; q < length; ++q) {
            while (from_[of + 1] < static_cast<float>(q)) {
                ++of;
            }
            const float away = static_cast<float>(q) - static_cast<float>(at_[of]);
            write(q, away * away + line_[at_[of]]);
        }
    }

private:
    [[nodiscard]] float crossing(std::size_t q, std::size_t p) const
    {
        const auto a = static_cast<double>(q);
        const auto b = static_cast<double>(p);
        return static_cast<float>(((line_[q] + a * a) - (line_[p] + b * b)) / (2 * a - 2 * b));
    }

    std::vector<std::size_t> at_;
    std::vector<float> from_;
    std::vector<float> line_;
};

}  // namespace

std::vector<float> squaredDistancesTo(const std::vector<bool>& marked, int columns, int rows)
{
    const auto width = static_cast<std::size_t>(columns);
    const auto height = static_cast<std::size_t>(rows);
    std::vector<float> out(marked.size());
    Envelope envelope(std::max(width, height));
    for (std::size_t column = 0; column < width; ++column) {
        for (std::size_t row = 0; row < height; ++row) {
            envelope.line()[row] = marked[row * width + column] ? 0 : kFar;
        }
        envelope.transform(height, [&](std::size_t row, float d) { out[row * width + column] = d; });
    }
    for (std::size_t row = 0; row < height; ++row) {
        for (std::size_t column = 0; column < width; ++column) {
            envelope.line()[column] = out[row * width + column];
        }
        envelope.transform(width, [&](std::size_t column, float d) { out[row * width + column] = d; });
    }
    return out;
}

}  // namespace vemra::robot
