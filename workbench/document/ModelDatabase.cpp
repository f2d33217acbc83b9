#include "workbench/document/ModelDatabase.h"

#include "workbench/document/MeshCheck.h"
#include "workbench/document/ModelState.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace workbench {

namespace {

std::size_t bytesOf(const MeshData& mesh) {
    return mesh.nodeKeys.size() * 8 + mesh.nodePositions.size() * 24 + mesh.elementKeys.size() * 17 +
           mesh.elementNodes.size() * 4;
}

std::vector<std::uint32_t> keysInRow(ItrKey first, std::size_t count) {
    std::vector<std::uint32_t> keys(count);
    std::iota(keys.begin(), keys.end(), static_cast<std::uint32_t>(first));
    return keys;
}

} // namespace

ModelDatabase::State::State()
    : pools{{"material", keys, journal},        {"property", keys, journal},
            {"mesh_set", keys, journal},        {"analysis", keys, journal},
            {"output_control", keys, journal},  {"fatigue", keys, journal},
            {"sn_curve", keys, journal},        {"load_function", keys, journal},
            {"boundary_set", keys, journal},    {"history_probe", keys, journal},
            {"stage_set", keys, journal},       {"stage", keys, journal},
            {"time_step", keys, journal},       {"slip_circle", keys, journal},
            {"slip_polygon", keys, journal},    {"strength_model", keys, journal},
            {"analysis_result", keys, journal}, {"design_case", keys, journal},
            {"design_set", keys, journal},      {"sensor", keys, journal},
            {"optimization", keys, journal}} {
    properties().guardDeletion([this](ItrKey key) {
        return std::find(mesh.elementPropertyKeys.begin(), mesh.elementPropertyKeys.end(), key) !=
               mesh.elementPropertyKeys.end();
    });
    analyses().guardDeletion([this](ItrKey key) {
        return std::any_of(resultFiles.begin(), resultFiles.end(),
                           [key](const ResultFileRecord& file) { return file.analysisKey == key; });
    });
}

void ModelDatabase::State::placeMesh(MeshData&& newMesh, std::uint64_t version) {
    mesh = std::move(newMesh);
    meshVersion = version;
    meshView = mesh.view();
    nodes.meshChanged();
    elements.meshChanged();
}

ModelDatabase::ModelDatabase()
    : m_state(std::make_unique<State>()) {}
ModelDatabase::~ModelDatabase() = default;

IDPool* ModelDatabase::GetDataPool(PoolId id) {
    if (id == PoolId::Node) return &m_state->nodes;
    if (id == PoolId::Elem) return &m_state->elements;
    if (id == PoolId::Proj) return &m_project;
    IDPool* found = nullptr;
    std::apply([&](auto&... pool) { ((pool.kId == id ? static_cast<void>(found = &pool) : void()), ...); },
               m_state->pools);
    return found;
}

void ModelDatabase::ClearUndo() {
    m_state->journal.forget();
}

const T_QM_MESH_D& ModelDatabase::mesh() const {
    return m_state->meshView;
}

Result<void> ModelDatabase::setMesh(MeshData mesh) {
    State& s = *m_state;
    if (!s.journal.isOpen()) return Error{"the mesh is replaced inside a transaction only; begin one first"};
    if (!s.meshIsLoaded)
        return Error{"the document was opened without its mesh; open it whole to replace the mesh"};
    if (auto checked = checkMesh(mesh, [&s](ItrKey key) { return s.properties().Exist(key); }); !checked)
        return checked;
    const std::size_t nodeCount = mesh.nodeNumbers.size();
    const ItrKey first = s.keys.take(nodeCount + mesh.elementNumbers.size());
    if (first == 0) return Error{"the document has no keys left for the mesh; import it into a new document"};
    mesh.nodeKeys = keysInRow(first, nodeCount);
    mesh.elementKeys = keysInRow(first + nodeCount, mesh.elementNumbers.size());

    const std::size_t bytes = bytesOf(s.mesh);
    const std::uint64_t version = s.meshVersion;
    s.journal.note(
        [&s, version, before = std::move(s.mesh)]() mutable { s.placeMesh(std::move(before), version); },
        bytes);
    s.placeMesh(std::move(mesh), ++s.lastMeshVersion);
    return {};
}

const DocumentUnits& ModelDatabase::units() const {
    return m_state->units;
}

int ModelDatabase::setUnits(const DocumentUnits& units) {
    State& s = *m_state;
    if (!s.journal.isOpen()) return 0;
    s.journal.note([&s, before = s.units] { s.units = before; });
    s.units = units;
    return 1;
}

const std::vector<ResultFileRecord>& ModelDatabase::resultFiles() const {
    return m_state->resultFiles;
}

ItrKey ModelDatabase::addResultFile(ItrKey analysisKey, const std::string& path, std::uint32_t keyCount,
                                    bool replace) {
    State& s = *m_state;
    if (!s.journal.isOpen() || path.empty() || !s.analyses().Exist(analysisKey)) return 0;
    const ItrKey key = s.keys.take(ItrKey{1} + keyCount);
    if (key == 0) return 0;
    s.journal.note([&s, before = s.resultFiles] { s.resultFiles = before; });
    if (replace)
        std::erase_if(s.resultFiles, [&](const auto& file) { return file.analysisKey == analysisKey; });
    s.resultFiles.push_back({key, analysisKey, path, key + 1, keyCount});
    return key;
}

int ModelDatabase::removeResultFile(ItrKey key) {
    State& s = *m_state;
    const auto found = std::find_if(s.resultFiles.begin(), s.resultFiles.end(),
                                    [key](const ResultFileRecord& file) { return file.key == key; });
    if (!s.journal.isOpen() || found == s.resultFiles.end()) return 0;
    s.journal.note([&s, before = s.resultFiles] { s.resultFiles = before; });
    s.resultFiles.erase(found);
    return 1;
}

int ModelDatabase::renameResultFile(ItrKey key, const std::string& path) {
    State& s = *m_state;
    const auto found = std::find_if(s.resultFiles.begin(), s.resultFiles.end(),
                                    [key](const ResultFileRecord& file) { return file.key == key; });
    if (!s.journal.isOpen() || path.empty() || found == s.resultFiles.end()) return 0;
    s.journal.note([&s, before = s.resultFiles] { s.resultFiles = before; });
    found->path = path;
    return 1;
}

int ModelDatabase::beginTransaction(const std::wstring& title) {
    return m_state->journal.begin(title);
}
int ModelDatabase::commitTransaction() {
    return m_state->journal.commit();
}
void ModelDatabase::rollbackTransaction() {
    m_state->journal.rollback();
}
bool ModelDatabase::inTransaction() const {
    return m_state->journal.isOpen();
}
int ModelDatabase::undo(std::wstring* title) {
    return m_state->journal.undo(title);
}
bool ModelDatabase::isModified() const {
    return m_state->journal.isModified();
}

} // namespace workbench
