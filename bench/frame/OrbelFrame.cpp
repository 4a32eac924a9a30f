#include "bench/frame/OrbelStroke.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/ParameterTable.h"
#include "pixel/Acceleration.h"
#include "render/RenderDispatch.h"

#include <cstdint>
#include <stdexcept>

namespace orbel::bench {

namespace {

constexpr double MODE_NORMAL = 1;
constexpr const char* STAR = ORBEL_SOURCE_DIR "/resources/Tessaly/SVG/Basic Star.svg";

class OrbelFrame final : public Subject {
public:
    OrbelFrame(const FrameSize& size, RasterFormat format, const StrokeKind& kind, int level,
               int threads)
        : m_level(level),
          m_threads(threads),
          m_source(size.width, size.height, format, {}),
          m_input(size.width, size.height, format, {}),
          m_output(size.width, size.height, format, {}) {
        paintBackdrop(m_source);
        setStroke(kind, &m_parameters, &m_shape);
        if (kind.samples > 1) {
            m_parameters.set(PARAM_MOTION_BLUR, 1);
            m_parameters.set(PARAM_LEVELS, kind.samples);
            m_parameters.setKeys(PARAM_POSITION_XY, {{0, {0.49, 0.5}, Easing::Linear},
                                                     {1, {0.51, 0.5}, Easing::Linear}});
        }
    }

    void prepare() override { m_input.copyFrom(m_source); }

    void run() override {
        setAccelerationLevel(m_level);
        setRenderThreads(m_threads);
        PluginHost_MEMORY_Impl host(m_input.info(), m_output.info(), &m_parameters, {});
        host.setUserData(&m_shape);
        if (Render(&host) != 0) {
            throw std::runtime_error("a frame failed");
        }
    }

    /// Valid after a run.
    [[nodiscard]] ClosedOutline outline() {
        PluginHost_MEMORY_Impl host(m_input.info(), m_output.info(), &m_parameters, {});
        host.setUserData(&m_shape);
        Render(&host);
        PluginPath_API* const paths = host.getPathAPI();
        unsigned long id = 0;
        void* path = nullptr;
        long count = 0;
        paths->PathInfo(nullptr, 1, &id);
        paths->CheckoutPath(nullptr, id, 0, 100, 3000, &path);
        paths->PathNumSegments(nullptr, path, &count);
        ClosedOutline vertices(static_cast<std::size_t>(count));
        for (long i = 0; i < count; ++i) {
            paths->PathVertexInfo(nullptr, path, i, &vertices[static_cast<std::size_t>(i)]);
        }
        paths->CheckinPath(nullptr, id, false, path);
        return vertices;
    }

    [[nodiscard]] std::size_t bytes() const override {
        return m_source.rowSize() * static_cast<std::size_t>(m_source.info().height);
    }

private:
    int m_level;
    int m_threads;
    MemoryImage m_source;
    MemoryImage m_input;
    MemoryImage m_output;
    ParameterStore m_parameters;
    Orbel_UserData m_shape;
};

template<typename T>
void paintRows(const MemoryImage& image, T full) {
    const RasterInfo& info = image.info();
    std::uint32_t random = 1;
    for (int y = 0; y < info.height; ++y) {
        T* const row = reinterpret_cast<T*>(info.row(y));
        for (int i = 0; i < info.width * 4; ++i) {
            random = random * 1664525U + 1013904223U;
            const double value = static_cast<double>(random >> 8) / (1 << 24);
            row[i] = i % 4 == 3 ? full : static_cast<T>(value * static_cast<double>(full));
        }
    }
}

} // namespace

void setStroke(const StrokeKind& kind, ParameterStore* parameters, Orbel_UserData* shape) {
    setUserDataPath(shape, STAR);
    parameters->set(PARAM_TRANSFER_MODE, MODE_NORMAL);
    parameters->set(PARAM_THICKNESS, kind.radius);
    parameters->set(PARAM_FEATHER, kind.feather);
}

void paintBackdrop(const MemoryImage& image) {
    switch (image.info().pixelFormat) {
    case RF_RGBA8:
        paintRows<std::uint8_t>(image, 255);
        break;
    case RF_RGBA16:
        paintRows<std::uint16_t>(image, 65535);
        break;
    default:
        paintRows<float>(image, 1.0F);
        break;
    }
}

SubjectPtr orbelFrame(const FrameSize& size, RasterFormat format, const StrokeKind& kind, int level,
                      int threads) {
    return std::make_unique<OrbelFrame>(size, format, kind, level, threads);
}

ClosedOutline starOutline(const FrameSize& size) {
    OrbelFrame frame(size, RF_RGBA8, {"outline", 1, 0, 1}, 0, 1);
    frame.prepare();
    return frame.outline();
}

} // namespace orbel::bench
