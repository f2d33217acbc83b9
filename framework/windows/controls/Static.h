#pragma once

#include "framework/windows/Wnd.h"

/// A text, a frame or a line.
class CStatic : public CWnd {};
