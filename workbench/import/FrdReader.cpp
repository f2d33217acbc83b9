#include "workbench/import/FrdReader.h"

#include "workbench/import/ColumnReader.h"
#include "workbench/import/FixedField.h"
#include "workbench/import/FrdBinary.h"
#include "workbench/import/Names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace workbench {
namespace {

constexpr std::size_t kMarkWidth = 3; ///< " -1", " -2", " -3"
/// No entity has more components; a larger count is a broken file.
constexpr int kMostComponents = 1000;
constexpr std::size_t kMostElementNodes = 64; ///< beyond the largest element of the format
constexpr std::size_t kValuesPerLine = 6;
constexpr std::size_t kFirstValue = kMarkWidth + fixedfield::kIntegerWidth;
constexpr std::size_t kRowsAtOnce = 4096; ///< by which tables grow
constexpr std::size_t kRowsAtATime = 64;  ///< whose text stays in the innermost cache

std::string_view column(std::string_view line, std::size_t first, std::size_t width) {
    return first < line.size() ? line.substr(first, width) : std::string_view();
}

std::optional<int> integerColumn(std::string_view line, std::size_t first, std::size_t width) {
    std::int32_t value = 0;
    if (!fixedfield::parseInteger(column(line, first, width), value)) return std::nullopt;
    return value;
}

std::optional<double> realOf(std::string_view field) {
    field = trimmed(field);
    double value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc() || end != field.data() + field.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

/// The blank-separated words behind the tag of a parameter line ("    1PSTEP   1   1   1").
std::vector<std::string_view> words(std::string_view text) {
    std::vector<std::string_view> result;
    while (true) {
        text = trimmed(text);
        if (text.empty()) return result;
        const std::size_t end = text.find_first_of(" \t");
        result.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end);
    }
}

class FrdParser {
  public:
    FrdParser(TextWindow& window, FrdSink& sink)
        : window_(window)
        , sink_(sink) {}

    Result<void> run() {
        std::string_view line;
        while (window_.nextLine(line)) {
            if (line.starts_with(" 9999")) return {};
            if (!record(line)) return Error{error_};
        }
        if (!window_.failure().empty()) return Error{window_.failure()};
        return Error{window_.place() +
                     ": the file ends without its end mark (9999); the solver did not finish, or the "
                     "file is truncated"};
    }

  private:
    bool fail(const std::string& message) {
        if (error_.empty()) error_ = window_.place() + ": " + message;
        return false;
    }

    bool failTruncated(const char* what) {
        if (!window_.failure().empty()) {
            error_ = window_.failure();
            return false;
        }
        return fail(std::string("the file ends inside ") + what +
                    "; the solver did not finish, or the file is truncated");
    }

    bool deliver(const Result<void>& answer) {
        if (!answer) error_ = answer.error().message;
        return bool(answer);
    }

    bool record(std::string_view line) {
        if (line.starts_with("    1P")) return parameter(line);
        if (line.starts_with("    2C")) return meshNodes(line);
        if (line.starts_with("    3C")) return meshElements(line);
        if (line.starts_with("  100C")) return resultBlock(line);
        if (line.starts_with("    1")) return true; // title and user lines
        if (trimmed(line).empty()) return true;
        const std::string_view start = line.substr(0, 20);
        if (std::ranges::any_of(start, [](char c) { return c < ' ' || c > '~'; }))
            return fail("this line begins no record of a result file; it is not text");
        return fail("'" + std::string(start) + "' begins no record of a result file");
    }

    bool parameter(std::string_view line) {
        const std::string_view tag = column(line, 6, 4);
        if (tag != "STEP" && tag != "MODE") return true;
        const auto fields = words(line.substr(10));
        const std::size_t count = tag == "STEP" ? 3 : 1;
        std::array<std::int32_t, 3> numbers{};
        bool good = fields.size() >= count;
        for (std::size_t i = 0; good && i < count; ++i)
            good = fixedfield::parseInteger(fields[i], numbers[i]);
        if (!good) return fail("the numbers of the " + std::string(tag) + " line are broken");
        if (tag == "STEP") {
            header_.increment = numbers[1];
            header_.step = numbers[2];
            header_.mode = 0;
        } else {
            header_.mode = numbers[0];
        }
        return true;
    }

