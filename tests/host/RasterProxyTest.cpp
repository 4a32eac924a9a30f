#include "host/RasterProxy.h"

#include "host/PluginRaster_PLAIN_Impl.h"
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

class LoggingRaster final : public PluginRaster_PLAIN_Impl {
public:
    LoggingRaster(Log* log, int width) : PluginRaster_PLAIN_Impl(sized(width)), m_log(log) {}
    LoggingRaster(const LoggingRaster&) = delete;
    LoggingRaster& operator=(const LoggingRaster&) = delete;
    ~LoggingRaster() override { m_log->emplace_back("delete"); }
    PixelType getPixelType() override { return PIXEL_TYPE_8; }

private:
    static RasterInfo sized(int width) {
        RasterInfo info;
        info.width = width;
        info.height = 7;
        return info;
    }

    Log* m_log;
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

TEST(PluginRaster, extentsAreInclusive) {
    Log log;
    LoggingRaster raster(&log, 0);
    EXPECT_EQ(raster.getExtentLeft(), 0);
    EXPECT_EQ(raster.getExtentTop(), 0);
    EXPECT_EQ(raster.getExtentRight(), -1);
    EXPECT_EQ(raster.getExtentBottom(), 6);
}

} // namespace
} // namespace orbel
