#include "framework/text/CodePage.h"
#include "host/QMUnitCtrl.h"
#include "workbench/cli/Output.h"
#include "workbench/cli/ResultChoice.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultQuery.h"

#include <nlohmann/json.hpp>

namespace workbench::cli {
namespace {

/// The values of one table with the numbers that people know.
struct NumberedValues {
    std::vector<std::int32_t> elements; ///< empty for values at nodes
    std::vector<std::int32_t> nodes;
    std::vector<float> values;
};

NumberedValues numbered(const T_RESULT_TABLE_D& table, const T_QM_MESH_D& mesh, double factor) {
    NumberedValues rows;
    rows.values.reserve(table.values.size());
    for (const float value : table.values)
        rows.values.push_back(static_cast<float>(value * factor));
    if (table.location == ResultLocation::Node) {
        for (std::size_t i = 0; i < table.values.size(); ++i)
            rows.nodes.push_back(mesh.nodeNumbers[table.items.empty() ? i : table.items[i]]);
        return rows;
    }
    const std::size_t count = table.items.empty() ? mesh.elementCount() : table.items.size();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t element = table.items.empty() ? i : table.items[i];
        for (const std::uint32_t node : mesh.nodesOf(element)) {
            rows.elements.push_back(mesh.elementNumbers[element]);
            rows.nodes.push_back(mesh.nodeNumbers[node]);
        }
    }
    return rows;
}

std::string csv(const NumberedValues& rows, const std::string& valueName) {
    std::string text = (rows.elements.empty() ? "node," : "element,node,") + csvField(valueName) + "\n";
    for (std::size_t i = 0; i < rows.values.size(); ++i) {
        if (!rows.elements.empty()) text += std::to_string(rows.elements[i]) + ",";
        text += std::to_string(rows.nodes[i]) + "," + numberText(rows.values[i]) + "\n";
    }
    return text;
}

class TableCommand final : public Command {
  public:
    explicit TableCommand(CommandLine& program) {
        CommandLine command = program.command("table", "Print the values of a result component as CSV");
        choice_.addTo(command);
        command.option("-o,--output", output_, "File to write instead of the standard output");
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        const auto extension = std::filesystem::path(output_).extension();
        if (extension == ".wkm" || extension == ".lmop")
            return fail("a table does not replace a document or its results: choose a name for \"" + output_ +
                        "\" that does not end in .wkm or .lmop");
        auto document = openForCommand(host, choice_.model, common);
        if (!document) return fail(document.error());
        const auto table = choice_.find(**document);
        if (!table) return fail(table.error());
        const CVResultLease lease(*table);
        if (!lease) return kFailed; // the cause was reported

        const unsigned id = (*table)->GetId();
        const ComponentName* component = findComponent(id);
        const int unitKind = component ? component->unitKind : UnitKind::None;
        const std::string unit = unitLabel(unitKind, host.currentUnits());
        const std::string name = componentName(id, host.language());
        const NumberedValues rows =
            numbered(*lease, (*document)->database().mesh(), CQMUnitCtrl::GetConvertFactorCurrent(unitKind));
        std::string text;
        if (common.json) {
            nlohmann::json object{{"component", id},
                                  {"name", name},
                                  {"unit", unit},
                                  {"node", rows.nodes},
                                  {"value", rows.values}};
            object["case"] = framework::toUtf8((*table)->GetCase()->GetName());
            object["step"] = framework::toUtf8((*table)->GetVCase()->GetName());
            if (!rows.elements.empty()) object["element"] = rows.elements;
            text = object.dump() + "\n";
        } else {
            text = csv(rows, unit.empty() ? name : name + " [" + unit + "]");
        }
        const auto written = writeText(text, output_);
        return written ? kDone : fail(written.error());
    }

  private:
    ResultChoice choice_;
    std::string output_;
};

} // namespace

std::unique_ptr<Command> makeTableCommand(CommandLine& program) {
    return std::make_unique<TableCommand>(program);
}

} // namespace workbench::cli
