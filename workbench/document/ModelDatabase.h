#pragma once

#include "base/Result.h"
#include "host/QMDBSession.h"
#include "workbench/document/MeshData.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace workbench {

/// A result file that is registered with a document.
struct ResultFileRecord {
    ItrKey key = 0;
    ItrKey analysisKey = 0;
    std::string path; ///< UTF-8; relative to the document's folder when it lies there, with "/"
    /// Case and step keys of the file's result tree: firstKey + ordinal, cases and steps counted together in
    /// file order (case, its steps, next case, ...).
    ItrKey firstKey = 0;
    std::uint32_t keyCount = 0;
};

/// The units that the numbers of a document are in: names of the unit table.
struct DocumentUnits {
    std::string force = "N";
    std::string length = "mm";
};

/// The model database of one document: record pools, the mesh, and the registered result files, in memory.
/// All changes are made inside a transaction, which is undone as one step; the last 100 can be undone. A
/// property that elements have, and an analysis that result files belong to, cannot be deleted. For one
/// thread.
class ModelDatabase final : public CQMDBSession {
  public:
    ModelDatabase();
    ~ModelDatabase() override;

    IDPool* GetDataPool(PoolId id) override;
    const T_QM_MESH_D& GetMesh() const override { return mesh(); }
    void ClearUndo() override;

    const T_QM_MESH_D& mesh() const;
    /// Replaces the mesh; needs an open transaction. Gives out the keys (the key vectors of `mesh` are
    /// ignored). Refuses numbers that do not ascend, node indices out of range, unknown element types and
    /// properties.
    Result<void> setMesh(MeshData mesh);

    const DocumentUnits& units() const;
    int setUnits(const DocumentUnits& units); ///< needs an open transaction

    const std::vector<ResultFileRecord>& resultFiles() const;
    /// Registers a result file and gives out its keys; needs an open transaction. With `replace` what was
    /// registered under the analysis before goes first. 0 on failure.
    ItrKey addResultFile(ItrKey analysisKey, const std::string& path, std::uint32_t keyCount, bool replace);
    int removeResultFile(ItrKey key); ///< needs an open transaction
    /// The registered file stands under another name now; needs an open transaction.
    int renameResultFile(ItrKey key, const std::string& path);

    int beginTransaction(const std::wstring& title);
    int commitTransaction();
    void rollbackTransaction();
    bool inTransaction() const;
    /// Undoes the last committed transaction; zero when there is none. Answers with its title through
    /// `title`.
    int undo(std::wstring* title = nullptr);

    /// True when something changed since the last save or load.
    bool isModified() const;

    struct State;
    State& state() { return *m_state; }
    const State& state() const { return *m_state; }

  private:
    std::unique_ptr<State> m_state;
    DPoolProj m_project{*this};
};

} // namespace workbench
