#include "workbench/picture/LabelPlacer.h"

#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

using namespace workbench;

namespace {

bool overlap(const PixelBox& a, const PixelBox& b) {
    return a.left < b.right && b.left < a.right && a.bottom < b.top && b.bottom < a.top;
}

} // namespace

TEST(LabelPlacer, LabelsKeepClearOfEachOtherAndOfTheMarksHoweverCloseTheseAre) {
    RandomIntegers random;
    const PixelBox area{20, 20, 1200, 900};
    for (const std::size_t spread : {1u, 20u, 200u, 800u}) {
        std::vector<Pixel> marks;
        for (int i = 0; i < 12; ++i)
            marks.push_back({200.0 + double(random.below(spread)), 60.0 + double(random.below(spread))});
        CoverageGrid model(1600, 1000, 10.0);
        model.takeBox({100, 40, 700, 500});
        LabelPlacer placer(area, model, marks, 9.0, 19.0);
        std::vector<PixelBox> boxes;
        for (std::size_t i = 0; i < marks.size(); ++i)
            boxes.push_back(placer.place(i, 150.0, 30.0));
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            const PixelBox& box = boxes[i];
            EXPECT_TRUE(box.left >= area.left && box.right <= area.right && box.bottom >= area.bottom &&
                        box.top <= area.top)
                << random.seedText();
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(overlap(box, boxes[j]))
                    << spread << ": " << i << " " << j << " " << random.seedText();
            for (const Pixel& mark : marks)
                EXPECT_FALSE(overlap(box, {mark[0], mark[1], mark[0] + 0.1, mark[1] + 0.1}))
                    << spread << " " << random.seedText();
        }
    }
}

TEST(LabelPlacer, ALabelWithoutRoomStaysInsideAllTheSame) {
    const std::vector<Pixel> marks{{5, 5}, {95, 45}};
    const CoverageGrid model(100, 50, 10.0);
    LabelPlacer placer({0, 0, 100, 50}, model, marks, 3.0, 8.0);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const PixelBox box = placer.place(i, 98.0, 40.0);
        EXPECT_TRUE(box.left >= 0 && box.right <= 100 && box.bottom >= 0 && box.top <= 50) << i;
    }
}
