#pragma once

#include "host/PluginPath.h"

#include <vector>

namespace orbel {

class PluginHost_API;

/// The parsed outlines of one shape. Filled outline by outline by the reader, normalised once, and
/// from then on only its scale changes: the vertices are mapped to output pixels as they are asked
/// for. Outlines handed out by `CheckoutPath` live as long as this object.
///
/// Vertices are cubic Bezier nodes: an anchor with the control points before and behind it. All
/// coordinates are absolute, y downwards. The operations of `PluginPath_API` return 0, or 1 with
/// their outputs untouched for an outline or a vertex that is none; an identifier without an
/// outline checks out as null. One thread at a time: the shape cache hands the same object to every
/// render of a file, under its lock.
class PluginPath_Impl final : public PluginPath_API {
public:
    /// An ordered list of vertices. An open outline has one segment less than vertices.
    struct Vx_PathOutline {
        std::vector<Vx_PathVertex> vertices;
        bool isOpen = true;
    };

    int PathVertexInfo(void* const* effectRef, void* path, long index,
                       Vx_PathVertex* vertex) override;
    int PathIsOpen(void* const* effectRef, void* path, bool* open) override;
    int PathNumSegments(void* const* effectRef, void* path, long* count) override;
    int NumPaths(void* const* effectRef, long* count) override;
    int CheckoutPath(void* const* effectRef, unsigned long id, long time, long timeStep,
                     long timeScale, void** path) override;
    int CheckinPath(void* const* effectRef, unsigned long id, bool changed, void* path) override;
    int PathInfo(void* const* effectRef, long index, unsigned long* id) override;
    int setPathAspectRatio(double aspect, PluginHost_API* host) override;
    bool setPathScale(double x, double y, bool flip) override;

    /// Appends a copy, with the identifier after the last one's; identifiers start at 1.
    void addOutline(const Vx_PathOutline& outline);
    /// Grows the box {minX, minY, maxX, maxY} to take in the point, whatever the name says. A box
    /// with a maximum below its minimum is empty and becomes the point.
    static void clamp(double x, double y, double* box);
    /// Centres the shape in the unit square, its longer side spanning 0.25 to 0.75. A shape that is
    /// flat in one direction gets NaN there.
    void normalize();

    [[nodiscard]] const std::vector<Vx_PathOutline>& outlines() const { return m_outlines; }

private:
    void centre();
    [[nodiscard]] Vx_PathVertex toOutput(const Vx_PathVertex& vertex) const;

    double m_baseWidth = 1.0; // pixels that the unit square maps to
    double m_baseHeight = 1.0;
    double m_centerOffsetX = 1.0; // half the scaled base size, kept in step by the setters
    double m_centerOffsetY = 1.0;
    double m_scaleX = 1.0;
    double m_scaleY = 1.0;
    bool m_flipY = false;
    double m_outputWidth = 1.0;
    double m_outputHeight = 1.0;
    std::vector<Vx_PathOutline> m_outlines;
};

} // namespace orbel
