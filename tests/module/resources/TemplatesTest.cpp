#include "module/resources/Templates.h"

#include "framework/text/CodePage.h"
#include "framework/windows/Wnd.h"
#include "framework/windows/dialogs/Navigation.h"
#include "framework/windows/dialogs/TextWidth.h"
#include "module/resources/resource.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace {

using framework::ControlTemplate;
using framework::DialogTemplate;

constexpr int kClosedCombo = 14; ///< dialog units; a template says how high the open list is
constexpr int kMargin = 7;

bool isGroup(const ControlTemplate& control) {
    return control.className == std::wstring_view(L"Button") && (control.style & BS_TYPEMASK) == BS_GROUPBOX;
}

CRect placeOf(const ControlTemplate& control) {
    CRect place = control.rect;
    if (control.className == std::wstring_view(L"ComboBox")) place.bottom = place.top + kClosedCombo;
    return place;
}

bool overlap(const CRect& a, const CRect& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool contains(const CRect& a, const CRect& b) {
    return a.left <= b.left && a.top <= b.top && b.right <= a.right && b.bottom <= a.bottom;
}

std::string nameOf(const ControlTemplate& control) {
    return std::to_string(control.id) + " \"" + framework::toUtf8(control.text) + "\"";
}

TEST(Templates, HaveTheirIdsAndTitles) {
    const std::map<UINT, std::wstring> titles = {
        {9207, L"Result Combination/Envelope Results"},
        {9626, L"Generate Optimization Model"},
        {6342, L"Response Surface"},
        {4501, L"Slope Stability FOS Result"},
        {4554, L"History Probes Graph"},
        {4673, L"Results Graph"},
        {4671, L"Dialog"},
        {4672, L"Results Graph"},
        {4555, L"Dynamic Results Plot"},
        {6391, L"Safety Graph"},
        {4705, L"Stagewise Relative Displacement"},
        {6296, L"Correlation Analysis"},
    };
    std::map<UINT, std::wstring> found;
    for (const DialogTemplate& dialog : moduleTemplates())
        EXPECT_TRUE(found.emplace(dialog.id, dialog.title).second) << dialog.id;
    EXPECT_EQ(found, titles);
}

TEST(Templates, ControlsKeepTheMarginAndDoNotOverlap) {
    for (const DialogTemplate& dialog : moduleTemplates()) {
        SCOPED_TRACE(dialog.id);
        const CRect room(kMargin, kMargin, dialog.rect.Width() - kMargin, dialog.rect.Height() - kMargin);
        const auto& controls = dialog.controls;
        for (std::size_t i = 0; i < controls.size(); ++i) {
            EXPECT_TRUE(contains(room, placeOf(controls[i]))) << nameOf(controls[i]);
            for (std::size_t j = i + 1; j < controls.size(); ++j) {
                const CRect a = placeOf(controls[i]), b = placeOf(controls[j]);
                const bool framed =
                    (isGroup(controls[i]) && contains(a, b)) || (isGroup(controls[j]) && contains(b, a));
                EXPECT_TRUE(framed || !overlap(a, b))
                    << nameOf(controls[i]) << " and " << nameOf(controls[j]);
            }
        }
    }
}

TEST(Templates, KeyboardReachesEveryControl) {
    for (const DialogTemplate& dialog : moduleTemplates()) {
        SCOPED_TRACE(dialog.id);
        std::set<wchar_t> letters;
        std::set<UINT> ids;
        int defaults = 0;
        bool cancels = false, inRadioGroup = false;
        for (const ControlTemplate& control : dialog.controls) {
            const bool isStatic = control.className == std::wstring_view(L"Static");
            const UINT type = control.style & BS_TYPEMASK;
            const bool isButton = control.className == std::wstring_view(L"Button") && !isGroup(control);
            const bool isRadio = isButton && type == BS_AUTORADIOBUTTON;
            EXPECT_TRUE(ids.insert(control.id).second) << nameOf(control);
            const wchar_t letter = framework::mnemonicOf(control.text);
            EXPECT_TRUE(letter == 0 || letters.insert(letter).second) << nameOf(control);
            // The arrow keys reach the other buttons of a radio group.
            const bool byArrows = isRadio && inRadioGroup && !(control.style & WS_GROUP);
            if (!isStatic && !isGroup(control)) {
                EXPECT_TRUE(byArrows || (control.style & WS_TABSTOP)) << nameOf(control);
                // A group of radio buttons ends where the next group begins.
                EXPECT_TRUE(!inRadioGroup || isRadio || (control.style & WS_GROUP)) << nameOf(control);
            }
            inRadioGroup = isRadio;
            defaults += isButton && type == BS_DEFPUSHBUTTON;
            cancels |= control.id == IDCANCEL;
        }
        EXPECT_EQ(defaults, 1);
        EXPECT_TRUE(cancels);
    }
}

TEST(Templates, TextsOfTheScriptFit) {
    constexpr int kCaptionButtons = 60; ///< pixels for the icon and the close button
    for (const DialogTemplate& dialog : moduleTemplates()) {
        SCOPED_TRACE(dialog.id);
        EXPECT_LE(framework::textWidth(dialog.title) + kCaptionButtons,
                  framework::dialogToPixels(dialog.rect).Width());
        for (const ControlTemplate& control : dialog.controls)
            EXPECT_TRUE(framework::fitsControl(control, control.text)) << nameOf(control);
    }
}

} // namespace
