#include "app/ShapeSheet.h"

#include "app/Lettering.h"
#include "film/FrameInput.h"
#include "film/FrameRenderer.h"
#include "film/ShapeFolder.h"
#include "params/ParameterTable.h"
#include "scene/SceneShapes.h"
#include "shapes/ShapeFile.h"
#include "shapes/ShapeTable.h"

#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <utility>

namespace orbel::app {

namespace {

constexpr int columns = 8;
constexpr int rows = 5;
constexpr int tileSide = 256;
constexpr int caption = 40;
constexpr int gap = 16;
constexpr double strokeThickness = 3.4;
constexpr double letterUnit = 2.1;

constexpr int transferNormal = 1;
constexpr int transferAdd = 2;

constexpr std::array<double, 4> ground{0.04, 0.045, 0.07, 1.0};
constexpr std::array<double, 4> tileGround{0.07, 0.08, 0.118, 1.0};
constexpr std::array<std::uint8_t, 3> bright{170, 178, 198};
constexpr std::array<std::uint8_t, 3> dim{70, 76, 90};

/// Soft colours that walk round the hues from shape to shape.
ParameterValue strokeColour(int shape) {
    const double turn = 2.0 * std::numbers::pi * shape / (columns * rows);
    ParameterValue colour{};
    for (std::size_t i = 0; i < colour.size(); ++i) {
        colour[i] =
            0.74 + 0.25 * std::cos(turn - 2.0 * std::numbers::pi * static_cast<double>(i) / 3);
    }
    return colour;
}

ScenePlan tilePlan(int shape) {
    ScenePlan plan;
    plan.size = {tileSide, tileSide};
    plan.color.rgba = tileGround;
    plan.parameters.set(PARAM_PRESETS, shape);
    plan.parameters.set(PARAM_COLOR, strokeColour(shape));
    plan.parameters.set(PARAM_THICKNESS, strokeThickness);
    plan.parameters.set(PARAM_FEATHER, 30);
    plan.parameters.set(PARAM_SCALE_X, 1.5);
    plan.parameters.set(PARAM_SCALE_Y, 1.5);
    plan.parameters.set(PARAM_TRANSFER_MODE, transferNormal);
    return plan;
}

/// The faint light that the stroke throws on its tile.
ScenePlan glowPlan(int shape) {
    ScenePlan plan = tilePlan(shape);
    plan.parameters.set(PARAM_THICKNESS, 26);
    plan.parameters.set(PARAM_FEATHER, 100);
    plan.parameters.set(PARAM_INTERNAL_OPACITY, 6);
    plan.parameters.set(PARAM_OPACITY, 26);
    plan.parameters.set(PARAM_TRANSFER_MODE, transferAdd);
    return plan;
}

void paste(const MemoryImage& tile, int x, int y, const MemoryImage& sheet) {
    for (int row = 0; row < tile.info().height; ++row) {
        std::memcpy(sheet.info().row(y + row) + std::ptrdiff_t{4} * x, tile.info().row(row),
                    tile.rowSize());
    }
}

/// Draws one plan over a picture and leaves the result in it.
bool drawOver(ScenePlan plan, MemoryImage* picture) {
    FrameRenderer renderer(&plan, {}, {});
    MemoryImage output = renderer.makeImage();
    if (renderer.render(0, *picture, output) != 0) {
        return false;
    }
    *picture = std::move(output);
    return true;
}

/// False when the shape has no file.
bool drawTile(int shape, int x, int y, const MemoryImage& sheet) {
    ScenePlan plan = tilePlan(0);
    FrameInput background(&plan);
    MemoryImage picture(tileSide, tileSide, RF_RGBA8, RowLayout{});
    background.fill(0, picture);
    const bool drawable = fileExists(presetFile(shape).c_str()) == 1;
    if (drawable && !(drawOver(glowPlan(shape), &picture) && drawOver(tilePlan(shape), &picture))) {
        background.fill(0, picture);
    }
    paste(picture, x, y, sheet);
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
        const char* const name = g_svgShapes[shape].name;
        const double indent = (tileSide - textWidth(name) * letterUnit) / 2;
        drawText(sheet.info(), {x + indent, y + tileSide + 23.0, letterUnit}, name,
                 drawn ? bright : dim);
    }
    return sheet;
}

} // namespace orbel::app
