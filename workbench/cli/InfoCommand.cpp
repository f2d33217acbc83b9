#include "framework/text/CodePage.h"
#include "host/ElementTypes.h"
#include "workbench/cli/Output.h"
#include "workbench/results/Catalogue.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace workbench::cli {
namespace {

using nlohmann::json;

std::string utf8(const std::wstring& text) {
    return framework::toUtf8(text);
}

const char* elementTypeName(int type) {
    constexpr const char* names[] = {"point", "line2",  "line3",   "beam",  "tri3",   "quad4",
                                     "tri6",  "quad8",  "tet4",    "pyra5", "wedge6", "hex8",
                                     "tet10", "pyra13", "wedge15", "hex20"};
    return type >= 0 && static_cast<std::size_t>(type) < std::size(names) ? names[type] : "special";
}

template <class Pool>
json namedRecords(ModelDatabase& database) {
    json rows = json::array();
    const auto* pool = database.Pool<Pool>();
    for (const ItrKey key : pool->GetKeyList())
        rows.push_back({{"key", key}, {"name", utf8(pool->GetAtNU(key).name)}});
    return rows;
}

json results(ResultTree& tree, Language language) {
    json analyses = json::array();
    for (CPOHAnalysis* analysis : tree.GetChildList()) {
        json cases = json::array();
        for (CPOHCase* resultCase : analysis->GetChildList()) {
            json steps = json::array();
            for (CPOHVCase* step : resultCase->GetVCaseList()) {
                json components = json::array();
                for (const unsigned id : step->GetResultIds())
                    components.push_back({{"id", id}, {"name", componentName(id, language)}});
                steps.push_back({{"key", step->GetKey()},
                                 {"name", utf8(step->GetName())},
                                 {"value", step->GetStepValue()},
                                 {"components", components}});
            }
            cases.push_back(
                {{"key", resultCase->GetKey()}, {"name", utf8(resultCase->GetName())}, {"steps", steps}});
        }
        analyses.push_back({{"key", analysis->GetKey()},
                            {"name", utf8(analysis->GetName())},
                            {"file", utf8(analysis->GetResultFilePath())},
                            {"cases", cases}});
        if (const auto sources = tree.sourcesOf(analysis->GetKey()); !sources.empty())
            analyses.back()["sources"] = sources;
    }
    return analyses;
}

json describe(Document& document, const DocumentSummary& summary, Language language) {
    ModelDatabase& database = document.database();
    json types = json::object();
    for (const auto& [type, count] : summary.elementTypeCounts)
        types[elementTypeName(type)] = count;
    json info{{"document", document.path().string()},
              {"schema", summary.schemaVersion},
              {"units", {{"force", summary.units.force}, {"length", summary.units.length}}},
              {"nodes", summary.nodeCount},
              {"elements", summary.elementCount},
              {"element types", types},
              {"bounds", summary.bounds}};
    info["materials"] = namedRecords<DPoolMatl>(database);
    info["properties"] = namedRecords<DPoolProp>(database);
    info["mesh sets"] = namedRecords<DPoolMset>(database);
    info["load functions"] = namedRecords<DPoolFLFun>(database);
    info["S-N curves"] = namedRecords<DPoolSNFun>(database);
    info["fatigue definitions"] = namedRecords<DPoolFatg>(database);
    info["results"] = results(document.results(), language);
    return info;
}

std::string joinNames(const json& rows) {
    std::string text;
    for (const json& row : rows)
        text += (text.empty() ? "" : ", ") + row["name"].get<std::string>();
    return text.empty() ? "none" : text;
}

void print(const json& info) {
    const auto line = [](const char* title, const std::string& text) {
        std::printf("%-20s %s\n", title, text.c_str());
    };
    line("Document", info["document"]);
    line("Units",
         info["units"]["force"].get<std::string>() + ", " + info["units"]["length"].get<std::string>());
    line("Nodes", std::to_string(info["nodes"].get<std::uint64_t>()));
    std::string elements = std::to_string(info["elements"].get<std::uint64_t>());
    for (const auto& [type, count] : info["element types"].items())
        elements += "  " + type + " " + std::to_string(count.get<std::uint64_t>());
    line("Elements", elements);
    for (const char* title :
         {"materials", "properties", "mesh sets", "load functions", "S-N curves", "fatigue definitions"}) {
        std::string capital = title;
        capital[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(capital[0])));
        line(capital.c_str(), joinNames(info[title]));
    }
    for (const json& analysis : info["results"]) {
        std::printf("\nAnalysis \"%s\"  %s\n", analysis["name"].get<std::string>().c_str(),
                    analysis["cases"].empty() ? "no results" : analysis["file"].get<std::string>().c_str());
        if (analysis.contains("sources")) {
            std::printf("  Sources\n");
            std::size_t number = 0;
            for (const json& source : analysis["sources"])
                std::printf("    %4zu  %s\n", ++number, source.get<std::string>().c_str());
        }
        for (const json& resultCase : analysis["cases"]) {
            std::printf("  Case \"%s\"\n", resultCase["name"].get<std::string>().c_str());
            for (const json& step : resultCase["steps"]) {
                std::printf("    Step \"%s\"  value %g\n", step["name"].get<std::string>().c_str(),
                            step["value"].get<double>());
                for (const json& component : step["components"])
                    std::printf("      %7u  %s\n", component["id"].get<unsigned>(),
                                component["name"].get<std::string>().c_str());
            }
        }
    }
}

class InfoCommand final : public Command {
  public:
    explicit InfoCommand(CommandLine& program) {
        CommandLine command = program.command("info", "Show what a document holds: mesh, records, results");
        command.option("model", model_, "Document (.wkm)").required();
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        DocumentSummary summary;
        auto document = Document::openWithoutMesh(model_, summary);
        if (!document) return fail(document.error());
        const json info = describe(**document, summary, host.language());
        if (common.json)
            std::printf("%s\n", info.dump(2).c_str());
        else
            print(info);
        return (*document)->results().unreadableFiles() == 0 ? kDone : kFailed;
    }

  private:
    std::string model_;
};

} // namespace

std::unique_ptr<Command> makeInfoCommand(CommandLine& program) {
    return std::make_unique<InfoCommand>(program);
}

} // namespace workbench::cli
