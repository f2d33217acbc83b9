#pragma once

#include "framework/containers/Array.h"
#include "framework/files/Archive.h"
#include "host/QMDocBase.h"
#include "module/Export.h"
#include "module/fatigue/ElementLists.h"
#include "module/fatigue/NodeMaterials.h"
#include "module/fatigue/NodeTables.h"
#include "module/fatigue/TextMirror.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace fatigue {
class RecordWriter;
}

/// Runs fatigue analyses on the results of solved analyses: checks a definition, gathers node values, writes
/// the solver's interface file, runs the solver and registers its result with the host.
///
/// One object for the process, used on the host's thread. Status integers: nonzero is success. Failures are
/// reported through the host's error output or message boxes where a member says so.
class VEXA_GPS_API CGpsFatigueSolver {
  public:
    /// The one object, made on first use.
    static CGpsFatigueSolver& Instance();
    virtual ~CGpsFatigueSolver();
    CGpsFatigueSolver(const CGpsFatigueSolver&) = delete;
    CGpsFatigueSolver& operator=(const CGpsFatigueSolver&) = delete;

    /// Runs the definitions with the given keys in order; keys that are 0 or unknown are skipped. Answers the
    /// result of the last one that ran, 0 when none did. A definition whose analysis has no results ends the
    /// list.
    int RunSolver(CQMDocBase* doc, std::vector<std::uint64_t>& definitions);
    /// Runs the current definition.
    int Run();

  protected:
    CGpsFatigueSolver();

    // The run
    int Init();
    void Clear();
    int SetDpoolPtr();
    int SetMapBuf();
    void ResetRun();
    int ProgressCount() const;

    // Checks
    int CheckData();
    int CheckExistResult();
    /// What a load case lacks.
    struct MissingResult {
        std::wstring caseName;
        unsigned id;
    };
    void ErrorNotExistResult(const std::vector<MissingResult>& missing);
    /// Whether the type of the analysis suits the definition; a query that the run itself does not make.
    int IsValidCase();
    /// The steps of the cases that the load entries name, in the order of the analysis, each once; an entry
    /// that names a step brings that step only. Answers their number.
    int GetStepList(std::vector<CPOHVCase*>& stepList);
    CPOHCase* GetSCasRst(const std::wstring& name);
    CPOHVCase* GetVCasRst(const std::wstring& caseName, const std::wstring& stepName);
    /// The table of a component at a step; without a step at the last step of the case. Null when there is
    /// none.
    CVResult* GetVRst(CPOHCase* resultCase, CPOHVCase* step, unsigned id);
    /// Identifiers that the definition needs of elements of a group.
    std::vector<unsigned> GetQuery(fatigue::ElementGroup group) const;
    /// Key of a result case, or of the named step of it; 0 when there is none.
    std::uint64_t GetCasKey(const std::wstring& caseName, const std::wstring& stepName);

    // Nodes, elements and values
    /// Lists the elements whose property has a material of the definition, and their nodes. Zero when there
    /// is none.
    int MakeWriteNodeElem();
    /// Fill the six arrays of one load (see LoadAverage) in database units. Without a step the case's last
    /// step is read. Zero when a component is missing or cannot be read.
    int GetStressValue(CPOHCase* resultCase, CPOHVCase* step, float** table);
    int GetStrainValue(CPOHCase* resultCase, CPOHVCase* step, float** table);
    /// Turns the components of a planar element into global axes; zero, and `out` equal to `in`, when the
    /// host has no local axes for it.
    int CalcTransformDataElem(tagTElem& elem, double* in, double* out);
    /// Turns six components in place, see turnToGlobal. Answers 1.
    int Ucs2GlobalComp6(double* comp, const double axes[3][3]);
    /// Brings values[load][array][node] into the current unit system; `dims` are those three sizes.
    void ConvertNodeValUnitIn(float*** values, const int dims[3]);
    /// Notes that a material meets a node; one outside of the definition leaves no trace.
    void AddNodeMatl(std::uint64_t nodeKey, std::uint64_t materialKey);
    /// The running indices of the materials at a node, ascending, each once. Answers their number.
    long GetNodeMatl(std::uint64_t nodeKey, TArray<long>& indices);

