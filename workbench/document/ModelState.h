#pragma once

#include "workbench/document/MeshPools.h"
#include "workbench/document/ModelDatabase.h"
#include "workbench/document/RecordPool.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <tuple>

namespace workbench {

/// The file that a database was read from or last written to, as it was then.
struct DocumentOrigin {
    std::filesystem::path path; ///< resolved; empty: none yet
    std::string checksum;       ///< over its whole content
    std::uint64_t meshVersion = 0;
};

/// What a model database is made of; for this folder alone.
struct ModelDatabase::State {
    KeySequence keys;
    Journal journal;

    MeshData mesh;
    T_QM_MESH_D meshView = mesh.view();
    std::uint64_t meshVersion = 1; ///< another one for every mesh
    std::uint64_t lastMeshVersion = 1;
    bool meshIsLoaded = true;

    DocumentUnits units;
    std::vector<ResultFileRecord> resultFiles; ///< ascending keys
    DocumentOrigin origin;

    NodePool nodes{mesh};
    ElementPool elements{mesh};
    std::tuple<RecordPool<DPoolMatl>, PropertyPool, RecordPool<DPoolMset>, RecordPool<DPoolVXMcas>,
               RecordPool<DPoolVXOctr>, RecordPool<DPoolFatg>, RecordPool<DPoolSNFun>, RecordPool<DPoolFLFun>,
               RecordPool<DPoolBset>, RecordPool<DPoolVXHprb>, RecordPool<DPoolSset>, RecordPool<DPoolStag>,
               RecordPool<DPoolTime>, RecordPool<DPoolSCirc>, RecordPool<DPoolSPoly>,
               RecordPool<DPoolSTRModel>, RecordPool<DPoolGPSARes>, RecordPool<DPoolDgna>,
               RecordPool<DPoolDgns>, RecordPool<DPoolGSens>, RecordPool<DPoolOpti>>
        pools;

    State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    RecordPool<DPoolVXMcas>& analyses() { return std::get<RecordPool<DPoolVXMcas>>(pools); }
    PropertyPool& properties() { return std::get<PropertyPool>(pools); }

    /// Puts a mesh in place and tells the views of it.
    void placeMesh(MeshData&& newMesh, std::uint64_t version);
};

} // namespace workbench
