#include "workbench/document/RecordJson.h"

namespace workbench {

Json RecordWriter::json(const std::vector<std::int32_t>& numbers) {
    Json array = Json::array();
    for (std::size_t i = 0; i < numbers.size();) {
        std::size_t end = i + 1;
        while (end < numbers.size() && std::int64_t{numbers[end]} == std::int64_t{numbers[end - 1]} + 1)
            ++end;
        if (end - i >= 3) {
            array.push_back(Json::array({numbers[i], numbers[end - 1]}));
            i = end;
        } else {
            array.push_back(numbers[i++]);
        }
    }
    return array;
}

bool RecordReader::read(const Json& json, std::int32_t& value) {
    if (!json.is_number_integer()) return false;
    if (json.is_number_unsigned() && json.get<std::uint64_t>() > std::numeric_limits<std::int32_t>::max())
        return false;
    const auto wide = json.get<std::int64_t>();
    if (wide < std::numeric_limits<std::int32_t>::min() || wide > std::numeric_limits<std::int32_t>::max())
        return false;
    value = static_cast<std::int32_t>(wide);
    return true;
}

bool RecordReader::read(const Json& json, std::uint64_t& value) {
    if (!json.is_number_unsigned()) return false;
    value = json.get<std::uint64_t>();
    return true;
}

bool RecordReader::read(const Json& json, double& value) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    if (json.is_number()) {
        value = json.get<double>();
        return true;
    }
    if (json == "nan")
        value = std::numeric_limits<double>::quiet_NaN();
    else if (json == "inf")
        value = kInfinity;
    else if (json == "-inf")
        value = -kInfinity;
    else
        return false;
    return true;
}

bool RecordReader::read(const Json& json, std::wstring& value) {
    if (!json.is_string()) return false;
    value = framework::fromUtf8(json.get_ref<const std::string&>());
    return true;
}

bool RecordReader::read(const Json& json, std::vector<std::int32_t>& numbers) {
    if (!json.is_array()) return false;
    numbers.clear();
    for (const Json& item : json) {
        if (item.is_array()) {
            if (!appendRun(item, numbers)) return false;
        } else if (!read(item, numbers.emplace_back())) {
            return false;
        }
    }
    return true;
}

bool RecordReader::appendRun(const Json& run, std::vector<std::int32_t>& numbers) {
    std::array<std::int32_t, 2> ends{};
    if (!read(run, ends) || ends[0] > ends[1]) return false;
    const auto count = static_cast<std::size_t>(std::int64_t{ends[1]} - ends[0] + 1);
    if (count > runBudget_) return false;
    runBudget_ -= count;
    if (numbers.empty()) numbers.reserve(count); // mostly the only run
    for (std::int64_t number = ends[0]; number <= ends[1]; ++number)
        numbers.push_back(static_cast<std::int32_t>(number));
    return true;
}

} // namespace workbench
