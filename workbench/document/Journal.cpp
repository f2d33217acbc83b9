#include "workbench/document/Journal.h"

#include <utility>

namespace workbench {

int Journal::begin(const std::wstring& title) {
    if (open_) return 0;
    open_ = true;
    current_ = Step{title, {}, 0};
    changesAtBegin_ = changes_;
    return 1;
}

int Journal::commit() {
    if (!open_) return 0;
    open_ = false;
    if (current_.reverts.empty()) return 1;
    bytes_ += current_.bytes;
    steps_.push_back(std::exchange(current_, {}));
    while (steps_.size() > 1 && (steps_.size() > kMaxSteps || bytes_ > kMaxBytes)) {
        bytes_ -= steps_.front().bytes;
        steps_.pop_front();
    }
    return 1;
}

void Journal::rollback() {
    if (!open_) return;
    Step step = std::exchange(current_, {});
    revert(step);
    open_ = false;
    changes_ = changesAtBegin_;
}

int Journal::undo(std::wstring* title) {
    if (open_ || steps_.empty()) return 0;
    Step step = std::move(steps_.back());
    steps_.pop_back();
    bytes_ -= step.bytes;
    revert(step);
    ++changes_;
    if (title) *title = step.title;
    return 1;
}

void Journal::forget() {
    steps_.clear();
    bytes_ = 0;
}

void Journal::note(std::function<void()> revert, std::size_t bytes) {
    current_.reverts.push_back(std::move(revert));
    current_.bytes += bytes;
    ++changes_;
}

void Journal::revert(Step& step) {
    for (auto change = step.reverts.rbegin(); change != step.reverts.rend(); ++change)
        (*change)();
}

} // namespace workbench
