#include "tests/workbench/meshfile/ReferenceCells.h"

#include <gmsh.h>
#include <vtkCell.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkGenericCell.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <numeric>
#include <string>
#include <utility>

#if defined(__SANITIZE_ADDRESS__)
/// gmsh deletes arrays as single objects, and leaves memory behind.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
    return "alloc_dealloc_mismatch=0:detect_leaks=0";
}
#endif

namespace {

using enum ElementType;

constexpr std::pair<int, ElementType> kGmshCells[] = {
    {15, Point},   {1, Line2},    {8, Line3},    {2, Tri3},       {9, Tri6},      {3, Quad4},  {16, Quad8},
    {10, Quad8},   {4, Tet4},     {11, Tet10},   {5, Hex8},       {17, Hex20},    {12, Hex20}, {6, Wedge6},
    {18, Wedge15}, {13, Wedge15}, {7, Pyramid5}, {19, Pyramid13}, {14, Pyramid13}};

constexpr std::pair<int, ElementType> kVtkCells[] = {
    {1, Point},  {3, Line2},    {5, Tri3},    {8, Quad4},     {9, Quad4},      {10, Tet4},
    {11, Hex8},  {12, Hex8},    {13, Wedge6}, {14, Pyramid5}, {21, Line3},     {22, Tri6},
    {23, Quad8}, {24, Tet10},   {25, Hex20},  {26, Wedge15},  {27, Pyramid13}, {28, Quad8},
    {29, Hex20}, {32, Wedge15}, {33, Hex20},  {34, Tri6}};

void setApart(std::vector<ReferenceCell>& cells) {
    for (std::size_t i = 0; i < cells.size(); ++i)
        for (auto& node : cells[i].nodes)
            node[0] += 4.0 * static_cast<double>(i);
}

class Gmsh {
  public:
    Gmsh() {
        gmsh::initialize(0, nullptr, false);
        gmsh::option::setNumber("General.Terminal", 0);
    }
    ~Gmsh() { gmsh::finalize(); }
};

} // namespace

std::vector<ReferenceCell> gmshReferenceCells() {
    const Gmsh session;
    std::vector<ReferenceCell> cells;
    for (const auto& [code, type] : kGmshCells) {
        std::string name;
        int dimension = 0, order = 0, nodes = 0, primary = 0;
        std::vector<double> places;
        gmsh::model::mesh::getElementProperties(code, name, dimension, order, nodes, places, primary);
        ReferenceCell cell{code, type, {}};
        for (std::size_t n = 0; n < static_cast<std::size_t>(nodes); ++n) {
            std::array<double, 3> place{};
            for (std::size_t i = 0; i < static_cast<std::size_t>(dimension); ++i)
                place[i] = places[n * static_cast<std::size_t>(dimension) + i];
            cell.nodes.push_back(place);
        }
        cells.push_back(std::move(cell));
    }
    setApart(cells);
    return cells;
}

std::vector<ReferenceCell> vtkReferenceCells() {
    std::vector<ReferenceCell> cells;
    for (const auto& [code, type] : kVtkCells) {
        vtkNew<vtkGenericCell> generic;
        generic->SetCellType(code);
        ReferenceCell cell{code, type, {}};
        const double* places = generic->GetParametricCoords();
        for (vtkIdType n = 0; n < generic->GetNumberOfPoints(); ++n)
            cell.nodes.push_back({places[3 * n], places[3 * n + 1], places[3 * n + 2]});
        // VTK has the pyramid as a cube whose upper face is one point; draw it together.
        if (code == VTK_QUADRATIC_PYRAMID)
            for (auto& node : cell.nodes)
                for (std::size_t i = 0; i < 2; ++i)
                    node[i] *= 1 - node[2];
        cells.push_back(std::move(cell));
    }
    setApart(cells);
    return cells;
}

