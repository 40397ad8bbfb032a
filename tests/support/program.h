#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace vemra::test {

struct ProgramResult
{
    int exit_code = -1;  // -1: ended by a signal
    std::string out;
    std::string err;
};

inline std::string shellQuoted(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// Runs a program with these arguments, nothing at its standard input, and waits for its end.
inline ProgramResult runProgram(const std::vector<std::string>& words)
{
    static int runs = 0;
    const std::filesystem::path errors =
        std::filesystem::temp_directory_path() /
        ("vemra_stderr_" + std::to_string(::getpid()) + "_" + std::to_string(++runs));
    std::string line;
    for (const std::string& word : words)
        line += shellQuoted(word) + " ";
    line += "</dev/null 2>" + shellQuoted(errors.string());
    std::FILE* pipe = ::popen(line.c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("cannot start: " + line);
    ProgramResult result;
    std::array<char, 4096> part{};
    while (const std::size_t got = std::fread(part.data(), 1, part.size(), pipe))
        result.out.append(part.data(), got);
    const int status = ::pclose(pipe);
    if (WIFEXITED(status))
        result.exit_code = WEXITSTATUS(status);
    std::ifstream in(errors, std::ios::binary);
    result.err.assign(std::istreambuf_iterator<char>(in), {});
    std::filesystem::remove(errors);
    return result;
}

// Runs the vemra command of this build.
inline ProgramResult runVemra(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), std::string(VEMRA_BIN_DIR) + "/vemra");
    return runProgram(arguments);
}

}  // namespace vemra::test
