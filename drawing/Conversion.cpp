#include "drawing/Conversion.h"

#include "drawing/DrawingDocument.h"
#include "drawing/LimitedProcess.h"
#include "drawing/ShapeWriter.h"
#include "drawing/ShortNumber.h"

#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

/// The reader keeps no more vertices and outlines than this, see its limits.
constexpr std::size_t mostSegments = 1'000'000;

void checkAmount(const ConvertedPage& converted) {
    const DrawnPage& page = converted.page;
    std::size_t segments = 0;
    for (const DrawnCurve& drawn : page.curves) {
        segments += drawn.curve.segments.size() + 2;
    }
    if (segments > mostSegments) {
        throw DrawingError{"the drawing has " + std::to_string(segments) +
                               " points, and a shape holds a million",
                           "simplify it (--simplify), or leave small outlines out (--smallest)"};
    }
    if (page.curves.empty()) {
        const std::string reason =
            converted.notes.empty() ? "" : " (" + converted.notes.front() + ")";
        throw DrawingError{"nothing in the drawing can be stroked" + reason,
                           "is something visible on its page?"};
    }
}

json sourceOf(const OutlineSource& source) {
    return json::array({source.id, source.title, source.fill, source.stroke});
}

std::string answerOf(const ConvertedPage& converted) {
    checkAmount(converted);
    json outlines = json::array();
    for (const DrawnCurve& drawn : converted.page.curves) {
        outlines.push_back(
            {sourceOf(drawn.source), drawn.curve.closed, drawn.curve.segments.size()});
    }
    const json answer{{"svg", shapeText(converted.page)}, {"width", converted.page.width},
                      {"height", converted.page.height},  {"baseline", converted.page.baseline},
                      {"outlines", std::move(outlines)},  {"notes", converted.notes}};
    return answer.dump(-1, ' ', false, json::error_handler_t::replace);
}

ConvertedShape shapeOf(const json& answer) {
    ConvertedShape shape;
    shape.svg = answer.at("svg").get<std::string>();
    shape.width = answer.at("width").get<double>();
    shape.height = answer.at("height").get<double>();
    shape.baseline = answer.at("baseline").get<double>();
    shape.notes = answer.at("notes").get<std::vector<std::string>>();
    for (const json& part : answer.at("outlines")) {
        const auto source = part.at(0).get<std::vector<std::string>>();
        shape.outlines.push_back({{source.at(0), source.at(1), source.at(2), source.at(3)},
                                  part.at(1).get<bool>(),
                                  part.at(2).get<std::size_t>()});
    }
    return shape;
}

Conversion failureOf(ProcessEnd end, double seconds) {
    constexpr const char* simpler = "simplify it, or split it, in a drawing program";
    switch (end) {
    case ProcessEnd::OutOfTime:
        return {std::nullopt, "the drawing takes longer than " + shortNumber(seconds) + " seconds",
                "allow it more with --seconds, or simplify it in a drawing program"};
    case ProcessEnd::OutOfMemory:
        return {std::nullopt, "the drawing needs more than 1 GiB of memory", simpler};
    case ProcessEnd::NotStarted:
        return {std::nullopt, "no process can be started to read the drawing", "try again"};
    default:
        return {std::nullopt, "the drawing brings its reader down", simpler};
    }
}

} // namespace

Conversion convertLimited(const std::function<ConvertedPage()>& work, double seconds) {
    ProcessLimits limits;
    limits.seconds = seconds;
    const ProcessResult result = runLimited(
        [&work]() -> std::string {
            try {
                return answerOf(work());
            } catch (const DrawingError& error) {
                return json{{"message", error.message}, {"remedy", error.remedy}}.dump(
                    -1, ' ', false, json::error_handler_t::replace);
            }
        },
        limits);
    if (result.end != ProcessEnd::Answered) {
        return failureOf(result.end, seconds);
    }
    const json answer = json::parse(result.answer, nullptr, false);
    if (!answer.is_object()) {
        return failureOf(ProcessEnd::Crashed, seconds);
    }
    if (answer.contains("message")) {
        return {std::nullopt, answer["message"].get<std::string>(),
                answer["remedy"].get<std::string>()};
    }
    return {shapeOf(answer), "", ""};
}

} // namespace orbel
