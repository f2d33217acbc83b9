#pragma once

#include "workbench/desktop/QtWidgets.h"
#include "workbench/desktop/ShownResult.h"

#include <functional>
#include <memory>
#include <vector>

namespace workbench::desktop {

/// What the user points at with a click.
enum class PickKind { Node, Element };

/// The model with a result, in a window: drag turns it, Shift and drag (or the middle button) moves it, the
/// wheel enlarges it, and a click picks.
class ContourView final : public QWidget {
  public:
    explicit ContourView(QWidget* parent = nullptr);

    /// Null: nothing is shown but the hint. A result of another mesh begins with the whole model from "iso".
    void setResult(std::unique_ptr<ShownResult> result, bool keepView);
    ShownResult* result() { return result_.get(); }
    void setHint(const QString& hint);
    /// One of viewNames(), seen as a whole.
    void setNamedView(const std::string& name);
    void fit(); ///< the whole model, from the same side
    void setMarks(std::vector<PictureMark> marks);
    void setPickKind(PickKind kind) { pickKind_ = kind; }
    PickKind pickKind() const { return pickKind_; }

    /// The picture that writeContour() draws as the view stands.
    ContourPicture pictureAsSeen() const;
    /// Time from the call to the pixels of the last drawing.
    double lastDrawingSeconds() const { return seconds_; }

    /// Told what was clicked (nothing: beside the model), and whether it adds to what is selected.
    std::function<void(std::optional<std::uint32_t> index, bool adds)> picked;
    /// Told of a failure to draw, once each time.
    std::function<void(const std::string& message)> failed;

    /// Measures texts with the font that the view writes with.
    static TextWidth textWidth();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    void changed();
    void draw();
    void turn(const QPointF& by);
    void move(const QPointF& by);
    void pick(const QPointF& at, bool adds);

    std::unique_ptr<ShownResult> result_;
    std::unique_ptr<SceneView> scene_;
    std::string view_ = "iso";
    PictureZoom zoom_;
    std::vector<PictureMark> marks_;
    PickKind pickKind_ = PickKind::Node;
    QString hint_;
    QImage image_;
    bool outdated_ = true;
    double seconds_ = 0.0;
    QPointF pressedAt_;
    QPointF lastAt_;
    bool dragged_ = false;
};

} // namespace workbench::desktop
