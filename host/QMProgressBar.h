#pragma once

#include "framework/Export.h"

#include <string>

/// The host's progress bar. Null where the host has none: every caller goes through m_pInstance with care.
class VEXA_API IQMProgressBar {
  public:
    virtual ~IQMProgressBar() = default;
    virtual void Start() = 0;
    virtual void SetRange(int lower, int upper) = 0;
    virtual void SetText(const std::wstring& text) = 0;
    virtual void StepIt() = 0;
    virtual void End() = 0;   ///< fills the bar
    virtual void Close() = 0; ///< takes it away
    static IQMProgressBar* m_pInstance; ///< not owned
};
