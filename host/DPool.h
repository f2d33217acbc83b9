#pragma once

#include "framework/Export.h"
#include "host/records/Analysis.h"
#include "host/records/Fatigue.h"
#include "host/records/ItrKey.h"
#include "host/records/Material.h"
#include "host/records/Mesh.h"
#include "host/records/NamedRecords.h"

#include <vector>

/// Numbers of the record pools, as CQMDBSession::GetDataPool takes them.
enum class PoolId : int {
    Node = 3,
    Elem = 4,
    Mset = 5,
    Bset = 6,
    Matl = 7,
    Prop = 8,
    Proj = 9,
    Opti = 44,
    VXMcas = 1010,
    VXOctr = 1013,
    VXHprb = 1014,
    Sset = 1020,
    Stag = 1021,
    Time = 1022,
    SCirc = 1030,
    SPoly = 1031,
    STRModel = 1032,
    GPSARes = 1033,
    Fatg = 1040,
    SNFun = 1041,
    FLFun = 1042,
    Dgna = 1050,
    Dgns = 1051,
    GSens = 1052,
};

class CQMDBSession;

/// What every pool has in common.
class IDPool {
  public:
    virtual ~IDPool() = default;
    virtual PoolId Id() const = 0;
    virtual std::size_t GetCount() const = 0;
    virtual bool Exist(ItrKey key) const = 0;
    virtual std::vector<ItrKey> GetKeyList() const = 0; ///< ascending
    /// Deletes a record inside the open transaction. Zero when there is no transaction or no such record.
    virtual int TR_Del(ItrKey key) = 0;
};

/// A pool of records of type T, addressed by key.
template <class T>
class DPool : public IDPool {
  public:
    using Record = T;
    /// The record of `key`. The reference lives until the pool changes. Throws CInvalidArgException
    /// (framework) when there is none: ask Exist or use Get where a key may be stale.
    virtual const T& GetAtNU(ItrKey key) const = 0;
    /// Copies the record of `key`; zero, and `record` untouched, when there is none.
    virtual int Get(ItrKey key, T& record) const = 0;
    /// Adds a record inside the open transaction and answers its new key, 0 on failure. record.key is
    /// ignored.
    virtual ItrKey TR_Add(const T& record) = 0;
    /// Replaces the record of record.key inside the open transaction; zero on failure.
    virtual int TR_Modify(const T& record) = 0;
};

/// A pool with a number of its own, so that CQMDBSession can answer it by type.
template <class T, PoolId Number>
class DPoolOf : public DPool<T> {
  public:
    static constexpr PoolId kId = Number;
    PoolId Id() const final { return Number; }
};

class DPoolNode : public DPoolOf<tagTNode, PoolId::Node> {};

class DPoolElem : public DPoolOf<tagTElem, PoolId::Elem> {
  public:
    /// Local axes of a 2-D element: rows are the local x, y, z unit vectors in global coordinates.
    /// Zero, and `axes` untouched, when the element is not planar or is degenerate.
    virtual int Calc2DElemLocalVector(const tagTElem& elem, double axes[3][3]) const = 0;
    /// Keys of the elements whose property is in `propertyKeys`, in ascending order of element number.
    virtual std::vector<ItrKey> GetItrSetByItrPropSet(const std::vector<ItrKey>& propertyKeys) const = 0;
};

class VEXA_API DPoolProp : public DPoolOf<tagTProp, PoolId::Prop> {
  public:
    /// The materials of a property; empty when the property is unknown.
    virtual std::vector<ItrKey> GetMatlItr(ItrKey propertyKey) const = 0;
    /// Zero, and `thickness` untouched, when the property is unknown or a solid's.
    int GetThickness(ItrKey propertyKey, double& thickness) const;
};

class VEXA_API DPoolVXMcas : public DPoolOf<tagTVXMcas, PoolId::VXMcas> {
  public:
    /// A free name for a copy: `name` + "_1", "_2", ..., shortened before the number where it would pass the
    /// 64 characters of an analysis name.
    std::wstring GetNewCopyName(const std::wstring& name) const;
};

/// The project as a whole. It has no records of its own; the session must outlive it.
class VEXA_API DPoolProj final : public IDPool {
  public:
    static constexpr PoolId kId = PoolId::Proj;
    explicit DPoolProj(const CQMDBSession& session)
        : m_session(session) {}
    PoolId Id() const override { return kId; }
    std::size_t GetCount() const override { return 0; }
    bool Exist(ItrKey) const override { return false; }
    std::vector<ItrKey> GetKeyList() const override { return {}; }
    int TR_Del(ItrKey) override { return 0; }
    /// Nonzero for a three-dimensional model: one with solid elements, or with nodes of different z.
    int Is3D() const;

  private:
    const CQMDBSession& m_session;
};

using DPoolMatl = DPoolOf<tagTMatl, PoolId::Matl>;
using DPoolMset = DPoolOf<tagTMset, PoolId::Mset>;
using DPoolVXOctr = DPoolOf<tagTVXOctr, PoolId::VXOctr>;
using DPoolFatg = DPoolOf<tagTFatg, PoolId::Fatg>;
using DPoolSNFun = DPoolOf<tagSNFun, PoolId::SNFun>;
using DPoolFLFun = DPoolOf<tagFLFun, PoolId::FLFun>;

/// Pools whose records the tools built so far only name.
template <PoolId Number>
using DPoolNamed = DPoolOf<T_NAMED_RECORD_D<static_cast<int>(Number)>, Number>;
using DPoolBset = DPoolNamed<PoolId::Bset>;
using DPoolVXHprb = DPoolNamed<PoolId::VXHprb>;
using DPoolSset = DPoolNamed<PoolId::Sset>;
using DPoolStag = DPoolNamed<PoolId::Stag>;
using DPoolTime = DPoolNamed<PoolId::Time>;
using DPoolSCirc = DPoolNamed<PoolId::SCirc>;
using DPoolSPoly = DPoolNamed<PoolId::SPoly>;
using DPoolSTRModel = DPoolNamed<PoolId::STRModel>;
using DPoolGPSARes = DPoolNamed<PoolId::GPSARes>;
using DPoolDgna = DPoolNamed<PoolId::Dgna>;
using DPoolDgns = DPoolNamed<PoolId::Dgns>;
using DPoolGSens = DPoolNamed<PoolId::GSens>;
using DPoolOpti = DPoolNamed<PoolId::Opti>;
