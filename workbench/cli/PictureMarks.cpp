#include "workbench/cli/PictureMarks.h"

#include "workbench/results/ResultQuery.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace workbench::cli {
namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

Error unreadable(const std::string& text) {
    return Error{"--mark \"" + text +
                 "\" is not understood: give worst:5, worst-elements:3, node:12,13, element:7,8 or none"};
}

/// The number at the start of `text`, which is cut off; false without one.
template <class Number>
bool takeNumber(std::string_view& text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{}) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool takeCount(std::string_view text, std::size_t& count) {
    if (text.empty()) {
        count = 1;
        return true;
    }
    text.remove_prefix(1);
    return takeNumber(text, count) && text.empty() && count >= 1;
}

bool takeNumbers(std::string_view text, std::vector<std::int32_t>& numbers) {
    for (;;) {
        if (!takeNumber(text, numbers.emplace_back())) return false;
        if (text.empty()) return true;
        if (text[0] != ',') return false;
        text.remove_prefix(1);
    }
}

bool readMark(std::string_view text, MarkChoice& choice) {
    const std::string_view kind = text.substr(0, text.find(':'));
    const std::string_view rest = text.substr(kind.size());
    if (text == "none") return true;
    if (kind == "worst") return takeCount(rest, choice.worstNodes);
    if (kind == "worst-elements") return takeCount(rest, choice.worstElements);
    if (kind == "node" && !rest.empty()) return takeNumbers(rest.substr(1), choice.nodes);
    if (kind == "element" && !rest.empty()) return takeNumbers(rest.substr(1), choice.elements);
    return takeNumbers(text, choice.nodes);
}

float worseOf(float a, float b, bool smallestIsWorst) {
    if (std::isnan(a)) return b;
    if (std::isnan(b)) return a;
    if (smallestIsWorst) return std::min(a, b);
    return std::abs(b) > std::abs(a) ? b : a;
}

std::vector<std::uint32_t> worstOf(std::span<const float> values, std::size_t count, bool smallestIsWorst) {
    std::vector<float> badness(values.begin(), values.end());
    if (!smallestIsWorst)
        for (float& value : badness)
            value = std::abs(value);
    return worstNodes(badness, count, !smallestIsWorst);
}

/// Gathers marks, each once.
class MarkList {
  public:
    explicit MarkList(const MarkedValues& values)
        : values_(values) {}

    void add(PictureMark::Kind kind, std::uint32_t index) {
        const bool node = kind == PictureMark::Kind::Node;
        const auto same = [&](const ChosenMark& other) {
            return other.mark.kind == kind && other.mark.index == index;
        };
        if (std::ranges::any_of(marks_, same)) return;
        ChosenMark chosen;
        chosen.number = node ? values_.mesh.nodeNumbers[index] : values_.mesh.elementNumbers[index];
        chosen.value = node ? values_.nodes[index] : values_.elements[index];
        chosen.mark = {index, label(kind, chosen), kind};
        marks_.push_back(std::move(chosen));
    }

    Result<void> addNumbers(PictureMark::Kind kind, std::span<const std::int32_t> numbers) {
        const bool node = kind == PictureMark::Kind::Node;
        const auto known = node ? values_.mesh.nodeNumbers : values_.mesh.elementNumbers;
        for (const std::int32_t number : numbers) {
            const auto found = std::ranges::lower_bound(known, number);
            if (found == known.end() || *found != number)
                return Error{std::string(node ? "node " : "element ") + std::to_string(number) +
                             " does not exist" +
                             (known.empty() ? std::string()
                                            : "; the numbers go from " + std::to_string(known.front()) +
                                                  " to " + std::to_string(known.back()))};
            add(kind, static_cast<std::uint32_t>(found - known.begin()));
        }
        return {};
    }

    std::vector<ChosenMark> take() { return std::move(marks_); }

  private:
    std::string label(PictureMark::Kind kind, const ChosenMark& chosen) const {
        const bool korean = values_.language == Language::Korean;
        const bool node = kind == PictureMark::Kind::Node;
        const std::string text =
            std::string(node ? (korean ? "절점 " : "Node ") : (korean ? "요소 " : "Element ")) +
            std::to_string(chosen.number);
        if (std::isnan(chosen.value)) return text;
        char number[32];
        const auto end = std::to_chars(number, number + sizeof number, static_cast<double>(chosen.value),
                                       std::chars_format::general, 4)
                             .ptr;
        return text + ": " + std::string(number, end);
    }

    const MarkedValues& values_;
    std::vector<ChosenMark> marks_;
};

} // namespace

Result<MarkChoice> parseMarks(const std::vector<std::string>& texts) {
    MarkChoice choice;
    for (const std::string& text : texts)
        if (!readMark(text, choice)) return unreadable(text);
    const auto most =
        std::max({choice.worstNodes, choice.worstElements, choice.nodes.size() + choice.elements.size()});
    if (most > kMostMarks)
        return Error{std::to_string(most) + " marks do not fit in a picture: ask for " +
                     std::to_string(kMostMarks) + " at most"};
    return choice;
}

std::vector<float> elementValues(const T_RESULT_TABLE_D& table, double factor, const T_QM_MESH_D& mesh,
                                 std::span<const float> nodal, std::span<const std::uint8_t> valued,
                                 bool smallestIsWorst) {
    std::vector<float> values(mesh.elementCount(), kNone);
    if (table.location == ResultLocation::Node) {
        for (std::size_t e = 0; e < values.size(); ++e) {
            if (!valued.empty() && valued[e] == 0) continue;
            for (const std::uint32_t node : mesh.nodesOf(e))
                values[e] = worseOf(values[e], nodal[node], smallestIsWorst);
        }
        return values;
    }
    const std::size_t count = table.items.empty() ? mesh.elementCount() : table.items.size();
    std::size_t corner = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t element = table.items.empty() ? i : table.items[i];
        for (std::size_t end = corner + mesh.nodesOf(element).size(); corner < end; ++corner)
            values[element] =
                worseOf(values[element], static_cast<float>(table.values[corner] * factor), smallestIsWorst);
    }
    return values;
}

Result<std::vector<ChosenMark>> chooseMarks(const MarkChoice& choice, const MarkedValues& values) {
    using Kind = PictureMark::Kind;
    MarkList marks(values);
    if (choice.worstNodes > 0)
        for (const std::uint32_t node : worstOf(values.nodes, choice.worstNodes, values.smallestIsWorst))
            marks.add(Kind::Node, node);
    if (choice.worstElements > 0)
        for (const std::uint32_t element :
             worstOf(values.elements, choice.worstElements, values.smallestIsWorst))
            marks.add(Kind::Element, element);
    if (auto added = marks.addNumbers(Kind::Node, choice.nodes); !added) return added.error();
    if (auto added = marks.addNumbers(Kind::Element, choice.elements); !added) return added.error();
    return marks.take();
}

} // namespace workbench::cli
