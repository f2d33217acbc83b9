#pragma once

#include "framework/drawing/Recording.h"

#include <cstdio>
#include <sstream>
#include <string>

/// The commands of a recording as text, one a line, what a transfer shows indented below it.
class DrawnCommands {
  public:
    static std::string of(const framework::Recording& drawn) {
        DrawnCommands text;
        text.list(drawn, "");
        return text.out_.str();
    }

  private:
    void list(const framework::Recording& drawn, const std::string& indent) {
        for (const auto& command : drawn.commands()) {
            out_ << indent;
            std::visit([&](const auto& one) { add(drawn, one, indent); }, command);
        }
    }

    static std::string color(COLORREF value) {
        char text[16];
        std::snprintf(text, sizeof text, "#%02x%02x%02x", unsigned(GetRValue(value)),
                      unsigned(GetGValue(value)), unsigned(GetBValue(value)));
        return text;
    }
    static std::string box(const CRect& r) {
        std::ostringstream text;
        text << r.left << "," << r.top << "-" << r.right << "," << r.bottom;
        return text.str();
    }
    static std::string pen(const framework::PenLook& look) {
        return look.none ? "no pen" : "pen " + color(look.color) + " " + std::to_string(look.width);
    }
    static std::string brush(const framework::BrushLook& look) {
        return look.none ? "no brush" : "brush " + color(look.color);
    }

    void add(const framework::Recording&, const framework::FillCommand& fill, const std::string&) {
        out_ << "fill " << box(fill.rect) << " " << color(fill.color) << "\n";
    }
    void add(const framework::Recording& drawn, const framework::PolylineCommand& line, const std::string&) {
        out_ << "line " << pen(line.pen) << ":";
        for (const CPoint point : drawn.points(line))
            out_ << " " << point.x << "," << point.y;
        out_ << "\n";
    }
    void add(const framework::Recording& drawn, const framework::EllipsesCommand& round, const std::string&) {
        out_ << "ellipses " << pen(round.pen) << " " << brush(round.brush) << ":";
        for (const CRect& around : drawn.boxes(round))
            out_ << " " << box(around);
        out_ << "\n";
    }
    void add(const framework::Recording& drawn, const framework::TextCommand& command, const std::string&) {
        const framework::DrawnText& text = drawn.text(command);
        const auto narrow = [](std::wstring_view wide) { return std::string(wide.begin(), wide.end()); };
        out_ << "text " << text.at.x << "," << text.at.y << " " << color(text.color)
             << (text.opaque ? " on " + color(text.background) : "") << " align " << text.align << " "
             << narrow(text.font.lfFaceName) << " " << text.font.lfHeight << ": " << narrow(text.text)
             << "\n";
    }
    void add(const framework::Recording&, const framework::TransferCommand& moved,
             const std::string& indent) {
        out_ << "transfer " << box(moved.target) << " from " << moved.source.x << "," << moved.source.y
             << "\n";
        list(*moved.content, indent + "  ");
    }

    std::ostringstream out_;
};
