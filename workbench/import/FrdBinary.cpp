#include "workbench/import/FrdBinary.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>
#include <string>

namespace workbench::frdbinary {
namespace {

constexpr std::size_t kRowsAtATime = 512; ///< stay in the innermost cache

template <class Number>
Number load(const char* at) {
    std::array<char, sizeof(Number)> bytes;
    std::memcpy(bytes.data(), at, sizeof(Number));
    if constexpr (std::endian::native == std::endian::big) std::reverse(bytes.begin(), bytes.end());
    return std::bit_cast<Number>(bytes);
}

Error truncated(const std::string& what) {
    return Error{"the file ends inside " + what + "; the solver did not finish, or the file is truncated"};
}

/// Whether the value goes into a table of 32-bit floats.
template <class Number>
bool fits(Number value) {
    return std::abs(value) <= std::numeric_limits<float>::max(); // no for what is not a number
}

Error badValue(const FrdBlock& block, std::int32_t node, std::size_t component, bool finite) {
    return Error{"block " + block.name + ", node " + std::to_string(node) + ", component " +
                 block.components[component] + ": the value is " +
                 (finite ? "too large for a result value" : "no finite number")};
}

using Lanes [[gnu::vector_size(16)]] = std::uint32_t; ///< four columns of a row, or four rows of a column
constexpr std::size_t kLanes = 4;

/// Four rows into four columns from row `target` on.
inline void transpose(const char* row, std::size_t stride, char* const* columns, std::size_t target) {
    Lanes a, b, c, d;
    std::memcpy(&a, row, sizeof a);
    std::memcpy(&b, row + stride, sizeof b);
    std::memcpy(&c, row + 2 * stride, sizeof c);
    std::memcpy(&d, row + 3 * stride, sizeof d);
    const Lanes ab = __builtin_shufflevector(a, b, 0, 4, 1, 5),
                cd = __builtin_shufflevector(c, d, 0, 4, 1, 5),
                abHigh = __builtin_shufflevector(a, b, 2, 6, 3, 7),
                cdHigh = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    const Lanes turned[kLanes] = {__builtin_shufflevector(ab, cd, 0, 1, 4, 5),
                                  __builtin_shufflevector(ab, cd, 2, 3, 6, 7),
                                  __builtin_shufflevector(abHigh, cdHigh, 0, 1, 4, 5),
                                  __builtin_shufflevector(abHigh, cdHigh, 2, 3, 6, 7)};
    for (std::size_t i = 0; i < kLanes; ++i)
        std::memcpy(columns[i] + 4 * target, &turned[i], sizeof turned[i]);
}

/// Rows of 32-bit numbers into one column each. Full groups of four go through at a time.
void splitRows(const char* rows, std::size_t count, std::span<char* const> columns) {
    const std::size_t width = columns.size(), stride = 4 * width;
    const std::size_t whole =
        std::endian::native == std::endian::little && width >= kLanes ? count / kLanes * kLanes : 0;
    for (std::size_t first = 0; first < width && whole > 0; first += kLanes) {
        const std::size_t begin = std::min(first, width - kLanes); // the last group overlaps the one before
        for (std::size_t row = 0; row < whole; row += kLanes)
            transpose(rows + row * stride + 4 * begin, stride, columns.data() + begin, row);
    }
    for (std::size_t row = whole; row < count; ++row)
        for (std::size_t column = 0; column < width; ++column)
            std::copy_n(rows + row * stride + 4 * column, 4, columns[column] + 4 * row);
}

/// By their bits, several at a time.
bool allFinite(std::span<const float> values) {
    constexpr std::uint32_t kExponent = 0x7F800000;
    std::uint32_t bad = 0;
    for (const float value : values)
        bad |= (std::bit_cast<std::uint32_t>(value) & kExponent) == kExponent;
    return bad == 0;
}

Result<void> checkNodes(const FrdBlock& block, std::size_t first, std::size_t count) {
    const auto nodes = std::span(block.nodes).subspan(first, count);
    const std::int32_t least = *std::ranges::min_element(nodes);
    if (least >= 1) return {};
    return Error{"block " + block.name + " holds values of node " + std::to_string(least) +
                 ", which is none"};
}

/// `columns` only lends its memory.
Result<void> readSingle(const char* rows, std::size_t first, std::size_t count, FrdBlock& block,
                        std::vector<char*>& columns) {
    columns.assign(1, reinterpret_cast<char*>(block.nodes.data() + first));
    for (auto& table : block.values)
        columns.push_back(reinterpret_cast<char*>(table.data() + first));
    splitRows(rows, count, columns);
    if (const auto checked = checkNodes(block, first, count); !checked) return checked;
    for (std::size_t c = 0; c < block.values.size(); ++c) {
        const auto values = std::span(block.values[c]).subspan(first, count);
        if (allFinite(values)) continue;
        const auto bad =
            static_cast<std::size_t>(std::ranges::find_if_not(values, fits<float>) - values.begin());
        return badValue(block, block.nodes[first + bad], c, false);
    }
    return {};
}

Result<void> readDouble(const char* row, std::size_t first, std::size_t count, FrdBlock& block) {
    for (std::size_t i = first; i < first + count; ++i) {
        block.nodes[i] = load<std::int32_t>(row);
        row += 4;
        for (std::size_t c = 0; c < block.values.size(); ++c, row += 8) {
            const auto value = load<double>(row);
            if (!fits(value)) return badValue(block, block.nodes[i], c, std::isfinite(value));
            block.values[c][i] = static_cast<float>(value);
        }
    }
    return checkNodes(block, first, count);
}

/// By the element type of the format, from 1; 0 where there is none.
std::size_t nodesOfType(int type) {
    constexpr std::array<std::size_t, 13> kNodes{0, 8, 6, 4, 20, 15, 10, 3, 6, 4, 8, 2, 3};
    return type >= 1 && type < static_cast<int>(kNodes.size()) ? kNodes[static_cast<std::size_t>(type)] : 0;
}

} // namespace

Result<void> readRows(TextWindow& window, std::size_t count, Real real, FrdBlock& block) {
    const std::size_t stride = rowBytes(block.components.size(), real);
    if ((window.size() - std::min(window.size(), window.offset())) / stride < count)
        return truncated("block " + block.name);
    block.nodes.resize(count);
    for (auto& table : block.values)
        table.resize(count);
    std::vector<char*> columns;
    for (std::size_t done = 0; done < count;) {
        const std::size_t rows = std::min(kRowsAtATime, count - done);
        const std::string_view bytes = window.peek(rows * stride);
        if (bytes.size() < rows * stride) return truncated("block " + block.name);
        const auto read = real == Real::Single ? readSingle(bytes.data(), done, rows, block, columns)
                                               : readDouble(bytes.data(), done, rows, block);
        if (!read) return read;
        window.skipLines(rows * stride, 0);
        done += rows;
    }
    return {};
}

Result<FrdElement> readElement(TextWindow& window, std::vector<std::int32_t>& nodes) {
    constexpr std::size_t kHeadBytes = 16;
    const std::string_view head = window.peek(kHeadBytes);
    if (head.size() < kHeadBytes) return truncated("the elements");
    FrdElement element{load<std::int32_t>(head.data()), load<std::int32_t>(head.data() + 4), {}};
    const std::size_t count = nodesOfType(element.type);
    if (element.number < 1 || count == 0)
        return Error{"element " + std::to_string(element.number) + " has the type " +
                     std::to_string(element.type) + ", which is not known"};
    const std::size_t length = kHeadBytes + 4 * count;
    const std::string_view bytes = window.peek(length);
    if (bytes.size() < length) return truncated("the elements");
    nodes.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        nodes[i] = load<std::int32_t>(bytes.data() + kHeadBytes + 4 * i);
    element.nodes = nodes;
    window.skipLines(length, 0);
    return element;
}

bool skip(TextWindow& window, std::uint64_t bytes) {
    constexpr std::uint64_t kPiece = 1 << 20;
    for (std::uint64_t left = bytes; left > 0;) {
        const auto wanted = static_cast<std::size_t>(std::min(left, kPiece));
        if (window.peek(wanted).size() < wanted) return false;
        window.skipLines(wanted, 0);
        left -= wanted;
    }
    return true;
}

} // namespace workbench::frdbinary
