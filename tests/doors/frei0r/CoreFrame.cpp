#include "tests/doors/frei0r/CoreFrame.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "render/RenderDispatch.h"
#include "shapes/ShapeTable.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orbel::frei0r {

Pixels coreFrame(CoreScene& scene, unsigned width, unsigned height, const Pixels& input) {
    buildStaticSVGShapeInfo(ORBEL_SOURCE_DIR "/resources");
    const auto makeImage = [&] {
        MemoryImage image(static_cast<int>(width), static_cast<int>(height), RF_RGBA8, RowLayout{});
        image.setPixelAspect(static_cast<float>(scene.pixelAspect));
        return image;
    };
    const std::size_t bytes = input.size() * sizeof(std::uint32_t);
    const MemoryImage source = makeImage();
    const MemoryImage target = makeImage();
    std::memcpy(source.info().data, input.data(), bytes);
    Orbel_UserData shape;
    setUserDataPath(&shape, scene.shape.c_str());
    MemoryHostSettings settings;
    settings.frame = scene.frame;
    settings.renderScaleX = scene.renderScaleX;
    settings.renderScaleY = scene.renderScaleY;
    settings.alpha = {SourceAlpha::Straight, OutputAlpha::Straight};
    PluginHost_MEMORY_Impl host(source.info(), target.info(), &scene.parameters, settings);
    host.setUserData(&shape);
    EXPECT_EQ(Render(&host), 0);
    Pixels output(input.size());
    std::memcpy(output.data(), target.info().data, bytes);
    return output;
}

} // namespace orbel::frei0r
