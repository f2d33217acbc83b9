#include "workbench/picture/ContourPicture.h"

#include "tests/workbench/picture/PictureMesh.h"
#include "workbench/picture/ColorScale.h"
#include "workbench/picture/VirtualServer.h"

#include <gtest/gtest.h>
#include <png.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <thread>

using namespace workbench;
namespace fs = std::filesystem;

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 400;
constexpr int kModelRight = 500; ///< what lies left of it is not the scale bar

struct CubeCase {
    PictureMesh mesh = PictureMesh::cube(4);
    std::vector<float> values;
    ContourPicture picture;

    CubeCase() {
        for (const auto& p : mesh.positions)
            values.push_back(static_cast<float>(100 * (p[0] + p[1] + p[2])));
        picture.mesh = mesh.view();
        picture.values = values;
        picture.titleLines = {"해석 1", "Case 1"};
        picture.valueTitle = "Stress [MPa]";
        picture.width = kWidth;
        picture.height = kHeight;
    }
};

class Folder {
  public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "vexa-picture-XXXXXX").string();
        path_ = ::mkdtemp(name.data());
    }
    ~Folder() { fs::remove_all(path_); }
    fs::path operator/(const char* name) const { return path_ / name; }
    std::size_t fileCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(path_), fs::directory_iterator()));
    }

  private:
    fs::path path_;
};

/// Decodes with the PNG library itself; an empty image when that cannot.
Image readPng(const fs::path& path) {
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    Image image;
    if (!png_image_begin_read_from_file(&png, path.c_str())) return image;
    const bool transparent = (png.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    png.format = PNG_FORMAT_RGBA;
    std::vector<std::array<std::uint8_t, 4>> pixels(static_cast<std::size_t>(png.width) * png.height);
    if (!png_image_finish_read(&png, nullptr, pixels.data(), 0, nullptr)) return {};
    for (const auto& pixel : pixels) {
        image.pixels.push_back({pixel[0], pixel[1], pixel[2]});
        if (transparent) image.alpha.push_back(pixel[3]);
    }
    image.width = static_cast<int>(png.width);
    image.height = static_cast<int>(png.height);
    return image;
}

std::string readText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The bytes behind "base64," in an SVG text, decoded by hand.
std::string embeddedBytes(const std::string& svg) {
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned group = 0;
    int bits = 0;
    for (std::size_t i = svg.find("base64,") + 7; i < svg.size() && svg[i] != '"' && svg[i] != '='; ++i) {
        group = group << 6 | static_cast<unsigned>(letters.find(svg[i]));
        bits += 6;
        if (bits < 8) continue;
        bits -= 8;
        bytes += static_cast<char>(group >> bits & 255u);
    }
    return bytes;
}

/// Columns of the model's part of a picture in which something is drawn: first and last.
std::pair<int, int> columnsOf(const Image& image) {
    std::pair<int, int> columns{kModelRight, 0};
    for (int y = image.height / 5; y < image.height; ++y)
        for (int x = 0; x < kModelRight; ++x)
            if (image.at(x, y) != Rgb{255, 255, 255}) {
                columns.first = std::min(columns.first, x);
                columns.second = std::max(columns.second, x);
            }
    return columns;
}

/// Pixels of the model whose colour is `color`, shaded by the light or not.
int shadesOf(const Image& image, const Rgb& color) {
    int count = 0;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < kModelRight; ++x) {
            const Rgb& at = image.at(x, y);
            const double light = (double(at[0]) + at[1] + at[2]) / (double(color[0]) + color[1] + color[2]);
            bool same = light > 0.7 && light < 1.02;
            for (std::size_t c = 0; c < 3; ++c)
                same = same && std::abs(at[c] - light * color[c]) < 4.0;
            count += same;
        }
    return count;
}

std::string messageOf(const Result<Image>& result) {
    return result ? "" : result.error().message;
}

