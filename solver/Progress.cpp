#include "solver/Progress.h"

#include "solver/NumberText.h"

#include <cmath>
#include <utility>

namespace solver {
namespace {

constexpr auto kBetweenDrawings = std::chrono::milliseconds(100);
constexpr const char* kWipe = "\r\x1b[K";

std::string rateText(double perSecond) {
    if (perSecond < 1e3) return shortNumber(perSecond, 3) + " a second";
    if (perSecond < 1e6) return shortNumber(perSecond / 1e3, 3) + " thousand a second";
    return shortNumber(perSecond / 1e6, 3) + " million a second";
}

std::string durationText(double seconds) {
    const double whole = std::ceil(seconds);
    if (whole < 60) return shortNumber(whole) + " s";
    const double minutes = std::floor(whole / 60);
    if (minutes < 60) return shortNumber(minutes) + " min " + shortNumber(whole - 60 * minutes) + " s";
    return shortNumber(std::floor(minutes / 60)) + " h " + shortNumber(std::fmod(minutes, 60)) + " min";
}

} // namespace

Progress::Progress(std::ostream* terminal, std::uint64_t total, std::function<Clock::time_point()> now)
    : terminal_(terminal)
    , total_(total)
    , now_(std::move(now))
    , start_(now_())
    , drawn_(start_) {}

void Progress::draw() {
    const auto time = now_();
    if (time - drawn_ < kBetweenDrawings) return;
    drawn_ = time;
    visible_ = true;
    const double seconds = std::chrono::duration<double>(time - start_).count();
    *terminal_ << kWipe << progressText(done_, total_, seconds) << std::flush;
}

void Progress::end() {
    if (visible_) *terminal_ << kWipe << std::flush;
    visible_ = false;
    terminal_ = nullptr;
}

std::string progressText(std::uint64_t done, std::uint64_t total, double seconds) {
    const double part = static_cast<double>(done) / static_cast<double>(total);
    std::string text = std::to_string(static_cast<int>(std::floor(100 * part))) + " % of " +
                       std::to_string(total) + " nodes";
    if (done == 0 || seconds <= 0) return text;
    const double secondsLeft = seconds * static_cast<double>(total - done) / static_cast<double>(done);
    return text + ", " + rateText(static_cast<double>(done) / seconds) + ", " + durationText(secondsLeft) +
           " left";
}

} // namespace solver
