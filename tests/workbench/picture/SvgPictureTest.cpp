#include "workbench/picture/SvgPicture.h"

#include <gtest/gtest.h>

using namespace workbench;

TEST(SvgPicture, BytesInBase64) {
    // RFC 4648, clause 10.
    const std::pair<std::string, std::string> rows[] = {{"", ""},
                                                        {"f", "Zg=="},
                                                        {"fo", "Zm8="},
                                                        {"foo", "Zm9v"},
                                                        {"foob", "Zm9vYg=="},
                                                        {"fooba", "Zm9vYmE="},
                                                        {"foobar", "Zm9vYmFy"},
                                                        {"\xFF\xFE\xFD", "//79"}};
    for (const auto& [bytes, text] : rows)
        EXPECT_EQ(base64({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()}), text);
}

TEST(SvgPicture, TextsAreTextAndAnyOfThemLeavesTheFileWellFormed) {
    Overlay overlay;
    overlay.texts.push_back(
        {cleanText("a<b & \"c\" \xFF\xEF\xBF\xBE 절점\x01"), {10, 90}, 20.0, true, TextAlign::Right});
    overlay.addBox({1, 2, 3, 4}, {255, 0, 16}, 0.85);
    const TextWidth measure = [](const std::string&, double, bool) { return 12.5; };
    const SvgPicture picture{100, 100, true, "T<", "D&", {}, {0, 0, 10, 20}, overlay};
    const std::string text = svgText(picture, measure);
    for (const char* part :
         {"<title>T&lt;</title>", "<desc>D&amp;</desc>",
          "points=\"1,98 3,98 3,96 1,96\" fill=\"#ff0010\" fill-opacity=\"0.85\"",
          "<text x=\"10\" y=\"17\" font-size=\"20\" textLength=\"12.5\"", "text-anchor=\"end\"",
          ">a&lt;b &amp; \"c\" \xEF\xBF\xBD\xEF\xBF\xBD 절점</text>",
          "<image x=\"0\" y=\"80\" width=\"10\" height=\"20\""})
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
    EXPECT_EQ(text.find("<rect"), std::string::npos);
}
