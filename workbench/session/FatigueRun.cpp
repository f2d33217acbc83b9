#include "workbench/session/FatigueRun.h"

#include "framework/system/Process.h"
#include "framework/text/CodePage.h"
#include "module/fatigue/GpsFatigueSolver.h"

namespace workbench {
namespace {

std::string describe(const framework::ProcessEnd& end) {
    const std::string program = framework::toUtf8(end.program);
    if (end.signal != 0) return program + " was ended by signal " + std::to_string(end.signal);
    return program + " ended with exit code " + std::to_string(end.exitCode);
}

/// Keeps the document's own unit system current for a scope.
class BaseUnits {
  public:
    explicit BaseUnits(WorkbenchHost& host)
        : host_(host)
        , display_(host.currentUnits()) {
        if (display_ == host.databaseUnits()) return;
        host.output().showNote("The fatigue run uses the units of the document, " +
                               host.databaseUnits().force + " and " + host.databaseUnits().length + ".");
        host_.setCurrentUnits(host.databaseUnits());
    }
    ~BaseUnits() { host_.setCurrentUnits(display_); }
    BaseUnits(const BaseUnits&) = delete;
    BaseUnits& operator=(const BaseUnits&) = delete;

  private:
    WorkbenchHost& host_;
    UnitSystem display_;
};

} // namespace

std::vector<FatigueRunReport> runFatigue(WorkbenchHost& host, Document& document,
                                         const std::vector<ItrKey>& definitions, bool savesEach) {
    const BaseUnits units(host);
    std::vector<FatigueRunReport> reports;
    const auto* pool = document.database().Pool<DPoolFatg>();
    const auto* analyses = document.database().Pool<DPoolVXMcas>();
    const auto reserved = document.reserve();
    for (const ItrKey key : definitions) {
        const tagTFatg& definition = pool->GetAtNU(key);
        FatigueRunReport report;
        report.definition = framework::toUtf8(definition.name);
        tagTVXMcas analysis;
        if (analyses->Get(definition.resultAnalysisKey, analysis))
            report.resultAnalysis = framework::toUtf8(analysis.name);
        if (!reserved) {
            report.cause = reserved.error().message;
            reports.push_back(std::move(report));
            continue;
        }
        const std::size_t errorsBefore = host.errors().size();
        framework::forgetLastProcess();
        std::vector<std::uint64_t> one{key};
        report.succeeded = CGpsFatigueSolver::Instance().RunSolver(&document, one) != 0;
        if (!report.succeeded) {
            if (const auto& end = framework::lastProcessEnd())
                report.cause = describe(*end);
            else
                report.cause = framework::toUtf8(framework::lastProcessFailure());
            if (report.cause.empty() && host.errors().size() == errorsBefore)
                report.cause = "no element of the mesh has a material of the definition, or one of the "
                               "definition's records is missing";
        }
        if (savesEach && document.database().isModified())
            if (const auto saved = document.save(); !saved) {
                report.succeeded = false;
                report.cause = saved.error().message;
            }
        reports.push_back(std::move(report));
    }
    return reports;
}

Result<std::vector<ItrKey>> findFatigueDefinitions(Document& document,
                                                   const std::vector<std::string>& names) {
    const auto* pool = document.database().Pool<DPoolFatg>();
    const std::vector<ItrKey> all = pool->GetKeyList();
    if (all.empty())
        return Error{document.path().string() + " has no fatigue definition: add [[fatigue]] to its deck"};
    if (names.empty()) return all;
    std::vector<ItrKey> keys;
    for (const std::string& name : names) {
        ItrKey found = 0;
        std::string known;
        for (const ItrKey key : all) {
            const std::string candidate = framework::toUtf8(pool->GetAtNU(key).name);
            if (candidate == name) found = key;
            known += (known.empty() ? "\"" : ", \"") + candidate + "\"";
        }
        if (!found) return Error{"the document has no fatigue definition \"" + name + "\"; it has " + known};
        keys.push_back(found);
    }
    return keys;
}

} // namespace workbench