/// In a process of its own: draws with these environment values, the sentence or "drawn" to the error output.
[[noreturn]] void drawWith(const char* display, const char* path) {
    display ? ::setenv("DISPLAY", display, 1) : ::unsetenv("DISPLAY");
    if (path) ::setenv("PATH", path, 1);
    const CubeCase cube;
    const auto image = drawContour(cube.picture);
    const std::string text = image ? "drawn" : image.error().message;
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
    std::exit(image ? 0 : 1);
}

} // namespace

TEST(ContourPicture, TheFileHoldsTheModelInTheColoursOfBothEnds) {
    const Folder folder;
    const CubeCase cube;
    const auto written = writeContour(cube.picture, folder / "cube.png");
    ASSERT_TRUE(written) << written.error().message;
    EXPECT_EQ(folder.fileCount(), 1u);
    const Image image = readPng(folder / "cube.png");
    ASSERT_EQ(image.width, kWidth);
    ASSERT_EQ(image.height, kHeight);
    const ColorScale& viridis = *ColorScale::find("viridis");
    // The scale runs from 0 to 300 in twelve bands.
    for (const double place : {0.0, 5.0 / 11, 1.0})
        EXPECT_GT(shadesOf(image, viridis.at(place)), 300) << place;
    for (int x = 0; x < kWidth; ++x) {
        ASSERT_EQ(image.at(x, 0), (Rgb{255, 255, 255}));
        ASSERT_EQ(image.at(x, kHeight - 1), (Rgb{255, 255, 255}));
    }
}

