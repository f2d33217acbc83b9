#include "host/dialogs/Notifications.h"

#include "host/dialogs/InternationalDlg.h"
#include "host/dialogs/OpenDialogs.h"
#include "host/dialogs/QMSelDialog.h"

namespace {

template <class Tell>
void tellViewers(CQMViewBase* view, Tell tell) {
    tellOpenDialogs([&](CInternationalDlg& dialog) {
        auto* listener = dynamic_cast<IQMPostUIListener*>(&dialog);
        if (listener && (!view || listener->GetPostListenerView() == view)) tell(*listener);
    });
}

template <class Tell>
void tellPickers(CQMDocBase* doc, Tell tell) {
    tellOpenDialogs([&](CInternationalDlg& dialog) {
        auto* picker = dynamic_cast<CQMSelDialog*>(&dialog);
        if (picker && picker->GetDocBase() == doc) tell(*picker);
    });
}

} // namespace

void NotifyLanguageChanged() {
    tellOpenDialogs([](CInternationalDlg& dialog) { dialog.OnChangeLanguage(); });
}

void NotifyUnitChanged(CQMDocBase* doc) {
    tellOpenDialogs([doc](CInternationalDlg& dialog) {
        auto* listener = dynamic_cast<IQMUnitListener*>(&dialog);
        if (listener && (!doc || listener->GetUnitListenerDoc() == doc)) listener->OnUnitChanged();
    });
}

void NotifyPostUpdate(CQMViewBase* view, unsigned flags) {
    tellViewers(view, [flags](IQMPostUIListener& listener) { listener.OnPostUpdate(flags); });
}

void NotifyChangeMode(CQMViewBase* view, int mode) {
    tellViewers(view, [mode](IQMPostUIListener& listener) { listener.OnChangeMode(mode); });
}

void NotifySnap(CQMDocBase* doc, const std::array<double, 3>& point) {
    tellPickers(doc, [&point](CQMSelDialog& dialog) { dialog.OnSnap(point); });
}

void DrawTempShapes(CQMDocBase* doc) {
    tellPickers(doc, [](CQMSelDialog& dialog) { dialog.GLDrawTempShape(); });
}