    /// What the format number at the end of a record says of its rows: 0 and 1 text with node numbers of 5
    /// and 10 columns, 2 and 3 binary with single and double values.
    bool format(std::string_view line, std::size_t first) {
        const auto format = integerColumn(line, first, 2);
        if (!format || *format < 0 || *format > 3) return fail("the record names no known format");
        numberWidth_ = format == 0 ? 5 : 10;
        binary_.reset();
        if (format == 2) binary_ = frdbinary::Real::Single;
        if (format == 3) binary_ = frdbinary::Real::Double;
        return true;
    }

    /// The message of a reader that knows no place.
    bool passOn(const Error& error) {
        if (!window_.failure().empty()) {
            error_ = window_.failure();
            return false;
        }
        return fail(error.message);
    }

    bool meshNodes(std::string_view line) {
        if (!format(line, 73)) return false;
        announced_ = integerColumn(line, 24, 12);
        FrdBlock& block = beginBlock();
        block.name = "nodes";
        block.components = {"X", "Y", "Z"};
        return rows(block) && deliver(sink_.meshNodes(block));
    }

    bool meshElements(std::string_view line) {
        if (!format(line, 73)) return false;
        if (binary_) return binaryElements(line);
        const bool wantsNodes = sink_.wantsElementNodes();
        FrdElement element;
        std::vector<std::int32_t> nodes;
        const auto finishElement = [&] {
            if (element.number == 0) return true;
            element.nodes = nodes;
            return deliver(sink_.meshElement(element));
        };
        while (true) {
            if (!window_.nextLine(line)) return failTruncated("the elements");
            if (line.starts_with(" -3")) return finishElement();
            if (line.starts_with(" -2")) {
                if (wantsNodes && !elementNodes(line, nodes)) return false;
                continue;
            }
            if (!finishElement()) return false;
            const auto number = integerColumn(line, kMarkWidth, numberWidth_);
            const auto type = integerColumn(line, kMarkWidth + numberWidth_, 5);
            if (!line.starts_with(" -1") || !number || *number < 1 || !type)
                return fail("this is no line of an element");
            element.number = *number;
            element.type = *type;
            nodes.clear();
        }
    }

    bool binaryElements(std::string_view line) {
        const auto count = integerColumn(line, 24, 12);
        if (!count || *count < 0) return fail("the number of elements is broken");
        std::vector<std::int32_t> nodes;
        for (int i = 0; i < *count; ++i) {
            auto element = frdbinary::readElement(window_, nodes);
            if (!element) return passOn(element.error());
            if (!deliver(sink_.meshElement(*element))) return false;
        }
        return true;
    }

    /// Appends the node numbers of a line of an element.
    bool elementNodes(std::string_view line, std::vector<std::int32_t>& nodes) {
        if (nodes.size() > kMostElementNodes) return fail("the element has too many nodes");
        for (std::size_t at = kMarkWidth; !trimmed(column(line, at, std::string_view::npos)).empty();
             at += numberWidth_) {
            const auto node = integerColumn(line, at, numberWidth_);
            if (!node) return fail("this is no line of the nodes of an element");
            nodes.push_back(*node);
        }
        return true;
    }

    bool resultBlock(std::string_view line) {
        const auto value = realOf(column(line, 12, 12));
        if (!value)
            return fail("'" + std::string(column(line, 12, 12)) + "' is no time or frequency of a result");
        if (!format(line, 73)) return false;
        FrdBlock& block = beginBlock();
        block.value = *value;
        block.place = window_.place();
        announced_ = integerColumn(line, 24, 12);
        if (!announced_ || *announced_ < 0) return fail("the number of nodes of the block is broken");
        if (!window_.nextLine(line)) return failTruncated("the header of a block");
        if (!line.starts_with(" -4")) return fail("the line that names the block is missing");
        block.name = trimmed(column(line, 5, 8));
        const auto count = integerColumn(line, 13, 5);
        if (!count || *count < 0 || *count > kMostComponents)
            return fail("the component count of " + block.name + " is broken");
        const auto location = integerColumn(line, 18, 5);
        if (!componentNames(block, *count)) return false;
        if (location != 1 || block.components.empty() || !sink_.wants(block)) return passOver(block);
        if (!rows(block)) return false;
        if (block.nodes.size() != static_cast<std::size_t>(*announced_))
            return fail("block " + block.name + " announces " + std::to_string(*announced_) +
                        " nodes and holds " + std::to_string(block.nodes.size()));
        return deliver(sink_.block(block, window_.offset(), window_.size()));
    }

