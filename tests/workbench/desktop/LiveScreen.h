#pragma once

#include "tests/workbench/cli/Program.h"

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>

namespace desktest {

/// The program on a virtual X display, worked from outside with events of mouse and keyboard.
class LiveScreen {
  public:
    /// Starts both; `arguments` are the program's, run in `folder`.
    LiveScreen(const TestFolder& folder, const std::string& arguments,
               const std::string& program = "vexa-desktop");
    ~LiveScreen();
    LiveScreen(const LiveScreen&) = delete;
    LiveScreen& operator=(const LiveScreen&) = delete;

    struct Place {
        int x = 0, y = 0; ///< the middle
        std::string text;
    };
    /// The first thing on the screen whose line of the description matches, waited for; none after a while,
    /// with a failure that shows what there is instead.
    std::optional<Place> waitFor(const std::string& pattern);
    bool isThere(const std::string& pattern);
    /// Waits until nothing matches.
    void waitUntilGone(const std::string& pattern);

    void moveTo(int x, int y);
    void click(const std::string& pattern);
    void click(const Place& place);
    void drag(const Place& from, int dx, int dy);
    void press(const std::string& keys); ///< such as "alt+a" or "Escape"
    void type(const std::string& text);  ///< over all of what the focused edit holds

    /// Waits for the program to end; its exit code, or -1.
    int end();
    std::string errors() const { return folder_.read("desktop.err"); }

  private:
    void xdotool(const std::string& arguments);
    std::string description() const { return folder_.read("screen.txt"); }

    const TestFolder& folder_;
    std::string display_;
    pid_t server_ = 0;
    pid_t program_ = 0;
};

} // namespace desktest
