#pragma once

#include "workbench/picture/ContourDrawing.h"
#include "workbench/session/Document.h"
#include "workbench/session/WorkbenchHost.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace workbench::desktop {

/// Which result table is looked at, by what stays when the result tree is read anew.
struct ResultPlace {
    ItrKey analysis = 0;
    std::size_t resultCase = 0; ///< position in the analysis
    std::size_t step = 0;       ///< position in the case
    unsigned component = 0;

    bool operator==(const ResultPlace&) const = default;
};

/// The place of a table, and the table of a place; null when there is none any more.
ResultPlace placeOf(CVResult& table);
CVResult* tableAt(Document& document, const ResultPlace& place);

/// How results are shown, whichever they are.
struct DisplayOptions {
    enum class Deformation { Off, Automatic, Factor };
    Deformation deformation = Deformation::Off;
    double factor = 1.0; ///< of the displacements, with Deformation::Factor
    bool outline = false;
    std::string colorScale = ContourPicture{}.colorScale;
    bool bands = true;
    PictureEdges edges = PictureEdges::Features;
};

/// A result of a document, ready to be drawn from any side.
class ShownResult {
  public:
    /// `faces`, when given, are those of the document's mesh. Where a step has no displacements the shape is
    /// the undeformed one. The document's mesh must outlive the object.
    static Result<std::unique_ptr<ShownResult>> make(const WorkbenchHost& host, Document& document,
                                                     CVResult& table, const DisplayOptions& options,
                                                     std::shared_ptr<const SurfaceFaces> faces,
                                                     const TextWidth& measure);

    const ResultPlace& place() const { return place_; }
    ContourDrawing& drawing() { return *drawing_; }
    /// For writing to a file.
    const ContourPicture& picture() const { return picture_; }
    const T_QM_MESH_D& mesh() const { return picture_.mesh; }
    /// "Node 12: 3.4" and the like; the value is left out where there is none.
    std::string labelOf(PictureMark::Kind kind, std::uint32_t index) const;
    /// A sentence for the readout: label, unit and position.
    std::string readoutOf(PictureMark::Kind kind, std::uint32_t index) const;
    float valueOf(PictureMark::Kind kind, std::uint32_t index) const; ///< in current units; NaN for none

  private:
    ShownResult() = default;

    ResultPlace place_;
    Language language_ = Language::English;
    std::string unit_;
    std::vector<float> nodes_;    ///< a value a node, in current units
    std::vector<float> elements_; ///< the worst one of each element
    std::vector<std::uint8_t> valued_;
    std::vector<std::array<float, 3>> displacements_;
    ContourPicture picture_;
    std::unique_ptr<ContourDrawing> drawing_;
};

} // namespace workbench::desktop
