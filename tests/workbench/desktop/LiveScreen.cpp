#include "tests/workbench/desktop/LiveScreen.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <regex>
#include <sstream>
#include <thread>

namespace desktest {
namespace {

using namespace std::chrono_literals;
constexpr auto kPatience = 60s;

/// Runs a shell command as a process of its own.
pid_t start(const std::string& command) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    ::execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
    ::_exit(127);
}

template <class Condition>
bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

std::optional<LiveScreen::Place> find(const std::string& description, const std::string& pattern) {
    const std::regex wanted(pattern);
    std::istringstream lines(description);
    for (std::string line; std::getline(lines, line);) {
        if (!std::regex_search(line, wanted)) continue;
        std::istringstream words(line);
        std::string kind, state;
        int left = 0, top = 0, width = 0, height = 0;
        words >> kind >> left >> top >> width >> height >> state;
        LiveScreen::Place place{left + width / 2, top + height / 2, {}};
        std::getline(words >> std::ws, place.text);
        return place;
    }
    return {};
}

} // namespace

LiveScreen::LiveScreen(const TestFolder& folder, const std::string& arguments, const std::string& program)
    : folder_(folder) {
    const std::string in = "cd '" + folder.path().string() + "' && exec ";
    server_ = start("sh -c \"" + in +
                    "Xvfb -displayfd 3 -screen 0 1400x950x24 -nolisten tcp 3>display.txt 2>server.err\"");
    if (!eventually([&] { return folder_.read("display.txt").ends_with('\n'); })) {
        ADD_FAILURE() << folder_.read("server.err");
        return;
    }
    display_ = ":" + folder_.read("display.txt");
    display_.pop_back();
    program_ = start("sh -c \"" + in + "env -u QT_QPA_PLATFORM DISPLAY=" + display_ + " '" VEXA_BIN_DIR "/" +
                     program + "' " + arguments + " --describe screen.txt >desktop.out 2>desktop.err\"");
}

LiveScreen::~LiveScreen() {
    for (const pid_t process : {program_, server_})
        if (process > 0) {
            ::kill(process, SIGTERM);
            ::waitpid(process, nullptr, 0);
        }
}

std::optional<LiveScreen::Place> LiveScreen::waitFor(const std::string& pattern) {
    std::optional<Place> found;
    if (!eventually([&] { return (found = find(description(), pattern)).has_value(); }))
        ADD_FAILURE() << "nothing is like " << pattern << "; there is\n" << description() << errors();
    return found;
}

bool LiveScreen::isThere(const std::string& pattern) {
    return find(description(), pattern).has_value();
}

void LiveScreen::waitUntilGone(const std::string& pattern) {
    EXPECT_TRUE(eventually([&] { return !isThere(pattern); })) << pattern << " stays; there is\n"
                                                               << description() << errors();
}

void LiveScreen::xdotool(const std::string& arguments) {
    EXPECT_EQ(std::system(("DISPLAY=" + display_ + " xdotool " + arguments).c_str()), 0) << arguments;
}

void LiveScreen::moveTo(int x, int y) {
    xdotool("mousemove " + std::to_string(x) + " " + std::to_string(y));
}

void LiveScreen::click(const Place& place) {
    xdotool("mousemove " + std::to_string(place.x) + " " + std::to_string(place.y) + " click 1");
}

void LiveScreen::click(const std::string& pattern) {
    if (const auto place = waitFor(pattern)) click(*place);
}

void LiveScreen::drag(const Place& from, int dx, int dy) {
    const auto move = [](int x, int y) {
        return "mousemove " + std::to_string(x) + " " + std::to_string(y) + " ";
    };
    xdotool(move(from.x, from.y) + "mousedown 1 " + move(from.x + dx / 2, from.y + dy / 2) +
            move(from.x + dx, from.y + dy) + "mouseup 1");
}

void LiveScreen::press(const std::string& keys) {
    xdotool("key " + keys);
}

void LiveScreen::type(const std::string& text) {
    xdotool("key ctrl+a type --delay 5 -- '" + text + "'");
}

int LiveScreen::end() {
    int status = 0;
    const pid_t process = std::exchange(program_, 0);
    if (!eventually([&] { return ::waitpid(process, &status, WNOHANG) == process; })) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
        return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace desktest
