#include "robot/base/output_file.h"

#include <unistd.h>

#include <fstream>
#include <system_error>
#include <utility>

#include "robot/base/input_error.h"

namespace vemra::robot {
namespace {

// A link stays, and what it leads to is written.
std::filesystem::path behindLinks(const std::filesystem::path& file)
{
    std::error_code fault;
    std::filesystem::path real = std::filesystem::canonical(file, fault);
    return fault ? file : real;
}

// A device or a pipe takes the bytes as they come; a file put in its place would be no device any more. So
// does what /dev/stdout leads to, whatever that is.
bool isDevice(const std::filesystem::path& file)
{
    std::error_code fault;
    return std::filesystem::is_other(file, fault) || file.string().starts_with("/dev/");
}

}  // namespace

/// The bytes of a file to be, beside it; gone again unless it gets its name.
class PartFile
{
public:
    explicit PartFile(const std::filesystem::path& file)
        : file_(isDevice(file) ? file : behindLinks(file)),
          part_(isDevice(file) ? file_ : std::filesystem::path(file_.string() + ".part")),
          out_(part_, part_ == file_ ? std::ios::binary | std::ios::app : std::ios::binary)
    {}
    ~PartFile()
    {
        std::error_code ignored;
        if (part_ != file_) {
            std::filesystem::remove(part_, ignored);
        }
    }
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    std::ostream& out() { return out_; }
    /// All bytes are there, and nothing stands where the file belongs.
    void close()
    {
        out_.close();
        if (!out_ || std::filesystem::is_directory(file_)) {
            fail();
        }
    }
    void take() const
    {
        std::error_code fault;
        if (part_ != file_) {
            std::filesystem::rename(part_, file_, fault);
        }
        if (fault) {
            fail();
        }
    }

private:
    [[noreturn]] void fail() const
    {
        throw InputError(file_.string(), 0,
                         std::filesystem::is_directory(file_)
                             ? "cannot be written: a folder of that name is there"
                             : "cannot be written");
    }

    std::filesystem::path file_;
    std::filesystem::path part_;
    std::ofstream out_;
};

void writeFile(const std::filesystem::path& file, std::string_view bytes)
{
    PartFile part(file);
    part.out() << bytes;
    part.close();
    part.take();
}

OutputFolder::OutputFolder(std::filesystem::path folder, const std::vector<std::string>& names)
    : folder_(std::move(folder))
{
    std::error_code fault;
    std::filesystem::create_directories(folder_, fault);
    if (fault || ::access(folder_.c_str(), W_OK) != 0) {
        throw InputError(folder_.string(), 0, "expected a folder that can be written to");
    }
    for (const std::string& name : names) {
        if (std::filesystem::is_directory(folder_ / name, fault)) {
            throw InputError((folder_ / name).string(), 0,
                             "cannot be written: a folder of that name is there");
        }
    }
}

OutputFolder::~OutputFolder() = default;

std::ostream& OutputFolder::stream(const std::string& name)
{
    std::unique_ptr<PartFile>& file = files_[name];
    if (!file) {
        file = std::make_unique<PartFile>(folder_ / name);
    }
    return file->out();
}

void OutputFolder::write()
{
    for (const auto& [name, file] : files_) {
        file->close();
    }
    for (const auto& [name, file] : files_) {
        file->take();
    }
    files_.clear();
}

}  // namespace vemra::robot
