#include "bench/frame/Subject.h"

#include <cairo.h>

#include <cstring>
#include <stdexcept>

namespace orbel::bench {

namespace {

struct Free {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, Free>;
using Context = std::unique_ptr<cairo_t, Free>;

/// How far the star moves while the shutter is open, in widths of the picture.
constexpr double travel = 0.01;

Surface makeSurface(const FrameSize& size) {
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.width, size.height));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error("cairo makes no surface of this size");
    }
    return surface;
}

class CairoFrame final : public Subject {
public:
    CairoFrame(const FrameSize& size, const StrokeKind& kind)
        : m_size(size),
          m_kind(kind),
          m_outline(starOutline(size)),
          m_source(size.width, size.height, RF_RGBA8, {}),
          m_picture(makeSurface(size)),
          m_output(makeSurface(size)),
          m_layer(makeSurface(size)),
          m_mean(makeSurface(size)) {
        paintBackdrop(m_source);
    }

    void prepare() override {
        cairo_surface_flush(m_picture.get());
        std::memcpy(cairo_image_surface_get_data(m_picture.get()), m_source.info().data, bytes());
        cairo_surface_mark_dirty(m_picture.get());
    }

    void run() override {
        const int samples = m_kind.samples;
        if (samples > 1) {
            clear(m_mean.get());
        }
        for (int s = 0; s < samples; ++s) {
            clear(m_layer.get());
            strokeLayer(travel * m_size.width * s / samples);
            if (samples > 1) {
                paint(m_layer.get(), m_mean.get(), CAIRO_OPERATOR_ADD, 1.0 / samples);
            }
        }
        paint(m_picture.get(), m_output.get(), CAIRO_OPERATOR_SOURCE, 1.0);
        paint(samples > 1 ? m_mean.get() : m_layer.get(), m_output.get(), CAIRO_OPERATOR_OVER, 1.0);
        cairo_surface_flush(m_output.get());
    }

    [[nodiscard]] std::size_t bytes() const override {
        return static_cast<std::size_t>(m_size.width) * static_cast<std::size_t>(m_size.height) * 4;
    }

private:
    static void clear(cairo_surface_t* surface) {
        const Context context(cairo_create(surface));
        cairo_set_operator(context.get(), CAIRO_OPERATOR_CLEAR);
        cairo_paint(context.get());
    }

    static void paint(cairo_surface_t* from, cairo_surface_t* to, cairo_operator_t how,
                      double alpha) {
        const Context context(cairo_create(to));
        cairo_set_operator(context.get(), how);
        cairo_set_source_surface(context.get(), from, 0, 0);
        cairo_paint_with_alpha(context.get(), alpha);
    }

    void strokeLayer(double shift) const {
        const Context context(cairo_create(m_layer.get()));
        cairo_translate(context.get(), shift, 0);
        cairo_set_source_rgb(context.get(), 1, 0.7, 0.3);
        cairo_set_line_width(context.get(), 2 * m_kind.radius);
        cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(context.get(), CAIRO_LINE_CAP_ROUND);
        cairo_move_to(context.get(), m_outline.front().x, m_outline.front().y);
        for (std::size_t i = 0; i < m_outline.size(); ++i) {
            const Vx_PathVertex& a = m_outline[i];
            const Vx_PathVertex& b = m_outline[(i + 1) % m_outline.size()];
            cairo_curve_to(context.get(), a.tanOutX, a.tanOutY, b.tanInX, b.tanInY, b.x, b.y);
        }
        cairo_close_path(context.get());
        cairo_stroke(context.get());
    }

    FrameSize m_size;
    StrokeKind m_kind;
    ClosedOutline m_outline;
    MemoryImage m_source;
    Surface m_picture;
    Surface m_output;
    Surface m_layer;
    Surface m_mean;
};

} // namespace

SubjectPtr cairoFrame(const FrameSize& size, const StrokeKind& kind) {
    return std::make_unique<CairoFrame>(size, kind);
}

} // namespace orbel::bench
