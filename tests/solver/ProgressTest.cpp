#include "solver/Progress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>

namespace {

using solver::Progress;
using std::chrono::milliseconds;

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

} // namespace

TEST(Progress, DrawsAtMostTenTimesASecondAndWipesItself) {
    std::ostringstream terminal;
    Progress::Clock::time_point time{};
    Progress progress(&terminal, 1000, [&] { return time; });
    for (int i = 0; i < 1000; ++i) {
        time += milliseconds(1);
        progress.advance();
    }
    const std::string drawn = terminal.str();
    EXPECT_EQ(countOf(drawn, "nodes"), 10u) << drawn;
    EXPECT_NE(drawn.find("\r\x1b[K50 % of 1000 nodes, 1 thousand a second, 1 s left"), std::string::npos)
        << drawn;
    EXPECT_EQ(drawn.find('\n'), std::string::npos);
    progress.end();
    EXPECT_EQ(terminal.str(), drawn + "\r\x1b[K");
    time += milliseconds(500);
    progress.advance();
    progress.end();
    EXPECT_EQ(terminal.str(), drawn + "\r\x1b[K");
}

TEST(Progress, ShortRunsDrawNothing) {
    std::ostringstream terminal;
    Progress::Clock::time_point time{};
    {
        Progress progress(&terminal, 2, [&] { return time; });
        time += milliseconds(99);
        progress.advance();
    }
    EXPECT_EQ(terminal.str(), "");
    Progress unseen(nullptr, 2, [&] { return time; });
    time += milliseconds(900);
    unseen.advance();
}

TEST(Progress, Texts) {
    struct Row {
        std::uint64_t done, total;
        double seconds;
        const char* text;
    };
    const Row rows[] = {
        {0, 7, 1, "0 % of 7 nodes"},
        {1, 3, 2, "33 % of 3 nodes, 0.5 a second, 4 s left"},
        {999, 1000, 0.5, "99 % of 1000 nodes, 2 thousand a second, 1 s left"},
        {1000, 1000, 0.5, "100 % of 1000 nodes, 2 thousand a second, 0 s left"},
        {2500000, 10000000, 2, "25 % of 10000000 nodes, 1.25 million a second, 6 s left"},
        {1, 61, 1, "1 % of 61 nodes, 1 a second, 1 min 0 s left"},
        {1, 100000, 1, "0 % of 100000 nodes, 1 a second, 27 h 46 min left"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(solver::progressText(row.done, row.total, row.seconds), row.text);
}
