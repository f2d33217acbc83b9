#pragma once

#include "framework/windows/dialogs/DialogTemplate.h"

#include <span>

/// The templates of Dialogs.rc, for framework::addTemplates; they stay as long as the library.
std::span<const framework::DialogTemplate> moduleTemplates();
