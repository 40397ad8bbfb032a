#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vemra::robot {

/// Writes a whole file or nothing: the bytes go to a file beside it that takes its name at the end. Throws
/// InputError if that cannot be done.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

/// Files that go into a folder together: all of them or none.
class OutputFolder
{
public:
    /// Makes the folder where there is none. Throws InputError, naming what is in the way, when one of the
    /// names cannot be written in it.
    OutputFolder(std::filesystem::path folder, const std::vector<std::string>& names);

    void add(const std::string& name, std::string bytes) { files_.emplace_back(name, std::move(bytes)); }
    /// Writes what was added. Throws InputError when that cannot be done; the folder is then as it was.
    void write() const;

private:
    std::filesystem::path folder_;
    std::vector<std::pair<std::string, std::string>> files_;
};

}  // namespace vemra::robot
