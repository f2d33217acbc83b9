#pragma once

#include "framework/containers/ArgumentException.h"
#include "host/DPool.h"

#include <map>

namespace support {

/// A pool that keeps its records in a map. Transactions are not asked for.
template <class Base>
class MemoryPool : public Base {
  public:
    using Record = typename Base::Record;

    std::map<ItrKey, Record> records;

    void put(const Record& record) { records[record.key] = record; }
    std::size_t GetCount() const override { return records.size(); }
    bool Exist(ItrKey key) const override { return records.contains(key); }
    std::vector<ItrKey> GetKeyList() const override {
        std::vector<ItrKey> keys;
        for (const auto& entry : records)
            keys.push_back(entry.first);
        return keys;
    }
    const Record& GetAtNU(ItrKey key) const override {
        const auto found = records.find(key);
        if (found == records.end()) throw CInvalidArgException("no record of this key");
        return found->second;
    }
    int Get(ItrKey key, Record& record) const override {
        const auto found = records.find(key);
        if (found == records.end()) return 0;
        record = found->second;
        return 1;
    }
    ItrKey TR_Add(const Record& record) override {
        const ItrKey key = records.empty() ? 1 : records.rbegin()->first + 1;
        records[key] = record;
        records[key].key = key;
        return key;
    }
    int TR_Modify(const Record& record) override {
        if (!Exist(record.key)) return 0;
        put(record);
        return 1;
    }
    int TR_Del(ItrKey key) override { return static_cast<int>(records.erase(key)); }
};

class MemoryPropPool : public MemoryPool<DPoolProp> {
  public:
    std::vector<ItrKey> GetMatlItr(ItrKey propertyKey) const override {
        const auto found = records.find(propertyKey);
        return found == records.end() ? std::vector<ItrKey>() : found->second.materialKeys;
    }
};

} // namespace support
