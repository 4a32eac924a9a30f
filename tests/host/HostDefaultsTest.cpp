#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <functional>

namespace orbel {
namespace {

using Base = PluginHost_API;
using Host = test::BareHost;

struct Row {
    const char* operation;
    double answer;
    std::function<double(Host&)> ask;
};

float unused = 7.0F;
int number = 7;
long position = 7;

// What an interface answers of itself, asked past the door, and what all doors answer alike.
const Row ROWS[] = {
    {"getOutputOriginX", 0, [](Host& h) { return h.Base::getOutputOriginX(); }},
    {"getOutputOriginY", 0, [](Host& h) { return h.Base::getOutputOriginY(); }},
    {"setCursor", 1, [](Host& h) { return h.Base::setCursor(0); }},
    {"forceUIUpdate", 1, [](Host& h) { return h.Base::forceUIUpdate(); }},
    {"getAppColor", 1, [](Host& h) { return h.Base::getAppColor(0, number, number, number); }},
    {"getMousePos", 1, [](Host& h) { return h.Base::getMousePos(position, position); }},
    {"getHostVersionNum", 1, [](Host& h) { return h.Base::getHostVersionNum(number, number); }},
    {"transformWorld", 1,
     [](Host& h) { return h.Base::transformWorld(nullptr, nullptr, nullptr, nullptr); }},
    {"getFloatColor", 1,
     [](Host& h) { return h.Base::getFloatColor(3, 0, nullptr, nullptr, nullptr, nullptr); }},
    {"getHeightScale", 1, [](Host& h) { return h.Base::getHeightScale(); }},
    {"hasCamera", 0, [](Host& h) { return h.Base::hasCamera(); }},
    {"getLayerSize", 1, [](Host& h) { return h.Base::getLayerSize(0, 0, unused, unused); }},
    {"setOutputSize", 1, [](Host& h) { return h.Base::setOutputSize(1, 1); }},
    {"getFrameIncrement", 1, [](Host& h) { return h.Base::getFrameIncrement(); }},
    {"getFPS", 0, [](Host& h) { return h.Base::getFPS(unused); }},
    {"ignoreNormalComposite", 0, [](Host& h) { return h.Base::ignoreNormalComposite(); }},
    {"makeUpdateApi", 0, [](Host& h) { return h.Base::makeUpdateApi() != nullptr; }},
    {"getTimeScale", 3000, [](Host& h) { return h.PluginHost_COMMON_Impl::getTimeScale(); }},
    {"getTimeStep", 100, [](Host& h) { return h.PluginHost_COMMON_Impl::getTimeStep(); }},
    {"getFrameLength", 3000, [](Host& h) { return h.getFrameLength(); }},
    {"getLocalTimeStep", 100, [](Host& h) { return h.getLocalTimeStep(); }},
    {"getCurrentTime", 256, [](Host& h) { return h.getCurrentTime(); }}, // of frame 2.567
    {"getScaleX", 1, [](Host& h) { return h.getScaleX(); }},
    {"getScaleY", 1, [](Host& h) { return h.getScaleY(); }},
    {"isQualityHigh", 1, [](Host& h) { return h.isQualityHigh(); }},
    {"isApplication", 0, [](Host& h) { return h.isApplication(0x41454658); }},
    {"isFieldRendering", 0, [](Host& h) { return h.isFieldRendering(); }},
    {"doAbort", 0, [](Host& h) { return h.doAbort(); }},
    {"progress", 0, [](Host& h) { return h.progress(1, 2); }},
    {"maintainEvenSize", 0, [](Host& h) { return h.maintainEvenSize(nullptr); }},
    {"hasGlobalSeqData", 1, [](Host& h) { return h.hasGlobalSeqData(); }},
    {"getShutterAngle", 0, [](Host& h) { return h.getShutterAngle(); }},
    {"getShutterPhase", 0, [](Host& h) { return h.getShutterPhase(); }},
    {"acquireSuite", 2, [](Host& h) { return h.acquireSuite("", 1, "", nullptr); }},
    {"blend", 1, [](Host& h) { return h.blend(5, 1, 1, nullptr, nullptr); }},
};

TEST(HostDefaults, areWhatEveryDoorStartsFrom) {
    Host host({.frame = 2.567});
    for (const Row& row : ROWS) {
        EXPECT_EQ(row.ask(host), row.answer) << row.operation;
    }
    EXPECT_EQ(unused + static_cast<float>(number) + static_cast<float>(position), 21.0F)
        << "outputs without an answer stay as they are";
}

TEST(HostDefaults, nothingIsThereUnlessADoorHasIt) {
    Host host;
    const void* const handles[] = {
        host.getAEHost(),     host.getAVX1Host(),  host.getAVX2Host(),
        host.getFXPLUGHost(), host.getSPARKHost(), host.getOFXHost(),
        host.getGASKETHost(), host.getRTFXHost(),  host.getVEGASHost(),
        host.getDLL(),        host.getUserData(),  host.checkoutLayer(1, 0.0, 0)};
    for (const void* const handle : handles) {
        EXPECT_EQ(handle, nullptr) << &handle - handles;
    }
    int param = 7;
    int sub = 7;
    host.getParamTriggerChangedEvent(param, sub);
    EXPECT_EQ(param + sub, -2);
    int fullHeight = 0;
    int step = 0;
    int phase = 7;
    host.getFullFrameInfo(0.0, 48, fullHeight, step, phase);
    EXPECT_EQ(fullHeight, 48);
    EXPECT_EQ(step, 1);
    EXPECT_EQ(phase, 0);
}

// Pixels are as wide in a raster for samples as in the output.
TEST(HostDefaults, newRastersTakeTheOutputsLayoutAndAspect) {
    MemoryImage output(8, 4, RF_RGBA16, {});
    output.setPixelAspect(1.5F);
    ParameterStore parameters;
    PluginHost_MEMORY_Impl host(RasterInfo{}, output.info(), &parameters, {});
    int rowBytes = 0;
    PluginRaster_API* const raster =
        host.allocRaster(5, 3, PluginRaster_API::PIXEL_TYPE_8, rowBytes, 0);
    EXPECT_EQ(raster->getPixelType(), PluginRaster_API::PIXEL_TYPE_16);
    RasterInfo info;
    host.getRasterInfo(raster, &info);
    EXPECT_EQ(info.pixelAspect, 1.5F);
    EXPECT_EQ(info.pixelFormat, RF_RGBA16);
    EXPECT_EQ(info.width * 10 + info.height, 53);
    EXPECT_EQ(rowBytes, info.rowBytes);
    host.deallocRaster(raster);
    delete raster;
}

} // namespace
} // namespace orbel
