#pragma once

#include "framework/Export.h"
#include "framework/drawing/Color.h"
#include "framework/drawing/Geometry.h"
#include "framework/drawing/LogFont.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace framework {

/// A solid pen. One pixel wide it draws every pixel of a line but its end; a wider one has round ends.
struct PenLook {
    COLORREF color = RGB(0, 0, 0);
    int width = 1;
    bool none = false;
    friend bool operator==(const PenLook&, const PenLook&) = default;
};

struct BrushLook {
    COLORREF color = RGB(255, 255, 255);
    bool none = false;
    friend bool operator==(const BrushLook&, const BrushLook&) = default;
};

struct DrawnText {
    CPoint at;
    std::wstring text;
    LOGFONT font;
    COLORREF color = RGB(0, 0, 0);
    COLORREF background = RGB(255, 255, 255);
    bool opaque = true;
    unsigned align = 0; ///< TA_...
};

class Recording;

// The commands. Coordinates are pixels; rectangles leave out their right and bottom edge.
struct FillCommand {
    CRect rect;
    COLORREF color = 0;
};
struct PolylineCommand {
    PenLook pen;
    std::size_t first = 0; ///< its points: see Recording::points
    std::size_t count = 0; ///< 2 or more
};
struct EllipsesCommand {
    PenLook pen;
    BrushLook brush;
    std::size_t first = 0; ///< the rectangles around them: see Recording::boxes
    std::size_t count = 0; ///< drawn one after the other
};
struct TextCommand {
    std::size_t index = 0; ///< see Recording::text
};
/// Another recording, of which the part that begins at `source` is shown in `target`.
struct TransferCommand {
    CRect target;
    CPoint source;
    std::shared_ptr<const Recording> content;
};
using DrawCommand = std::variant<FillCommand, PolylineCommand, EllipsesCommand, TextCommand, TransferCommand>;

/// What was drawn, in order. The points of all lines lie in one array, and so do the boxes of ellipses: a
/// curve costs eight bytes a point. Lines that go on where the last one ended, with the same pen, and
/// ellipses with the same pen and brush, are one command.
class VEXA_API Recording {
  public:
    /// Transfers lie in one another this deep at most.
    static constexpr int kMostDepth = 64;
    /// And come to so many commands at most, counted wherever they are shown: what shows itself twice each
    /// time would be without end.
    static constexpr std::size_t kMostShown = std::size_t{1} << 22;

    const std::vector<DrawCommand>& commands() const { return commands_; }
    std::span<const CPoint> points(const PolylineCommand& line) const {
        return std::span(points_).subspan(line.first, line.count);
    }
    std::span<const CRect> boxes(const EllipsesCommand& ellipses) const {
        return std::span(boxes_).subspan(ellipses.first, ellipses.count);
    }
    const DrawnText& text(const TextCommand& command) const { return texts_[command.index]; }
    int depth() const { return depth_; }
    std::size_t shown() const { return commands_.size() + shownInside_; }
    /// Whether another recording can show it.
    bool canBeShown() const { return depth_ < kMostDepth && shown() <= kMostShown; }

    void clear(); ///< keeps its memory
    void fill(const CRect& rect, COLORREF color);
    /// A line from `from` through `to`, which may be empty.
    void lines(const PenLook& pen, CPoint from, std::span<const CPoint> to);
    void ellipse(const PenLook& pen, const BrushLook& brush, const CRect& box);
    void write(DrawnText text);
    /// False, and nothing recorded, when the content is too deep, or too much. Content that is itself but one
    /// transfer is taken for what it shows.
    bool transfer(const CRect& target, CPoint source, std::shared_ptr<const Recording> content);

    /// Makes room for so many more points, before a long line comes in pieces.
    void expectPoints(std::size_t count);
    /// Forgets a line that the last one draws again with the same pen, or the last one where it draws only
    /// again: a curve that is replayed longer each time takes the room of one.
    void foldReplay();

  private:
    std::vector<DrawCommand> commands_;
    std::vector<CPoint> points_;
    std::vector<CRect> boxes_;
    std::vector<DrawnText> texts_;
    int depth_ = 0; ///< of transfers in one another
    std::size_t shownInside_ = 0;
};

} // namespace framework
