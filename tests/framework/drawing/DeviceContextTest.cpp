#include "framework/drawing/PictureDC.h"
#include "tests/support/DrawnCommands.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using framework::PictureDC;

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

TEST(DeviceContext, RecordsWhatIsDrawn) {
    const struct {
        const char* name;
        std::function<void(CDC&)> draw;
        std::string recorded;
    } rows[] = {
        {"lines go on", [](CDC& dc) { dc.MoveTo(1, 2), dc.LineTo(3, 4), dc.LineTo(5, 6); },
         "line pen #000000 1: 1,2 3,4 5,6\n"},
        {"segments that meet are one line",
         [](CDC& dc) { dc.MoveTo(1, 2), dc.LineTo(3, 4), dc.MoveTo(3, 4), dc.LineTo(5, 6); },
         "line pen #000000 1: 1,2 3,4 5,6\n"},
        {"segments apart are two",
         [](CDC& dc) { dc.MoveTo(1, 2), dc.LineTo(3, 4), dc.MoveTo(4, 4), dc.LineTo(5, 6); },
         "line pen #000000 1: 1,2 3,4\nline pen #000000 1: 4,4 5,6\n"},
        {"another pen begins a line",
         [](CDC& dc) {
             CPen pen(PS_SOLID, 2, kRed);
             dc.LineTo(3, 4);
             CPen* before = dc.SelectObject(&pen);
             dc.LineTo(5, 6);
             dc.SelectObject(before);
             dc.LineTo(7, 8);
         },
         "line pen #000000 1: 0,0 3,4\nline pen #ff0000 2: 3,4 5,6\nline pen #000000 1: 5,6 7,8\n"},
        {"moving alone draws nothing", [](CDC& dc) { dc.MoveTo(9, 9); }, ""},
        {"no pen draws no line",
         [](CDC& dc) {
             dc.SelectStockObject(NULL_PEN);
             dc.LineTo(3, 4);
         },
         ""},
        {"Polyline leaves the position",
         [](CDC& dc) {
             const CPoint points[] = {{1, 1}, {2, 2}, {3, 1}};
             dc.Polyline(points, 3);
             dc.LineTo(4, 0);
         },
         "line pen #000000 1: 1,1 2,2 3,1\nline pen #000000 1: 0,0 4,0\n"},
        {"PolylineTo takes it along",
         [](CDC& dc) {
             const CPoint points[] = {{1, 1}, {2, 2}};
             dc.PolylineTo(points, 2);
             dc.LineTo(4, 0);
         },
         "line pen #000000 1: 0,0 1,1 2,2 4,0\n"},
        {"ellipses gather", [](CDC& dc) { dc.Ellipse(0, 0, 4, 4), dc.Ellipse(5, 5, 9, 9); },
         "ellipses pen #000000 1 brush #ffffff: 0,0-4,4 5,5-9,9\n"},
        {"an empty ellipse is nothing", [](CDC& dc) { dc.Ellipse(5, 5, 5, 9); }, ""},
        {"FillSolidRect sets the ground of texts",
         [](CDC& dc) {
             dc.FillSolidRect(1, 1, 3, 3, kBlue);
             dc.TextOut(1, 2, L"a");
         },
         "fill 1,1-4,4 #0000ff\ntext 1,2 #000000 on #0000ff align 0  0: a\n"},
        {"FillRect does not",
         [](CDC& dc) {
             const CBrush brush(kRed);
             const CRect rect(1, 1, 3, 3);
             dc.FillRect(&rect, const_cast<CBrush*>(&brush));
             dc.SetBkMode(TRANSPARENT);
             dc.SetTextColor(kRed);
             dc.SetTextAlign(TA_RIGHT | TA_BOTTOM);
             dc.TextOut(1, 2, L"a");
         },
         "fill 1,1-3,3 #ff0000\ntext 1,2 #ff0000 align 10  0: a\n"},
        {"a fill over everything forgets what lies under it",
         [](CDC& dc) {
             dc.LineTo(3, 4);
             dc.FillSolidRect(0, 0, 100, 49, kRed);
             dc.FillSolidRect(-1, 0, 102, 50, kBlue);
             dc.LineTo(5, 6);
         },
         "fill -1,0-101,50 #0000ff\nline pen #000000 1: 3,4 5,6\n"},
    };
    for (const auto& row : rows) {
        PictureDC dc(CSize(100, 50));
        row.draw(dc);
        EXPECT_EQ(DrawnCommands::of(dc.drawn()), row.recorded) << row.name;
    }
}

