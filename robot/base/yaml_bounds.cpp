#include "robot/base/yaml_bounds.h"

#include <fmt/format.h>
#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/yaml.h>

#include <map>
#include <sstream>
#include <vector>

#include "robot/base/input_error.h"

namespace vemra::robot {
namespace {

constexpr std::size_t kMostLevels = 50;
constexpr std::size_t kMostValues = 100'000;

class Bounds final : public YAML::EventHandler
{
public:
    explicit Bounds(const std::string& file) : file_(file) {}

    void OnDocumentStart(const YAML::Mark& mark) override
    {
        // The parser makes no headway where a document begins with a sign that cannot begin one.
        if (documents_ > 0 && mark.pos == begun_at_)
            fail(mark, "not YAML: a value was expected here");
        if (documents_++ > 0)
            fail(mark, "expected one YAML document in the file");
        begun_at_ = mark.pos;
    }
    void OnDocumentEnd() override {}

    void OnNull(const YAML::Mark& mark, YAML::anchor_t anchor) override { value(mark, anchor); }
    void OnScalar(const YAML::Mark& mark, const std::string& /*tag*/, YAML::anchor_t anchor,
                  const std::string& /*value*/) override
    {
        value(mark, anchor);
    }
    void OnAlias(const YAML::Mark& mark, YAML::anchor_t anchor) override
    {
        const auto size = sizes_.find(anchor);
        if (size == sizes_.end())
            fail(mark, "an alias stands within what it stands for");
        count(mark, size->second);
    }

    void OnSequenceStart(const YAML::Mark& mark, const std::string& /*tag*/, YAML::anchor_t anchor,
                         YAML::EmitterStyle::value /*style*/) override
    {
        open(mark, anchor);
    }
    void OnSequenceEnd() override { close(); }
    void OnMapStart(const YAML::Mark& mark, const std::string& /*tag*/, YAML::anchor_t anchor,
                    YAML::EmitterStyle::value /*style*/) override
    {
        open(mark, anchor);
    }
    void OnMapEnd() override { close(); }

private:
    struct Level
    {
        YAML::anchor_t anchor;
        std::size_t values_before;
    };

    [[noreturn]] void fail(const YAML::Mark& mark, const std::string& message) const
    {
        throw InputError(file_, mark.line + 1, message);
    }

    void count(const YAML::Mark& mark, std::size_t values)
    {
        values_ += values;
        if (values_ > kMostValues)
            fail(mark, fmt::format("expected at most {} values, those of aliases included", kMostValues));
    }

    void value(const YAML::Mark& mark, YAML::anchor_t anchor)
    {
        count(mark, 1);
        if (anchor != YAML::NullAnchor)
            sizes_[anchor] = 1;
    }

    void open(const YAML::Mark& mark, YAML::anchor_t anchor)
    {
        levels_.push_back({anchor, values_});
        count(mark, 1);
        if (levels_.size() > kMostLevels)
            fail(mark, fmt::format("expected at most {} levels", kMostLevels));
    }

    void close()
    {
        const Level level = levels_.back();
        levels_.pop_back();
        if (level.anchor != YAML::NullAnchor)
            sizes_[level.anchor] = values_ - level.values_before;
    }

    const std::string& file_;
    int documents_ = 0;
    int begun_at_ = 0;
    std::size_t values_ = 0;
    std::vector<Level> levels_;
    std::map<YAML::anchor_t, std::size_t> sizes_;  ///< values below an anchor that is read to its end
};

}  // namespace

void checkYamlBounds(const std::string& text, const std::string& file)
{
    std::istringstream in(text);
    YAML::Parser parser(in);
    Bounds bounds(file);
    while (parser.HandleNextDocument(bounds)) {
    }
}

}  // namespace vemra::robot
