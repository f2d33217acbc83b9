#include "workbench/meshfile/GmshMesh.h"

#include "workbench/meshfile/CellKinds.h"

#include <fcntl.h>
#include <gmsh.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string_view>
#include <unordered_map>

namespace workbench {
namespace {

using Tag = std::size_t;

/// Positions of tags, ascending by tag.
class TagIndex {
  public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    void add(Tag tag, std::uint32_t position) { rows_.push_back({tag, position}); }
    void sort() { std::sort(rows_.begin(), rows_.end()); }
    std::uint32_t find(Tag tag) const {
        const auto row = std::lower_bound(rows_.begin(), rows_.end(), std::pair<Tag, std::uint32_t>{tag, 0});
        return row != rows_.end() && row->first == tag ? row->second : kNone;
    }

  private:
    std::vector<std::pair<Tag, std::uint32_t>> rows_;
};

/// The file as gmsh shall see it. gmsh takes a file that does not begin as a mesh for a script, which may
/// start programs, and runs a script that stands beside a mesh under its name and ".opt"; so the beginning is
/// checked here, and gmsh gets a name beside which nothing stands.
class OpenMesh {
  public:
    explicit OpenMesh(const std::string& path)
        : fd_(::open(path.c_str(), O_RDONLY)) {}
    ~OpenMesh() {
        if (fd_ >= 0) ::close(fd_);
    }
    OpenMesh(const OpenMesh&) = delete;
    OpenMesh& operator=(const OpenMesh&) = delete;

    std::string name() const { return "/proc/self/fd/" + std::to_string(fd_); }

    Result<void> check() const {
        const std::string begin = bytesAt(0, 64);
        if (!begin.starts_with("$MeshFormat\n") && !begin.starts_with("$MeshFormat\r\n"))
            return Error{"it does not begin with $MeshFormat, as a mesh file of gmsh does"};
        const std::string version = begin.substr(begin.find('\n') + 1, 3);
        if (version != "2 0" && version != "2.0" && version != "2.1" && version != "2.2" &&
            version != "4.0" && version != "4.1")
            return Error{"its version of the format is not one of 2.0 to 2.2, 4.0 and 4.1"};
        return isWhole() ? Result<void>() : Error{"its last line ends no section; the file is cut"};
    }

  private:
    std::string bytesAt(off_t place, std::size_t count) const {
        std::string bytes(count, '\0');
        const ssize_t got = ::pread(fd_, bytes.data(), count, place);
        bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        return bytes;
    }

    bool isWhole() const {
        constexpr off_t kTail = 256;
        const off_t size = ::lseek(fd_, 0, SEEK_END);
        if (size < 0 || ::lseek(fd_, 0, SEEK_SET) != 0) return false;
        const std::string tail = bytesAt(std::max<off_t>(0, size - kTail), kTail);
        const std::size_t last = tail.find_last_not_of(" \t\r\n");
        if (last == std::string::npos) return false;
        const std::size_t line = tail.find_last_of("\n", last);
        return line != std::string::npos && tail.compare(line + 1, 4, "$End") == 0;
    }

    int fd_;
};

class GmshSession {
  public:
    GmshSession() {
        gmsh::initialize(0, nullptr, false);
        gmsh::option::setNumber("General.Terminal", 0);
        gmsh::logger::start();
    }

    /// The first error that gmsh reports; empty without one.
    static std::string error() {
        std::vector<std::string> log;
        gmsh::logger::get(log);
        for (const std::string& line : log)
            if (line.starts_with("Error")) return line.substr(std::min<std::size_t>(line.size(), 7));
        return {};
    }
};

class Extraction {
  public:
    explicit Extraction(MeshStreamWriter& out)
        : out_(out) {}

    Result<void> run() {
        if (auto nodes = addNodes(); !nodes) return nodes;
        if (auto elements = addElements(); !elements) return elements;
        addGroups();
        for (const auto& [code, count] : leftOut_)
            mesh_.notes.push_back(std::to_string(count) + " elements of gmsh's type " + std::to_string(code) +
                                  " are left out: the model has no such elements");
        out_.mesh(mesh_);
        return writeViews();
    }

  private:
    Result<void> addNodes() {
        std::vector<Tag> tags;
        std::vector<double> places, unused;
        gmsh::model::mesh::getNodes(tags, places, unused);
        if (places.size() != 3 * tags.size() || tags.size() > std::numeric_limits<std::int32_t>::max())
            return Error{"gmsh gives its nodes without sound places"};
        for (std::size_t i = 0; i < tags.size(); ++i) {
            mesh_.nodeNumbers.push_back(static_cast<std::int64_t>(tags[i]));
            mesh_.nodePositions.push_back({places[3 * i], places[3 * i + 1], places[3 * i + 2]});
            nodes_.add(tags[i], static_cast<std::uint32_t>(i));
        }
        nodes_.sort();
        return {};
    }

    Result<void> addElements() {
        std::vector<int> types;
        std::vector<std::vector<Tag>> tags, nodes;
        gmsh::model::mesh::getElements(types, tags, nodes);
        for (std::size_t t = 0; t < types.size(); ++t) {
            const CellKind* kind = findGmshCell(types[t]);
            if (!kind) {
                leftOut_[types[t]] += tags[t].size();
                continue;
            }
            if (nodes[t].size() != tags[t].size() * kind->nodes)
                return Error{"gmsh gives its elements without all of their nodes"};
            for (std::size_t e = 0; e < tags[t].size(); ++e) {
                elements_.add(tags[t][e], static_cast<std::uint32_t>(mesh_.elementTypes.size()));
                kinds_.push_back(kind);
                mesh_.elementNumbers.push_back(static_cast<std::int64_t>(tags[t][e]));
                mesh_.elementTypes.push_back(static_cast<std::uint8_t>(kind->type));
                for (const std::uint8_t i : kind->order) {
                    const std::uint32_t node = nodes_.find(nodes[t][e * kind->nodes + i]);
                    if (node == TagIndex::kNone)
                        return Error{"the element " + std::to_string(tags[t][e]) +
                                     " has a node that is not there"};
                    mesh_.elementNodes.push_back(node);
                }
            }
        }
        elements_.sort();
        return {};
    }

