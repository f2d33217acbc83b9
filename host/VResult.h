#pragma once

#include <cstdint>
#include <span>

class CPOHAnalysis;
class CPOHCase;
class CPOHVCase;

/// Where the values of a result table stand.
enum class ResultLocation : int {
    Node = 1,          ///< one value a node
    ElementCorner = 2, ///< one value a node of each element, element by element in connectivity order
};

/// The values of one result table, in database units. Owned by the CVResult that answered it.
struct T_RESULT_TABLE_D {
    unsigned id = 0;
    ResultLocation location = ResultLocation::Node;
    std::span<const float> values;
    /// Mesh positions (node or element indices of T_QM_MESH_D, ascending) that the values belong to;
    /// empty: all nodes or all elements in mesh order.
    std::span<const std::uint32_t> items;
};

/// One result table: a component of a result type at one step.
class CVResult {
  public:
    virtual ~CVResult() = default;
    virtual CPOHAnalysis* GetAnalysis() const = 0;
    virtual CPOHCase* GetCase() const = 0;
    virtual CPOHVCase* GetVCase() const = 0;
    virtual unsigned GetId() const = 0;
    /// Reads the values into memory and counts one user. Zero when they cannot be read; the host's error
    /// output then holds the cause.
    virtual int Load() = 0;
    /// Gives up one use; without users the values leave memory.
    virtual void Release() = 0;
    /// Valid between Load and the matching Release.
    virtual const T_RESULT_TABLE_D& GetTable() const = 0;
};

/// Holds the values of a result table in memory for a scope.
class CVResultLease {
  public:
    explicit CVResultLease(CVResult* result)
        : m_pResult(result && result->Load() ? result : nullptr) {}
    ~CVResultLease() {
        if (m_pResult) m_pResult->Release();
    }
    CVResultLease(const CVResultLease&) = delete;
    CVResultLease& operator=(const CVResultLease&) = delete;
    explicit operator bool() const { return m_pResult != nullptr; }
    const T_RESULT_TABLE_D& operator*() const { return m_pResult->GetTable(); }
    const T_RESULT_TABLE_D* operator->() const { return &m_pResult->GetTable(); }

  private:
    CVResult* m_pResult;
};
