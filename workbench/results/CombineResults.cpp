#include "workbench/results/CombineResults.h"

#include "framework/text/CodePage.h"
#include "workbench/document/DocumentFolder.h"
#include "workbench/results/ResultSet.h"

#include <algorithm>
#include <optional>
#include <system_error>

namespace workbench {
namespace {

namespace fs = std::filesystem;

constexpr const char* kProducer = "vexa result combination";

std::string inQuotes(const std::string& name) {
    return "\"" + name + "\"";
}

class Combiner {
  public:
    Combiner(ModelDatabase& database, ResultTree& tree, const fs::path& folder,
             const CombinationRequest& request, const std::function<void(double)>& progress)
        : database_(database)
        , tree_(tree)
        , folder_(folder)
        , request_(request)
        , progress_(progress) {
        report_.name = request.name;
        report_.file = combinationFile(folder, request.name);
    }

    Result<CombinationReport> run(bool registerSet) {
        if (auto checked = checkName(); !checked) return checked.error();
        auto plan = planCombination(request_.kind, request_.items);
        if (!plan) return plan.error();
        if (auto checked = checkFiles(*plan); !checked) return checked.error();
        if (hasFormer())
            if (auto opened = openFormer(); !opened) return opened.error();
        auto writer = resultfile::Writer::create(report_.file, request_.name, kProducer);
        if (!writer) return writer.error();
        if (auto written = write(*writer, *plan); !written) return written.error();
        if (auto committed = writer->commit(); !committed) return committed.error();
        if (registerSet)
            if (auto added = add(); !added) return added.error();
        return std::move(report_);
    }

  private:
    /// A set of this document may be made anew; no other file and no other analysis is touched.
    Result<void> checkName() {
        auto set = findResultSet(database_, tree_, folder_, kCombinedPrefix, request_.name);
        if (!set) return set.error();
        set_ = std::move(*set);
        if (database_.inTransaction())
            return Error{"results cannot be combined while another change of the document is under way"};
        return {};
    }

    /// An open reader would still read a file that was deleted, but nobody could follow the values any more.
    Result<void> checkFiles(const CombinationPlan& plan) const {
        for (const CombinedStep& step : plan.steps)
            for (const CombinationMember& member : step.members) {
                const fs::path& path = member.step->source().reader().path();
                std::error_code error;
                if (!fs::is_regular_file(path, error))
                    return Error{"the results of case " +
                                 inQuotes(framework::toUtf8(member.step->GetCase()->GetName())) +
                                 " are gone: " + path.string() +
                                 " is not there any more; restore it or import the results again"};
            }
        return {};
    }

    /// Whether a set is there that gets another case.
    bool hasFormer() const {
        std::error_code error;
        return set_.registered && request_.merge && request_.kind == CombinationKind::Linear &&
               fs::exists(report_.file, error);
    }

    Result<void> openFormer() {
        auto reader = resultfile::Reader::open(report_.file);
        if (!reader) return reader.error();
        const auto same = [](const auto& numbers, const auto& mesh) {
            return numbers && std::ranges::equal(*numbers, mesh);
        };
        if (!same(reader->nodeNumbers(), database_.mesh().nodeNumbers) ||
            !same(reader->elementNumbers(), database_.mesh().elementNumbers))
            return Error{report_.file.string() +
                         " has another mesh than the document, so that nothing can be added to it"};
        former_ = std::move(*reader);
        return {};
    }

    Result<void> write(resultfile::Writer& writer, const CombinationPlan& plan) {
        const T_QM_MESH_D& mesh = database_.mesh();
        std::vector<std::int32_t> corners(mesh.elementCount());
        for (std::size_t e = 0; e < corners.size(); ++e)
            corners[e] = static_cast<std::int32_t>(mesh.nodesOf(e).size());
        if (auto set = writer.setMesh({mesh.nodeNumbers, mesh.elementNumbers, corners}); !set) return set;
        std::vector<std::string> sources;
        if (former_) sources = former_->contents().sources;
        report_.firstSource = static_cast<std::uint32_t>(sources.size() + 1);
        report_.sources = plan.sources;
        sources.insert(sources.end(), plan.sources.begin(), plan.sources.end());
        if (auto set = writer.setSources(sources); !set) return set;
        if (former_)
            if (auto copied = copyFormer(writer); !copied) return copied;
        report_.caseName = freeCaseName();
        if (auto begun = writer.beginCase(report_.caseName); !begun) return begun;
        return combine(writer, plan);
    }