    void addGroups() {
        gmsh::vectorpair groups;
        gmsh::model::getPhysicalGroups(groups);
        for (const auto& [dimension, tag] : groups) {
            MeshGroup group;
            gmsh::model::getPhysicalName(dimension, tag, group.name);
            if (group.name.empty()) {
                constexpr const char* kKinds[] = {"Points ", "Lines ", "Faces ", "Material "};
                group.name = kKinds[std::clamp(dimension, 0, 3)] + std::to_string(tag);
            }
            std::vector<int> entities;
            gmsh::model::getEntitiesForPhysicalGroup(dimension, tag, entities);
            for (const int entity : entities) {
                std::vector<int> types;
                std::vector<std::vector<Tag>> tags, nodes;
                gmsh::model::mesh::getElements(types, tags, nodes, dimension, entity);
                for (const auto& list : tags)
                    for (const Tag element : list)
                        if (const auto at = elements_.find(element); at != TagIndex::kNone)
                            group.elements.push_back(at);
            }
            mesh_.groups.push_back(std::move(group));
        }
    }

    Result<void> writeViews() {
        std::vector<int> views;
        gmsh::view::getTags(views);
        for (const int view : views) {
            const std::string option = "View[" + std::to_string(gmsh::view::getIndex(view)) + "].";
            std::string name;
            double steps = 0;
            gmsh::option::getString(option + "Name", name);
            gmsh::option::getNumber(option + "NbTimeStep", steps);
            for (int step = 0; step < static_cast<int>(std::min(steps, 1e6)); ++step)
                if (auto written = writeStep(view, name, step); !written) return written;
        }
        return {};
    }

    Result<void> writeStep(int view, const std::string& name, int step) {
        std::string kind;
        std::vector<Tag> tags;
        std::vector<std::vector<double>> rows;
        double time = 0;
        int components = 0;
        gmsh::view::getModelData(view, step, kind, tags, rows, time, components);
        if (tags.empty() || components < 1 || components > int(kMostFieldComponents)) return {};
        if (rows.size() != tags.size())
            return Error{"gmsh gives the data '" + name + "' without all of their values"};
        FieldHeader header{name, FieldPlace::Node, static_cast<std::uint32_t>(components), step, time};
        if (kind == "ElementData") header.place = FieldPlace::Element;
        if (kind == "ElementNodeData") header.place = FieldPlace::Corner;
        if (header.place == FieldPlace::Node && kind != "NodeData") return {};
        if (const FieldValues values = ordered(header, tags, rows); !values.items.empty())
            out_.field(header, values);
        return {};
    }

    /// Values by ascending position. Rows of items that are not there, and those with another count of
    /// values, are left out; of tags that stand twice the first row counts.
    FieldValues ordered(const FieldHeader& header, const std::vector<Tag>& tags,
                        const std::vector<std::vector<double>>& rows) const {
        const TagIndex& index = header.place == FieldPlace::Node ? nodes_ : elements_;
        std::vector<std::pair<std::uint32_t, std::size_t>> order;
        for (std::size_t i = 0; i < tags.size(); ++i) {
            const std::uint32_t item = index.find(tags[i]);
            if (item == TagIndex::kNone) continue;
            const std::size_t points = header.place == FieldPlace::Corner ? kinds_[item]->nodes : 1;
            if (rows[i].size() == points * header.components) order.push_back({item, i});
        }
        std::sort(order.begin(), order.end());
        const auto end = std::unique(order.begin(), order.end(),
                                     [](const auto& a, const auto& b) { return a.first == b.first; });
        FieldValues field;
        for (auto row = order.begin(); row != end; ++row) {
            field.items.push_back(row->first);
            append(header, row->first, rows[row->second], field.values);
        }
        return field;
    }

    void append(const FieldHeader& header, std::uint32_t item, const std::vector<double>& row,
                std::vector<float>& values) const {
        if (header.place != FieldPlace::Corner) {
            for (const double value : row)
                values.push_back(static_cast<float>(value));
            return;
        }
        for (const std::uint8_t node : kinds_[item]->order)
            for (std::size_t c = 0; c < header.components; ++c)
                values.push_back(static_cast<float>(row[node * header.components + c]));
    }

    MeshStreamWriter& out_;
    MeshRecords mesh_;
    TagIndex nodes_, elements_;
    std::vector<const CellKind*> kinds_; ///< of each element
    std::map<int, std::size_t> leftOut_;
};

} // namespace

Result<void> readGmshMesh(const std::string& path, MeshStreamWriter& out) {
    const OpenMesh file(path);
    if (auto sound = file.check(); !sound) return sound;
    const GmshSession session;
    try {
        gmsh::merge(file.name());
        if (const std::string error = GmshSession::error(); !error.empty())
            return Error{"gmsh cannot read it: " + error};
        return Extraction(out).run();
    } catch (const std::string& error) {
        return Error{"gmsh cannot read it: " + error};
    } catch (int) {
        return Error{"gmsh cannot read it: " + GmshSession::error()};
    }
}

} // namespace workbench
