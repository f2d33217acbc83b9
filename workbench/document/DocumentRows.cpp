#include "workbench/document/DocumentRows.h"

#include "base/Checksum.h"
#include "workbench/document/RecordJson.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace workbench {

namespace {

/// Adds values so that no two different sequences feed the same bytes.
class ContentSum {
  public:
    void add(std::uint64_t value) {
        std::byte bytes[8];
        for (std::byte& byte : bytes) {
            byte = static_cast<std::byte>(value & 0xFF);
            value >>= 8;
        }
        sum_.add(bytes);
    }
    void add(const std::string& text) {
        add(text.size());
        sum_.add(std::as_bytes(std::span(text)));
    }
    std::string text() const { return checksumText(sum_.value()); }

  private:
    Checksum sum_;
};

template <class T>
bool parseWhole(const std::string& text, T& value) {
    const char* end = text.data() + text.size();
    const auto [stop, failed] = std::from_chars(text.data(), end, value);
    return failed == std::errc() && stop == end;
}

Result<std::string> metaText(const DocumentRows& rows, const std::string& name) {
    const auto found = rows.meta.find(name);
    if (found == rows.meta.end()) return Error{"it is damaged: its table meta lacks \"" + name + "\""};
    return found->second;
}

std::string nameOf(const RecordRow& row) {
    return "record " + std::to_string(row.key) + " (" + row.pool + ")";
}

Result<int> versionOf(const DocumentRows& rows) {
    const auto version = countOf(rows, "schema_version");
    if (!version) return version.error();
    if (*version == 0 || *version > kSchemaVersion)
        return Error{"it is damaged: its table meta has another schema version than the file"};
    return static_cast<int>(*version);
}

/// Puts `row` into `pool` when it belongs there.
template <class P>
bool takeRecord(const RecordRow& row, int version, P& pool, std::string& problem) {
    if (row.pool != pool.name()) return false;
    typename P::Record record;
    RecordReader reader(version);
    if (!reader.readText(row.data, record)) {
        problem = nameOf(row) + " cannot be read: " + reader.problem();
        return true;
    }
    record.key = row.key;
    record.name = framework::fromUtf8(row.name);
    pool.restore(std::move(record));
    return true;
}

Result<void> takeRecords(const DocumentRows& rows, ModelDatabase::State& state) {
    const auto version = versionOf(rows);
    if (!version) return version.error();
    for (const RecordRow& row : rows.records) {
        if (row.key == 0 || row.key >= state.keys.next())
            return Error{nameOf(row) + " has a key that the document never gave out"};
        std::string problem;
        const bool taken = std::apply(
            [&](auto&... pool) { return (takeRecord(row, *version, pool, problem) || ...); }, state.pools);
        if (!taken) return Error{nameOf(row) + " belongs to no pool that this program knows"};
        if (!problem.empty()) return Error{problem};
    }
    return {};
}

Result<void> takeResultFiles(const DocumentRows& rows, ModelDatabase::State& state) {
    for (const ResultFileRecord& file : rows.resultFiles) {
        const std::string name = "result file " + std::to_string(file.key);
        if (file.key == 0 || file.key >= state.keys.next() || file.firstKey != file.key + 1 ||
            file.keyCount > state.keys.next() - file.firstKey)
            return Error{name + " has keys that the document never gave out"};
        if (!state.analyses().Exist(file.analysisKey))
            return Error{name + " refers to analysis key " + std::to_string(file.analysisKey) +
                         ", which does not exist"};
        state.resultFiles.push_back(file);
    }
    return {};
}

} // namespace

std::string contentChecksum(const DocumentRows& rows) {
    ContentSum sum;
    sum.add(rows.meta.size());
    for (const auto& [name, value] : rows.meta) {
        sum.add(name);
        sum.add(value);
    }
    sum.add(rows.records.size());
    for (const RecordRow& row : rows.records) {
        sum.add(row.key);
        for (const std::string* text : {&row.pool, &row.name, &row.data})
            sum.add(*text);
    }
    sum.add(rows.resultFiles.size());
    for (const ResultFileRecord& file : rows.resultFiles) {
        sum.add(file.key);
        sum.add(file.analysisKey);
        sum.add(file.path);
        sum.add(file.firstKey);
        sum.add(file.keyCount);
    }
    sum.add(rows.elementTypeCounts.size());
    for (const auto& [type, count] : rows.elementTypeCounts) {
        sum.add(static_cast<std::uint64_t>(type));
        sum.add(count);
    }
    sum.add(rows.blocks.size());
    for (const MeshBlockRow& row : rows.blocks) {
        sum.add(row.column);
        sum.add(static_cast<std::uint64_t>(row.block));
        sum.add(static_cast<std::uint64_t>(row.items));
        sum.add(row.checksum);
    }
    return sum.text();
}

