#pragma once

#include "framework/Export.h"

class CQMViewBase;
class CVResult;

class VEXA_API CQMPostManager {
  public:
    /// Redraws the post-processing display of a view with a result table (null: without one). Nothing happens
    /// without a view.
    static void DisplayPostResult(CQMViewBase* view, CVResult* result);
};
