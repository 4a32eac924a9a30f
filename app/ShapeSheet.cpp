#include "app/ShapeSheet.h"

#include "app/FrameInput.h"
#include "app/FrameRenderer.h"
#include "app/Lettering.h"
#include "app/ShapeFolder.h"
#include "params/ParameterTable.h"
#include "shapes/ShapeFile.h"
#include "shapes/ShapeTable.h"

#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

namespace orbel::app {

namespace {

constexpr int columns = 8;
constexpr int rows = 5;
constexpr int tileSide = 256;
constexpr int caption = 36;
constexpr int gap = 16;
constexpr int letterScale = 2;

constexpr std::array<double, 4> ground{0.07, 0.075, 0.1, 1.0};
constexpr std::array<double, 4> tileGround{0.11, 0.115, 0.15, 1.0};
constexpr std::array<std::uint8_t, 4> bright{196, 200, 212, 255};
constexpr std::array<std::uint8_t, 4> dim{84, 88, 100, 255};

/// Soft colours that walk round the hues from shape to shape.
ParameterValue strokeColour(int shape) {
    const double turn = 2.0 * std::numbers::pi * shape / (columns * rows);
    ParameterValue colour{};
    for (std::size_t i = 0; i < colour.size(); ++i) {
        colour[i] =
            0.72 + 0.25 * std::cos(turn - 2.0 * std::numbers::pi * static_cast<double>(i) / 3);
    }
    return colour;
}

ScenePlan tilePlan(int shape) {
    ScenePlan plan;
    plan.size = {tileSide, tileSide};
    plan.color.rgba = tileGround;
    plan.parameters.set(PARAM_PRESETS, shape);
    plan.parameters.set(PARAM_COLOR, strokeColour(shape));
    plan.parameters.set(PARAM_THICKNESS, 7);
    plan.parameters.set(PARAM_FEATHER, 20);
    plan.parameters.set(PARAM_SCALE_X, 1.5);
    plan.parameters.set(PARAM_SCALE_Y, 1.5);
    plan.parameters.set(PARAM_ENABLE_TAPER, 1);
    plan.parameters.set(PARAM_START_THICKNESS, 25);
    plan.parameters.set(PARAM_END_THICKNESS, 25);
    plan.parameters.set(PARAM_TRANSFER_MODE, 1);
    return plan;
}

void paste(const MemoryImage& tile, int x, int y, const MemoryImage& sheet) {
    for (int row = 0; row < tile.info().height; ++row) {
        std::memcpy(sheet.info().row(y + row) + std::ptrdiff_t{4} * x, tile.info().row(row),
                    tile.rowSize());
    }
}

/// False when the shape has no file.
bool drawTile(int shape, int x, int y, const MemoryImage& sheet) {
    ScenePlan plan = tilePlan(shape);
    const bool drawable = fileExists(presetFile(shape).c_str()) == 1;
    FrameInput background(&plan);
    FrameRenderer renderer(&plan, {}, {});
    const MemoryImage input = renderer.makeImage();
    background.fill(0, input);
    if (drawable) {
        const MemoryImage output = renderer.makeImage();
        if (renderer.render(0, input, output) == 0) {
            paste(output, x, y, sheet);
            return true;
        }
        background.fill(0, input);
    }
    paste(input, x, y, sheet);
    return drawable;
}

MemoryImage emptySheet() {
    ScenePlan plan;
    plan.size = {columns * (tileSide + gap) + gap, rows * (tileSide + caption + gap) + gap};
    plan.color.rgba = ground;
    FrameInput background(&plan);
    MemoryImage sheet(plan.size.width, plan.size.height, RF_RGBA8, RowLayout{});
    background.fill(0, sheet);
    return sheet;
}

} // namespace

MemoryImage makeShapeSheet() {
    prepareShapeTable();
    MemoryImage sheet = emptySheet();
    for (int shape = 1; shape < g_numSVGShapes; ++shape) {
        const int tile = shape - 1;
        const int x = gap + tile % columns * (tileSide + gap);
        const int y = gap + tile / columns * (tileSide + caption + gap);
        const bool drawn = drawTile(shape, x, y, sheet);
        drawText(sheet.info(), x, y + tileSide + gap / 2, letterScale, g_svgShapes[shape].name,
                 drawn ? bright : dim);
    }
    return sheet;
}

} // namespace orbel::app
