#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace vemra::robot {

/// Writes a whole file or nothing: the bytes go to a file beside it that takes its name at the end. Links are
/// followed; a device or a pipe is written to as it is. Throws InputError if that cannot be done.
void writeFile(const std::filesystem::path& file, std::string_view bytes);

class PartFile;

/// Files that go into a folder together: all of them or none.
class OutputFolder
{
public:
    /// Makes the folder where there is none. Throws InputError, naming what is in the way, when one of the
    /// names cannot be written in it.
    OutputFolder(std::filesystem::path folder, const std::vector<std::string>& names);
    ~OutputFolder();
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;

    /// A file that is written as things come, so that a long run needs no memory for it. It has another name
    /// until write(), and is gone with this object without that.
    [[nodiscard]] std::ostream& stream(const std::string& name);
    void add(const std::string& name, std::string_view bytes) { stream(name) << bytes; }
    /// Ends the files and gives them their names. Throws InputError when that cannot be done; the folder is
    /// then as it was.
    void write();

private:
    std::filesystem::path folder_;
    std::map<std::string, std::unique_ptr<PartFile>> files_;
};

}  // namespace vemra::robot