    /// Reads the lines of the components; those that a viewer shall compute have no values.
    bool componentNames(FrdBlock& block, int count) {
        std::string_view line;
        for (int i = 0; i < count; ++i) {
            if (!window_.nextLine(line)) return failTruncated("the header of a block");
            if (!line.starts_with(" -5")) return fail("block " + block.name + " names too few components");
            const auto computed = integerColumn(line, 33, 5);
            if (computed != 1) block.components.emplace_back(trimmed(column(line, 5, 8)));
        }
        return true;
    }

    bool passOver(const FrdBlock& block) {
        std::string_view line;
        if (binary_) {
            const auto rows = static_cast<std::uint64_t>(*announced_);
            return frdbinary::skip(window_, rows * frdbinary::rowBytes(block.components.size(), *binary_)) ||
                   failTruncated(("block " + block.name).c_str());
        }
        while (window_.nextLine(line))
            if (line.starts_with(" -3")) return true;
        return failTruncated(("block " + block.name).c_str());
    }

    /// The block anew, with the step of the next one. Its tables keep their memory.
    FrdBlock& beginBlock() {
        block_.step = header_.step;
        block_.increment = header_.increment;
        block_.mode = header_.mode;
        block_.components.clear();
        return block_;
    }

    /// One table a component, of any length.
    void provideTables(FrdBlock& block) {
        for (; block.values.size() > block.components.size(); block.values.pop_back())
            spareTables_.push_back(std::move(block.values.back()));
        while (block.values.size() < block.components.size()) {
            block.values.emplace_back();
            if (spareTables_.empty()) continue;
            block.values.back() = std::move(spareTables_.back());
            spareTables_.pop_back();
        }
    }

    bool rows(FrdBlock& block) {
        provideTables(block);
        return binary_ ? binaryRows(block) : textRows(block);
    }

    bool binaryRows(FrdBlock& block) {
        if (!announced_ || *announced_ < 0) return fail("the number of nodes is broken");
        const auto read =
            frdbinary::readRows(window_, static_cast<std::size_t>(*announced_), *binary_, block);
        return read || passOn(read.error());
    }

    bool textRows(FrdBlock& block) {
        const std::size_t expected = rowsToExpect(block.components.size());
        block.nodes.clear();
        block.nodes.reserve(expected);
        for (auto& table : block.values) {
            table.clear();
            table.reserve(expected);
        }
        while (true) {
            fastRows(block);
            std::string_view line;
            if (!window_.nextLine(line)) return failTruncated(("block " + block.name).c_str());
            if (line.starts_with(" -3")) return true;
            if (!slowRow(block, line)) return false;
        }
    }

    /// The announced number of rows, but no more than the rest of the file has room for.
    std::size_t rowsToExpect(std::size_t components) const {
        const std::size_t announced =
            announced_ && *announced_ > 0 ? static_cast<std::size_t>(*announced_) : 0;
        const std::uint64_t left = window_.size() - std::min(window_.size(), window_.offset());
        return std::min<std::size_t>(announced, left / (components * fixedfield::kRealWidth + 1) + 1);
    }

    /// Reads rows as long as they are exactly as the solver prints them: " -1", the node in ten columns, a
    /// value in each twelve, line feed. Stops at the first that is not, for slowRow.
    void fastRows(FrdBlock& block) {
        const std::size_t count = block.components.size();
        if (numberWidth_ != fixedfield::kIntegerWidth || count == 0 || count > kValuesPerLine) return;
        const std::size_t length = kFirstValue + count * fixedfield::kRealWidth + 1;
        while (true) {
            // The last row of the file is left to slowRow: columns are read a few bytes beyond their ends.
            const std::string_view text = window_.peek(2 * length);
            const std::size_t most = std::min(text.size() / length, kRowsAtOnce + 1);
            if (most < 2) return;
            const std::size_t before = block.nodes.size();
            block.nodes.resize(before + most - 1);
            for (auto& table : block.values)
                table.resize(before + most - 1);
            std::size_t done = 0, good = 0;
            do {
                const std::size_t wanted = std::min(kRowsAtATime, most - 1 - done);
                good = fastPiece(block, text.data() + done * length, length, wanted, before + done);
                done += good;
            } while (good == kRowsAtATime);
            block.nodes.resize(before + done);
            for (auto& table : block.values)
                table.resize(before + done);
            window_.skipLines(done * length, done);
            if (done + 1 < most) return;
        }
    }

