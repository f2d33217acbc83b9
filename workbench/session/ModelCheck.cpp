#include "workbench/session/ModelCheck.h"

#include "base/ReplaceFile.h"
#include "framework/text/CodePage.h"
#include "workbench/document/DocumentCheck.h"
#include "workbench/document/DocumentFolder.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/PostFileManager.h"
#include "workbench/results/ResultSource.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <system_error>

namespace workbench {

namespace {

namespace fs = std::filesystem;

std::string inQuotes(const std::string& name) {
    return "\"" + name + "\"";
}

std::uint64_t sizeOf(const fs::path& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    return error ? 0 : size;
}

bool isFinite(std::span<const float> values) {
    // Zero times anything finite is zero.
    float sum = 0;
    for (const float value : values)
        sum += value * 0;
    return sum == 0;
}

class ModelCheck {
  public:
    ModelCheck(const fs::path& path, const CheckProgress& progress)
        : progress_(progress) {
        std::error_code error;
        path_ = fs::absolute(path, error).lexically_normal();
        if (error) path_ = path;
        folder_ = path_.parent_path();
    }

    ModelCheckReport run() {
        tell("Checking " + path_.filename().string());
        DocumentCheck document = checkDocument(path_);
        report_.faults = std::move(document.faults);
        report_.notes = std::move(document.notes);
        database_ = document.database.get();
        meshIsWhole_ = document.meshIsWhole;
        report_.isReadable = database_ != nullptr;
        report_.nodes = document.nodes;
        report_.elements = document.elements;
        if (database_) {
            countDocument();
            for (const ResultFileRecord& record : database_->resultFiles())
                checkResultFile(record);
            checkFatigueLoads();
            checkInterfaceFile();
            checkOrphans();
        }
        checkTemporaryFiles();
        return std::move(report_);
    }

  private:
    void tell(const std::string& what) const {
        if (progress_)
            progress_(what, totalBytes_ ? static_cast<double>(report_.bytes) / double(totalBytes_) : 0);
    }
    void fault(const std::string& item, const std::string& problem, const std::string& remedy) {
        report_.faults.push_back({item, problem, remedy});
    }
    void note(const std::string& item, const std::string& text, const std::string& remedy = {}) {
        report_.notes.push_back({item, text, remedy});
    }

    void countDocument() {
        for (const auto kind : {PoolId::Matl, PoolId::Prop, PoolId::Mset, PoolId::VXMcas, PoolId::VXOctr,
                                PoolId::Fatg, PoolId::SNFun, PoolId::FLFun})
            if (const auto* pool = database_->GetDataPool(kind)) report_.records += pool->GetCount();
        report_.bytes = totalBytes_ = sizeOf(path_);
        for (const ResultFileRecord& record : database_->resultFiles())
            totalBytes_ += sizeOf(registeredFile(folder_, record.path));
    }

    std::string analysisName(ItrKey key) const {
        tagTVXMcas analysis;
        return database_->Pool<DPoolVXMcas>()->Get(key, analysis) ? framework::toUtf8(analysis.name) : "";
    }

    /// How the results of an analysis are made again.
    std::string remedyFor(ItrKey analysisKey, const fs::path& file) const {
        const std::pair<const char*, const char*> sets[] = {{kCombinedPrefix, "vexa combine"},
                                                            {kSafetyPrefix, "vexa safety"}};
        for (const auto& [prefix, command] : sets)
            if (file.filename().string().starts_with(prefix))
                return std::string("delete it if it is there, and make it again with ") + command;
        const auto* pool = database_->Pool<DPoolFatg>();
        for (const ItrKey key : pool->GetKeyList())
            if (const tagTFatg& definition = pool->GetAtNU(key); definition.resultAnalysisKey == analysisKey)
                return "run it again: vexa fatigue " + path_.filename().string() + " " +
                       inQuotes(framework::toUtf8(definition.name));
        return "restore it from a copy, or import the results again with vexa new";
    }

    void checkResultFile(const ResultFileRecord& record) {
        ++report_.resultFiles;
        const std::string item = "result file " + record.path;
        const fs::path path = registeredFile(folder_, record.path);
        const std::string remedy = remedyFor(record.analysisKey, path);
        tell("Checking " + path.filename().string());
        if (!files_.insert(path).second) fault(item, "it is registered twice", remedy);
        auto opened = resultfile::Reader::open(path);
        if (!opened) return fault(item, opened.error().message, remedy);
        ResultSource source(std::move(*opened));
        const resultfile::Contents& contents = source.reader().contents();
        std::size_t keys = 0;
        for (const resultfile::Case& stored : contents.cases)
            keys += 1 + stored.steps.size();
        if (keys != record.keyCount)
            fault(item,
                  "it holds " + std::to_string(keys) + " cases and steps where the document registered " +
                      std::to_string(record.keyCount),
                  remedy);
        if (meshIsWhole_)
            if (const auto fits = source.checkMesh(database_->mesh()); !fits)
                fault(item, fits.error().message, remedy);
        checkTables(source.reader(), item, remedy);
        inputs_.push_back({item, remedy, contents.inputChecksum});
        caseSteps(record.analysisKey, contents);
        report_.bytes = std::min(totalBytes_, report_.bytes + sizeOf(path));
    }

