#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "robot/base/input_error.h"

namespace vemra::robot {

// A folder of the test's own, gone with it.
class Folder
{
public:
    Folder() : path_(std::filesystem::temp_directory_path() / ("vemra_test_" + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(path_);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    std::filesystem::path write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(path_ / name, std::ios::binary) << bytes;
        return path_ / name;
    }

private:
    std::filesystem::path path_;
};

inline std::string bytesOf(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// The InputError that a call throws, as text; "nothing thrown" without one.
template <typename Call>
std::string faultOf(Call call)
{
    try {
        call();
    } catch (const InputError& fault) {
        return fault.what();
    }
    return "nothing thrown";
}

}  // namespace vemra::robot