    /// Reads up to `wanted` rows of `length` bytes into the tables from row `target` on; answers how many of
    /// them, from the first on, are as they must be.
    std::size_t fastPiece(FrdBlock& block, const char* text, std::size_t length, std::size_t wanted,
                          std::size_t target) const {
        std::size_t rows = 0;
        for (const char* row = text; rows < wanted; ++rows, row += length) {
            if (row[0] != ' ' || row[1] != '-' || row[2] != '1' || row[length - 1] != '\n') break;
            const std::int32_t node = fixedfield::readInteger(row + kMarkWidth);
            if (node < 1) break;
            block.nodes[target + rows] = node;
        }
        const auto readAll = [&](fixedfield::ColumnReader read, std::size_t first, std::size_t count) {
            const char* field = text + first * length + kFirstValue;
            for (auto& table : block.values) {
                if (!read(field, length, count, table.data() + target + first)) return false;
                field += fixedfield::kRealWidth;
            }
            return true;
        };
        if (readAll(readColumn_, 0, rows)) return rows;
        std::size_t good = 0;
        while (good < rows && readAll(fixedfield::readColumn, good, 1))
            ++good;
        return good;
    }

    /// Any row, with its continuation lines, by column.
    bool slowRow(FrdBlock& block, std::string_view line) {
        const auto node = integerColumn(line, kMarkWidth, numberWidth_);
        if (!line.starts_with(" -1") || !node || *node < 1)
            return fail("this is no line of values of block " + block.name);
        const std::size_t count = block.components.size();
        for (std::size_t c = 0; c < count; ++c) {
            const std::size_t place = c % kValuesPerLine;
            if (c > 0 && place == 0) {
                if (!window_.nextLine(line)) return failTruncated(("block " + block.name).c_str());
                if (!line.starts_with(" -2"))
                    return fail("node " + std::to_string(*node) + " has too few values");
            }
            const std::string_view field = column(
                line, kMarkWidth + numberWidth_ + place * fixedfield::kRealWidth, fixedfield::kRealWidth);
            float value = 0;
            const auto status = fixedfield::parseReal(field, value);
            if (status != fixedfield::RealStatus::Good) return failValue(block, *node, c, field, status);
            block.values[c].push_back(value);
        }
        const std::size_t end =
            kMarkWidth + numberWidth_ + ((count - 1) % kValuesPerLine + 1) * fixedfield::kRealWidth;
        if (!trimmed(column(line, end, std::string_view::npos)).empty())
            return fail("node " + std::to_string(*node) + " has more than the " + std::to_string(count) +
                        " values of block " + block.name);
        block.nodes.push_back(*node);
        return true;
    }

    bool failValue(const FrdBlock& block, std::int32_t node, std::size_t component, std::string_view field,
                   fixedfield::RealStatus status) {
        const std::string_view text = trimmed(field);
        return fail("block " + block.name + ", node " + std::to_string(node) + ", component " +
                    block.components[component] + ": " +
                    (text.empty() ? std::string("the value is missing")
                                  : "'" + std::string(text) + "'" +
                                        (status == fixedfield::RealStatus::TooLarge
                                             ? " is too large for a result value"
                                             : " is no finite number")));
    }

    TextWindow& window_;
    FrdSink& sink_;
    FrdBlock header_;                             ///< step, increment and mode of the next block
    FrdBlock block_;                              ///< the one being read
    std::vector<std::vector<float>> spareTables_; ///< memory that the block has no use for
    std::size_t numberWidth_ = 10;
    std::optional<frdbinary::Real> binary_; ///< values of the record that is being read, unless it is text
    std::optional<int> announced_;
    const fixedfield::ColumnReader readColumn_ = fixedfield::fastestColumnReader();
    std::string error_;
};

} // namespace

Result<void> readFrd(TextWindow& window, FrdSink& sink) {
    return FrdParser(window, sink).run();
}

} // namespace workbench
