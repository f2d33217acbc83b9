#include "framework/drawing/Svg.h"

#include "framework/drawing/PictureDC.h"
#include "framework/drawing/SvgText.h"
#include "tests/framework/GermanLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

using framework::PictureDC;

std::string document(const std::string& inside) {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"40\" height=\"30\" viewBox=\"0 0 40 30\" "
           "shape-rendering=\"crispEdges\">\n" +
           inside + "</svg>\n";
}

void selectArial(CDC& dc, CFont& font, int escapement) {
    LOGFONT wanted;
    wanted.lfHeight = 80;
    wanted.lfWeight = FW_NORMAL;
    wanted.lfEscapement = escapement;
    framework::setFaceName(wanted, L"Arial");
    font.CreatePointFontIndirect(&wanted, &dc);
    dc.SelectObject(&font);
}

TEST(Svg, WritesEveryCommand) {
    const GermanLocale comma;
    const struct {
        const char* name;
        std::function<void(CDC&)> draw;
        std::string inside;
    } rows[] = {
        {"nothing", [](CDC&) {}, ""},
        {"fill", [](CDC& dc) { dc.FillSolidRect(1, 2, 3, 4, RGB(255, 10, 0)); },
         "<rect x=\"1\" y=\"2\" width=\"3\" height=\"4\" fill=\"#ff0a00\"/>\n"},
        {"a pen of one pixel in the middle of its pixels", [](CDC& dc) { dc.MoveTo(1, 2), dc.LineTo(-3, 4); },
         "<polyline fill=\"none\" stroke=\"#000000\" transform=\"translate(.5 .5)\" points=\"1,2 -3,4\"/>\n"},
        {"upwards from its first pixel", [](CDC& dc) { dc.MoveTo(1, 9), dc.LineTo(1, 4); },
         "<polyline fill=\"none\" stroke=\"#000000\" transform=\"translate(.5 .5)\" points=\"1,10 1,5\"/>\n"},
        {"to the left, and no further than painters count",
         [](CDC& dc) {
             dc.MoveTo(std::numeric_limits<int>::max(), 2), dc.LineTo(1, 2), dc.LineTo(1 << 30, 5);
         },
         "<polyline fill=\"none\" stroke=\"#000000\" transform=\"translate(.5 .5)\" points=\"4194305,2 1,2 "
         "4194304,5\"/>\n"},
        {"a pen of two pixels between them, with round ends",
         [](CDC& dc) {
             CPen pen(PS_SOLID, 2, RGB(0, 0, 255));
             dc.SelectObject(&pen);
             dc.LineTo(3, 4);
         },
         "<polyline fill=\"none\" stroke=\"#0000ff\" stroke-width=\"2\" stroke-linecap=\"round\" "
         "stroke-linejoin=\"round\" points=\"0,0 3,4\"/>\n"},
        {"ellipses",
         [](CDC& dc) {
             dc.Ellipse(0, 0, 5, 4);
             dc.SelectStockObject(NULL_PEN);
             dc.Ellipse(0, 0, 5, 4);
         },
         "<g stroke=\"#000000\" fill=\"#ffffff\" shape-rendering=\"auto\">\n"
         "<ellipse cx=\"2.5\" cy=\"2\" rx=\"2\" ry=\"1.5\"/>\n</g>\n"
         "<g fill=\"#ffffff\" shape-rendering=\"auto\">\n<ellipse cx=\"2.5\" cy=\"2\" rx=\"2.5\" ry=\"2\"/>\n"
         "</g>\n"},
        {"text by its top, escaped",
         [](CDC& dc) {
             CFont font;
             selectArial(dc, font, 0);
             dc.SetBkMode(TRANSPARENT);
             dc.SetTextColor(RGB(255, 0, 0));
             dc.TextOut(2, 10, L"a<b & \"\x01\xAC00\"");
         },
         "<text x=\"2\" y=\"19.9\" fill=\"#ff0000\" font-family=\"Arial, sans-serif\" font-size=\"11\" "
         "xml:space=\"preserve\">a&lt;b &amp; &quot;\xEF\xBF\xBD\xEA\xB0\x80&quot;</text>\n"},
        {"text on its ground, turned upwards",
         [](CDC& dc) {
             CFont font;
             selectArial(dc, font, 900);
             dc.SetTextAlign(TA_RIGHT | TA_BASELINE);
             dc.TextOut(2, 10, L"ab");
         },
         "<g transform=\"rotate(-90 2 10)\">\n"
         "<rect x=\"-10.32\" y=\"0.1\" width=\"12.32\" height=\"12.1\" fill=\"#ffffff\"/>\n"
         "<text x=\"2\" y=\"10\" fill=\"#000000\" text-anchor=\"end\" font-family=\"Arial, sans-serif\" "
         "font-size=\"11\" xml:space=\"preserve\">ab</text>\n</g>\n"},
        {"a transfer as a window on what it shows",
         [](CDC& dc) {
             CDC memory;
             memory.CreateCompatibleDC(&dc);
             CBitmap bitmap;
             bitmap.CreateCompatibleBitmap(&dc, 10, 8);
             memory.SelectObject(&bitmap);
             dc.BitBlt(3, 4, 5, 6, &memory, 1, 2, SRCCOPY);
         },
         "<svg x=\"3\" y=\"4\" width=\"5\" height=\"6\" viewBox=\"1 2 5 6\">\n"
         "<rect x=\"0\" y=\"0\" width=\"10\" height=\"8\" fill=\"#000000\"/>\n</svg>\n"},
    };
    for (const auto& row : rows) {
        PictureDC dc(CSize(40, 30));
        row.draw(dc);
        EXPECT_EQ(framework::toSvg(dc.drawn(), dc.size()), document(row.inside)) << row.name;
    }
}

TEST(Svg, NumbersHaveNoMoreThanTheyNeed) {
    const double huge = std::numeric_limits<double>::infinity();
    const struct {
        double value;
        int decimals;
        const char* text;
    } rows[] = {{0, 2, "0"},     {-0.0, 2, "0"},  {1.5, 2, "1.5"},        {-0.004, 2, "0"},
                {100, 2, "100"}, {100, 0, "100"}, {2.675, 2, "2.67"},     {1e6, 2, "1000000"},
                {huge, 2, "0"},  {-huge, 2, "0"}, {std::nan(""), 2, "0"}, {1.0 / 3, 4, "0.3333"}};
    for (const auto& row : rows) {
        std::string text;
        framework::svg::appendNumber(text, row.value, row.decimals);
        EXPECT_EQ(text, row.text) << row.value;
    }
}

} // namespace
