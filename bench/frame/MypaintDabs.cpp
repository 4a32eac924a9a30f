#include "bench/frame/Subject.h"

#include <mypaint-fixed-tiled-surface.h>

#include <algorithm>
#include <cmath>

namespace orbel::bench {

namespace {

struct Release {
    void operator()(MyPaintSurface* surface) const { mypaint_surface_unref(surface); }
};

struct Dab {
    float x;
    float y;
};

double along(double p0, double p1, double p2, double p3, double t) {
    const double u = 1 - t;
    return u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3;
}

/// Points at equal distances, found by walking fine chords.
std::vector<Dab> dabsAlong(const ClosedOutline& outline, double step) {
    constexpr int CHORDS = 4096;
    std::vector<Dab> dabs;
    double since = step;
    double x = outline.front().x;
    double y = outline.front().y;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Vx_PathVertex& a = outline[i];
        const Vx_PathVertex& b = outline[(i + 1) % outline.size()];
        for (int k = 1; k <= CHORDS; ++k) {
            const double t = static_cast<double>(k) / CHORDS;
            const double nextX = along(a.x, a.tanOutX, b.tanInX, b.x, t);
            const double nextY = along(a.y, a.tanOutY, b.tanInY, b.y, t);
            since += std::hypot(nextX - x, nextY - y);
            x = nextX;
            y = nextY;
            if (since >= step) {
                since -= step;
                dabs.push_back({static_cast<float>(x), static_cast<float>(y)});
            }
        }
    }
    return dabs;
}

class MypaintDabs final : public Subject {
public:
    MypaintDabs(const FrameSize& size, const StrokeKind& kind)
        : m_size(size), m_kind(kind), m_dabs(dabsAlong(starOutline(size), 0.2 * kind.radius)) {}

    void prepare() override {
        MyPaintFixedTiledSurface* const tiled =
            mypaint_fixed_tiled_surface_new(m_size.width, m_size.height);
        m_surface.reset(mypaint_fixed_tiled_surface_interface(tiled));
    }

    void run() override {
        mypaint_surface_begin_atomic(m_surface.get());
        const auto radius = static_cast<float>(m_kind.radius);
        // Without any hardness it draws nothing.
        const auto hardness = static_cast<float>(std::max(1.0 - m_kind.feather / 100.0, 0.02));
        for (const Dab& dab : m_dabs) {
            mypaint_surface_draw_dab(m_surface.get(), dab.x, dab.y, radius, 1.0F, 0.7F, 0.3F, 1.0F,
                                     hardness, 1.0F, 1.0F, 0.0F, 0.0F, 0.0F);
        }
        MyPaintRectangle touched{};
        mypaint_surface_end_atomic(m_surface.get(), &touched); // the dabs are drawn here
    }

    [[nodiscard]] std::size_t bytes() const override {
        return static_cast<std::size_t>(m_size.width) * static_cast<std::size_t>(m_size.height) * 4;
    }

private:
    FrameSize m_size;
    StrokeKind m_kind;
    std::vector<Dab> m_dabs;
    std::unique_ptr<MyPaintSurface, Release> m_surface;
};

} // namespace

SubjectPtr mypaintDabs(const FrameSize& size, const StrokeKind& kind) {
    return std::make_unique<MypaintDabs>(size, kind);
}

} // namespace orbel::bench
