#include "app/ConversionReport.h"

#include "media/MediaError.h"
#include "media/PendingFile.h"
#include "scene/Diagnostics.h"

#include <cmath>
#include <ostream>

namespace orbel::app {

bool writeWholeFile(const std::string& file, const std::string& text, std::ostream& err) {
    try {
        orbel::writeWholeFile(file, text);
        return true;
    } catch (const MediaError& error) {
        err << sentence({error.file(), "", error.message(),
                         "check its folder, and the space on the disk"})
            << '\n';
        return false;
    }
}

std::string summaryOf(const ConvertedShape& shape) {
    const auto shown = [](double pixels) { return numberText(std::round(pixels * 100) / 100); };
    const std::size_t count = shape.outlines.size();
    return std::to_string(count) + " outline" + (count == 1 ? ", " : "s, ") + shown(shape.width) +
           " x " + shown(shape.height) + " pixels";
}

nlohmann::json jsonOf(const ConvertedShape& shape) {
    nlohmann::json outlines = nlohmann::json::array();
    for (const ConvertedShape::Part& part : shape.outlines) {
        outlines.push_back({{"id", part.source.id},
                            {"title", part.source.title},
                            {"fill", part.source.fill},
                            {"stroke", part.source.stroke},
                            {"closed", part.closed},
                            {"segments", part.segments}});
    }
    return {{"width", shape.width},
            {"height", shape.height},
            {"outlines", std::move(outlines)},
            {"notes", shape.notes}};
}

} // namespace orbel::app