TEST(DeviceContext, SelectionAnswersWhatWasSelected) {
    PictureDC dc(CSize(10, 10));
    CPen red(PS_SOLID, 1, kRed), blue(PS_SOLID, 3, kBlue), empty;
    CPen* stock = dc.SelectObject(&red);
    ASSERT_NE(stock, nullptr);
    EXPECT_EQ(dc.SelectObject(&blue), &red);
    EXPECT_EQ(dc.SelectObject(&empty), nullptr);
    EXPECT_EQ(dc.SelectObject(stock), &blue);
    EXPECT_EQ(dc.SelectStockObject(BLACK_PEN), stock);
    EXPECT_EQ(dc.SelectStockObject(99), nullptr);
    EXPECT_EQ(stock->DeleteObject(), 0) << "it is not ours";
    EXPECT_EQ(dc.SelectObject(&red), stock);
    EXPECT_EQ(dc.SelectObject(stock), &red);
    // What is selected stays, also when its object has gone; what is answered then can be selected again.
    {
        CPen gone(PS_SOLID, 2, kRed);
        dc.SelectObject(&gone);
    }
    dc.LineTo(1, 1);
    CPen* lent = dc.SelectObject(&blue);
    dc.LineTo(2, 2);
    dc.SelectObject(lent);
    dc.LineTo(3, 3);
    EXPECT_EQ(DrawnCommands::of(dc.drawn()), "line pen #ff0000 2: 0,0 1,1\nline pen #0000ff 3: 1,1 2,2\n"
                                             "line pen #ff0000 2: 2,2 3,3\n");
}

TEST(DeviceContext, WithoutAContextNothingHappens) {
    CDC dc;
    CPen pen(PS_SOLID, 1, kRed);
    EXPECT_EQ(dc.GetSafeHdc(), nullptr);
    EXPECT_EQ(dc.SelectObject(&pen), nullptr);
    EXPECT_EQ(dc.LineTo(1, 1), 0);
    EXPECT_EQ(dc.BitBlt(0, 0, 1, 1, &dc, 0, 0, SRCCOPY), 0);
    EXPECT_EQ(dc.DeleteDC(), 0);
    EXPECT_EQ(dc.CreateCompatibleDC(nullptr), 1);
    EXPECT_EQ(dc.CreateCompatibleDC(nullptr), 0) << "it has one";
    EXPECT_EQ(dc.DeleteDC(), 1);
    EXPECT_EQ(dc.GetSafeHdc(), nullptr);
    PictureDC picture(CSize(10, 5));
    picture.LineTo(1, 1);
    picture.DeleteDC();
    EXPECT_EQ(picture.size(), CSize(10, 5));
    EXPECT_EQ(picture.drawn().commands().size(), 1U) << "what was drawn stays";
}

TEST(DeviceContext, FontsAreInPointsAt96PixelsToTheInch) {
    const struct {
        int tenths;
        int height;
    } rows[] = {{80, -11}, {-80, -11}, {90, -12}, {75, -10}, {120, -16}, {0, 0}, {4, -1}, {3, 0}};
    for (const auto& row : rows) {
        LOGFONT wanted;
        wanted.lfHeight = row.tenths;
        wanted.lfWeight = FW_BOLD;
        framework::setFaceName(wanted, L"Arial");
        CFont font;
        LOGFONT made;
        EXPECT_EQ(font.GetLogFont(&made), 0);
        ASSERT_TRUE(font.CreatePointFontIndirect(&wanted, nullptr));
        EXPECT_FALSE(font.CreatePointFontIndirect(&wanted, nullptr)) << "made twice";
        ASSERT_TRUE(font.GetLogFont(&made));
        EXPECT_EQ(made.lfHeight, row.height) << row.tenths;
        wanted.lfHeight = made.lfHeight;
        EXPECT_EQ(made, wanted) << row.tenths;
    }
    LOGFONT font;
    framework::setFaceName(font, std::wstring(40, L'x'));
    EXPECT_EQ(std::wstring(font.lfFaceName), std::wstring(31, L'x'));
}

