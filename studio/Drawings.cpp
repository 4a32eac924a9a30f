#include "studio/Drawings.h"

#include "drawing/DrawingImport.h"
#include "shapes/PathModel.h"
#include "shapes/SvgParser.h"
#include "studio/FileStamp.h"
#include "studio/SceneFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace orbel::studio {

namespace {

constexpr double boxSide = 100.0;

/// Shapes that are remembered: what undo and a second page go back to.
constexpr std::size_t mostKnown = 8;
constexpr std::chrono::milliseconds askInterval{20};

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

/// The bytes of a drawing; none where there are too many to be looked at while somebody waits.
std::string readDrawing(const std::string& file) {
    constexpr std::uintmax_t most = std::uintmax_t{16} << 20;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error || size > most) {
        return "";
    }
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

const Conversions::Converted* Conversions::known(const Scene& scene) const {
    const std::string stamp = stampOf(scene.shape.value_or(""));
    const auto found = std::find_if(m_known.begin(), m_known.end(), [&](const Converted& one) {
        return one.shape == scene.shape && one.import == scene.import &&
               one.lettering == scene.lettering && one.stamp == stamp;
    });
    return found == m_known.end() ? nullptr : &*found;
}

/// Another request's conversion may take long; nobody waits for it in vain.
bool Conversions::lockUntil(const Stopped& stopped) {
    while (!m_mutex.try_lock_for(askInterval)) {
        if (stopped && stopped()) {
            return false;
        }
    }
    return true;
}

ShapeConverter Conversions::until(Stopped stopped) {
    if (!m_make) {
        return {};
    }
    return [this, stopped = std::move(stopped)](const Scene& scene, Problems* problems) {
        return convert(scene, stopped, problems);
    };
}

std::optional<std::string> Conversions::convert(const Scene& scene, const Stopped& stopped,
                                                Problems* problems) {
    if (!lockUntil(stopped)) {
        problems->add({scene.file, "/shape", "the conversion was stopped", "try again"});
        return std::nullopt;
    }
    const std::unique_lock lock(m_mutex, std::adopt_lock);
    if (const Converted* const found = known(scene)) {
        return found->give(problems);
    }
    Converted fresh{
        scene.shape, scene.import, scene.lettering, stampOf(scene.shape.value_or("")), {}, {}, {}};
    const auto note = [&fresh](const std::string& text) { fresh.notes.push_back(text); };
    fresh.svg = m_make(note, stopped)(scene, &fresh.problems);
    if (!fresh.svg && stopped && stopped()) {
        return fresh.give(problems); // given up, which says nothing about the drawing
    }
    m_known.push_front(std::move(fresh));
    if (m_known.size() > mostKnown) {
        m_known.pop_back();
    }
    return m_known.front().give(problems);
}

std::optional<std::string> Conversions::Converted::give(Problems* told) const {
    for (const Problem& problem : problems.items()) {
        told->add(problem);
    }
    return svg;
}

std::vector<std::string> Conversions::notesOf(const Scene& scene) {
    const std::unique_lock lock(m_mutex);
    const Converted* const found = known(scene);
    return found == nullptr ? std::vector<std::string>{} : found->notes;
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

json shapeJson(const Scene& scene, Conversions& conversions, const Conversions::Stopped& stopped) {
    const ShapeConverter convert = conversions.until(stopped);
    if (!scene.needsConversion() || !convert) {
        return json::object();
    }
    json shape;
    if (scene.import && kindOf(*scene.shape) == FileKind::Svg) {
        shape["before"] = outlinesJson(readDrawing(*scene.shape));
    }
    Problems problems;
    if (const std::optional<std::string> svg = convert(scene, &problems)) {
        shape["after"] = outlinesJson(*svg);
        shape["after"]["notes"] = conversions.notesOf(scene);
    } else {
        const Problem& problem = problems.items().front();
        shape["after"] = {{"error", problem.message}, {"remedy", problem.remedy}};
    }
    return shape;
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
