#include "tests/workbench/document/DocumentTesting.h"

#include "workbench/document/ModelState.h"

#include <unistd.h>

#include <limits>

namespace workbench {

namespace {

template <class P>
std::string poolDifference(ModelDatabase& a, ModelDatabase& b) {
    const auto* left = a.Pool<P>();
    const auto* right = b.Pool<P>();
    const std::string name = "pool " + std::to_string(static_cast<int>(P::kId));
    if (left->GetKeyList() != right->GetKeyList()) return name + ": keys";
    for (const ItrKey key : left->GetKeyList())
        if (!same(left->GetAtNU(key), right->GetAtNU(key))) return name + ": record " + std::to_string(key);
    return {};
}

template <class... P>
std::string poolDifferences(ModelDatabase& a, ModelDatabase& b) {
    std::string found;
    ((found.empty() ? void(found = poolDifference<P>(a, b)) : void()), ...);
    return found;
}

template <class T>
bool sameSpan(std::span<const T> a, std::span<const T> b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const T& x, const T& y) { return same(x, y); });
}

template <PoolId... Id>
void addNamed(ModelDatabase& database) {
    (database.Pool<DPoolNamed<Id>>()->TR_Add({0, L"named " + std::to_wstring(static_cast<int>(Id))}), ...);
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "vexa-document-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::uint64_t Generator::next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
}

std::string difference(ModelDatabase& a, ModelDatabase& b) {
    std::string found =
        poolDifferences<DPoolMatl, DPoolProp, DPoolMset, DPoolVXMcas, DPoolVXOctr, DPoolFatg, DPoolSNFun,
                        DPoolFLFun, DPoolBset, DPoolVXHprb, DPoolSset, DPoolStag, DPoolTime, DPoolSCirc,
                        DPoolSPoly, DPoolSTRModel, DPoolGPSARes, DPoolDgna, DPoolDgns, DPoolGSens, DPoolOpti>(
            a, b);
    if (!found.empty()) return found;
    if (!same(a.units(), b.units())) return "units";
    if (!same(a.resultFiles(), b.resultFiles())) return "result files";
    const T_QM_MESH_D& x = a.mesh();
    const T_QM_MESH_D& y = b.mesh();
    if (!sameSpan(x.nodeKeys, y.nodeKeys) || !sameSpan(x.nodeNumbers, y.nodeNumbers) ||
        !sameSpan(x.nodePositions, y.nodePositions))
        return "nodes";
    if (!sameSpan(x.elementKeys, y.elementKeys) || !sameSpan(x.elementNumbers, y.elementNumbers) ||
        !sameSpan(x.elementTypes, y.elementTypes) ||
        !sameSpan(x.elementPropertyKeys, y.elementPropertyKeys) ||
        !sameSpan(x.elementNodeOffsets, y.elementNodeOffsets) || !sameSpan(x.elementNodes, y.elementNodes))
        return "elements";
    return a.state().keys.next() == b.state().keys.next() ? "" : "key sequence";
}

MeshData hexRow(std::uint32_t cells, std::uint32_t propertyKey, std::int32_t firstNumber) {
    MeshData mesh;
    for (std::uint32_t i = 0; i < 4 * cells + 4; ++i) {
        mesh.nodeNumbers.push_back(firstNumber + static_cast<std::int32_t>(i));
        mesh.nodePositions.push_back({0.1 * (i / 4), i % 4 > 1 ? 1.0 : 0.0, i % 4 % 3 > 0 ? 1.0 : 0.0});
    }
    for (std::uint32_t e = 0; e < cells; ++e) {
        mesh.elementNumbers.push_back(firstNumber + static_cast<std::int32_t>(e));
        mesh.elementTypes.push_back(static_cast<std::uint8_t>(ElementType::Hex8));
        mesh.elementPropertyKeys.push_back(propertyKey);
        for (std::uint32_t n = 0; n < 8; ++n)
            mesh.elementNodes.push_back(4 * e + n);
        mesh.elementNodeOffsets.push_back(static_cast<std::uint32_t>(mesh.elementNodes.size()));
    }
    return mesh;
}