/// A context in memory with a bitmap of 20 x 10.
class Memory : public testing::Test {
  protected:
    Memory() {
        dc.CreateCompatibleDC(nullptr);
        bitmap.CreateCompatibleBitmap(&dc, 20, 10);
        former = dc.SelectObject(&bitmap);
    }
    std::string onPicture(int x, int y, int width, int height, int sourceX, int sourceY) {
        PictureDC picture(CSize(100, 50));
        EXPECT_EQ(picture.BitBlt(x, y, width, height, &dc, sourceX, sourceY, SRCCOPY), 1);
        return DrawnCommands::of(picture.drawn());
    }
    CDC dc;
    CBitmap bitmap;
    CBitmap* former = nullptr;
};

TEST_F(Memory, BitmapsTakeTurns) {
    ASSERT_NE(former, nullptr);
    EXPECT_EQ(former->GetSize(), CSize(1, 1));
    EXPECT_EQ(bitmap.GetSize(), CSize(20, 10));
    EXPECT_EQ(bitmap.SetBitmapDimension(7, 8), CSize());
    EXPECT_EQ(bitmap.GetBitmapDimension(), CSize(7, 8));
    dc.LineTo(5, 5);
    EXPECT_EQ(dc.SelectObject(former), &bitmap);
    dc.LineTo(6, 6); // on the pixel of the default bitmap
    CDC other;
    other.CreateCompatibleDC(nullptr);
    EXPECT_NE(other.SelectObject(&bitmap), nullptr);
    EXPECT_EQ(dc.SelectObject(&bitmap), nullptr) << "it is selected in another context";
    other.DeleteDC();
    EXPECT_EQ(dc.SelectObject(&bitmap), former);
    EXPECT_EQ(onPicture(0, 0, 20, 10, 0, 0),
              "transfer 0,0-20,10 from 0,0\n  fill 0,0-20,10 #000000\n  line pen #000000 1: 0,0 5,5\n");
    PictureDC picture(CSize(1, 1));
    EXPECT_EQ(picture.SelectObject(&bitmap), nullptr) << "not a context in memory";
    CBitmap odd;
    EXPECT_FALSE(odd.CreateCompatibleBitmap(&dc, -1, 5));
    EXPECT_TRUE(odd.CreateCompatibleBitmap(&dc, 0, 5));
    EXPECT_EQ(odd.GetSize(), CSize(1, 1));
}

