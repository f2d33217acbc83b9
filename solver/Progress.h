#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace solver {

/// How far a run is, as one line that is drawn over: at most ten times a second, not before the first tenth,
/// and wiped at the end. Without a terminal it does nothing.
class Progress {
  public:
    using Clock = std::chrono::steady_clock;

    /// `terminal` is null when nobody watches. `total` is at least 1.
    Progress(std::ostream* terminal, std::uint64_t total,
             std::function<Clock::time_point()> now = Clock::now);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { end(); }

    /// More nodes are done.
    void advance(std::size_t nodes = 1) {
        done_ += nodes;
        if (terminal_) draw();
    }
    /// Wipes the line; nothing is drawn any more.
    void end();

  private:
    void draw();

    std::ostream* terminal_;
    std::uint64_t total_;
    std::function<Clock::time_point()> now_;
    Clock::time_point start_;
    Clock::time_point drawn_; ///< or the start
    std::uint64_t done_ = 0;
    bool visible_ = false;
};

/// "63 % of 1200000 nodes, 410 thousand a second, 1 s left": done of total after some seconds.
std::string progressText(std::uint64_t done, std::uint64_t total, double seconds);

} // namespace solver
