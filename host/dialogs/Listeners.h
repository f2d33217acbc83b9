#pragma once

class CQMDocBase;
class CQMViewBase;

/// Values of the flags of IQMPostUIListener::OnPostUpdate; they add up.
namespace PostUpdate {
inline constexpr unsigned Tree = 1;    ///< analyses, cases or steps came or went: pointers to them are stale
inline constexpr unsigned Display = 2; ///< another result or step is displayed
} // namespace PostUpdate

/// Values of the mode of IQMPostUIListener::OnChangeMode.
namespace DisplayMode {
inline constexpr int Pre = 0;
inline constexpr int Post = 1;
} // namespace DisplayMode

/// A dialog that shows values in the current units.
class IQMUnitListener {
  public:
    virtual ~IQMUnitListener() = default;
    virtual void OnUnitChanged() = 0;
    virtual CQMDocBase* GetUnitListenerDoc() = 0; ///< the document whose units it shows
};

/// A dialog that follows the post-processing state of a view.
class IQMPostUIListener {
  public:
    virtual ~IQMPostUIListener() = default;
    virtual void OnPostUpdate(unsigned flags) = 0; ///< see PostUpdate
    virtual void OnChangeMode(int mode) = 0;       ///< see DisplayMode
    virtual CQMViewBase* GetPostListenerView() = 0;
};