TEST_F(Memory, TransfersShowAPart) {
    const struct {
        CRect target;
        CPoint source;
        const char* shown;
    } rows[] = {
        {{5, 6, 25, 16}, {0, 0}, "transfer 5,6-25,16 from 0,0\n  fill 0,0-20,10 #000000\n"},
        {{5, 6, 9, 8}, {3, 4}, "transfer 5,6-9,8 from 3,4\n  fill 0,0-20,10 #000000\n"},
        // There is nothing beyond the edges of the source.
        {{5, 6, 30, 40}, {18, 9}, "transfer 5,6-7,7 from 18,9\n  fill 0,0-20,10 #000000\n"},
        {{5, 6, 30, 40}, {-2, -3}, "transfer 7,9-27,19 from 0,0\n  fill 0,0-20,10 #000000\n"},
        {{5, 6, 30, 40}, {20, 0}, ""},
        {{5, 6, 5, 40}, {0, 0}, ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(onPicture(row.target.left, row.target.top, row.target.Width(), row.target.Height(),
                            row.source.x, row.source.y),
                  row.shown);
}

TEST_F(Memory, WhatWasHandedOverStays) {
    dc.LineTo(5, 5);
    PictureDC picture(CSize(100, 50));
    picture.BitBlt(0, 0, 20, 10, &dc, 0, 0, SRCCOPY);
    picture.BitBlt(30, 0, 20, 10, &dc, 0, 0, SRCCOPY);
    const auto& commands = picture.drawn().commands();
    ASSERT_EQ(commands.size(), 2U);
    const auto shown = [&](std::size_t i) {
        return std::get<framework::TransferCommand>(commands[i]).content.get();
    };
    EXPECT_EQ(shown(0), shown(1)) << "unchanged commands are shared";
    const std::string before = DrawnCommands::of(picture.drawn());
    dc.LineTo(7, 7);
    dc.FillSolidRect(0, 0, 20, 10, kRed);
    EXPECT_EQ(DrawnCommands::of(picture.drawn()), before);
    picture.BitBlt(60, 0, 20, 10, &dc, 0, 0, SRCCOPY);
    EXPECT_EQ(DrawnCommands::of(picture.drawn()),
              before + "transfer 60,0-80,10 from 0,0\n  fill 0,0-20,10 #ff0000\n");
}

/// A bitmap that is shown and filled anew, again and again, takes turns between two recordings; one that
/// somebody holds on to is left alone.
TEST_F(Memory, MemoryServesAgain) {
    const auto shown = [&] {
        PictureDC picture(CSize(100, 50));
        picture.BitBlt(0, 0, 20, 10, &dc, 0, 0, SRCCOPY);
        return std::get<framework::TransferCommand>(picture.drawn().commands().front()).content;
    };
    std::vector<const framework::Recording*> used;
    std::shared_ptr<const framework::Recording> held = shown();
    for (int i = 0; i < 5; ++i) {
        dc.FillSolidRect(0, 0, 20, 10, kRed);
        held = shown();
        used.push_back(held.get());
    }
    EXPECT_EQ(used[2], used[0]);
    EXPECT_EQ(used[3], used[1]);
    EXPECT_EQ(used[4], used[0]);
    const auto kept = held;
    for (int i = 0; i < 4; ++i) {
        dc.FillSolidRect(0, 0, 20, 10, kBlue);
        EXPECT_NE(shown(), kept);
    }
    EXPECT_EQ(DrawnCommands::of(*kept), "fill 0,0-20,10 #ff0000\n");
}

/// Drawing over all of a target, its former content included, must not pile up.
TEST_F(Memory, TransfersDoNotGrowWithoutEnd) {
    CDC second;
    second.CreateCompatibleDC(nullptr);
    CBitmap copy;
    copy.CreateCompatibleBitmap(&second, 20, 10);
    second.SelectObject(&copy);
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(second.BitBlt(0, 0, 20, 10, &dc, 0, 0, SRCCOPY), 1);
        ASSERT_EQ(dc.BitBlt(0, 0, 20, 10, &second, 0, 0, SRCCOPY), 1);
    }
    EXPECT_EQ(onPicture(0, 0, 20, 10, 2, 1), "transfer 0,0-18,9 from 2,1\n  fill 0,0-20,10 #000000\n");
    // Pictures in one another, each with something of its own over the other.
    int deep = 0;
    CDC *from = &dc, *to = &second;
    for (; deep < 1000 && to->BitBlt(0, 0, 20, 10, from, 0, 0, SRCCOPY); ++deep) {
        to->LineTo(deep, 5);
        std::swap(from, to);
    }
    EXPECT_EQ(deep, int{framework::Recording::kMostDepth});
    // A picture that is moved over itself shows what was there twice each time.
    dc.FillSolidRect(0, 0, 20, 10, kRed);
    int moved = 0;
    while (moved < 1000 && dc.BitBlt(-1, 0, 20, 10, &dc, 0, 0, SRCCOPY))
        ++moved;
    EXPECT_EQ(moved, 21) << "2^22 commands";
    dc.FillSolidRect(0, 0, 20, 10, kRed);
    EXPECT_EQ(dc.BitBlt(-1, 0, 20, 10, &dc, 0, 0, SRCCOPY), 1) << "begun anew";
}

TEST(Recording, AReplayTakesTheRoomOfOne) {
    const framework::PenLook pen{kRed, 2, false}, other{kBlue, 2, false};
    const CPoint curve[] = {{1, 5}, {2, 6}, {3, 4}, {4, 9}};
    const auto upTo = [&](std::size_t n) { return std::span(curve).subspan(1, n - 1); };
    framework::Recording drawn;
    drawn.lines(other, {9, 9}, upTo(2));
    for (const std::size_t n : {2U, 3U, 4U, 3U, 2U}) {
        drawn.lines(pen, curve[0], upTo(n));
        drawn.foldReplay();
    }
    drawn.lines(other, curve[0], upTo(3)); // another pen covers, but does not repeat
    drawn.foldReplay();
    drawn.lines(other, curve[1], upTo(2));
    drawn.foldReplay();
    EXPECT_EQ(DrawnCommands::of(drawn), "line pen #0000ff 2: 9,9 2,6\n"
                                        "line pen #ff0000 2: 1,5 2,6 3,4 4,9\n"
                                        "line pen #0000ff 2: 1,5 2,6 3,4\n"
                                        "line pen #0000ff 2: 2,6 2,6\n");
}

} // namespace
