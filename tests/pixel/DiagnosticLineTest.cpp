#include "pixel/DiagnosticLine.h"

#include "tests/pixel/PixelTestSupport.h"

namespace orbel::test {
namespace {

template<typename P>
class DiagnosticLine : public testing::Test {};
TYPED_TEST_SUITE(DiagnosticLine, AllPixelFormats);

TYPED_TEST(DiagnosticLine, IsOpaqueRedInEveryRowLayout) {
    using P = TypeParam;
    using T = typename P::Component;
    RasterHost host;
    for (const RowLayout& layout : rowLayouts) {
        PixelImage<P> image(5, 4, layout);
        drawLine(host.get(), image.info(), -3, 1, 9, 1);
        const auto maximum = static_cast<T>(P::MAX_VALUE());
        const Components<T> red{maximum, T{0}, T{0}, maximum};
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(image.get(x, 1), red);
            EXPECT_EQ(image.get(x, 0), Components<T>{});
            EXPECT_EQ(image.get(x, 2), Components<T>{});
        }
        EXPECT_TRUE(image.guardsIntact());
    }
}

TEST(DiagnosticLineColour, MaximumFollowsTheDepthOfTheLayout) {
    RasterHost host;
    struct Case {
        RasterFormat format;
        unsigned maximum;
    };
    for (const Case& c : {Case{RF_ARGB15, 32767}, Case{RF_ARGB14, 16383}, Case{RF_ARGB16, 65535},
                          Case{RF_ARGB32F, 65535}}) {
        PixelImage<PIXEL_ARGB16> image(2, 2, {0, false});
        image.info().pixelFormat = c.format;
        drawLine(host.get(), image.info(), 1, 1, 1, 1);
        EXPECT_EQ(image.get(1, 1)[0], c.maximum);
        EXPECT_EQ(image.get(1, 1)[3], c.maximum);
    }
}

class AvxHost final : public PluginHost_MEMORY_Impl {
public:
    AvxHost(ParameterStore* parameters, int version)
        : PluginHost_MEMORY_Impl({}, {}, parameters, {}), m_version(version) {}
    AVX1Host* getAVX1Host() override { return m_version == 1 ? handle<AVX1Host>() : nullptr; }
    AVX2Host* getAVX2Host() override { return m_version == 2 ? handle<AVX2Host>() : nullptr; }

private:
    template<typename Handle>
    Handle* handle() {
        return static_cast<Handle*>(static_cast<void*>(&m_version));
    }

    int m_version;
};

TEST(DiagnosticLineColour, AlphaIsZeroInTheAvxHosts) {
    ParameterStore parameters;
    for (const int version : {0, 1, 2}) {
        AvxHost host(&parameters, version);
        PixelImage<PIXEL_RGBA8> image(2, 2, {0, false});
        drawLine(&host, image.info(), 0, 0, 0, 0);
        const auto alpha = static_cast<unsigned char>(version == 0 ? 255 : 0);
        EXPECT_EQ(image.get(0, 0), (Components<unsigned char>{255, 0, 0, alpha}));
    }
}

TEST(DiagnosticLineColour, RecordWithTooFewBytesPerPixelIsLeftAlone) {
    RasterHost host;
    PixelImage<PIXEL_ARGB8> image(3, 3, {0, false});
    for (const int bytes : {0, 2, 5, 7, 9, 15}) {
        image.info().bytesPerPixel = bytes;
        drawLine(host.get(), image.info(), 0, 0, 2, 2);
        EXPECT_EQ(image.get(1, 1), (Components<unsigned char>{}));
    }
}

} // namespace
} // namespace orbel::test
