#include "workbench/session/TerminalProgress.h"

#include "framework/text/CodePage.h"

#include <unistd.h>

#include <algorithm>

namespace workbench {

using namespace std::chrono_literals;

TerminalProgress::TerminalProgress(std::FILE* stream)
    : stream_(stream)
    , terminal_(::isatty(::fileno(stream)) == 1) {}

TerminalProgress::~TerminalProgress() {
    Close();
}

void TerminalProgress::Start() {
    open_ = true;
    position_ = lower_ = 0;
    upper_ = 1;
    text_.clear();
    lastPlain_.clear();
}

void TerminalProgress::SetRange(int lower, int upper) {
    lower_ = lower;
    upper_ = std::max(upper, lower + 1);
    position_ = lower;
    draw(false);
}

void TerminalProgress::SetText(const std::wstring& text) {
    text_ = framework::toUtf8(text);
    draw(true);
}

void TerminalProgress::StepIt() {
    position_ = std::min<double>(position_ + 1, upper_);
    draw(false);
}

void TerminalProgress::setFraction(double fraction) {
    position_ = lower_ + std::clamp(fraction, 0.0, 1.0) * (upper_ - lower_);
    draw(false);
}

void TerminalProgress::End() {
    position_ = upper_;
    draw(true);
}

void TerminalProgress::Close() {
    clearLine();
    open_ = false;
}

void TerminalProgress::clearLine() {
    if (!drawn_) return;
    std::fputs("\r\x1b[K", stream_);
    std::fflush(stream_);
    drawn_ = false;
}

void TerminalProgress::draw(bool now) {
    if (!open_) return;
    if (!terminal_) {
        // A text that only counts on is not worth a line of its own.
        std::string plain = text_;
        std::erase_if(plain, [](char c) { return c >= '0' && c <= '9'; });
        if (!plain.empty() && plain != lastPlain_) std::fprintf(stream_, "%s\n", text_.c_str());
        lastPlain_ = std::move(plain);
        return;
    }
    const auto time = std::chrono::steady_clock::now();
    if (!now && time - lastDrawn_ < 50ms) return;
    lastDrawn_ = time;
    constexpr int width = 30;
    const double share = (position_ - lower_) / (upper_ - lower_);
    const int filled = static_cast<int>(share * width);
    std::string bar(static_cast<std::size_t>(filled), '#');
    bar.resize(width, '.');
    std::fprintf(stream_, "\r\x1b[K[%s] %3.0f %%  %s", bar.c_str(), share * 100, text_.c_str());
    std::fflush(stream_);
    drawn_ = true;
}

} // namespace workbench