void writeGmshCells(const std::filesystem::path& file, double version, bool binary) {
    const auto cells = gmshReferenceCells();
    const Gmsh session;
    std::size_t node = 1;
    std::vector<std::size_t> nodeTags, cellTags;
    std::vector<double> temperatures, energies;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        std::vector<double> places;
        std::vector<std::size_t> tags(cells[i].nodes.size());
        std::iota(tags.begin(), tags.end(), node);
        node += tags.size();
        for (const auto& place : cells[i].nodes) {
            places.insert(places.end(), place.begin(), place.end());
            temperatures.push_back(place[0]);
        }
        nodeTags.insert(nodeTags.end(), tags.begin(), tags.end());
        cellTags.push_back(i + 1);
        energies.push_back(static_cast<double>(i + 1));
        const int dimension = isSolidElement(static_cast<std::uint8_t>(cells[i].type))    ? 3
                              : isPlanarElement(static_cast<std::uint8_t>(cells[i].type)) ? 2
                              : cells[i].type == Point                                    ? 0
                                                                                          : 1;
        const int entity = gmsh::model::addDiscreteEntity(dimension, static_cast<int>(i + 1));
        gmsh::model::mesh::addNodes(dimension, entity, tags, places);
        gmsh::model::mesh::addElements(dimension, entity, {cells[i].code}, {{i + 1}}, {tags});
        const int group = gmsh::model::addPhysicalGroup(dimension, {entity}, static_cast<int>(i + 1));
        gmsh::model::setPhysicalName(dimension, group, "group " + std::to_string(i + 1));
    }
    std::string model;
    gmsh::model::getCurrent(model);
    const int temperature = gmsh::view::add("temperature");
    gmsh::view::addHomogeneousModelData(temperature, 0, model, "NodeData", nodeTags, temperatures, 2.5, 1);
    const int energy = gmsh::view::add("energy");
    gmsh::view::addHomogeneousModelData(energy, 0, model, "ElementData", cellTags, energies, 2.5, 1);
    gmsh::option::setNumber("Mesh.MshFileVersion", version);
    gmsh::option::setNumber("Mesh.Binary", binary ? 1 : 0);
    gmsh::option::setNumber("PostProcessing.SaveMesh", 0);
    gmsh::write(file.string());
    gmsh::view::write(temperature, file.string(), true);
    gmsh::view::write(energy, file.string(), true);
}

void writeVtkCells(const std::filesystem::path& file, VtkForm form) {
    const auto cells = vtkReferenceCells();
    vtkNew<vtkUnstructuredGrid> grid;
    vtkNew<vtkPoints> points;
    points->SetDataTypeToDouble();
    vtkNew<vtkDoubleArray> temperature, energy;
    vtkNew<vtkIntArray> groups;
    temperature->SetName("temperature");
    energy->SetName("energy");
    groups->SetName("PhysicalIds");
    grid->Allocate();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        std::vector<vtkIdType> nodes;
        for (const auto& place : cells[i].nodes) {
            nodes.push_back(points->InsertNextPoint(place.data()));
            temperature->InsertNextValue(place[0]);
        }
        grid->InsertNextCell(cells[i].code, static_cast<vtkIdType>(nodes.size()), nodes.data());
        energy->InsertNextValue(static_cast<double>(i + 1));
        groups->InsertNextValue(static_cast<int>(i + 1));
    }
    grid->SetPoints(points);
    grid->GetPointData()->AddArray(temperature);
    grid->GetCellData()->AddArray(energy);
    grid->GetCellData()->AddArray(groups);
    if (form == VtkForm::LegacyText || form == VtkForm::LegacyBinary) {
        vtkNew<vtkUnstructuredGridWriter> writer;
        writer->SetFileName(file.c_str());
        writer->SetInputData(grid);
        form == VtkForm::LegacyText ? writer->SetFileTypeToASCII() : writer->SetFileTypeToBinary();
        writer->Write();
        return;
    }
    vtkNew<vtkXMLUnstructuredGridWriter> writer;
    writer->SetFileName(file.c_str());
    writer->SetInputData(grid);
    if (form == VtkForm::XmlText) writer->SetDataModeToAscii();
    if (form == VtkForm::XmlBinary) writer->SetDataModeToBinary();
    if (form == VtkForm::XmlAppended) {
        writer->SetDataModeToAppended();
        writer->EncodeAppendedDataOff();
    }
    writer->Write();
}

void writeGmshBox(const std::filesystem::path& file) {
    const Gmsh session;
    gmsh::model::occ::addBox(0, 0, 0, 2, 1, 1);
    gmsh::model::occ::synchronize();
    gmsh::option::setNumber("Mesh.CharacteristicLengthMin", 0.5);
    gmsh::option::setNumber("Mesh.CharacteristicLengthMax", 0.5);
    gmsh::option::setNumber("Mesh.ElementOrder", 2);
    gmsh::model::setPhysicalName(3, gmsh::model::addPhysicalGroup(3, {1}), "body");
    gmsh::model::setPhysicalName(2, gmsh::model::addPhysicalGroup(2, {1}), "left");
    gmsh::model::mesh::generate(3);
    gmsh::write(file.string());
}
