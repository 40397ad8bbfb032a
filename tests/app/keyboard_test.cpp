#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>

#include "app/app_support.h"

namespace vemra::test {
namespace {

using Clock = std::chrono::steady_clock;

// A terminal with nobody at it but the test, and the program on it.
class Terminal
{
public:
    explicit Terminal(const std::vector<std::string>& arguments)
    {
        keys_ = ::posix_openpt(O_RDWR | O_NOCTTY);
        ::grantpt(keys_);
        ::unlockpt(keys_);
        line_ = ::open(::ptsname(keys_), O_RDWR | O_NOCTTY);
        const winsize size{24, 80, 0, 0};
        ::ioctl(keys_, TIOCSWINSZ, &size);
        before_ = settings();
        std::vector<std::string> words = arguments;
        words.insert(words.begin(), std::string(VEMRA_BIN_DIR) + "/vemra");
        program_ = ::fork();
        if (program_ == 0)
            become(words);
    }
    ~Terminal()
    {
        if (!status_) {
            ::kill(program_, SIGKILL);
            ::waitpid(program_, nullptr, 0);
        }
        ::close(line_);
        ::close(keys_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void type(std::string_view keys) const { EXPECT_GT(::write(keys_, keys.data(), keys.size()), 0); }
    void signal(int number) const { ::kill(program_, number); }

    // Whether this comes to stand on the screen within so many seconds.
    bool shows(const std::string& text, int seconds = 60)
    {
        const auto until = Clock::now() + std::chrono::seconds(seconds);
        std::size_t from = shown_.size();
        while (Clock::now() < until) {
            read();
            if (shown_.find(text, from > text.size() ? from - text.size() : 0) != std::string::npos)
                return true;
        }
        return false;
    }

    // The program's end: its exit code, or minus the signal that ended it.
    int end()
    {
        const auto until = Clock::now() + std::chrono::seconds(60);
        int status = 0;
        while (::waitpid(program_, &status, WNOHANG) == 0 && Clock::now() < until)
            read();
        status_ = status;
        read();
        return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }

    [[nodiscard]] bool isAsBefore() const
    {
        const termios now = settings();
        return now.c_lflag == before_.c_lflag && now.c_iflag == before_.c_iflag &&
               now.c_oflag == before_.c_oflag && now.c_cc[VMIN] == before_.c_cc[VMIN];
    }
    // It was switched to a screen of its own and back, and the cursor is there again.
    [[nodiscard]] bool screenIsBack() const
    {
        const std::size_t own = shown_.rfind("\033[?1049h");
        const std::size_t back = shown_.rfind("\033[?1049l");
        return own != std::string::npos && back != std::string::npos && own < back &&
               shown_.rfind("\033[?25l") < shown_.rfind("\033[?25h");
    }

private:
    [[noreturn]] void become(const std::vector<std::string>& words) const
    {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::dup2(line_, stream);
        ::setenv("TERM", "xterm", 1);
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (const std::string& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        ::execv(arguments.front(), arguments.data());
        ::_exit(127);
    }

    [[nodiscard]] termios settings() const
    {
        termios now = {};
        ::tcgetattr(line_, &now);
        return now;
    }

    void read()
    {
        pollfd screen{keys_, POLLIN, 0};
        while (::poll(&screen, 1, 20) > 0) {
            std::array<char, 4096> part{};
            const ssize_t got = ::read(keys_, part.data(), part.size());
            if (got <= 0)
                return;
            shown_.append(part.data(), static_cast<std::size_t>(got));
        }
    }

    int keys_ = -1;
    int line_ = -1;
    pid_t program_ = -1;
    std::optional<int> status_;
    termios before_ = {};
    std::string shown_;
};

std::vector<std::string> byKeyboard()
{
    return {"run", "--keyboard", "--pose", "1.5,3.0,0"};
}

TEST(Keyboard, DrivesTheRobotAndShowsWhatItKnows)
{
    Terminal terminal(byKeyboard());
    ASSERT_TRUE(terminal.shows("StandbyMode"));
    EXPECT_FALSE(terminal.isAsBefore()) << "keys are not shown";
    terminal.type("\033[A");
    EXPECT_TRUE(terminal.shows("RemoteCtrlMode"));
    EXPECT_TRUE(terminal.shows(".>.")) << "the robot on its floor, once its laser spins";
    EXPECT_TRUE(terminal.shows("##"));
    // Half a second a key, to the right, until the head of the arrow points down.
    bool down = false;
    for (int i = 0; i < 20 && !down; ++i) {
        terminal.type("d");
        down = terminal.shows(".v.", 1);
    }
    EXPECT_TRUE(down);
    terminal.type("x");
    EXPECT_EQ(terminal.end(), 0);
    EXPECT_TRUE(terminal.isAsBefore());
    EXPECT_TRUE(terminal.screenIsBack());
}

TEST(Keyboard, GivesTheTerminalBackWhateverSignalEndsIt)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        Terminal terminal(byKeyboard());
        ASSERT_TRUE(terminal.shows("StandbyMode"));
        EXPECT_FALSE(terminal.isAsBefore());
        terminal.signal(signal);
        EXPECT_EQ(terminal.end(), -signal);
        EXPECT_TRUE(terminal.isAsBefore()) << signal;
        EXPECT_TRUE(terminal.screenIsBack()) << signal;
    }
}

TEST(Keyboard, EndsWithTheScenarioToo)
{
    std::vector<std::string> words = byKeyboard();
    words.insert(words.end(), {"--frames", "30"});
    Terminal terminal(words);
    EXPECT_EQ(terminal.end(), 0);
    EXPECT_TRUE(terminal.isAsBefore());
    EXPECT_TRUE(terminal.screenIsBack());
}

TEST(Keyboard, WantsATerminal)
{
    const ProgramResult piped = runVemra({"run", "--keyboard"});
    EXPECT_EQ(piped.exit_code, 2);
    EXPECT_THAT(piped.err, HasSubstr("--keyboard: standard input and output are no terminal"));
    EXPECT_EQ(piped.out, "");
    EXPECT_EQ(runVemra({"run", "--keyboard", "--json"}).exit_code, 2);
}

}  // namespace
}  // namespace vemra::test
