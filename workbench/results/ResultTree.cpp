#include "workbench/results/ResultTree.h"

#include "framework/files/PathMap.h"
#include "framework/text/CodePage.h"
#include "host/MSGFunction.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultSource.h"

#include <algorithm>

namespace workbench {
namespace {

/// One table of a step; its values are in memory while somebody uses them.
class Table final : public CVResult {
  public:
    Table(CPOHVCase& step, ModelDatabase& database, ResultSource& source, std::size_t caseIndex,
          std::size_t stepIndex, unsigned storedId, unsigned id)
        : step_(step)
        , database_(database)
        , source_(source)
        , caseIndex_(caseIndex)
        , stepIndex_(stepIndex)
        , storedId_(storedId)
        , id_(id) {}

    CPOHAnalysis* GetAnalysis() const override { return step_.GetCase()->GetAnalysis(); }
    CPOHCase* GetCase() const override { return step_.GetCase(); }
    CPOHVCase* GetVCase() const override { return &step_; }
    unsigned GetId() const override { return id_; }

    int Load() override {
        if (users_ == 0) {
            const auto read = source_.read(database_.mesh(), caseIndex_, stepIndex_, storedId_, table_);
            if (!read) {
                qmMsgOutError(framework::fromUtf8(read.error().message));
                return 0;
            }
            table_.view.id = id_;
        }
        ++users_;
        return 1;
    }

    void Release() override {
        if (users_ > 0 && --users_ == 0) table_ = {};
    }

    const T_RESULT_TABLE_D& GetTable() const override { return table_.view; }

  private:
    CPOHVCase& step_;
    ModelDatabase& database_;
    ResultSource& source_;
    std::size_t caseIndex_;
    std::size_t stepIndex_;
    unsigned storedId_;
    unsigned id_;
    int users_ = 0;
    ResultSource::Table table_;
};

class Step final : public ResultStep {
  public:
    Step(CPOHCase& parent, ModelDatabase& database, ResultSource& source, std::size_t caseIndex,
         std::size_t stepIndex, ItrKey key)
        : parent_(parent)
        , database_(database)
        , source_(source)
        , caseIndex_(caseIndex)
        , stepIndex_(stepIndex)
        , key_(key)
        , name_(framework::fromUtf8(stored().name)) {
        for (const resultfile::Component& component : stored().components)
            ids_.push_back(component.id);
    }

    ItrKey GetKey() const override { return key_; }
    const std::wstring& GetName() const override { return name_; }
    CPOHBase* GetParent() const override { return &parent_; }
    CPOHCase* GetCase() const override { return &parent_; }
    ResultSource& source() const override { return source_; }
    std::size_t caseIndex() const override { return caseIndex_; }
    std::size_t stepIndex() const override { return stepIndex_; }
    double GetStepValue() const override { return stored().value; }
    const std::vector<unsigned>& GetResultIds() const override { return ids_; }

    CVResult* GetVResult(unsigned id) override {
        const auto made = std::ranges::find(tables_, id, [](const auto& table) { return table->GetId(); });
        if (made != tables_.end()) return made->get();
        const unsigned storedId = findComponent(stored(), id) ? id : sourceOfAlias(id);
        if (!findComponent(stored(), storedId)) return nullptr;
        tables_.push_back(
            std::make_unique<Table>(*this, database_, source_, caseIndex_, stepIndex_, storedId, id));
        return tables_.back().get();
    }

  private:
    CPOHCase& parent_;
    ModelDatabase& database_;
    ResultSource& source_;
    std::size_t caseIndex_;
    std::size_t stepIndex_;
    ItrKey key_;
    std::wstring name_;
    std::vector<unsigned> ids_;
    std::vector<std::unique_ptr<Table>> tables_;
};

class Case final : public CPOHCase {
  public:
    Case(CPOHAnalysis& parent, ModelDatabase& database, ResultSource& source, std::size_t caseIndex,
         ItrKey& nextKey)
        : parent_(parent)
        , key_(nextKey++)
        , name_(framework::fromUtf8(source.reader().contents().cases[caseIndex].name)) {
        const std::size_t stepCount = source.reader().contents().cases[caseIndex].steps.size();
        for (std::size_t i = 0; i < stepCount; ++i) {
            steps_.push_back(std::make_unique<Step>(*this, database, source, caseIndex, i, nextKey++));
            children_.push_back(steps_.back().get());
        }
    }

    ItrKey GetKey() const override { return key_; }
    const std::wstring& GetName() const override { return name_; }
    CPOHBase* GetParent() const override { return &parent_; }
    CPOHAnalysis* GetAnalysis() const override { return &parent_; }
    const std::vector<CPOHVCase*>& GetVCaseList() const override { return children_; }

  private:
    CPOHAnalysis& parent_;
    ItrKey key_;
    std::wstring name_;
    std::vector<std::unique_ptr<Step>> steps_;
    std::vector<CPOHVCase*> children_;
};

} // namespace

class ResultTree::Analysis final : public CPOHAnalysis {
  public:
    using Records = std::vector<ResultFileRecord>;