    Result<void> combine(resultfile::Writer& writer, const CombinationPlan& plan) {
        ResultCombination combination(database_.mesh(), request_.kind, writer, report_.caseName);
        double done = 0;
        for (const CombinedStep& step : plan.steps) {
            const auto tell = [&](double part) {
                if (progress_) progress_((done + part) / static_cast<double>(plan.steps.size()));
            };
            if (auto written = combination.write(step, tell); !written) return written;
            report_.steps.push_back({step.name, step.value});
            ++done;
        }
        report_.warnings = plan.warnings;
        for (std::string& warning : combination.warnings())
            report_.warnings.push_back(std::move(warning));
        report_.components.assign(combination.components().begin(), combination.components().end());
        if (!report_.components.empty()) return {};
        std::string reasons;
        for (const std::string& warning : report_.warnings)
            reasons += "; " + warning;
        return Error{"the items have no component that can be combined" + reasons};
    }

    std::string freeCaseName() const {
        std::string name = request_.name;
        const auto isTaken = [&](const resultfile::Case& stored) { return stored.name == name; };
        for (int k = 1; former_ && std::ranges::any_of(former_->contents().cases, isTaken); ++k)
            name = request_.name + "_" + std::to_string(k);
        return name;
    }

    Result<void> copyFormer(resultfile::Writer& writer) const {
        const auto& cases = former_->contents().cases;
        std::vector<std::string> lists;
        for (std::size_t c = 0; c < cases.size(); ++c)
            for (std::size_t s = 0; s < cases[c].steps.size(); ++s)
                for (const resultfile::Component& component : cases[c].steps[s].components) {
                    if (component.items.empty() || std::ranges::count(lists, component.items)) continue;
                    const auto items = former_->items(component.items);
                    if (!items) return items.error();
                    if (auto added = writer.addItems(component.items, component.location, *items); !added)
                        return added;
                    lists.push_back(component.items);
                }
        for (std::size_t c = 0; c < cases.size(); ++c) {
            if (auto begun = writer.beginCase(cases[c].name); !begun) return begun;
            for (std::size_t s = 0; s < cases[c].steps.size(); ++s)
                if (auto copied = copyStep(writer, c, s); !copied) return copied;
        }
        return {};
    }

    Result<void> copyStep(resultfile::Writer& writer, std::size_t c, std::size_t s) const {
        const resultfile::Step& step = former_->contents().cases[c].steps[s];
        if (auto begun = writer.beginStep(step.name, step.value); !begun) return begun;
        for (const resultfile::Component& component : step.components) {
            auto table = writer.openTable(component.id, component.location, component.count, component.items);
            if (!table) return table.error();
            Result<void> copied;
            const auto visited = former_->visit(c, s, component.id, [&](std::span<const float> values) {
                if (copied) copied = table->append(values);
            });
            if (!visited) return visited;
            if (!copied) return copied;
        }
        return {};
    }

    /// Makes the written set an analysis of the document.
    Result<void> add() {
        std::uint32_t keys = 1 + static_cast<std::uint32_t>(report_.steps.size());
        if (former_)
            for (const resultfile::Case& stored : former_->contents().cases)
                keys += 1 + static_cast<std::uint32_t>(stored.steps.size());
        return registerResultSet(database_, tree_, set_, request_.analysisKey, keys, L"Combine results");
    }

    ModelDatabase& database_;
    ResultTree& tree_;
    fs::path folder_;
    const CombinationRequest& request_;
    const std::function<void(double)>& progress_;
    CombinationReport report_;
    ResultSet set_;                            ///< that of the name
    std::optional<resultfile::Reader> former_; ///< its file, when its cases stay
};

} // namespace

fs::path combinationFile(const fs::path& folder, const std::string& name) {
    const std::string file = kCombinedPrefix + name + ".lmop";
    return folder / fs::path(std::u8string(file.begin(), file.end()));
}

Result<CombinationReport> combineResults(ModelDatabase& database, ResultTree& tree, const fs::path& folder,
                                         const CombinationRequest& request, bool registerSet,
                                         const std::function<void(double)>& progress) {
    return Combiner(database, tree, folder, request, progress).run(registerSet);
}

} // namespace workbench
