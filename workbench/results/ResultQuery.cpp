#include "workbench/results/ResultQuery.h"

#include "framework/text/CodePage.h"
#include "workbench/results/Catalogue.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace workbench {
namespace {

/// The child of that name, or a sentence with the names that there are.
template <class T>
Result<T*> byName(const std::vector<T*>& children, const std::string& name, const std::string& what,
                  const std::string& owner) {
    const std::wstring wide = framework::fromUtf8(name);
    std::string names;
    for (T* child : children) {
        if (child->GetName() == wide) return child;
        names += (names.empty() ? "\"" : ", \"") + framework::toUtf8(child->GetName()) + "\"";
    }
    if (name.empty() && children.size() > 1)
        return Error{owner + " has more than one " + what + "; name one of them: " + names};
    return Error{owner + " has no " + what + " \"" + name + "\"; it has " + (names.empty() ? "none" : names)};
}

} // namespace

Result<CPOHVCase*> findStep(CPOHManager& results, const std::string& analysis, const std::string& caseName,
                            const std::string& stepName) {
    const auto owner = byName(results.GetChildList(), analysis, "analysis", "the document");
    if (!owner) return owner.error();
    const auto& cases = (*owner)->GetChildList();
    const std::string analysisText = "analysis \"" + analysis + "\"";
    if (cases.empty()) return Error{analysisText + " has no results"};
    auto found = caseName.empty() && cases.size() == 1 ? Result<CPOHCase*>(cases.front())
                                                       : byName(cases, caseName, "case", analysisText);
    if (!found) return found.error();
    const auto& steps = (*found)->GetVCaseList();
    const std::string caseText = "case \"" + framework::toUtf8((*found)->GetName()) + "\"";
    if (steps.empty()) return Error{caseText + " has no steps"};
    if (stepName.empty()) return steps.back();
    return byName(steps, stepName, "step", caseText);
}

Result<CVResult*> findTable(CPOHVCase& step, unsigned id) {
    if (CVResult* result = step.GetVResult(id)) return result;
    std::string message = "step \"" + framework::toUtf8(step.GetName()) + "\" of case \"" +
                          framework::toUtf8(step.GetCase()->GetName()) + "\" has no component " +
                          std::to_string(id) + "; it has";
    for (const unsigned known : step.GetResultIds())
        message += " " + std::to_string(known) + " (" + componentName(known, Language::English) + ")";
    return Error{message};
}

Result<std::vector<float>> nodalValues(CVResult& result, const T_QM_MESH_D& mesh) {
    const CVResultLease lease(&result);
    if (!lease) return Error{"the values of component " + std::to_string(result.GetId()) + " cannot be read"};
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    const T_RESULT_TABLE_D& table = *lease;
    std::vector<float> values(mesh.nodeCount(), none);
    if (table.location == ResultLocation::Node) {
        if (table.items.empty()) std::ranges::copy(table.values, values.begin());
        for (std::size_t i = 0; i < table.items.size(); ++i)
            values[table.items[i]] = table.values[i];
        return values;
    }
    std::vector<std::uint32_t> counts(mesh.nodeCount(), 0);
    const std::size_t elements = table.items.empty() ? mesh.elementCount() : table.items.size();
    std::size_t corner = 0;
    for (std::size_t e = 0; e < elements; ++e)
        for (const std::uint32_t node : mesh.nodesOf(table.items.empty() ? e : table.items[e])) {
            const float value = table.values[corner++];
            values[node] = counts[node]++ == 0 ? value : values[node] + value;
        }
    for (std::size_t node = 0; node < values.size(); ++node)
        if (counts[node] > 1) values[node] /= static_cast<float>(counts[node]);
    return values;
}

std::vector<std::uint32_t> worstNodes(const std::vector<float>& values, std::size_t count, bool largest) {
    std::vector<std::uint32_t> order;
    for (std::uint32_t i = 0; i < values.size(); ++i)
        if (std::isfinite(values[i])) order.push_back(i);
    count = std::min(count, order.size());
    const auto worse = [&](std::uint32_t a, std::uint32_t b) {
        if (values[a] != values[b]) return largest ? values[a] > values[b] : values[a] < values[b];
        return a < b;
    };
    std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count), order.end(), worse);
    order.resize(count);
    return order;
}

} // namespace workbench
