#include "app/ShapeSheet.h"

#include "drawing/Lettering.h"
#include "film/FrameInput.h"
#include "film/FrameRenderer.h"
#include "film/ShapeFolder.h"
#include "params/ParameterTable.h"
#include "scene/SceneShapes.h"
#include "shapes/PathModel.h"
#include "shapes/ShapeFile.h"
#include "shapes/ShapeTable.h"
#include "shapes/SvgParser.h"

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
constexpr const char* captionHand = "futural";
constexpr double captionSize = 19.0;
constexpr double captionThickness = 1.7;
constexpr int captionBaseline = 23; ///< below the tile

constexpr int transferNormal = 1;
constexpr int transferAdd = 2;

constexpr std::array<double, 4> ground{0.04, 0.045, 0.07, 1.0};
constexpr std::array<double, 4> tileGround{0.07, 0.08, 0.118, 1.0};
constexpr ParameterValue bright{0.667, 0.698, 0.776};
constexpr ParameterValue dim{0.275, 0.298, 0.353};

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

/// Where the effect takes the middle of a name to be: its box counts control points.
double middleOf(const ConvertedShape& name) {
    PluginPath_Impl path;
    svg_parser parser;
    parser.setPath(&path);
    parser.parseBuffer(name.svg);
    std::array<double, 4> box{0, 0, 0, -1};
    for (const auto& outline : path.outlines()) {
        for (const Vx_PathVertex& v : outline.vertices) {
            PluginPath_Impl::clamp(v.x, v.y, box.data());
            PluginPath_Impl::clamp(v.tanInX, v.tanInY, box.data());
            PluginPath_Impl::clamp(v.tanOutX, v.tanOutY, box.data());
        }
    }
    return (box[1] + box[3]) / 2;
}

/// A square picture with a name in its middle, as the effect draws it. The baseline, `below` the
/// middle, is brought to a whole row.
ScenePlan captionPlan(const ConvertedShape& name, double below, const ParameterValue& colour) {
    constexpr double edges = 0.2; // of the size, left and right of a writing
    const double width = name.width - edges * captionSize;
    const double scale = width / (tileSide / 2.0); // a shape spans half of the frame
    ScenePlan plan;
    plan.size = {tileSide, tileSide};
    plan.color.rgba = ground;
    plan.shapeText = name.svg;
    plan.parameters.set(PARAM_COLOR, colour);
    plan.parameters.set(PARAM_THICKNESS, captionThickness);
    plan.parameters.set(PARAM_SCALE_X, scale);
    plan.parameters.set(PARAM_SCALE_Y, scale);
    const double toWholeRow = (std::round(below) - below) / tileSide;
    plan.parameters.set(PARAM_POSITION_XY, {0.5, 0.5 + toWholeRow});
    plan.parameters.set(PARAM_TRANSFER_MODE, transferNormal);
    return plan;
}

/// Without letters of single strokes the shape stays without a name.
void drawCaption(const char* name, int x, int y, const ParameterValue& colour,
                 const MemoryImage& sheet) {
    LetteringOptions lettering;
    lettering.text = name;
    lettering.singleStroke = true;
    lettering.hand = captionHand;
    lettering.size = captionSize;
    const Conversion written = letterText(lettering);
    if (!written.shape) {
        return;
    }
    const double below = written.shape->baseline - middleOf(*written.shape); // the baseline
    ScenePlan plan = captionPlan(*written.shape, below, colour);
    FrameInput background(&plan);
    MemoryImage picture(tileSide, tileSide, RF_RGBA8, RowLayout{});
    background.fill(0, picture);
    if (!drawOver(std::move(plan), &picture)) {
        return;
    }
    const int top = tileSide / 2 + static_cast<int>(std::lround(below)) - captionBaseline;
    for (int row = 0; row < caption; ++row) {
        std::memcpy(sheet.info().row(y + row) + std::ptrdiff_t{4} * x,
                    picture.info().row(top + row), picture.rowSize());
    }
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
        drawCaption(g_svgShapes[shape].name, x, y + tileSide, drawn ? bright : dim, sheet);
    }
    return sheet;
}

} // namespace orbel::app
