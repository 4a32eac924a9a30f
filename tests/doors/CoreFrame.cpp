#include "tests/doors/CoreFrame.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "host/RasterRows.h"
#include "params/InstanceData.h"
#include "render/RenderDispatch.h"
#include "shapes/ShapeTable.h"

#include <gtest/gtest.h>

namespace orbel::test {

MemoryImage CoreFrame::over(const RasterInfo& picture) const {
    buildStaticSVGShapeInfo(ORBEL_RESOURCES);
    const MemoryImage input(picture.width, picture.height, picture.pixelFormat, RowLayout{});
    copyRows(picture, input.info());
    MemoryImage output(picture.width, picture.height, picture.pixelFormat, RowLayout{});
    output.setPixelAspect(static_cast<float>(aspect));
    ParameterStore values = parameters;
    MemoryHostSettings settings;
    settings.frame = time;
    settings.renderScaleX = scaleX;
    settings.renderScaleY = scaleY;
    settings.alpha = alpha;
    PluginHost_MEMORY_Impl host(input.info(), output.info(), &values, settings);
    Orbel_UserData shape;
    setUserDataPath(&shape, shapeFile.c_str());
    host.setShapeText(shapeText);
    host.setUserData(&shape);
    EXPECT_EQ(Render(&host), 0);
    return output;
}

} // namespace orbel::test
