#pragma once

#include "framework/windows/WindowFunctions.h"
#include "framework/windows/dialogs/DialogTemplate.h"
#include "tests/framework/windows/resource.h"

#include <span>

/// The templates of TestDialogs.rc.
std::span<const framework::DialogTemplate> testDialogTemplates();
