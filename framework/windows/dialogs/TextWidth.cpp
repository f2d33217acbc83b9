#include "framework/windows/dialogs/TextWidth.h"

#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowStyles.h"
#include "framework/windows/dialogs/Navigation.h"

#include <algorithm>

namespace framework {
namespace {

// Advance widths in 2048ths of an em, as the font DejaVu Sans 2.37 has them in its table "hmtx".
constexpr int kEm = 2048;
constexpr int kPixelsPerEm = 11;

constexpr wchar_t kAsciiFirst = 0x20;
constexpr int kAscii[] = {
    651,  821,  942,  1716, 1303, 1946, 1597, 563,  799,  799,  1024, 1716, 651,  739,  651,  690,
    1303, 1303, 1303, 1303, 1303, 1303, 1303, 1303, 1303, 1303, 690,  690,  1716, 1716, 1716, 1087,
    2048, 1401, 1405, 1430, 1577, 1294, 1178, 1587, 1540, 604,  604,  1343, 1141, 1767, 1532, 1612,
    1235, 1612, 1423, 1300, 1251, 1499, 1401, 2025, 1403, 1251, 1403, 799,  690,  799,  1716, 1024,
    1024, 1255, 1300, 1126, 1300, 1260, 721,  1300, 1298, 569,  569,  1186, 569,  1995, 1298, 1253,
    1300, 1300, 842,  1067, 803,  1298, 1212, 1675, 1212, 1212, 1075, 1303, 690,  1303, 1716,
};
constexpr wchar_t kLatinFirst = 0xA0;
constexpr int kLatin[] = {
    651,  821,  1303, 1303, 1303, 1303, 690,  1024, 1024, 2048, 965,  1253, 1716, 739,  2048, 1024,
    1024, 1716, 821,  821,  1024, 1303, 1303, 651,  1024, 821,  965,  1253, 1985, 1985, 1985, 1087,
    1401, 1401, 1401, 1401, 1401, 1401, 1995, 1430, 1294, 1294, 1294, 1294, 604,  604,  604,  604,
    1587, 1532, 1612, 1612, 1612, 1612, 1612, 1716, 1612, 1499, 1499, 1499, 1499, 1251, 1239, 1290,
    1255, 1255, 1255, 1255, 1255, 1255, 2011, 1126, 1260, 1260, 1260, 1260, 569,  569,  569,  569,
    1253, 1298, 1253, 1253, 1253, 1253, 1253, 1716, 1253, 1298, 1298, 1298, 1298, 1212, 1300, 1212,
};
constexpr wchar_t kGreekFirst = 0x391;
constexpr int kGreek[] = {
    1401, 1405, 1141, 1401, 1294, 1403, 1540, 1612, 604,  1343, 1401, 1767, 1532, 1294, 1612,
    1540, 1235, 1229, 1294, 1251, 1251, 1612, 1403, 1612, 1565, 604,  1251, 1350, 1107, 1298,
    693,  1185, 1350, 1307, 1212, 1253, 1107, 1114, 1298, 1253, 693,  1207, 1212, 1303, 1144,
    1142, 1253, 1233, 1300, 1202, 1298, 1233, 1185, 1351, 1183, 1351, 1715,
};

template <std::size_t Size>
const int* find(const int (&table)[Size], wchar_t first, wchar_t c) {
    return c >= first && static_cast<std::size_t>(c - first) < Size ? &table[c - first] : nullptr;
}

/// Every other character, Hangul first of all, takes a whole em.
int advance(wchar_t c) {
    if (const int* width = find(kAscii, kAsciiFirst, c)) return *width;
    if (const int* width = find(kLatin, kLatinFirst, c)) return *width;
    if (const int* width = find(kGreek, kGreekFirst, c)) return *width;
    return kEm;
}

int linesOf(std::wstring_view text, int width) {
    int lines = 1;
    int used = 0;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of(L" \n"), text.size());
        const bool breaks = end < text.size() && text[end] == L'\n';
        const int word = textWidth(text.substr(0, end));
        const int blank = used ? textWidth(L" ") : 0;
        if (used && used + blank + word > width) {
            ++lines;
            used = word;
        } else {
            used += blank + word;
        }
        // A word that is wider than the control is cut off whatever the number of lines.
        if (word > width) return 1 << 20;
        text.remove_prefix(std::min(end + 1, text.size()));
        if (breaks) {
            ++lines;
            used = 0;
        }
    }
    return lines;
}

/// Pixels that a control's own marks and margins take from its width.
int marginsOf(ControlKind kind, UINT style) {
    if (kind == ControlKind::kCombo) return 24;
    if (kind != ControlKind::kButton) return 0;
    switch (style & BS_TYPEMASK) {
    case BS_GROUPBOX:
        return 18;
    case BS_PUSHBUTTON:
    case BS_DEFPUSHBUTTON:
        return 10;
    default:
        return style & BS_PUSHLIKE ? 10 : 18;
    }
}

} // namespace

int textWidth(std::wstring_view text) {
    long long sum = 0;
    for (const wchar_t c : text)
        sum += advance(c);
    return static_cast<int>((sum * kPixelsPerEm + kEm - 1) / kEm);
}

bool fitsControl(const ControlTemplate& control, std::wstring_view text) {
    const auto* windowClass = findWindowClass(control.className);
    const ControlKind kind = windowClass ? windowClass->kind : ControlKind::kPlain;
    if (kind != ControlKind::kStatic && kind != ControlKind::kButton && kind != ControlKind::kCombo)
        return true;
    const std::wstring shown =
        kind == ControlKind::kCombo || (kind == ControlKind::kStatic && (control.style & SS_NOPREFIX))
            ? std::wstring(text)
            : withoutMnemonic(std::wstring(text));
    const CRect room = dialogToPixels(control.rect);
    const int width = room.Width() - marginsOf(kind, control.style);
    constexpr UINT kStaticType = 0x1F;
    const UINT type = control.style & kStaticType;
    const bool wraps = kind == ControlKind::kStatic
                           ? type != SS_SIMPLE && type != SS_LEFTNOWORDWRAP
                           : kind == ControlKind::kButton && (control.style & BS_MULTILINE);
    if (!wraps) return textWidth(shown) <= width;
    return linesOf(shown, width) * kTextHeight <= std::max(room.Height(), kTextHeight);
}

} // namespace framework
