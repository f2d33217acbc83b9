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
    png.format = PNG_FORMAT_RGB;
    image.pixels.resize(static_cast<std::size_t>(png.width) * png.height);
    if (!png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr)) return {};
    image.width = static_cast<int>(png.width);
    image.height = static_cast<int>(png.height);
    return image;
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

TEST(ContourPicture, EveryElementFamilyViewAndScaleIsDrawn) {
    for (const std::string_view view : viewNames())
        for (const std::string_view colors : colorScaleNames()) {
            CubeCase cube;
            const std::uint32_t far = cube.mesh.addNode({2.5, 0.5, 0.5});
            cube.mesh.addElement(ElementType::Line2, {0, far});
            cube.mesh.addElement(ElementType::Tri3, {0, 4, far});
            cube.mesh.addElement(ElementType::Point, {far});
            cube.values.push_back(1e7f);
            cube.picture.mesh = cube.mesh.view();
            cube.picture.values = cube.values;
            cube.picture.view = view;
            cube.picture.colorScale = colors;
            if (colors != "blue-red") cube.picture.valueScale = ValueScale::Logarithmic;
            cube.picture.marks = {{far, "Node 126"},
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
