#pragma once

#include "framework/Export.h"
#include "host/dialogs/Listeners.h"

#include <array>

// What the host tells the dialogs that are open. Dialogs may close themselves while they are told.

VEXA_API void NotifyLanguageChanged();
/// To dialogs that show values of `doc`, or of any document for null.
VEXA_API void NotifyUnitChanged(CQMDocBase* doc);
/// To dialogs that follow `view`, or any view for null; flags as in PostUpdate.
VEXA_API void NotifyPostUpdate(CQMViewBase* view, unsigned flags);
VEXA_API void NotifyChangeMode(CQMViewBase* view, int mode); ///< mode as in DisplayMode
/// The user moved over a point of the model in a view of `doc`, in database units; to dialogs with picking.
VEXA_API void NotifySnap(CQMDocBase* doc, const std::array<double, 3>& point);
/// A view of `doc` is being drawn: dialogs with picking add what they show in it.
VEXA_API void DrawTempShapes(CQMDocBase* doc);
