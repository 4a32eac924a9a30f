#include "studio/Drawings.h"

#include "drawing/DrawingImport.h"
#include "shapes/PathModel.h"
#include "shapes/SvgParser.h"
#include "studio/FileStamp.h"

#include <cstdio>
#include <memory>
#include <mutex>
#include <utility>

namespace orbel::studio {

namespace {

constexpr double boxSide = 100.0;

/// The last conversion, and what it was made of.
struct LastConversion {
    std::mutex mutex;
    std::optional<std::string> shape;
    std::optional<ImportOptions> import;
    std::optional<LetteringOptions> lettering;
    std::string stamp;
    std::string svg; ///< empty: none yet

    [[nodiscard]] bool isOf(const Scene& scene, const std::string& now) const {
        return !svg.empty() && shape == scene.shape && import == scene.import &&
               lettering == scene.lettering && stamp == now;
    }
};

/// Two decimals are finer than any small picture shows.
std::string pointText(double x, double y) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f %.2f", x * boxSide, y * boxSide);
    return text;
}

std::string outlineText(const PluginPath_Impl::Vx_PathOutline& outline) {
    const auto& vertices = outline.vertices;
    if (vertices.empty()) {
        return "";
    }
    std::string text = "M";
    text += pointText(vertices.front().x, vertices.front().y);
    const std::size_t segments = vertices.size() - (outline.isOpen ? 1 : 0);
    for (std::size_t i = 0; i < segments; ++i) {
        const Vx_PathVertex& from = vertices[i];
        const Vx_PathVertex& to = vertices[(i + 1) % vertices.size()];
        text += "C";
        text += pointText(from.tanOutX, from.tanOutY) + " ";
        text += pointText(to.tanInX, to.tanInY) + " ";
        text += pointText(to.x, to.y);
    }
    return text;
}

} // namespace

ShapeConverter remembering(ShapeConverter convert) {
    if (!convert) {
        return {};
    }
    return [convert = std::move(convert), last = std::make_shared<LastConversion>()](
               const Scene& scene, Problems* problems) -> std::optional<std::string> {
        const std::lock_guard lock(last->mutex);
        const std::string stamp = stampOf(scene.shape.value_or(""));
        if (last->isOf(scene, stamp)) {
            return last->svg;
        }
        std::optional<std::string> svg = convert(scene, problems);
        last->svg = svg.value_or("");
        last->shape = scene.shape;
        last->import = scene.import;
        last->lettering = scene.lettering;
        last->stamp = stamp;
        return svg;
    };
}

json outlinesJson(std::string_view svg) {
    PluginPath_Impl path;
    svg_parser parser;
    parser.setPath(&path);
    parser.parseBuffer({svg.data(), svg.size()});
    path.normalize();
    json outlines = json::array();
    for (const auto& outline : path.outlines()) {
        if (std::string text = outlineText(outline); !text.empty()) {
            outlines.push_back(std::move(text));
        }
    }
    return {{"paths", std::move(outlines)}, {"size", {boxSide, boxSide}}};
}

json importJson(std::string_view svg) {
    const Conversion conversion = importDrawing(svg, {});
    if (!conversion.shape) {
        return {{"error", conversion.message}, {"remedy", conversion.remedy}};
    }
    json drawing = outlinesJson(conversion.shape->svg);
    drawing["notes"] = conversion.shape->notes;
    return drawing;
}

} // namespace orbel::studio
