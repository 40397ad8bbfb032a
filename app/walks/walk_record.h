#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace vemra::app {

struct RecordedWalk
{
    std::uint64_t number;
    std::uint32_t digest;
};

/// What trees do in walks, as a file keeps it, so that it can be seen later which have come to do something
/// else.
using WalkRecord = std::map<std::string, std::vector<RecordedWalk>>;

/// {"trees": {NAME: "NUMBER:DIGEST NUMBER:DIGEST ..."}}, a digest in 8 hexadecimal digits.
[[nodiscard]] std::string textOf(const WalkRecord& record);

/// Throws UserError that names the file and what was expected of it.
[[nodiscard]] WalkRecord readWalkRecord(const std::filesystem::path& file);

}  // namespace vemra::app
