#include "host/RasterProxy.h"

#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using Log = std::vector<std::string>;

class LoggingHost final : public test::BareHost {
public:
    explicit LoggingHost(Log* log) : m_log(log) {}
    void deallocRaster(PluginRaster_API* raster) override {
        m_log->push_back(raster == nullptr ? "dealloc null" : "dealloc");
    }

private:
    Log* m_log;
};

class LoggingRaster final : public PluginRaster_API {
public:
    LoggingRaster(Log* log, int width) : m_log(log), m_width(width) {}
    ~LoggingRaster() override { m_log->emplace_back("delete"); }
    int getWidth() override { return m_width; }
    int getHeight() override { return 7; }
    PixelType getPixelType() override { return PIXEL_TYPE_8; }
    int getRowBytes() override { return 0; }
    AERaster* getAERaster() override { return nullptr; }
    AVX1Raster* getAVX1Raster() override { return nullptr; }
    AVX2Raster* getAVX2Raster() override { return nullptr; }
    FXPLUGRaster* getFXPLUGRaster() override { return nullptr; }
    SPARKRaster* getSPARKRaster() override { return nullptr; }
    void setHost(PluginHost_API*) override {}

private:
    Log* m_log;
    int m_width;
};

TEST(RasterProxy, releasesBeforeItDeletesAsTheFlagsSay) {
    struct Row {
        bool raster;
        bool dealloc;
        bool destroy;
        Log expected;
    };
    const Row rows[] = {
        {true, true, true, {"dealloc", "delete"}}, {true, true, false, {"dealloc"}},
        {true, false, true, {"delete"}},           {true, false, false, {}},
        {false, true, true, {"dealloc null"}},     {false, false, true, {}},
    };
    for (const Row& row : rows) {
        Log log;
        LoggingHost host(&log);
        auto* const raster = row.raster ? new LoggingRaster(&log, 3) : nullptr;
        { const PluginRasterProxy proxy(&host, raster, row.dealloc, row.destroy); }
        EXPECT_EQ(log, row.expected);
        if (!row.destroy) {
            delete raster;
        }
    }
}

TEST(RasterProxy, setRasterReplacesTheRasterAndTheFirstFlagOnly) {
    Log log;
    LoggingHost host(&log);
    LoggingRaster former(&log, 3);
    {
        PluginRasterProxy proxy(&host, &former, true, true);
        proxy.setRaster(new LoggingRaster(&log, 9), false);
        EXPECT_EQ(proxy->getWidth(), 9);
        EXPECT_EQ(proxy.getImpl()->getHeight(), 7);
    }
    EXPECT_EQ(log, Log{"delete"});
}

TEST(PluginRaster, extentsAreInclusiveAndHandlesNull) {
    Log log;
    LoggingRaster raster(&log, 0);
    EXPECT_EQ(raster.getExtentLeft(), 0);
    EXPECT_EQ(raster.getExtentTop(), 0);
    EXPECT_EQ(raster.getExtentRight(), -1);
    EXPECT_EQ(raster.getExtentBottom(), 6);
    EXPECT_EQ(raster.getOFXRaster(), nullptr);
    EXPECT_EQ(raster.getGASKETRaster(), nullptr);
    EXPECT_EQ(raster.getRTFXRaster(), nullptr);
    EXPECT_EQ(raster.getVEGASRaster(), nullptr);
    EXPECT_EQ(raster.getRasterInfoBase(), nullptr);
}

} // namespace
} // namespace orbel
