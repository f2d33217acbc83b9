#pragma once

#include "host/QMDocBase.h"
#include "tests/support/MemoryMesh.h"
#include "tests/support/MemoryResults.h"

#include <set>

namespace support {

/// Notes what is registered and accepts it or not.
class MemoryFileManager : public CPostFileManager {
  public:
    struct Added {
        std::wstring path;
        ItrKey analysisKey;
        int flag;
    };
    int AddFile(const std::wstring& path, ItrKey analysisKey, int flag) override {
        added.push_back({path, analysisKey, flag});
        return accepts;
    }
    std::vector<Added> added;
    int accepts = 1;
};

/// A view that shows nothing.
class MemoryView : public CQMViewBase {
  public:
    explicit MemoryView(CQMDocBase& document)
        : document_(document) {}
    CQMDocBase* GetDocument() const override { return &document_; }

  private:
    CQMDocBase& document_;
};

/// A document whose pools, mesh and results a test fills as it likes.
class MemoryDocument : public CQMDocBase, private CQMDBSession {
  public:
    std::wstring path;
    MemoryMesh mesh;
    MemoryPool<DPoolFatg> fatigues;
    MemoryPool<DPoolVXMcas> analyses;
    MemoryPool<DPoolVXOctr> outputControls;
    MemoryPool<DPoolMatl> materials;
    MemoryPropPool properties;
    MemoryPool<DPoolSNFun> curves;
    MemoryPool<DPoolFLFun> functions;
    MemoryPool<DPoolMset> meshSets;
    MemoryPool<DPoolNode> nodes;
    MemoryElemPool elements{mesh};
    MemoryResultTree results;
    MemoryFileManager files;
    std::set<ItrKey> hiddenMeshSets;
    std::vector<int> postModes; ///< arguments of SetPostMode
    CQMViewBase* activeView = nullptr;

    CQMViewBase* GetActiveView() const override { return activeView; }
    std::wstring GetFullPathNameW() const override { return path; }
    CQMDBSession& GetDBSession() override { return *this; }
    CPOHManager* GetPOHManager() override { return &results; }
    CPostFileManager* GetPostFileManager() override { return &files; }
    void SetPostMode(int redraw) override { postModes.push_back(redraw); }
    void SetPreMode(int) override {}
    const std::vector<ItrKey>& GetCurSelectBufferAsNode() const override { return pickedNodes_; }
    const std::vector<ItrKey>& GetCurSelectBufferAsElem() const override { return pickedElements_; }
    void AddToSelBuffer(const std::vector<ItrKey>& nodeKeys,
                        const std::vector<ItrKey>& elementKeys) override {
        pickedNodes_.insert(pickedNodes_.end(), nodeKeys.begin(), nodeKeys.end());
        pickedElements_.insert(pickedElements_.end(), elementKeys.begin(), elementKeys.end());
    }
    void ClearSelectBuffer(int) override {
        pickedNodes_.clear();
        pickedElements_.clear();
    }

  private:
    IDPool* GetDataPool(PoolId id) override {
        IDPool* const pools[] = {&fatigues,  &analyses, &outputControls, &materials, &properties, &curves,
                                 &functions, &nodes,    &elements,       &meshSets,  &project_};
        for (IDPool* pool : pools)
            if (pool->Id() == id) return pool;
        return nullptr;
    }
    const T_QM_MESH_D& GetMesh() const override {
        meshView_ = mesh.view();
        return meshView_;
    }
    void ClearUndo() override {}

    DPoolProj project_{*this};
    mutable T_QM_MESH_D meshView_;
    std::vector<ItrKey> pickedNodes_;
    std::vector<ItrKey> pickedElements_;
};

} // namespace support
