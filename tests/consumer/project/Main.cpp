#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "params/ParameterTable.h"
#include "render/RenderDispatch.h"

#include <cstdio>

namespace {

constexpr int SIZE = 64;

bool isCovered(const orbel::MemoryImage& image, int x, int y) {
    return image.info().row(y)[4 * x + 3] != 0;
}

bool renderSquare(const orbel::MemoryImage& output) {
    const orbel::MemoryImage input(SIZE, SIZE, orbel::RF_RGBA8, {});
    orbel::ParameterStore parameters;
    parameters.set(orbel::PARAM_THICKNESS, 4.0);
    orbel::Orbel_UserData shape;
    orbel::setUserDataPath(&shape, ORBEL_DATA_DIR "/Tessaly/SVG/Basic Square.svg");
    orbel::PluginHost_MEMORY_Impl host(input.info(), output.info(), &parameters, {});
    host.setUserData(&shape);
    return orbel::Render(&host) == 0;
}

} // namespace

int main() {
    const orbel::MemoryImage output(SIZE, SIZE, orbel::RF_RGBA8, {});
    if (!renderSquare(output)) {
        std::fputs("the frame was not rendered\n", stderr);
        return 1;
    }
    int covered = 0;
    for (int x = 0; x != SIZE; ++x) {
        covered += isCovered(output, x, SIZE / 2) ? 1 : 0;
    }
    std::printf("%d of %d pixels covered in the middle row\n", covered, SIZE);
    // The row crosses the left and the right side of the square and nothing between them.
    return covered > 0 && covered < SIZE / 2 && !isCovered(output, SIZE / 2, SIZE / 2) ? 0 : 1;
}
