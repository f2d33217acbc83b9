#include "workbench/meshfile/VtkMesh.h"

#include "workbench/meshfile/CellKinds.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkFieldData.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkOutputWindow.h>
#include <vtkPointData.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridReader.h>
#include <vtkXMLUnstructuredGridReader.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_set>

namespace workbench {
namespace {

/// Keeps the first error that VTK reports.
class ErrorWindow final : public vtkOutputWindow {
  public:
    static ErrorWindow* New() {
        auto* window = new ErrorWindow;
        window->InitializeObjectBase();
        return window;
    }
    void DisplayText(const char*) override {}
    void DisplayWarningText(const char*) override {}
    void DisplayGenericWarningText(const char*) override {}
    void DisplayDebugText(const char*) override {}
    void DisplayErrorText(const char* text) override {
        if (error.empty() && text) error = text;
    }
    std::string error;
};

/// The message without the place in VTK's sources and the address: "ERROR: In f.cxx, line 1\nvtkA (0x1):
/// text".
std::string shortened(const std::string& error) {
    const std::size_t start = error.find("): ");
    std::string text = start == std::string::npos ? error : error.substr(start + 3);
    std::replace(text.begin(), text.end(), '\n', ' ');
    while (!text.empty() && (text.back() == ' ' || text.back() == '.'))
        text.pop_back();
    return text;
}

/// Letters and digits, in lower case.
std::string plainName(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z') plain += static_cast<char>(c - 'A' + 'a');
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) plain += c;
    }
    return plain;
}

std::string nameOf(vtkAbstractArray* array) {
    return array->GetName() ? array->GetName() : "";
}

/// Numbers from an array of integers where they can be such of nodes or elements.
std::optional<std::vector<std::int64_t>> numbersOf(vtkDataSetAttributes* data, std::string_view wanted) {
    for (int i = 0; i < data->GetNumberOfArrays(); ++i) {
        vtkDataArray* array = data->GetArray(i);
        if (!array || array->GetNumberOfComponents() != 1) continue;
        const std::string name = plainName(nameOf(array));
        if (name != wanted && name != std::string(wanted) + "s") continue;
        std::vector<std::int64_t> numbers;
        std::unordered_set<std::int64_t> seen;
        for (vtkIdType k = 0; k < array->GetNumberOfTuples(); ++k) {
            const double number = array->GetComponent(k, 0);
            if (!(number >= 1 && number <= std::numeric_limits<std::int32_t>::max())) return std::nullopt;
            numbers.push_back(static_cast<std::int64_t>(number));
            if (!seen.insert(numbers.back()).second) return std::nullopt;
        }
        return numbers;
    }
    return std::nullopt;
}

/// Which of six components of a tensor stands where, by the names of the components: a file may have them
/// in another order than xx, yy, zz, xy, yz, zx.
std::array<int, 6> tensorOrder(vtkDataArray* array) {
    constexpr std::string_view kEndings[6][4] = {{"xx", "11"},
                                                 {"yy", "22"},
                                                 {"zz", "33"},
                                                 {"xy", "yx", "12", "21"},
                                                 {"yz", "zy", "23", "32"},
                                                 {"zx", "xz", "31", "13"}};
    std::array<int, 6> order{-1, -1, -1, -1, -1, -1};
    for (int c = 0; c < 6; ++c) {
        const char* name = array->GetComponentName(c);
        const std::string plain = plainName(name ? name : "");
        for (std::size_t part = 0; part < 6; ++part)
            for (const std::string_view ending : kEndings[part])
                if (!ending.empty() && plain.ends_with(ending)) order[part] = c;
    }
    if (std::ranges::find(order, -1) != order.end()) return {0, 1, 2, 3, 4, 5};
    return order;
}

class Extraction {
  public:
    Extraction(vtkUnstructuredGrid& grid, MeshStreamWriter& out)
        : grid_(grid)
        , out_(out) {}

    Result<void> run() {
        if (auto nodes = addNodes(); !nodes) return nodes;
        if (auto cells = addCells(); !cells) return cells;
        addGroups();
        noteLeftOut();
        out_.mesh(mesh_);
        writeFields(*grid_.GetPointData(), FieldPlace::Node);
        writeFields(*grid_.GetCellData(), FieldPlace::Element);
        return {};
    }

  private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    Result<void> addNodes() {
        const vtkIdType count = grid_.GetNumberOfPoints();
        const vtkIdType most = std::numeric_limits<std::int32_t>::max();
        if (count > most || grid_.GetNumberOfCells() > most)
            return Error{"it has more points or cells than a document can hold"};
        mesh_.nodePositions.resize(static_cast<std::size_t>(count));
        for (vtkIdType i = 0; i < count; ++i)
            grid_.GetPoint(i, mesh_.nodePositions[static_cast<std::size_t>(i)].data());
        if (auto numbers = numbersOf(grid_.GetPointData(), "globalnodeid");
            numbers && numbers->size() == mesh_.nodePositions.size()) {
            mesh_.nodeNumbers = std::move(*numbers);
            return {};
        }
        for (vtkIdType i = 0; i < count; ++i)
            mesh_.nodeNumbers.push_back(i + 1);
        return {};
    }

