#include "app/keyboard/key_terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/user_error.h"

namespace vemra::app {
namespace {

constexpr std::array kEndSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

sigset_t setOf(int signal)
{
    sigset_t set;
    ::sigemptyset(&set);
    ::sigaddset(&set, signal);
    return set;
}

bool waits(int signal)
{
    sigset_t pending;
    return ::sigpending(&pending) == 0 && ::sigismember(&pending, signal) == 1;
}

// Whoever reads it may be gone: there is nobody to tell.
void put(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace

KeyTerminal::KeyTerminal()
{
    const char* kind = std::getenv("TERM");
    if (::isatty(STDIN_FILENO) != 1 || ::isatty(STDOUT_FILENO) != 1 || kind == nullptr ||
        std::string_view(kind) == "dumb" || ::tcgetattr(STDIN_FILENO, &before_) != 0)
        throw UserError(
            "--keyboard: standard input and output are no terminal on which keys and a picture could be: "
            "expected one, without a pipe or a file in its place");
    sigset_t held = setOf(SIGTSTP);
    for (const int signal : kEndSignals)
        ::sigaddset(&held, signal);
    ::pthread_sigmask(SIG_BLOCK, &held, &signals_before_);
    take();
}

KeyTerminal::~KeyTerminal()
{
    giveBack();
    ::pthread_sigmask(SIG_SETMASK, &signals_before_, nullptr);
}

// Signals from the keyboard stay what they are.
void KeyTerminal::take() const
{
    termios raw = before_;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    raw.c_cc[VMIN] = 0;
    raw.c_cc[VTIME] = 0;
    ::tcsetattr(STDIN_FILENO, TCSANOW, &raw);
    put("\033[?1049h\033[?25l\033[2J");
}

void KeyTerminal::giveBack() const
{
    put("\033[?25h\033[?1049l");
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
}

void KeyTerminal::stopIfAsked()
{
    if (!waits(SIGTSTP))
        return;
    giveBack();
    const sigset_t stop = setOf(SIGTSTP);
    ::pthread_sigmask(SIG_UNBLOCK, &stop, nullptr);
    // Stopped here, until it is continued.
    ::pthread_sigmask(SIG_BLOCK, &stop, nullptr);
    take();
}

std::string KeyTerminal::read(std::chrono::steady_clock::time_point until)
{
    using std::chrono::milliseconds;
    stopIfAsked();
    std::string typed;
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(until - std::chrono::steady_clock::now()).count();
        pollfd keys{STDIN_FILENO, POLLIN, 0};
        if (::poll(&keys, 1, static_cast<int>(std::max<std::int64_t>(0, left))) <= 0)
            return typed;
        std::array<char, 256> bytes{};
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) {
            gone_ = true;
            return typed;
        }
        typed.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

bool KeyTerminal::isToEnd() const
{
    return gone_ || std::any_of(kEndSignals.begin(), kEndSignals.end(), waits);
}

void KeyTerminal::show(std::string_view text) const
{
    put("\033[H");
    put(text);
    put("\033[J");
}

KeyTerminal::Size KeyTerminal::size() const
{
    winsize window = {};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) != 0 || window.ws_col == 0 || window.ws_row == 0)
        return {};
    return {window.ws_col, window.ws_row};
}

}  // namespace vemra::app
