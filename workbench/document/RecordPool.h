#pragma once

#include "framework/containers/ArgumentException.h"
#include "host/DPool.h"
#include "workbench/document/Journal.h"
#include "workbench/document/KeySequence.h"

#include <functional>
#include <map>
#include <string>

namespace workbench {

[[noreturn]] inline void throwUnknownKey(const char* pool, ItrKey key) {
    throw CInvalidArgException("no record with key " + std::to_string(key) + " in the pool of " + pool);
}

/// A pool of `Base` (a DPool of the host) over records in memory, ordered by key.
template <class Base>
class RecordPool : public Base {
  public:
    using Record = typename Base::Record;

    /// `name` is the pool's name in documents and messages; a literal.
    RecordPool(const char* name, KeySequence& keys, Journal& journal)
        : name_(name)
        , keys_(keys)
        , journal_(journal) {}

    std::size_t GetCount() const final { return records_.size(); }
    bool Exist(ItrKey key) const final { return records_.contains(key); }
    std::vector<ItrKey> GetKeyList() const final {
        std::vector<ItrKey> keys;
        keys.reserve(records_.size());
        for (const auto& item : records_)
            keys.push_back(item.first);
        return keys;
    }
    const Record& GetAtNU(ItrKey key) const final {
        const auto found = records_.find(key);
        if (found == records_.end()) throwUnknownKey(name_, key);
        return found->second;
    }
    int Get(ItrKey key, Record& record) const final {
        const auto found = records_.find(key);
        if (found == records_.end()) return 0;
        record = found->second;
        return 1;
    }

    ItrKey TR_Add(const Record& record) final {
        if (!journal_.isOpen()) return 0;
        const ItrKey key = keys_.take();
        if (key == 0) return 0;
        Record added = record;
        added.key = key;
        journal_.note([this, key] { records_.erase(key); });
        records_.emplace_hint(records_.end(), key, std::move(added));
        return key;
    }
    int TR_Modify(const Record& record) final {
        const auto found = records_.find(record.key);
        if (!journal_.isOpen() || found == records_.end()) return 0;
        Record changed = record; // may be the very record that the pool keeps
        journal_.note([this, before = found->second] { records_[before.key] = before; });
        found->second = std::move(changed);
        return 1;
    }
    int TR_Del(ItrKey key) final {
        const auto found = records_.find(key);
        if (!journal_.isOpen() || found == records_.end() || (isInUse_ && isInUse_(key))) return 0;
        journal_.note([this, before = found->second] { records_[before.key] = before; });
        records_.erase(found);
        return 1;
    }

    const char* name() const { return name_; }
    const std::map<ItrKey, Record>& records() const { return records_; }
    /// Puts a record that was read from a document; past the journal.
    void restore(Record record) {
        const ItrKey key = record.key;
        records_.insert_or_assign(key, std::move(record));
    }
    /// Records for which `isInUse` answers true are not deleted.
    void guardDeletion(std::function<bool(ItrKey)> isInUse) { isInUse_ = std::move(isInUse); }

  private:
    const char* name_;
    KeySequence& keys_;
    Journal& journal_;
    std::map<ItrKey, Record> records_;
    std::function<bool(ItrKey)> isInUse_;
};

class PropertyPool final : public RecordPool<DPoolProp> {
  public:
    using RecordPool::RecordPool;
    std::vector<ItrKey> GetMatlItr(ItrKey propertyKey) const override {
        const auto found = records().find(propertyKey);
        return found == records().end() ? std::vector<ItrKey>{} : found->second.materialKeys;
    }
};

} // namespace workbench