    Result<void> addCells() {
        const vtkIdType count = grid_.GetNumberOfCells();
        auto numbers = numbersOf(grid_.GetCellData(), "globalelementid");
        if (numbers && numbers->size() != static_cast<std::size_t>(count)) numbers.reset();
        elementOfCell_.assign(static_cast<std::size_t>(count), kNone);
        vtkNew<vtkIdList> nodes;
        for (vtkIdType cell = 0; cell < count; ++cell) {
            const int code = grid_.GetCellType(cell);
            grid_.GetCellPoints(cell, nodes);
            const CellKind* kind = findVtkCell(code, static_cast<std::size_t>(nodes->GetNumberOfIds()));
            if (!kind) {
                ++leftOut_[code];
                continue;
            }
            for (vtkIdType i = 0; i < nodes->GetNumberOfIds(); ++i)
                if (nodes->GetId(i) < 0 || nodes->GetId(i) >= grid_.GetNumberOfPoints())
                    return Error{"cell " + std::to_string(cell) + " names the point " +
                                 std::to_string(nodes->GetId(i)) + ", which is not there"};
            elementOfCell_[static_cast<std::size_t>(cell)] =
                static_cast<std::uint32_t>(mesh_.elementTypes.size());
            addElement(*kind, *nodes);
            mesh_.elementNumbers.push_back(numbers ? (*numbers)[static_cast<std::size_t>(cell)] : cell + 1);
        }
        return {};
    }

    void addElement(const CellKind& kind, vtkIdList& nodes) {
        const std::size_t first = mesh_.elementNodes.size();
        mesh_.elementTypes.push_back(static_cast<std::uint8_t>(kind.type));
        for (const std::uint8_t i : kind.order)
            mesh_.elementNodes.push_back(static_cast<std::uint32_t>(nodes.GetId(i)));
        if (kind.type != ElementType::Wedge6 && kind.type != ElementType::Wedge15) return;
        if (!pointsOutwards(first)) return;
        const std::vector<std::uint32_t> written(
            mesh_.elementNodes.begin() + static_cast<std::ptrdiff_t>(first), mesh_.elementNodes.end());
        const auto turned = turnedWedge(kind.type);
        for (std::size_t i = 0; i < turned.size(); ++i)
            mesh_.elementNodes[first + i] = written[turned[i]];
    }

    /// Whether the normal of a wedge's first triangle points away from its second.
    bool pointsOutwards(std::size_t first) const {
        const auto corner = [&](std::size_t i) { return mesh_.nodePositions[mesh_.elementNodes[first + i]]; };
        double a[3], b[3], up[3];
        for (std::size_t i = 0; i < 3; ++i) {
            a[i] = corner(1)[i] - corner(0)[i];
            b[i] = corner(2)[i] - corner(0)[i];
            up[i] = corner(3)[i] + corner(4)[i] + corner(5)[i] - corner(0)[i] - corner(1)[i] - corner(2)[i];
        }
        return (a[1] * b[2] - a[2] * b[1]) * up[0] + (a[2] * b[0] - a[0] * b[2]) * up[1] +
                   (a[0] * b[1] - a[1] * b[0]) * up[2] <
               0;
    }

    /// The cell array that says what each cell is of, if there is one of integers.
    void addGroups() {
        constexpr std::string_view kArrays[] = {"materialids", "materialid",   "physicalids",
                                                "physicalid",  "gmshphysical", "cellentityids"};
        constexpr std::size_t kMostGroups = 10000;
        vtkCellData* data = grid_.GetCellData();
        for (const std::string_view wanted : kArrays)
            for (int i = 0; i < data->GetNumberOfArrays(); ++i) {
                vtkDataArray* array = data->GetArray(i);
                if (!array || array->GetNumberOfComponents() != 1 || plainName(nameOf(array)) != wanted ||
                    array->GetNumberOfTuples() < grid_.GetNumberOfCells())
                    continue;
                std::map<std::int64_t, std::vector<std::uint32_t>> groups;
                for (std::size_t cell = 0; cell < elementOfCell_.size(); ++cell) {
                    const double id = array->GetComponent(static_cast<vtkIdType>(cell), 0);
                    if (elementOfCell_[cell] != kNone && std::fabs(id) < 1e15)
                        groups[static_cast<std::int64_t>(id)].push_back(elementOfCell_[cell]);
                    if (groups.size() > kMostGroups) break;
                }
                if (groups.size() > kMostGroups) {
                    mesh_.notes.push_back("the array '" + nameOf(array) +
                                          "' has too many different numbers for materials; it is left out");
                    continue;
                }
                for (auto& [id, elements] : groups)
                    mesh_.groups.push_back({"Material " + std::to_string(id), std::move(elements)});
                return;
            }
    }

