#include "host/chart/ChartTable.h"

#include "framework/text/CodePage.h"
#include "host/chart/ChartRange.h"

#include <charconv>
#include <cmath>

namespace tqx::frx {
namespace {

std::string field(const std::wstring& wide) {
    const std::string text = framework::toUtf8(wide);
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + '"';
}

void appendNumber(std::string& out, double value) {
    if (!std::isfinite(value)) return;
    char digits[32];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

} // namespace

std::string chartTable(const ChartState& state) {
    const auto heading = [&](int axis, const wchar_t* otherwise) {
        const std::wstring& title = state.axes[static_cast<std::size_t>(axis)].title;
        return field(title.empty() ? otherwise : title);
    };
    std::string out = "series," + heading(ChartAxis::X, L"x") + "," + heading(ChartAxis::Y, L"y") + "\n";
    for (std::size_t s = 0; s < state.series.size(); ++s) {
        const ChartSeries& series = state.series[s];
        const std::string name = field(nameOf(state, s));
        for (std::size_t i = 0; i < series.y.size(); ++i) {
            out += name + ",";
            const double x = series.x[i];
            if (hasCategories(state) && x >= 0.0 && x < static_cast<double>(state.categories.size()))
                out += field(state.categories[static_cast<std::size_t>(x)]);
            else
                appendNumber(out, x);
            out += ",";
            appendNumber(out, series.y[i]);
            out += "\n";
        }
    }
    return out;
}

} // namespace tqx::frx
