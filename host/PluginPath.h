#pragma once

namespace orbel {

class PluginHost_API;

/// One vertex of an outline: six doubles in this order, absolute coordinates. The segment from
/// vertex i to vertex i + 1 is the cubic with control polygon
/// (anchor i, tanOut i, tanIn i + 1, anchor i + 1).
struct Vx_PathVertex {
    double tanInX;
    double tanInY;
    double x;
    double y;
    double tanOutX;
    double tanOutY;

    friend bool operator==(const Vx_PathVertex&, const Vx_PathVertex&) = default;
};

/// A vector path handed through the host: outlines that are checked out, queried vertex by vertex
/// in output pixels, and checked in again. Every status is 0 for success and 1 for an error.
/// `effectRef` is an opaque reference of the host that is passed through unchanged (null here).
class PluginPath_API {
public:
    /// Vertex `index` of a checked-out outline, counted from 0, mapped to output pixels.
    virtual int PathVertexInfo(void* const* effectRef, void* path, long index,
                               Vx_PathVertex* vertex) = 0;
    /// Whether a checked-out outline ends elsewhere than it begins.
    virtual int PathIsOpen(void* const* effectRef, void* path, bool* open) = 0;
    /// Segments of a checked-out outline: as many as vertices, one fewer when it is open.
    virtual int PathNumSegments(void* const* effectRef, void* path, long* count) = 0;
    /// How many outlines there are.
    virtual int NumPaths(void* const* effectRef, long* count) = 0;
    /// Identifiers are 1-based; an identifier out of range gives a null outline and status 0.
    /// The outline stays owned by the path.
    virtual int CheckoutPath(void* const* effectRef, unsigned long id, long time, long timeStep,
                             long timeScale, void** path) = 0;
    /// Ends the use of an outline; `changed` says nothing here.
    virtual int CheckinPath(void* const* effectRef, unsigned long id, bool changed, void* path) = 0;
    /// The identifier of outline number `index`, counted from 0.
    virtual int PathInfo(void* const* effectRef, long index, unsigned long* id) = 0;
    /// Takes size and render scale from the host; `aspect` is the output's pixel aspect ratio.
    virtual int setPathAspectRatio(double aspect, PluginHost_API* host) = 0;
    /// Overrides the scales; returns `flip`.
    virtual bool setPathScale(double scaleX, double scaleY, bool flip) = 0;

protected:
    PluginPath_API() = default;
    PluginPath_API(const PluginPath_API&) = default;
    PluginPath_API& operator=(const PluginPath_API&) = default;
    // Always destroyed as its concrete type.
    ~PluginPath_API() = default;
};

} // namespace orbel
