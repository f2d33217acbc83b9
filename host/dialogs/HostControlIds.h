#pragma once

// Ids of controls that the host's dialog bases serve, for resource scripts too.

#define ID_APPLY_NOW 0x3021 // the Apply button of every dialog: CQMDialog::EnterApply
#define IDC_QM_RESET 0x3022 // the Reset button of dialogs with picking: CQMSelDialog::OnReset