TEST(ContourPicture, TheColourFollowsTheValueAlongTheModel) {
    CubeCase cube;
    for (std::size_t i = 0; i < cube.values.size(); ++i)
        cube.values[i] = static_cast<float>(100 * cube.mesh.positions[i][2]);
    cube.picture.view = "front";
    cube.picture.bands = false;
    const auto image = drawContour(cube.picture);
    ASSERT_TRUE(image) << messageOf(image);
    int top = kHeight, bottom = 0;
    const int column = kModelRight / 2;
    const auto colored = [](const Rgb& c) { return std::ranges::max(c) - std::ranges::min(c) > 40; };
    for (int y = 0; y < kHeight; ++y)
        if (colored(image->at(column, y))) {
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    ASSERT_GT(bottom - top, kHeight / 2);
    const ColorScale& viridis = *ColorScale::find("viridis");
    for (const double height : {0.1, 0.3, 0.5, 0.7, 0.9}) {
        const int y = bottom - static_cast<int>(std::lround(height * (bottom - top)));
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(image->at(column, y)[c], viridis.at(height)[c], 8) << height;
    }
}

TEST(ContourPicture, NodesWithoutValueAreGreyAndTheOthersKeepTheirs) {
    CubeCase cube;
    for (std::size_t i = 0; i < cube.values.size(); ++i)
        if (cube.mesh.positions[i][0] > 0.4) cube.values[i] = std::numeric_limits<float>::quiet_NaN();
    cube.picture.view = "front";
    const auto image = drawContour(cube.picture);
    ASSERT_TRUE(image) << messageOf(image);
    const int grey = shadesOf(*image, {178, 178, 178});
    EXPECT_GT(grey, 20000);
    EXPECT_GT(shadesOf(*image, ColorScale::find("viridis")->at(0.0)), 300);
}

TEST(ContourPicture, ElementsWithoutValuesAreGreyThoughTheirNodesHaveSome) {
    CubeCase cube;
    const std::vector<std::uint8_t> none(cube.mesh.types.size(), 0);
    cube.picture.valuedElements = none;
    const auto image = drawContour(cube.picture);
    ASSERT_TRUE(image) << messageOf(image);
    EXPECT_GT(shadesOf(*image, {178, 178, 178}), 20000);
    EXPECT_LT(shadesOf(*image, ColorScale::find("viridis")->at(1.0)), 50);
}

TEST(ContourPicture, WhatLiesOutsideAGivenRangeHasColoursOfItsOwn) {
    CubeCase cube;
    cube.picture.range = ValueRange{100, 200};
    cube.picture.view = "right";
    const auto image = drawContour(cube.picture);
    ASSERT_TRUE(image) << messageOf(image);
    const ColorScale& viridis = *ColorScale::find("viridis");
    EXPECT_GT(shadesOf(*image, viridis.above), 1000);
    EXPECT_GT(shadesOf(*image, viridis.at(0.0)), 300);
    EXPECT_LT(shadesOf(*image, viridis.below), 50); // nothing below 100 on this side
    cube.picture.view = "left";
    const auto other = drawContour(cube.picture);
    ASSERT_TRUE(other) << messageOf(other);
    EXPECT_GT(shadesOf(*other, viridis.below), 1000);
    EXPECT_LT(shadesOf(*other, viridis.above), 50);
}

TEST(ContourPicture, TheDeformedShapeMovesAndTheOutlineStays) {
    CubeCase cube;
    cube.picture.view = "front";
    std::vector<std::array<float, 3>> moves;
    for (const auto& p : cube.mesh.positions)
        moves.push_back({static_cast<float>(0.01 * p[2]), 0, 0});
    const auto still = drawContour(cube.picture);
    cube.picture.displacements = moves;
    cube.picture.deformation = 50.0; // half the edge to the right at the top
    const auto moved = drawContour(cube.picture);
    ASSERT_TRUE(still && moved) << messageOf(moved);
    const auto [left, right] = columnsOf(*still);
    const auto [movedLeft, movedRight] = columnsOf(*moved);
    EXPECT_NEAR(double(movedRight - movedLeft) / (right - left), 1.5, 0.05);
    const auto drawnAtTopLeft = [&](const Image& image) {
        // Where the undeformed cube has its upper left corner.
        int count = 0;
        for (int y = 60; y < 200; ++y)
            for (int x = movedLeft - 2; x < movedLeft + 4; ++x)
                count += image.at(x, y) != Rgb{255, 255, 255};
        return count;
    };
    const int without = drawnAtTopLeft(*moved);
    cube.picture.restOutline = true;
    const auto outlined = drawContour(cube.picture);
    ASSERT_TRUE(outlined) << messageOf(outlined);
    EXPECT_GT(drawnAtTopLeft(*outlined), without + 80);
}

TEST(ContourPicture, ATransparentPictureIsTheWhiteOneWithoutItsPaper) {
    const Folder folder;
    CubeCase cube;
    cube.picture.marks = {{0, "Node 1"}, {3, "Element 4", PictureMark::Kind::Element}};
    const auto white = drawContour(cube.picture);
    cube.picture.transparent = true;
    const auto written = writeContour(cube.picture, folder / "cube.PNG");
    ASSERT_TRUE(white && written) << messageOf(white);
    const Image clear = readPng(folder / "cube.PNG");
    ASSERT_EQ(clear.alpha.size(), white->pixels.size());
    EXPECT_EQ(clear.alpha.front(), 0);
    EXPECT_GT(std::ranges::count(clear.alpha, 255), 20000);
    int largest = 0;
    for (std::size_t i = 0; i < clear.pixels.size(); ++i)
        for (std::size_t c = 0; c < 3; ++c) {
            const int onPaper = (clear.pixels[i][c] * clear.alpha[i] + 255 * (255 - clear.alpha[i])) / 255;
            largest = std::max(largest, std::abs(onPaper - white->pixels[i][c]));
        }
    EXPECT_LE(largest, 3);
}

TEST(ContourPicture, AnSvgFileHoldsTextsAndTheModelAtTwiceThePixels) {
    const Folder folder;
    CubeCase cube;
    cube.picture.marks = {{124, "Node 125: 300"}};
    const auto written = writeContour(cube.picture, folder / "cube.svg");
    ASSERT_TRUE(written) << written.error().message;
    EXPECT_EQ(written->bar.low, 0.0);
    EXPECT_EQ(written->bar.high, 300.0);
    const std::string svg = readText(folder / "cube.svg");
    for (const char* text : {">해석 1</text>", ">Case 1</text>", ">Stress [MPa]</text>",
                             ">Node 125: 300</text>", ">300</text>", ">Max 300</text>"})
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    std::ofstream(folder / "model.png", std::ios::binary) << embeddedBytes(svg);
    const Image model = readPng(folder / "model.png");
    const auto attribute = [&](const char* name) {
        const std::size_t at = svg.find(name, svg.find("<image"));
        return std::atoi(svg.c_str() + at + std::strlen(name));
    };
    ASSERT_GT(model.width, 0);
    EXPECT_EQ(model.width, 2 * attribute("width=\""));
    EXPECT_EQ(model.height, 2 * attribute("height=\""));
    EXPECT_LT(attribute("width=\""), kModelRight);
    const auto opaque = std::ranges::count(model.alpha, 255);
    EXPECT_GT(opaque, model.width * model.height / 2);
    EXPECT_LT(opaque, model.width * model.height * 9 / 10);
    EXPECT_EQ(model.alpha.front(), 0);
}

TEST(ContourPicture, EveryElementFamilyViewAndScaleIsDrawn) {
    for (const std::string_view view : viewNames())
        for (const std::string_view colors : colorScaleNames()) {
            CubeCase cube;
            const std::uint32_t far = cube.mesh.addNode({2.5, 0.5, 0.5});
            cube.mesh.addElement(ElementType::Line2, {0, far});
            cube.mesh.addElement(ElementType::Tri3, {0, 4, far});
            cube.mesh.addElement(ElementType::Point, {far});
            cube.mesh.addElement(static_cast<ElementType>(20), {0, far}); // a spring
            cube.values.push_back(1e7f);
            cube.picture.mesh = cube.mesh.view();
            cube.picture.values = cube.values;
            cube.picture.view = view;
            cube.picture.colorScale = colors;
            if (colors != "blue-red") cube.picture.valueScale = ValueScale::Logarithmic;
            cube.picture.edges = PictureEdges::Mesh;
            cube.picture.marks = {{far, "Node 126"},
                                  {66, "Element 67", PictureMark::Kind::Element},
                                  {30, "an inner element", PictureMark::Kind::Element},
                                  {0, "\xFF a label that is far too long for the picture, "
                                      "and then some more of it, 하중 케이스"}};
            const auto image = drawContour(cube.picture);
            ASSERT_TRUE(image) << view << ": " << messageOf(image);
        }
}

TEST(ContourPicture, SizeAndPlaceOfTheModelDoNotMatter) {
    const CubeCase usual;
    const auto expected = drawContour(usual.picture);
    ASSERT_TRUE(expected) << messageOf(expected);
    const std::pair<double, double> rows[] = {
        {0x1p-1000, 0.0}, {0x1p1000, 0.0}, {1.0, 0x1p40}, {0x1p20, -0x1p50}};
    for (const auto& [size, shift] : rows) {
        CubeCase cube;
        for (auto& position : cube.mesh.positions)
            for (double& coordinate : position)
                coordinate = coordinate * size + shift;
        cube.picture.mesh = cube.mesh.view();
        const auto image = drawContour(cube.picture);
        ASSERT_TRUE(image) << messageOf(image);
        EXPECT_TRUE(image->pixels == expected->pixels) << size << " " << shift;
    }
}

TEST(ContourPicture, WhatCannotBeDrawnIsRefusedWithASentence) {
    struct Row {
        void (*spoil)(CubeCase&);
        const char* message;
    };
    const Row rows[] = {
        {[](CubeCase& c) { c.picture.width = 10; }, "10 x 400 pixels"},
        {[](CubeCase& c) { c.picture.height = 100000; }, "640 x 100000 pixels"},
        {[](CubeCase& c) { c.picture.colorScale = "rainbow"; },
         "choose one of viridis, cividis, blue-red, grey"},
        {[](CubeCase& c) { c.picture.view = ""; }, "choose one of iso, front"},
        {[](CubeCase& c) { c.picture.values = c.picture.values.first(7); }, "7 values for 125 nodes"},
        {[](CubeCase& c) {
             c.picture.marks = {{125, "X"}};
         },
         "\"X\" does not exist"},
        {[](CubeCase& c) {
             c.picture.marks = {{64, "Y", PictureMark::Kind::Element}};
         },
         "element marked \"Y\" does not exist"},
        {[](CubeCase& c) {
             static const std::vector<std::array<float, 3>> three(3);
             c.picture.displacements = three;
         },
         "3 displacements for 125 nodes"},
        {[](CubeCase& c) {
             static const std::vector<std::uint8_t> one(1, 1);
             c.picture.valuedElements = one;
         },
         "1 elements which have a value, of 64"},
        {[](CubeCase& c) { c.picture.deformation = std::numeric_limits<double>::infinity(); },
         "factor of the displacements"},
        {[](CubeCase& c) {
             c.picture.colorScale = "blue-red";
             c.picture.valueScale = ValueScale::Logarithmic;
         },
         "middle at zero"},
        {[](CubeCase& c) { std::ranges::fill(c.values, std::numeric_limits<float>::quiet_NaN()); },
         "no node has a value"},
        {[](CubeCase& c) {
             c.picture.range = ValueRange{3, 3};
         },
         "range of the picture is empty"},
        {[](CubeCase& c) { c.mesh.nodes[0] = 125; }, "element 1 has nodes"},
        {[](CubeCase& c) { std::ranges::fill(c.mesh.types, std::uint8_t{40}); },
         "no element that can be drawn"},
    };
    for (const Row& row : rows) {
        CubeCase cube;
        row.spoil(cube);
        const auto image = drawContour(cube.picture);
        EXPECT_NE(messageOf(image).find(row.message), std::string::npos)
            << row.message << ": " << messageOf(image);
    }
}

TEST(ContourPicture, AFileThatCannotBeWrittenLeavesTheEarlierOneAndNoOther) {
    const Folder folder;
    const CubeCase cube;
    const auto missing = writeContour(cube.picture, folder / "none/cube.png");
    ASSERT_FALSE(missing);
    EXPECT_NE(missing.error().message.find("cube.png: No such file or directory"), std::string::npos);

    std::ofstream(folder / "cube.png") << "earlier";
    rlimit usual;
    ::getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit small{1000, usual.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const auto full = writeContour(cube.picture, folder / "cube.png");
    ::setrlimit(RLIMIT_FSIZE, &usual);
    ASSERT_FALSE(full);
    EXPECT_NE(full.error().message.find("cube.png: File too large"), std::string::npos)
        << full.error().message;
    EXPECT_EQ(folder.fileCount(), 1u);
    EXPECT_EQ(fs::file_size(folder / "cube.png"), 7u);
}

// Each in a process of its own, whose error output holds nothing but the sentence.
TEST(ContourPictureDeathTest, DrawsWithoutADisplayAndWithADeadOne) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const char* display : {static_cast<const char*>(nullptr), "", ":64321", "no display at all"})
        EXPECT_EXIT(drawWith(display, nullptr), testing::ExitedWithCode(0), "^drawn$")
            << (display ? display : "none");
}

TEST(ContourPictureDeathTest, NamesThePackageWhenThereIsNoVirtualServer) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(drawWith(nullptr, "/nowhere"), testing::ExitedWithCode(1), "^pictures need .*package xvfb$");
}

TEST(VirtualServer, EndsWithItsProcessHoweverThatEnds) {
    for (const bool killed : {true, false}) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            auto server = VirtualServer::start();
            if (!server) ::_exit(1);
            const std::string display = (*server)->display();
            if (::write(ends[1], display.data(), display.size()) < 0) ::_exit(1);
            if (killed) ::raise(SIGKILL);
            server->reset();
            ::_exit(0);
        }
        ::close(ends[1]);
        char text[32] = "";
        ASSERT_GT(::read(ends[0], text, sizeof text - 1), 1);
        ::close(ends[0]);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_EQ(WIFSIGNALED(status), killed);
        // The server removes its lock file as it ends.
        const fs::path lock = "/tmp/.X" + std::string(text + 1) + "-lock";
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(killed ? 10 : 0);
        while (fs::exists(lock) && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_FALSE(fs::exists(lock)) << (killed ? "killed" : "ended");
    }
}
