#include "SmallestDoor.h"
#include "render/RenderDispatch.h"

#include <cstdio>

namespace {

constexpr int SIZE = 64;

bool isCovered(const orbel::MemoryImage& image, int x, int y) {
    return image.info().row(y)[4 * x + 3] != 0;
}

bool renderSquare(const orbel::MemoryImage& output) {
    const orbel::MemoryImage input(SIZE, SIZE, orbel::RF_RGBA8, {});
    const Effect effect{ORBEL_DATA_DIR "/Tessaly/SVG/Basic Square.svg",
                        {{orbel::PARAM_THICKNESS, {4.0}}}};
    SmallestDoor host(effect, 0.0, {input.info(), output.info(), {}});
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