    Analysis(ResultTree& parent, ItrKey key, std::wstring name, Records records)
        : parent_(parent)
        , key_(key)
        , name_(std::move(name))
        , records_(std::move(records)) {}

    /// Whether reading it again would make the same object.
    bool isCurrent(const std::wstring& name, const Records& records) const {
        return name == name_ && unreadable_ == 0 &&
               std::ranges::equal(records, records_, [](const auto& a, const auto& b) {
                   return a.key == b.key && a.path == b.path && a.firstKey == b.firstKey;
               });
    }

    void readFiles(ModelDatabase& database, const std::filesystem::path& folder) {
        for (const ResultFileRecord& record : records_) {
            const auto added = addFile(database, record, folder / std::filesystem::path(record.path));
            if (added) continue;
            ++unreadable_;
            qmMsgOutError(framework::fromUtf8(added.error().message) + L"; analysis \"" + name_ +
                          L"\" is without these results until the file is restored or made again");
        }
    }

    int unreadable() const { return unreadable_; }
    std::vector<std::string> sourceNames() const {
        std::vector<std::string> names;
        for (const auto& source : sources_)
            for (const std::string& name : source->reader().contents().sources)
                names.push_back(name);
        return names;
    }

    ItrKey GetKey() const override { return key_; }
    const std::wstring& GetName() const override { return name_; }
    CPOHBase* GetParent() const override { return &parent_; }
    const std::vector<CPOHCase*>& GetChildList() const override { return children_; }
    CPOHCase* GetChild(ItrKey key) const override {
        const auto found = std::ranges::find(children_, key, &CPOHCase::GetKey);
        return found != children_.end() ? *found : nullptr;
    }
    std::wstring GetResultFilePath() const override { return path_; }

  private:
    /// Appends the cases of a result file, or says why it cannot.
    Result<void> addFile(ModelDatabase& database, const ResultFileRecord& record,
                         const std::filesystem::path& path) {
        if (path_.empty()) path_ = framework::widePath(path);
        auto reader = resultfile::Reader::open(path);
        if (!reader) return reader.error();
        std::size_t keys = 0;
        for (const resultfile::Case& stored : reader->contents().cases)
            keys += 1 + stored.steps.size();
        if (keys != record.keyCount)
            return Error{path.string() +
                         " holds other cases and steps than when it was registered: register it again"};
        auto source = std::make_unique<ResultSource>(std::move(*reader));
        ItrKey nextKey = record.firstKey;
        for (std::size_t i = 0; i < source->reader().contents().cases.size(); ++i) {
            cases_.push_back(std::make_unique<Case>(*this, database, *source, i, nextKey));
            children_.push_back(cases_.back().get());
        }
        sources_.push_back(std::move(source));
        return {};
    }

    ResultTree& parent_;
    ItrKey key_;
    std::wstring name_;
    Records records_;
    std::wstring path_;
    int unreadable_ = 0;
    std::vector<std::unique_ptr<ResultSource>> sources_;
    std::vector<std::unique_ptr<Case>> cases_;
    std::vector<CPOHCase*> children_;
};

ResultTree::ResultTree(ModelDatabase& database, std::filesystem::path folder)
    : database_(database)
    , folder_(std::move(folder)) {
    rebuild();
}

ResultTree::~ResultTree() = default;

void ResultTree::rebuild() {
    analyses_.clear();
    readAnalyses({});
}

void ResultTree::update() {
    readAnalyses(std::move(analyses_));
}

void ResultTree::readAnalyses(std::vector<std::unique_ptr<Analysis>> former) {
    children_.clear();
    analyses_.clear();
    unreadable_ = 0;
    const auto* pool = database_.Pool<DPoolVXMcas>();
    for (const ItrKey key : pool->GetKeyList()) {
        const std::wstring& name = pool->GetAtNU(key).name;
        Analysis::Records records = database_.resultFiles();
        std::erase_if(records, [&](const ResultFileRecord& record) { return record.analysisKey != key; });
        const auto same = std::ranges::find_if(former, [&](const auto& analysis) {
            return analysis && analysis->GetKey() == key && analysis->isCurrent(name, records);
        });
        if (same != former.end()) {
            analyses_.push_back(std::move(*same));
        } else {
            analyses_.push_back(std::make_unique<Analysis>(*this, key, name, std::move(records)));
            analyses_.back()->readFiles(database_, folder_);
        }
        unreadable_ += analyses_.back()->unreadable();
        children_.push_back(analyses_.back().get());
    }
}

std::vector<std::string> ResultTree::sourcesOf(ItrKey analysisKey) const {
    const auto found =
        std::ranges::find(analyses_, analysisKey, [](const auto& analysis) { return analysis->GetKey(); });
    return found != analyses_.end() ? (*found)->sourceNames() : std::vector<std::string>();
}

const std::wstring& ResultTree::GetName() const {
    static const std::wstring name = L"Results";
    return name;
}

CPOHAnalysis* ResultTree::GetChild(ItrKey key) const {
    const auto found = std::ranges::find(children_, key, &CPOHAnalysis::GetKey);
    return found != children_.end() ? *found : nullptr;
}

} // namespace workbench