DocumentRows rowsOf(ModelDatabase::State& state) {
    DocumentRows rows;
    rows.meta["schema_version"] = std::to_string(kSchemaVersion);
    rows.meta["next_key"] = std::to_string(state.keys.next());
    rows.meta["force_unit"] = state.units.force;
    rows.meta["length_unit"] = state.units.length;
    const auto addPool = [&rows](const auto& pool) {
        for (const auto& [key, record] : pool.records())
            rows.records.push_back(
                {key, pool.name(), framework::toUtf8(record.name), RecordWriter::json(record).dump()});
    };
    std::apply([&](const auto&... pool) { (addPool(pool), ...); }, state.pools);
    std::sort(rows.records.begin(), rows.records.end(),
              [](const RecordRow& a, const RecordRow& b) { return a.key < b.key; });
    rows.resultFiles = state.resultFiles;
    return rows;
}

Result<void> takeRows(const DocumentRows& rows, ModelDatabase::State& state) {
    const auto next = countOf(rows, "next_key");
    if (!next) return next.error();
    if (*next == 0 || *next > KeySequence::kEnd)
        return Error{"it is damaged: its key sequence is out of range"};
    state.keys.resume(*next);
    const auto force = metaText(rows, "force_unit");
    const auto length = metaText(rows, "length_unit");
    if (!force) return force.error();
    if (!length) return length.error();
    state.units = {*force, *length};
    if (auto taken = takeRecords(rows, state); !taken) return taken;
    return takeResultFiles(rows, state);
}

void addMeshSummary(const MeshData& mesh, DocumentRows& rows) {
    rows.meta["node_count"] = std::to_string(mesh.nodeNumbers.size());
    rows.meta["element_count"] = std::to_string(mesh.elementNumbers.size());
    rows.meta["element_node_count"] = std::to_string(mesh.elementNodes.size());
    std::array<double, 6> bounds{};
    if (!mesh.nodePositions.empty()) {
        const auto& p = mesh.nodePositions.front();
        bounds = {p[0], p[1], p[2], p[0], p[1], p[2]};
    }
    for (const auto& p : mesh.nodePositions) {
        for (std::size_t i = 0; i < 3; ++i) {
            bounds[i] = std::min(bounds[i], p[i]);
            bounds[i + 3] = std::max(bounds[i + 3], p[i]);
        }
    }
    rows.meta["bounds"] = Json(bounds).dump();
    std::array<std::uint64_t, 256> counts{};
    for (const std::uint8_t type : mesh.elementTypes)
        ++counts[type];
    for (int type = 0; type < 256; ++type)
        if (const auto count = counts[static_cast<std::size_t>(type)])
            rows.elementTypeCounts.push_back({type, count});
}

Result<std::uint64_t> countOf(const DocumentRows& rows, const std::string& name) {
    const auto text = metaText(rows, name);
    if (!text) return text.error();
    std::uint64_t value = 0;
    if (!parseWhole(*text, value) || value > (std::uint64_t{1} << 53))
        return Error{"it is damaged: \"" + name + "\" in its table meta is not a count"};
    return value;
}

Result<DocumentSummary> summaryOf(const DocumentRows& rows) {
    DocumentSummary summary;
    const auto version = countOf(rows, "schema_version");
    if (!version) return version.error();
    summary.schemaVersion = static_cast<int>(*version);
    const auto nodes = countOf(rows, "node_count");
    const auto elements = countOf(rows, "element_count");
    const auto bounds = metaText(rows, "bounds");
    if (!nodes) return nodes.error();
    if (!elements) return elements.error();
    if (!bounds) return bounds.error();
    summary.nodeCount = *nodes;
    summary.elementCount = *elements;
    const Json corners = Json::parse(*bounds, nullptr, false);
    const auto isNumber = [](const Json& item) { return item.is_number(); };
    if (!corners.is_array() || corners.size() != 6 || !std::all_of(corners.begin(), corners.end(), isNumber))
        return Error{"it is damaged: \"bounds\" in its table meta are not six numbers"};
    for (std::size_t i = 0; i < 6; ++i)
        summary.bounds[i] = corners[i].get<double>();
    summary.elementTypeCounts = rows.elementTypeCounts;
    return summary;
}

} // namespace workbench