std::unique_ptr<ModelDatabase> oddDocument() {
    using Limits = std::numeric_limits<double>;
    constexpr auto kSmallest = std::numeric_limits<std::int32_t>::min();
    constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();
    auto database = std::make_unique<ModelDatabase>();
    ModelDatabase& d = *database;
    d.beginTransaction(L"odd");
    d.setUnits({"kN", "\xC2\xB5m \"quoted\" '"});
    const ItrKey steel = d.Pool<DPoolMatl>()->TR_Add({0, 1, L"강철 \x1F600 'a' \"b\" \\ \n", Limits::max(),
                                                      0.3, 7.85e-9, 1, 2, 3, 12.5, 27.25, 4, Limits::min()});
    d.Pool<DPoolMatl>()->TR_Add({0, kSmallest, L"", Limits::denorm_min(), -0.0, Limits::infinity()});
    d.Pool<DPoolMatl>()->TR_Add({0, kLargest, std::wstring(L"zero\0inside", 11), -Limits::infinity(),
                                 Limits::quiet_NaN(), 0.1 + 0.2});
    d.Pool<DPoolMatl>()->TR_Add(
        {0, 4, std::wstring(5000, L'\uD55C'), -Limits::max(), 1e-300, 123456789012345680.0});
    const ItrKey part =
        d.Pool<DPoolProp>()->TR_Add({0, 7, L"part", PropertyType::Shell, 1, 2.5, {steel, 99, steel}});
    d.Pool<DPoolProp>()->TR_Add({0, 8, L"bare", PropertyType::Solid, 0, 0, {}});
    d.Pool<DPoolMset>()->TR_Add({0, L"empty", {}, {}});
    d.Pool<DPoolMset>()->TR_Add({0, L"runs", {1, 2, 3, 4, 7, 9, 10, 20, 21, 22}, {5}});
    d.Pool<DPoolMset>()->TR_Add(
        {0, L"not in order", {3, 2, 1, 1, 2, 3, 3}, {kLargest - 2, kLargest - 1, kLargest, kSmallest}});
    const ItrKey control = d.Pool<DPoolVXOctr>()->TR_Add({0, L"control", -1, 1});
    const ItrKey analysis = d.Pool<DPoolVXMcas>()->TR_Add({0, L"analysis", 101, control});
    const ItrKey curve = d.Pool<DPoolSNFun>()->TR_Add({0, L"curve", {{1e3, 500}, {1e12, Limits::min()}}});
    d.Pool<DPoolSNFun>()->TR_Add({0, L"no points", {}});
    const ItrKey load = d.Pool<DPoolFLFun>()->TR_Add({0, 3, L"load", {{0, 0}, {1. / 3, -1}}});
    tagTFatg fatigue;
    fatigue.name = L"definition";
    fatigue.analysisKey = analysis;
    fatigue.resultAnalysisKey = std::numeric_limits<ItrKey>::max();
    fatigue.fatigueType = FatigueType::StressAndStrainSteps;
    fatigue.stressOption = 1;
    fatigue.strainOption = 2;
    fatigue.quickRainflow = 1;
    fatigue.rainflowValue = 5;
    fatigue.meanStress = {1, 2, 3, 4, 5, 6};
    fatigue.strainCorrections = {4, 3, 2, 1};
    fatigue.outputs = {1, 0, 1};
    fatigue.loadCycleCount = kLargest;
    fatigue.infiniteLife = 1e13;
    fatigue.stressLifeMaterials = {{steel, 1, 250, 400, {900, -0.1}, curve}, {}};
    fatigue.strainLifeMaterials = {{steel, 1, 0.2, 1, 1000, 900, -0.09, 0.5, -0.6}};
    fatigue.loads = {{L"case 1", L"", 1.5, load}, {L"케이스", L"step", -2, 0}};
    d.Pool<DPoolFatg>()->TR_Add(fatigue);
    d.Pool<DPoolFatg>()->TR_Add({});
    addNamed<PoolId::Bset, PoolId::VXHprb, PoolId::Sset, PoolId::Stag, PoolId::Time, PoolId::SCirc,
             PoolId::SPoly, PoolId::STRModel, PoolId::GPSARes, PoolId::Dgna, PoolId::Dgns, PoolId::GSens,
             PoolId::Opti>(d);
    MeshData mesh = hexRow(3, static_cast<std::uint32_t>(part), 10);
    mesh.nodePositions[0] = {Limits::max(), -Limits::max(), Limits::denorm_min()};
    mesh.nodePositions[1] = {-0.0, 1. / 3, 1e-300};
    EXPECT_TRUE(bool(d.setMesh(std::move(mesh))));
    EXPECT_NE(d.addResultFile(analysis, "results/\xED\x95\x9C.lmop", 12, false), 0u);
    EXPECT_NE(d.addResultFile(analysis, "not utf-8 \xFF\xFE", 0, false), 0u);
    d.commitTransaction();
    return database;
}

} // namespace workbench
