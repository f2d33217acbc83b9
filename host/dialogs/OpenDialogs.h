#pragma once

#include "framework/windows/WindowTypes.h"

#include <functional>

class CInternationalDlg;

/// What an open dialog is told.
using DialogNotice = std::function<void(CInternationalDlg&)>;

/// Tells every dialog that is open now, from the lowest to the topmost, pages after the dialog they lie in.
/// The windows themselves are the register: a dialog that goes meanwhile, or is not complete yet, hears
/// nothing. One that throws is reported and keeps nobody else from being told.
void tellOpenDialogs(const DialogNotice& notice);

/// The message that carries a notice to a dialog.
UINT openDialogsMessage();
