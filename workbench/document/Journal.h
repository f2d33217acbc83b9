#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace workbench {

/// The open transaction and what the committed ones would take to be undone: inverse changes, latest last.
/// A transaction without changes leaves no step behind.
class Journal {
  public:
    static constexpr std::size_t kMaxSteps = 100;
    /// Replaced meshes are what makes steps large: beyond this the oldest steps are forgotten, but never the
    /// last.
    static constexpr std::size_t kMaxBytes = std::size_t{1} << 30;

    bool isOpen() const { return open_; }
    int begin(const std::wstring& title);
    int commit();
    void rollback();
    int undo(std::wstring* title);
    void forget(); ///< drops the committed steps; the open transaction stays

    /// Notes how the change that follows is taken back; `bytes` is what the closure keeps in memory.
    void note(std::function<void()> revert, std::size_t bytes = 0);

    bool isModified() const { return changes_ != savedChanges_; }
    void markSaved() { savedChanges_ = changes_; }

  private:
    struct Step {
        std::wstring title;
        std::vector<std::function<void()>> reverts;
        std::size_t bytes = 0;
    };
    static void revert(Step& step);

    bool open_ = false;
    Step current_;
    std::deque<Step> steps_;
    std::size_t bytes_ = 0;     ///< of all of steps_
    std::uint64_t changes_ = 0; ///< grows with every change that stays
    std::uint64_t savedChanges_ = 0;
    std::uint64_t changesAtBegin_ = 0;
};

} // namespace workbench
