#pragma once

#include "shapes/PathModel.h"
#include "shapes/PathTokenizer.h"
#include "shapes/SvgReport.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace orbel {

/// Builds one outline at a time from drawing commands and hands it to the target. Coordinates are
/// the file's own; with `relative` they are offsets from the current point. Numbers are taken as
/// they come, NaN and infinities included. Several of its ways are not those of a drawing program;
/// what is marked as meant below is what projects were made with.
class path_renderer {
public:
    /// `report` is borrowed, never null.
    explicit path_renderer(SvgReport* report = SvgReport::silent()) : m_report(report) {}

    /// The shape that finished outlines go to, borrowed; until it is set they are dropped.
    void setPath(PluginPath_Impl* target);

    /// Starts an empty, open outline at (0, 0).
    void begin_path();
    /// Completes the outline and hands a copy of it over, even one without vertices.
    void end_path();
    /// Only moves the current point: an outline is never split, and a further move inside it leaves
    /// no gap.
    void move_to(double x, double y, bool relative);
    void line_to(double x, double y, bool relative);
    void hline_to(double x, bool relative);
    void vline_to(double y, bool relative);
    /// Quadratic curve to (x, y). Its control point becomes the anchor of a vertex.
    void curve3(double controlX, double controlY, double x, double y, bool relative);
    /// The same, its control point mirrored from the outline's last vertex.
    void curve3(double x, double y, bool relative);
    /// Cubic curve to (x, y).
    void curve4(double control1X, double control1Y, double control2X, double control2Y, double x,
                double y, bool relative);
    /// The same, its first control point mirrored from the last cubic's second.
    void curve4(double control2X, double control2Y, double x, double y, bool relative);
    /// Marks the outline closed; `addVertex` also appends the vertex that leads back to its start.
    void close_subpath(bool addVertex);
    /// Drops the outline under construction.
    void remove_all();
    /// Draws all of the path data, up to the first thing in it that is no command.
    void parse_path(path_tokenizer& tokenizer);

    /// Vertices and outlines together that are taken; what goes beyond is dropped.
    static constexpr std::size_t maxParts = std::size_t{1} << 20;
    /// Whether something had to be dropped since the target was set.
    [[nodiscard]] bool overfull() const { return m_parts > maxParts; }

    // Hooks for presentation attributes. An outline has no look of its own: they do nothing.
    void push_attr() {}
    void pop_attr() {}
    void fill(unsigned /*color*/) {}
    void stroke(unsigned /*color*/) {}
    void stroke_width(double /*width*/) {}
    void fill_none() {}
    void stroke_none() {}
    void fill_opacity(double /*opacity*/) {}
    void stroke_opacity(double /*opacity*/) {}
    void line_join(std::string_view /*join*/) {}
    void line_cap(std::string_view /*cap*/) {}
    void miter_limit(double /*limit*/) {}

private:
    struct Point {
        double x;
        double y;
    };

    [[nodiscard]] Point absolute(Point point, bool relative) const;
    [[nodiscard]] Point mirrored(Point control, bool relative) const;
    bool takePart();
    void append(Point in, Point anchor, Point out);
    void draw(char command, bool relative, const std::array<double, 6>& arguments);
    void countSegment(char command);
    /// What becomes of the path as a whole, once it is read.
    void reportForm();
    void reportOddities(char command, bool commandRead);

    PluginPath_Impl* m_target = nullptr;
    PluginPath_Impl::Vx_PathOutline m_outline;
    Point m_current{0.0, 0.0};
    Point m_lastControl{0.0, 0.0}; // second control point of the last cubic
    std::size_t m_lines = 0;       // and the others: of this outline, counted for the report alone
    std::size_t m_cubics = 0;
    std::size_t m_quadratics = 0;
    bool m_lastWasCurve = false;
    std::size_t m_parts = 0;
    SvgReport* m_report;
};

} // namespace orbel
