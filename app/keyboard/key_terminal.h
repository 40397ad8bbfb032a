#pragma once

#include <termios.h>

#include <chrono>
#include <csignal>
#include <string>
#include <string_view>

namespace vemra::app {

/// The terminal as a keyboard and a screen of the program's own: keys come as they are pressed and are not
/// shown. With the end of this object the terminal is as it was before. Signals that would end the program
/// wait till then, so that none of them leaves the terminal behind; one that stops it gives the terminal back
/// for that time.
class KeyTerminal
{
public:
    /// Throws UserError where standard input and output are no terminal that can do this.
    KeyTerminal();
    ~KeyTerminal();
    KeyTerminal(const KeyTerminal&) = delete;
    KeyTerminal& operator=(const KeyTerminal&) = delete;

    /// What was typed, as it comes; waits for it until then.
    [[nodiscard]] std::string read(std::chrono::steady_clock::time_point until);
    /// A signal waits that ends the program, or nobody is at the terminal any more.
    [[nodiscard]] bool isToEnd() const;
    /// Everything on the screen, from its top.
    void show(std::string_view text) const;

    struct Size
    {
        int columns = 80;
        int rows = 24;
    };
    [[nodiscard]] Size size() const;

private:
    void take() const;
    void giveBack() const;
    void stopIfAsked();

    termios before_ = {};
    sigset_t signals_before_ = {};
    bool gone_ = false;
};

}  // namespace vemra::app
