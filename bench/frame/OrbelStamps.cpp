#include "bench/frame/OrbelStroke.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "pixel/Acceleration.h"
#include "render/BandTarget.h"
#include "render/StrokeSample.h"

#include <cstring>
#include <stdexcept>

namespace orbel::bench {

namespace {

using Pixel = PIXEL_RGBA8;

/// Paints stamps into bands of a layer and does nothing else to it.
class LayerOfStamps final : public StampSink {
public:
    LayerOfStamps(const RasterInfo& layer, int level)
        : m_layer(layer),
          m_kernels(*stampKernels<Pixel>(level)),
          m_bandRows(bandHeight(layer.rowBytes)),
          m_batch(layer.height, m_bandRows),
          m_work(m_batch.bands()) {}

    void stamp(const Stamp& s) override {
        PlacedStamp placed(s, Pixel::MAX_VALUE());
        if (placed.trim(m_layer.width, m_layer.height)) {
            m_batch.add(placed);
        }
        if (m_batch.isFull()) {
            paint();
        }
    }

    void paint() {
        m_work.begin([this](int band) { paintBand(band); });
        m_work.wait();
        m_batch.clear();
    }

private:
    void paintBand(int band) {
        const int first = band * m_bandRows;
        const int last = std::min(first + m_bandRows, m_layer.height) - 1;
        m_kernels.paint({m_layer.data, m_layer.rowBytes, m_layer.width, first, last},
                        m_batch.data(), m_batch.inBand(band), true);
    }

    RasterInfo m_layer;
    const StampKernels& m_kernels;
    int m_bandRows;
    StampBatch m_batch;
    BandWork m_work;
};

class OrbelStamps final : public Subject {
public:
    OrbelStamps(const FrameSize& size, const StrokeKind& kind, int level, int threads)
        : m_level(level),
          m_threads(threads),
          m_picture(size.width, size.height, RF_RGBA8, {}),
          m_layer(size.width, size.height, RF_RGBA8, {}) {
        setStroke(kind, &m_parameters, &m_shape);
    }

    void prepare() override { std::memset(m_layer.info().data, 0, bytes()); }

    void run() override {
        setRenderThreads(m_threads);
        PluginHost_MEMORY_Impl host(m_picture.info(), m_layer.info(), &m_parameters, {});
        host.setUserData(&m_shape);
        const StrokeFrame frame(&host);
        frame.installShape(host.getOutputRaster());
        LayerOfStamps layer(m_layer.info(), m_level);
        StampingSpanRenderer renderer(&host, layer, m_layer.info().width, m_layer.info().height);
        FrameChords chords(&host);
        if (drawSample(frame, frame.args, frame.currentTime, renderer, &chords) != 0) {
            throw std::runtime_error("a stroke failed");
        }
        layer.paint();
    }

    [[nodiscard]] std::size_t bytes() const override {
        return m_layer.rowSize() * static_cast<std::size_t>(m_layer.info().height);
    }

private:
    int m_level;
    int m_threads;
    MemoryImage m_picture;
    MemoryImage m_layer;
    ParameterStore m_parameters;
    Orbel_UserData m_shape;
};

} // namespace

SubjectPtr orbelStamps(const FrameSize& size, const StrokeKind& kind, int level, int threads) {
    if (stampKernels<Pixel>(level) == nullptr) {
        return nullptr;
    }
    return std::make_unique<OrbelStamps>(size, kind, level, threads);
}

} // namespace orbel::bench
