#pragma once

#include "framework/text/CodePage.h"
#include "workbench/document/RecordFields.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace workbench {

using Json = nlohmann::ordered_json;

/// Fields turned into JSON. Numbers that JSON cannot hold are the texts "nan", "inf" and "-inf"; a list of
/// item numbers has [first, last] in the place of three and more that count up by one.
class RecordWriter {
  public:
    static Json json(std::int32_t value) { return value; }
    static Json json(std::uint64_t value) { return value; }
    static Json json(double value) {
        if (std::isfinite(value)) return value;
        return std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
    }
    static Json json(const std::wstring& value) { return framework::toUtf8(value); }
    static Json json(const std::vector<std::int32_t>& numbers);
    template <class V>
    static Json json(const std::vector<V>& values) {
        return list(values);
    }
    template <class V, std::size_t N>
    static Json json(const std::array<V, N>& values) {
        return list(values);
    }
    template <class T>
    static Json json(const T& record) {
        Json object = Json::object();
        std::apply([&](const auto&... field) { ((object[field.name] = json(record.*field.member)), ...); },
                   RecordFields<T>::fields);
        return object;
    }

  private:
    template <class L>
    static Json list(const L& values) {
        Json array = Json::array();
        for (const auto& value : values)
            array.push_back(json(value));
        return array;
    }
};

/// Reads fields back. Every field of the schema version must be there, of its kind and in range, and no other
/// one.
class RecordReader {
  public:
    explicit RecordReader(int schemaVersion)
        : version_(schemaVersion) {}

    /// False when `text` is not such an object; problem() then says where.
    template <class T>
    bool readText(const std::string& text, T& record) {
        const Json json = Json::parse(text, nullptr, false);
        if (json.is_discarded()) {
            problem_ = "its data is not valid JSON";
            return false;
        }
        return read(json, record);
    }
    const std::string& problem() const { return problem_; }

  private:
    bool read(const Json& json, std::int32_t& value);
    bool read(const Json& json, std::uint64_t& value);
    bool read(const Json& json, double& value);
    bool read(const Json& json, std::wstring& value);
    bool read(const Json& json, std::vector<std::int32_t>& numbers);
    bool appendRun(const Json& run, std::vector<std::int32_t>& numbers);

    template <class V>
    bool read(const Json& json, std::vector<V>& values) {
        if (!json.is_array()) return false;
        values.resize(json.size());
        return readItems(json, values);
    }
    template <class V, std::size_t N>
    bool read(const Json& json, std::array<V, N>& values) {
        return json.is_array() && json.size() == N && readItems(json, values);
    }
    template <class L>
    bool readItems(const Json& json, L& values) {
        for (std::size_t i = 0; i < values.size(); ++i)
            if (!read(json[i], values[i])) return false;
        return true;
    }
    template <class T>
    bool read(const Json& json, T& record) {
        constexpr auto& fields = RecordFields<T>::fields;
        const std::size_t count = std::apply(
            [&](const auto&... field) { return (std::size_t{0} + ... + (field.since <= version_ ? 1 : 0)); },
            fields);
        if (!json.is_object() || json.size() != count) {
            if (problem_.empty()) problem_ = "its data does not have the fields of its kind";
            return false;
        }
        return std::apply([&](const auto&... field) { return (readField(json, field, record) && ...); },
                          fields);
    }
    template <class T, class V>
    bool readField(const Json& json, const Field<T, V>& field, T& record) {
        if (field.since > version_) return true;
        const auto found = json.find(field.name);
        if (found != json.end() && read(*found, record.*field.member)) return true;
        if (problem_.empty())
            problem_ = std::string("its field \"") + field.name + "\" is missing or not valid";
        return false;
    }

    int version_;
    std::string problem_;
    /// How many numbers [first, last] pairs may still stand for: a few bytes must not fill the memory.
    std::size_t runBudget_ = std::size_t{1} << 28;
};

} // namespace workbench
