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

class Step final : public CPOHVCase {
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
    const resultfile::Step& stored() const {
        return source_.reader().contents().cases[caseIndex_].steps[stepIndex_];
    }

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
    Analysis(ResultTree& parent, ItrKey key, std::wstring name)
        : parent_(parent)
        , key_(key)
        , name_(std::move(name)) {}

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
    ResultTree& parent_;
    ItrKey key_;
    std::wstring name_;
    std::wstring path_;
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
    children_.clear();
    analyses_.clear();
    unreadable_ = 0;
    const auto* records = database_.Pool<DPoolVXMcas>();
    for (const ItrKey key : records->GetKeyList())
        analyses_.push_back(std::make_unique<Analysis>(*this, key, records->GetAtNU(key).name));
    for (const auto& analysis : analyses_)
        children_.push_back(analysis.get());
    for (const ResultFileRecord& record : database_.resultFiles()) {
        const auto owner =
            std::ranges::find(analyses_, record.analysisKey, [](const auto& a) { return a->GetKey(); });
        if (owner == analyses_.end()) continue;
        const auto added = (*owner)->addFile(database_, record, folder_ / std::filesystem::path(record.path));
        if (!added) {
            ++unreadable_;
            qmMsgOutError(framework::fromUtf8(added.error().message) + L"; analysis \"" +
                          (*owner)->GetName() +
                          L"\" is without these results until the file is restored or "
                          L"made again");
        }
    }
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
