#pragma once

#include "host/PluginPath.h"

#include <functional>
#include <string>
#include <vector>

namespace orbel::test {

/// One outline in output pixels.
struct FakeOutline {
    std::vector<Vx_PathVertex> vertices;
    bool open = true;
};

/// A chain of straight segments.
[[nodiscard]] FakeOutline polyline(const std::vector<std::pair<double, double>>& points, bool open);
/// Four cubics.
[[nodiscard]] FakeOutline circle(double centreX, double centreY, double radius);

/// A path that moves with time and can be told to fail.
class FakePath final : public PluginPath_API {
public:
    std::vector<FakeOutline> outlines;
    std::function<void(FakeOutline&, long time)> animate; ///< changes an outline checked out
    std::vector<unsigned long> missing;                   ///< identifiers without an outline
    int vertexStatus = 0;
    int segmentsStatus = 0;
    int openStatus = 0;
    int checkoutStatus = 0;
    int checkedOut = 0; ///< check-outs not yet returned

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
    bool setPathScale(double scaleX, double scaleY, bool flip) override;
};

} // namespace orbel::test
