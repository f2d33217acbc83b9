#pragma once

#include "resultfile/ResultFile.h"
#include "tests/resultfile/ReadEverything.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

/// A result file small enough to be damaged byte by byte, with one of everything.
struct Sample {
    struct List {
        std::string name;
        resultfile::Location location;
        std::vector<std::uint32_t> positions;
    };
    std::string analysis = "Notched bar";
    std::string inputChecksum = "0123456789abcdef";
    std::vector<std::string> sources{"하중 A:1 * 1.35", ""};
    std::vector<std::int32_t> nodes{2, 3, 5, 7, 11, 13, 17, 19, 23, 29};
    std::vector<std::int32_t> elements{1, 4, 9};
    std::vector<std::int32_t> corners{8, 4, 6};
    std::vector<List> lists{{"surface", resultfile::Location::Node, {0, 3, 9}},
                            {"볼트", resultfile::Location::ElementCorner, {0, 2}},
                            {"none", resultfile::Location::Node, {}}};
    std::vector<std::string> cases{"하중 A", "load \"B\""};
    std::vector<std::string> steps{"1", "Zeit = 2,5 s", ""};

    struct Table {
        unsigned id;
        resultfile::Location location;
        std::string items;
    };
    std::vector<Table> tables{{9, resultfile::Location::Node, ""},
                              {312101, resultfile::Location::ElementCorner, ""},
                              {101, resultfile::Location::Node, "surface"},
                              {76100, resultfile::Location::ElementCorner, "볼트"},
                              {4294967295u, resultfile::Location::Node, "none"}};

    std::uint64_t count(const Table& table) const {
        const bool node = table.location == resultfile::Location::Node;
        if (table.items.empty())
            return node ? nodes.size() : std::accumulate(corners.begin(), corners.end(), std::uint64_t{0});
        for (const List& list : lists) {
            if (list.name != table.items) continue;
            if (node) return list.positions.size();
            std::uint64_t sum = 0;
            for (const auto position : list.positions)
                sum += static_cast<std::uint64_t>(corners[position]);
            return sum;
        }
        return 0;
    }
    std::vector<float> values(std::size_t caseIndex, std::size_t step, const Table& table) const {
        std::vector<float> values(count(table));
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] =
                static_cast<float>((i * 7 + caseIndex * 31 + step * 17 + table.id % 97) % 1001) * 0.37f -
                99.0f;
        return values;
    }

    /// Writes all but the commit. Each table goes in pieces of `piece` values, whole when 0; pieces of all
    /// tables of a step alternate.
    Result<void> write(resultfile::Writer& writer, std::size_t piece = 0) const {
        if (auto set = writer.setMesh({nodes, elements, corners}); !set) return set;
        if (auto set = writer.setInputChecksum(inputChecksum); !set) return set;
        if (auto set = writer.setSources(sources); !set) return set;
        for (const List& list : lists)
            if (auto added = writer.addItems(list.name, list.location, list.positions); !added) return added;
        for (std::size_t c = 0; c < cases.size(); ++c) {
            if (auto begun = writer.beginCase(cases[c]); !begun) return begun;
            for (std::size_t s = 0; s < steps.size(); ++s) {
                if (auto begun = writer.beginStep(steps[s], static_cast<double>(s) * 0.1); !begun)
                    return begun;
                if (auto written = writeStep(writer, c, s, piece); !written) return written;
            }
        }
        return {};
    }

    Result<void> writeStep(resultfile::Writer& writer, std::size_t c, std::size_t s,
                           std::size_t piece) const {
        std::vector<std::vector<float>> all;
        std::vector<resultfile::Writer::Table> open;
        for (const Table& table : tables) {
            all.push_back(values(c, s, table));
            if (piece == 0) {
                if (auto written = writer.writeTable(table.id, table.location, all.back(), table.items);
                    !written)
                    return written;
                continue;
            }
            auto opened = writer.openTable(table.id, table.location, all.back().size(), table.items);
            if (!opened) return opened.error();
            open.push_back(*opened);
        }
        for (std::size_t first = 0, pending = open.size(); pending != 0; first += piece) {
            pending = 0;
            for (std::size_t t = 0; t < open.size(); ++t) {
                if (first >= all[t].size()) continue;
                ++pending;
                const std::size_t size = std::min(piece, all[t].size() - first);
                if (auto done = open[t].append(std::span(all[t]).subspan(first, size)); !done) return done;
            }
        }
        return {};
    }

    Result<void> writeTo(const std::filesystem::path& path, std::size_t piece = 0) const {
        auto writer = resultfile::Writer::create(path, analysis, "test 1.0");
        if (!writer) return writer.error();
        if (auto written = write(*writer, piece); !written) return written;
        return writer->commit();
    }
};

#define EXPECT_OK(call)                                                                                      \
    if (const auto& result_ = (call); !result_) ADD_FAILURE() << result_.error().message
#define ASSERT_OK(result) ASSERT_TRUE(static_cast<bool>(result)) << (result).error().message
