#pragma once

#include "host/POHTree.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace support {

/// A result table whose values are always in memory.
class MemoryResult : public CVResult {
  public:
    MemoryResult(CPOHVCase* step, unsigned id, ResultLocation location, std::vector<float> values,
                 std::vector<std::uint32_t> items)
        : step_(step)
        , values_(std::move(values))
        , items_(std::move(items)) {
        table_ = {id, location, values_, items_};
    }
    CPOHAnalysis* GetAnalysis() const override { return step_->GetCase()->GetAnalysis(); }
    CPOHCase* GetCase() const override { return step_->GetCase(); }
    CPOHVCase* GetVCase() const override { return step_; }
    unsigned GetId() const override { return table_.id; }
    int Load() override {
        if (unreadable) return 0;
        ++users;
        return 1;
    }
    void Release() override { --users; }
    const T_RESULT_TABLE_D& GetTable() const override { return table_; }

    bool unreadable = false;
    int users = 0;

  private:
    CPOHVCase* step_;
    std::vector<float> values_;
    std::vector<std::uint32_t> items_;
    T_RESULT_TABLE_D table_;
};

class MemoryStep : public CPOHVCase {
  public:
    MemoryStep(CPOHCase* owner, ItrKey key, std::wstring name, double value)
        : owner_(owner)
        , key_(key)
        , name_(std::move(name))
        , value_(value) {}

    MemoryResult& add(unsigned id, ResultLocation location, std::vector<float> values,
                      std::vector<std::uint32_t> items = {}) {
        auto result = std::make_unique<MemoryResult>(this, id, location, std::move(values), std::move(items));
        MemoryResult& added = *result;
        put(id, std::move(result));
        return added;
    }
    void put(unsigned id, std::unique_ptr<CVResult> result) {
        results_[id] = std::move(result);
        listIds();
    }
    void remove(unsigned id) {
        results_.erase(id);
        listIds();
    }
    ItrKey GetKey() const override { return key_; }
    const std::wstring& GetName() const override { return name_; }
    CPOHBase* GetParent() const override { return owner_; }
    CPOHCase* GetCase() const override { return owner_; }
    double GetStepValue() const override { return value_; }
    CVResult* GetVResult(unsigned id) override {
        const auto found = results_.find(id);
        return found == results_.end() ? nullptr : found->second.get();
    }
    const std::vector<unsigned>& GetResultIds() const override { return ids_; }

  private:
    void listIds() {
        ids_.clear();
        for (const auto& entry : results_)
            ids_.push_back(entry.first);
    }
    CPOHCase* owner_;
    ItrKey key_;
    std::wstring name_;
    double value_;
    std::map<unsigned, std::unique_ptr<CVResult>> results_;
    std::vector<unsigned> ids_;
};

class MemoryCase : public CPOHCase {
  public:
    MemoryCase(CPOHAnalysis* owner, ItrKey key, std::wstring name)
        : owner_(owner)
        , key_(key)
        , name_(std::move(name)) {}

    MemoryStep& addStep(ItrKey key, std::wstring name, double value = 0) {
        steps_.push_back(std::make_unique<MemoryStep>(this, key, std::move(name), value));
        list_.push_back(steps_.back().get());
        return *steps_.back();
    }
    ItrKey GetKey() const override { return key_; }
    const std::wstring& GetName() const override { return name_; }
    CPOHBase* GetParent() const override { return owner_; }
    CPOHAnalysis* GetAnalysis() const override { return owner_; }
    const std::vector<CPOHVCase*>& GetVCaseList() const override { return list_; }

  private:
    CPOHAnalysis* owner_;
    ItrKey key_;
    std::wstring name_;
    std::vector<std::unique_ptr<MemoryStep>> steps_;
    std::vector<CPOHVCase*> list_;
};

class MemoryAnalysis : public CPOHAnalysis {
  public:
    MemoryAnalysis(CPOHBase* owner, ItrKey key, std::wstring name)
        : owner_(owner)
        , key_(key)
        , name_(std::move(name)) {}

    MemoryCase& addCase(ItrKey key, std::wstring name) {
        cases_.push_back(std::make_unique<MemoryCase>(this, key, std::move(name)));
        list_.push_back(cases_.back().get());
        return *cases_.back();
    }
    ItrKey GetKey() const override { return key_; }
    const std::wstring& GetName() const override { return name_; }
    CPOHBase* GetParent() const override { return owner_; }
    const std::vector<CPOHCase*>& GetChildList() const override { return list_; }
    CPOHCase* GetChild(ItrKey key) const override {
        for (CPOHCase* child : list_)
            if (child->GetKey() == key) return child;
        return nullptr;
    }
    std::wstring GetResultFilePath() const override { return {}; }

  private:
    CPOHBase* owner_;
    ItrKey key_;
    std::wstring name_;
    std::vector<std::unique_ptr<MemoryCase>> cases_;
    std::vector<CPOHCase*> list_;
};

class MemoryResultTree : public CPOHManager {
  public:
    MemoryAnalysis& addAnalysis(ItrKey key, std::wstring name) {
        analyses_.push_back(std::make_unique<MemoryAnalysis>(this, key, std::move(name)));
        list_.push_back(analyses_.back().get());
        return *analyses_.back();
    }
    void remove(ItrKey key) {
        const auto isIt = [&](const auto& analysis) { return analysis->GetKey() == key; };
        std::erase_if(list_, isIt);
        std::erase_if(analyses_, isIt);
    }
    ItrKey GetKey() const override { return 0; }
    const std::wstring& GetName() const override { return name_; }
    CPOHBase* GetParent() const override { return nullptr; }
    const std::vector<CPOHAnalysis*>& GetChildList() const override { return list_; }
    CPOHAnalysis* GetChild(ItrKey key) const override {
        for (CPOHAnalysis* child : list_)
            if (child->GetKey() == key) return child;
        return nullptr;
    }

  private:
    std::wstring name_;
    std::vector<std::unique_ptr<MemoryAnalysis>> analyses_;
    std::vector<CPOHAnalysis*> list_;
};

} // namespace support