    void noteLeftOut() {
        for (const auto& [code, count] : leftOut_)
            mesh_.notes.push_back(std::to_string(count) + " cells of VTK's type " + std::to_string(code) +
                                  " are left out: the model has no such elements");
    }

    void writeFields(vtkDataSetAttributes& data, FieldPlace place) {
        const double time = timeOfGrid();
        for (int i = 0; i < data.GetNumberOfArrays(); ++i) {
            vtkDataArray* array = data.GetArray(i);
            if (!array || isBookkeeping(plainName(nameOf(array)))) continue;
            const int components = array->GetNumberOfComponents();
            const std::size_t rows =
                place == FieldPlace::Node ? mesh_.nodePositions.size() : elementOfCell_.size();
            if (components < 1 || components > int(kMostFieldComponents) ||
                array->GetNumberOfTuples() < static_cast<vtkIdType>(rows))
                continue;
            FieldHeader header{nameOf(array), place, static_cast<std::uint32_t>(components), 0, time};
            out_.field(header, valuesOf(*array, place, rows));
        }
    }

    FieldValues valuesOf(vtkDataArray& array, FieldPlace place, std::size_t rows) const {
        const auto components = static_cast<std::size_t>(array.GetNumberOfComponents());
        const std::array<int, 6> order = components == 6 ? tensorOrder(&array) : std::array<int, 6>{};
        FieldValues field;
        field.values.reserve(rows * components);
        std::vector<double> row(components);
        for (std::size_t r = 0; r < rows; ++r) {
            if (place == FieldPlace::Element && elementOfCell_[r] == kNone) continue;
            array.GetTuple(static_cast<vtkIdType>(r), row.data());
            for (std::size_t c = 0; c < components; ++c)
                field.values.push_back(
                    static_cast<float>(row[components == 6 ? static_cast<std::size_t>(order[c]) : c]));
        }
        return field;
    }

    /// What is about the file, no result.
    static bool isBookkeeping(const std::string& name) {
        constexpr std::string_view kNames[] = {
            "globalnodeid",  "globalnodeids", "globalelementid",  "globalelementids", "materialids",
            "materialid",    "physicalids",   "physicalid",       "gmshphysical",     "gmshgeometrical",
            "cellentityids", "vtkghosttype",  "vtkvalidpointmask"};
        return std::ranges::find(kNames, name) != std::end(kNames);
    }

    double timeOfGrid() const {
        vtkFieldData* data = grid_.GetFieldData();
        for (int i = 0; data && i < data->GetNumberOfArrays(); ++i) {
            vtkDataArray* array = data->GetArray(i);
            if (!array || array->GetNumberOfTuples() < 1) continue;
            const std::string name = plainName(nameOf(array));
            const double time = array->GetComponent(0, 0);
            if ((name == "timevalue" || name == "time") && std::isfinite(time)) return time;
        }
        return 0;
    }

    vtkUnstructuredGrid& grid_;
    MeshStreamWriter& out_;
    MeshRecords mesh_;
    std::vector<std::uint32_t> elementOfCell_;
    std::map<int, std::size_t> leftOut_;
};

} // namespace

Result<void> readVtkMesh(const std::string& path, bool isXml, MeshStreamWriter& out) {
    vtkNew<ErrorWindow> window;
    vtkOutputWindow::SetInstance(window);
    vtkNew<vtkXMLUnstructuredGridReader> xml;
    vtkNew<vtkUnstructuredGridReader> legacy;
    vtkUnstructuredGrid* grid = nullptr;
    if (isXml) {
        if (!xml->CanReadFile(path.c_str()))
            return Error{"it is not an XML file of VTK with an unstructured grid"};
        xml->SetFileName(path.c_str());
        xml->Update();
        grid = xml->GetOutput();
    } else {
        legacy->SetFileName(path.c_str());
        if (!legacy->IsFileUnstructuredGrid())
            return Error{"it is not a legacy file of VTK with an unstructured grid"};
        legacy->ReadAllScalarsOn();
        legacy->ReadAllVectorsOn();
        legacy->ReadAllNormalsOn();
        legacy->ReadAllTensorsOn();
        legacy->ReadAllTCoordsOn();
        legacy->ReadAllFieldsOn();
        legacy->Update();
        grid = legacy->GetOutput();
    }
    if (!window->error.empty()) return Error{"VTK cannot read it: " + shortened(window->error)};
    if (isXml ? xml->GetErrorCode() != 0 : legacy->GetErrorCode() != 0)
        return Error{"VTK cannot read it whole; the file is cut or damaged"};
    if (!grid) return Error{"VTK found no grid in it"};
    return Extraction(*grid, out).run();
}

} // namespace workbench
