#include "bench/frame/Subject.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cstring>

namespace orbel::bench {

namespace {

constexpr double travel = 0.01; // widths of the picture, while the shutter is open

class QtFrame final : public Subject {
public:
    QtFrame(const FrameSize& size, const StrokeKind& kind)
        : m_size(size),
          m_kind(kind),
          m_source(size.width, size.height, RF_RGBA8, {}),
          m_picture(size.width, size.height, QImage::Format_ARGB32_Premultiplied),
          m_output(size.width, size.height, QImage::Format_ARGB32_Premultiplied),
          m_layer(size.width, size.height, QImage::Format_ARGB32_Premultiplied),
          m_mean(size.width, size.height, QImage::Format_ARGB32_Premultiplied) {
        paintBackdrop(m_source);
        const ClosedOutline outline = starOutline(size);
        m_path.moveTo(outline.front().x, outline.front().y);
        for (std::size_t i = 0; i < outline.size(); ++i) {
            const Vx_PathVertex& a = outline[i];
            const Vx_PathVertex& b = outline[(i + 1) % outline.size()];
            m_path.cubicTo(a.tanOutX, a.tanOutY, b.tanInX, b.tanInY, b.x, b.y);
        }
        m_path.closeSubpath();
    }

    void prepare() override { std::memcpy(m_picture.bits(), m_source.info().data, bytes()); }

    void run() override {
        const int samples = m_kind.samples;
        if (samples > 1) {
            m_mean.fill(0);
        }
        for (int s = 0; s < samples; ++s) {
            m_layer.fill(0);
            strokeLayer(travel * m_size.width * s / samples);
            if (samples > 1) {
                QPainter painter(&m_mean);
                painter.setCompositionMode(QPainter::CompositionMode_Plus);
                painter.setOpacity(1.0 / samples);
                painter.drawImage(0, 0, m_layer);
            }
        }
        QPainter painter(&m_output);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(0, 0, m_picture);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.drawImage(0, 0, samples > 1 ? m_mean : m_layer);
    }

    [[nodiscard]] std::size_t bytes() const override {
        return static_cast<std::size_t>(m_size.width) * static_cast<std::size_t>(m_size.height) * 4;
    }

private:
    void strokeLayer(double shift) {
        QPainter painter(&m_layer);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(shift, 0);
        painter.strokePath(m_path, QPen(QColor(255, 179, 77), 2 * m_kind.radius, Qt::SolidLine,
                                        Qt::RoundCap, Qt::RoundJoin));
    }

    FrameSize m_size;
    StrokeKind m_kind;
    MemoryImage m_source;
    QImage m_picture;
    QImage m_output;
    QImage m_layer;
    QImage m_mean;
    QPainterPath m_path;
};

} // namespace

SubjectPtr qtFrame(const FrameSize& size, const StrokeKind& kind) {
    return std::make_unique<QtFrame>(size, kind);
}

} // namespace orbel::bench