    /// Every table is read once: its checksum and its values are seen in the same pass.
    void checkTables(const resultfile::Reader& reader, const std::string& item, const std::string& remedy) {
        const auto& cases = reader.contents().cases;
        std::set<unsigned> unknown;
        const std::uint64_t before = report_.bytes;
        std::uint64_t read = 0;
        for (std::size_t c = 0; c < cases.size(); ++c)
            for (std::size_t s = 0; s < cases[c].steps.size(); ++s)
                for (const resultfile::Component& component : cases[c].steps[s].components) {
                    if (!findComponent(component.id)) unknown.insert(component.id);
                    bool finite = true;
                    const auto visited = reader.visit(c, s, component.id, [&](std::span<const float> values) {
                        finite = finite && isFinite(values);
                        read += values.size_bytes();
                        report_.bytes = before + read;
                        tell("Checking " + reader.path().filename().string());
                    });
                    ++report_.tables;
                    report_.values += component.count;
                    if (!visited)
                        fault(item, visited.error().message, remedy);
                    else if (!finite)
                        fault(item,
                              "component " + std::to_string(component.id) + " of step " +
                                  inQuotes(cases[c].steps[s].name) + " of case " + inQuotes(cases[c].name) +
                                  " has a value that is not finite",
                              remedy);
                }
        report_.bytes = before;
        for (const unsigned id : unknown)
            note(item, "this program has no name for its component " + std::to_string(id));
    }

    void caseSteps(ItrKey analysisKey, const resultfile::Contents& contents) {
        auto& cases = cases_[analysisKey];
        for (const resultfile::Case& stored : contents.cases)
            for (const resultfile::Step& step : stored.steps)
                cases[stored.name].insert(step.name);
    }

    /// The cases and steps that fatigue definitions name must be among the results.
    void checkFatigueLoads() {
        const auto* pool = database_->Pool<DPoolFatg>();
        for (const ItrKey key : pool->GetKeyList()) {
            const tagTFatg& definition = pool->GetAtNU(key);
            const auto results = cases_.find(definition.analysisKey);
            if (results == cases_.end()) continue; // named already
            for (const T_FATG_LOAD_D& load : definition.loads) {
                const std::string item = "fatigue definition " + inQuotes(framework::toUtf8(definition.name));
                const std::string remedy = "correct the deck and import it again with vexa new";
                const auto found = results->second.find(framework::toUtf8(load.caseName));
                const std::string step = framework::toUtf8(load.stepName);
                const std::string where = " in analysis " + inQuotes(analysisName(definition.analysisKey));
                if (found == results->second.end())
                    fault(item, "there is no case " + inQuotes(framework::toUtf8(load.caseName)) + where,
                          remedy);
                else if (!step.empty() && !found->second.contains(step))
                    fault(item,
                          "there is no step " + inQuotes(step) + " of case " + inQuotes(found->first) + where,
                          remedy);
            }
        }
    }

    /// The interface file is that of the last run; earlier results carry checksums of earlier ones.
    void checkInterfaceFile() {
        const auto current = interfaceFileChecksum(folder_);
        for (const Input& input : inputs_) {
            if (input.checksum.empty()) {
                if (input.remedy.starts_with("run it again"))
                    fault(input.item, "it does not say what it was computed from", input.remedy);
            } else if (!current) {
                note(input.item, "FATIGUE.76, which it was computed from, is not there any more");
            } else if (*current == input.checksum) {
                note(input.item, "it was computed from the FATIGUE.76 that is there");
            } else {
                note(input.item, "it was computed from an earlier FATIGUE.76 than the one that is there");
            }
        }
    }

    void checkOrphans() {
        std::optional<FolderReferences> others;
        for (const fs::path& path : resultFilesBeside(path_)) {
            if (files_.contains(path)) continue;
            const std::string item = "file " + path.filename().string();
            if (!others) others = referencesIn(folder_, path_);
            if (others->files.contains(path)) continue;
            if (!others->unreadable.empty())
                note(item, "the document does not refer to it, and what " +
                               others->unreadable.front().filename().string() + " refers to cannot be read");
            else if (isAbandoned(path))
                fault(item, "no document here refers to it", "delete it, unless you need it otherwise");
            else
                note(item, "no document here refers to it; perhaps a program is just making it");
        }
    }

    void checkTemporaryFiles() {
        for (const fs::path& path : temporaryFilesBeside(path_)) {
            const std::string item = "file " + path.filename().string();
            if (isAbandoned(path))
                fault(item, "a program that was ended left it",
                      "delete it; the next program that writes here does so, too");
            else
                note(item, "a program is writing it now");
        }
    }

    struct Input {
        std::string item;
        std::string remedy;
        std::string checksum;
    };

    const CheckProgress& progress_;
    fs::path path_;
    fs::path folder_;
    ModelCheckReport report_;
    ModelDatabase* database_ = nullptr;
    bool meshIsWhole_ = false;
    std::uint64_t totalBytes_ = 0;
    std::set<fs::path> files_; ///< registered
    std::vector<Input> inputs_;
    /// Names of the steps by case, of the results of each analysis.
    std::map<ItrKey, std::map<std::string, std::set<std::string>>> cases_;
};

} // namespace

ModelCheckReport checkModel(const fs::path& path, const CheckProgress& progress) {
    return ModelCheck(path, progress).run();
}

} // namespace workbench
