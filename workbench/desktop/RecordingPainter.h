#pragma once

#include "framework/drawing/Recording.h"
#include "workbench/desktop/QtWidgets.h"

#include <map>

namespace workbench::desktop {

/// Paints recordings. What a transfer shows is painted once and kept as an image for as long as paintings
/// show it: a window that is painted again with a mark elsewhere costs the mark.
///
/// A pen of one pixel sets the pixels of its line and no other, so lines are not smoothed; texts and ellipses
/// are.
class RecordingPainter {
  public:
    void paint(QPainter& painter, const framework::Recording& drawn);
    /// How many transfers were painted rather than taken from an image.
    int painted() const { return painted_; }

  private:
    struct Image {
        std::shared_ptr<const framework::Recording> shown; ///< held, so that no other takes its address
        CRect part;
        qreal scale = 1;
        QImage pixels;
        bool used = false;
    };

    void draw(QPainter& painter, const framework::Recording& drawn);
    void draw(QPainter& painter, const framework::Recording& drawn, const framework::FillCommand& fill);
    void draw(QPainter& painter, const framework::Recording& drawn, const framework::PolylineCommand& line);
    void draw(QPainter& painter, const framework::Recording& drawn, const framework::EllipsesCommand& round);
    void draw(QPainter& painter, const framework::Recording& drawn, const framework::TextCommand& command);
    void draw(QPainter& painter, const framework::Recording& drawn, const framework::TransferCommand& moved);

    std::vector<Image> images_;
    bool inImage_ = false;
    int painted_ = 0;
};

} // namespace workbench::desktop