    // Interface file
    /// Writes the interface file and its mirror. Zero at an option or key that is not valid, at a missing
    /// component, and (reported) when the file cannot be opened; raises CFileException when a write fails.
    int WriteSolverInterface();
    int WriteData(CFile& file, CArchive& ar);
    /// Fills a text field, see fillTextField: `buffer` holds size + 1 bytes. Warns of characters that the
    /// code page lacks.
    void FatigueConvertStrChar(const std::wstring& text, char* buffer, int size);

    // Solver
    /// 1 when the solver was started and has ended.
    int RunFatigueExe();
    /// 1 when the solver left a result that the host accepted.
    int ImportFatigueResult();

    CQMDocBase* m_doc = nullptr;
    CQMViewBase* m_view = nullptr;
    DPoolFatg* m_fatiguePool = nullptr;
    DPoolVXMcas* m_analysisPool = nullptr;
    DPoolMatl* m_materialPool = nullptr;
    DPoolSNFun* m_curvePool = nullptr;
    DPoolFLFun* m_functionPool = nullptr;
    DPoolElem* m_elementPool = nullptr;
    DPoolProp* m_propertyPool = nullptr;

    tagTFatg m_fatigue;
    ItrKey m_analysisKey = 0;
    std::wstring m_docPathStem;
    std::wstring m_programPath;
    std::wstring m_solverExePath;
    std::wstring m_resultFileStem;
    std::wstring m_solverBasePath;
    std::wstring m_interfaceFilePath;
    std::wstring m_resultFilePath;
    std::wstring m_textMirrorPath;
    fatigue::ResultIds m_resultIdTable{};

    CPOHAnalysis* m_analysis = nullptr;
    std::vector<CPOHVCase*> m_steps;
    std::map<std::wstring, CPOHCase*> m_caseByName;
    /// Steps by the name of their case and their own: two cases may have steps of one name.
    std::map<std::pair<std::wstring, std::wstring>, CPOHVCase*> m_vcaseByName;
    std::unordered_map<std::size_t, ItrKey> m_loadCaseKey; ///< position of the load entry -> case key
    std::unordered_map<ItrKey, std::int32_t> m_materialNumber;
    std::unordered_map<ItrKey, std::int32_t> m_materialIndex;

    T_QM_MESH_D m_mesh;
    fatigue::ElementLists m_lists;
    std::vector<ItrKey> m_propertiesInUse; ///< of the listed elements, ascending
    fatigue::NodeMaterials m_nodeMaterial;
    std::unique_ptr<fatigue::NodeTables> m_nodeValues;

    bool m_writeTextMirror = false;
    fatigue::TextMirror m_textMirror;

  private:
    std::vector<ItrKey> DefinitionMaterials() const;
    int CheckProperties();
    int CheckSteps();
    int CheckCases();
    fatigue::LocalAxes AxesOf(std::uint32_t element) const;
    tagTElem ElementRecord(std::uint32_t element) const;
    int GetNodeValue(CPOHCase* resultCase, CPOHVCase* step, fatigue::ResultForm form, float** table);
    int WriteInterfaceReported();
    int MakeFileNames();
    int WriteMaterials(fatigue::RecordWriter& records);
    int WriteStressLifeMaterials(fatigue::RecordWriter& records);
    int WriteStrainLifeMaterials(fatigue::RecordWriter& records);
    int WriteLoads(fatigue::RecordWriter& records);
    int WriteCaseLoads(fatigue::RecordWriter& records);
    void GatherNodeMaterials();
    int GatherNodeValues();
    int GatherLoad(CPOHCase* resultCase, CPOHVCase* step, float** arrays);
    int WriteNodes(fatigue::RecordWriter& records);
};
