#include "drawing/DrawingImport.h"

#include "drawing/Conversion.h"
#include "drawing/DrawingDocument.h"
#include "drawing/DrawingRules.h"
#include "drawing/LimitedProcess.h"
#include "drawing/SvgRecorder.h"
#include "shapes/SvgParser.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace orbel {

namespace {

std::string paintName(const PaintedPath& path) {
    if (!path.colour) {
        return "pattern";
    }
    const auto byte = [](double component) {
        return static_cast<unsigned>(std::lround(component * 255) & 0xff);
    };
    const auto& c = *path.colour;
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", byte(c[0]), byte(c[1]), byte(c[2]));
    return text;
}

bool isInvisible(const PaintedPath& path) {
    return path.colour && (*path.colour)[3] <= 0;
}

/// Gives every painting its source and takes the signs away.
std::vector<PaintedOutlines> withSources(std::vector<PaintedPath> painted,
                                         const std::vector<OutlineSource>& sources) {
    std::vector<PaintedOutlines> result;
    OutlineSource source;
    for (PaintedPath& path : painted) {
        if (const auto sign = path.colour ? signNumber(*path.colour) : std::nullopt;
            sign && *sign < sources.size()) {
            source = sources[*sign];
        } else if (!isInvisible(path)) {
            OutlineSource own = source;
            (path.kind == PaintedPath::Kind::Fill ? own.fill : own.stroke) = paintName(path);
            result.push_back({std::move(path.curves), std::move(own)});
        }
    }
    return result;
}

bool isSign(const PaintedPath& path) {
    return path.colour && signNumber(*path.colour);
}

bool paintsAlike(const PaintedPath& a, const PaintedPath& b) {
    return a.kind == b.kind && a.curves == b.curves;
}

/// Whether each painted path shows in spite of clips: is painted with them, too. Both come in the
/// same order. Empty when they do not pair off.
std::string shownOf(const std::vector<PaintedPath>& clipped,
                    const std::vector<PaintedPath>& painted) {
    std::string shown;
    std::size_t next = 0;
    for (const PaintedPath& path : painted) {
        while (next < clipped.size() && isSign(clipped[next])) {
            ++next; // a sign may be hidden where what it stands for is not
        }
        const bool shows = next < clipped.size() && paintsAlike(path, clipped[next]);
        shown += shows || isSign(path) ? '1' : '0';
        next += shows ? 1U : 0U;
    }
    const bool paired = std::all_of(clipped.begin() + static_cast<std::ptrdiff_t>(next),
                                    clipped.end(), [](const auto& path) { return isSign(path); });
    return paired ? shown : "";
}

/// Takes away what a clip hides wholly. The renderer may fall over a clip, and does so alone.
void dropHidden(const std::string& svg, std::vector<PaintedPath>* painted,
                std::vector<std::string>* notes) {
    const ProcessResult result =
        runLimited([&] { return shownOf(SvgRecorder(svg, true).record().painted, *painted); }, {});
    if (result.answer.size() != painted->size()) {
        notes->emplace_back("clips are not heeded");
        return;
    }
    std::vector<PaintedPath> seen;
    for (std::size_t i = 0; i < painted->size(); ++i) {
        if (result.answer[i] == '1') {
            seen.push_back(std::move((*painted)[i]));
        }
    }
    if (const std::size_t hidden = painted->size() - seen.size(); hidden > 0) {
        notes->push_back(std::to_string(hidden) + " painted path" + (hidden == 1 ? "" : "s") +
                         " left out: hidden by a clip");
    }
    *painted = std::move(seen);
}

ConvertedPage convert(std::string_view bytes, const ImportOptions& options) {
    DrawingDocument document = prepareDrawing(bytes);
    RecordedDrawing recorded = SvgRecorder(document.svg, false).record();
    ConvertedPage result;
    result.notes = std::move(document.notes);
    if (document.clips) {
        dropHidden(document.svg, &recorded.painted, &result.notes);
    }
    result.page.width = recorded.width;
    result.page.height = recorded.height;
    std::vector<PaintedOutlines> painted =
        withSources(std::move(recorded.painted), document.sources);
    joinRepeats(&painted);
    chooseOutlines(painted, options, &result.page, &result.notes);
    return result;
}

} // namespace

Conversion importDrawing(std::string_view bytes, const ImportOptions& options,
                         const StopConversion& stopped) {
    return convertLimited([&] { return convert(bytes, options); }, options.seconds, stopped);
}

Conversion importDrawingFile(const std::string& file, const ImportOptions& options,
                             const StopConversion& stopped) {
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status)) {
        return {std::nullopt, "no such file", "check its name"};
    }
    if (!std::filesystem::is_regular_file(status)) {
        return {std::nullopt, "this is no file", "name an SVG file"};
    }
    if (std::filesystem::file_size(file, error) > svg_parser::maxFileBytes) {
        return {std::nullopt, "the file is larger than 64 MiB", "is it a drawing?"};
    }
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream),
                            std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad()) {
        return {std::nullopt, "the file cannot be read", "check its permissions"};
    }
    return importDrawing(bytes, options, stopped);
}

} // namespace orbel
