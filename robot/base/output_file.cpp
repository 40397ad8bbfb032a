#include "robot/base/output_file.h"

#include <unistd.h>

#include <fstream>
#include <system_error>

#include "robot/base/input_error.h"

namespace vemra::robot {
namespace {

/// The bytes of a file to be, beside it; gone again unless it gets its name.
class PartFile
{
public:
    PartFile(std::filesystem::path file, std::string_view bytes) : file_(std::move(file)), part_(file_)
    {
        part_ += ".part";
        std::ofstream out(part_, std::ios::binary);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.close();
        if (!out) {
            remove();
            fail();
        }
    }
    ~PartFile() { remove(); }
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;
    PartFile(PartFile&& other) noexcept : file_(std::move(other.file_)), part_(std::exchange(other.part_, {}))
    {}
    PartFile& operator=(PartFile&&) = delete;

    void take() const
    {
        std::error_code fault;
        std::filesystem::rename(part_, file_, fault);
        if (fault) {
            fail();
        }
    }

private:
    [[noreturn]] void fail() const { throw InputError(file_.string(), 0, "cannot be written"); }
    void remove() const
    {
        std::error_code ignored;
        if (!part_.empty()) {
            std::filesystem::remove(part_, ignored);
        }
    }

    std::filesystem::path file_;
    std::filesystem::path part_;
};

}  // namespace

void writeFile(const std::filesystem::path& file, std::string_view bytes)
{
    PartFile(file, bytes).take();
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

void OutputFolder::write() const
{
    std::vector<PartFile> parts;
    parts.reserve(files_.size());
    for (const auto& [name, bytes] : files_) {
        if (std::filesystem::is_directory(folder_ / name)) {
            throw InputError((folder_ / name).string(), 0,
                             "cannot be written: a folder of that name is there");
        }
        parts.emplace_back(folder_ / name, bytes);
    }
    for (const PartFile& part : parts) {
        part.take();
    }
}

}  // namespace vemra::robot
