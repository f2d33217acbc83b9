#include "framework/text/CodePage.h"
#include "workbench/cli/Output.h"
#include "workbench/session/ModelCheck.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace workbench::cli {
namespace {

using nlohmann::json;

json rows(const Findings& findings) {
    json all = json::array();
    for (const Finding& finding : findings)
        all.push_back({{"item", finding.item}, {"problem", finding.problem}, {"remedy", finding.remedy}});
    return all;
}

void print(const char* kind, const Findings& findings) {
    for (const Finding& finding : findings)
        std::printf("%s: %s: %s%s%s\n", kind, finding.item.c_str(), finding.problem.c_str(),
                    finding.remedy.empty() ? "" : "; ", finding.remedy.c_str());
}

std::string counted(std::uint64_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

class CheckCommand final : public Command {
  public:
    explicit CheckCommand(CommandLine& program) {
        CommandLine command = program.command("check", "Verify a document and its result files");
        command.option("model", model_, "Document (.wkm)").required();
        command.footer(
            "Reads everything once: the database and its checksum, the mesh, references between records,\n"
            "every table of every registered result file, and the files beside the document.\n"
            "Prints a line for each fault, with what to do, and for what is worth knowing; changes nothing.\n"
            "Exit codes: 0 sound; 1 faults were found; 2 wrong command line.");
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        WorkProgress& progress = host.progress();
        progress.Start();
        std::string last;
        const ModelCheckReport report = checkModel(model_, [&](const std::string& what, double fraction) {
            if (what != last) progress.SetText(framework::fromUtf8(what));
            last = what;
            progress.setFraction(fraction);
        });
        progress.Close();
        if (common.json)
            std::printf("%s\n", describe(report).dump(2).c_str());
        else
            show(report);
        return report.faults.empty() ? kDone : kFailed;
    }

  private:
    json describe(const ModelCheckReport& report) const {
        return {{"document", model_},
                {"sound", report.faults.empty()},
                {"faults", rows(report.faults)},
                {"notes", rows(report.notes)},
                {"nodes", report.nodes},
                {"elements", report.elements},
                {"records", report.records},
                {"result files", report.resultFiles},
                {"tables", report.tables},
                {"values", report.values},
                {"bytes", report.bytes}};
    }

    void show(const ModelCheckReport& report) const {
        if (report.isReadable)
            std::printf("%s: %s, %s, %s, %s with %s and %s\n", model_.c_str(),
                        counted(report.nodes, "node", "nodes").c_str(),
                        counted(report.elements, "element", "elements").c_str(),
                        counted(report.records, "record", "records").c_str(),
                        counted(report.resultFiles, "result file", "result files").c_str(),
                        counted(report.tables, "table", "tables").c_str(),
                        counted(report.values, "value", "values").c_str());
        print("note", report.notes);
        print("fault", report.faults);
        if (report.faults.empty())
            std::printf("sound\n");
        else
            std::printf("%s found\n", counted(report.faults.size(), "fault", "faults").c_str());
    }

    std::string model_;
};

} // namespace

std::unique_ptr<Command> makeCheckCommand(CommandLine& program) {
    return std::make_unique<CheckCommand>(program);
}

} // namespace workbench::cli
