#include "app/ConversionReport.h"

#include "scene/Diagnostics.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <ostream>

#include <unistd.h>

namespace orbel::app {

bool writeWholeFile(const std::string& file, const std::string& text, std::ostream& err) {
    const std::string beside = file + "." + std::to_string(getpid()) + ".part";
    std::error_code error;
    {
        std::ofstream stream(beside, std::ios::binary);
        stream << text;
        stream.close();
        if (!stream.fail()) {
            std::filesystem::rename(beside, file, error);
            if (!error) {
                return true;
            }
        }
    }
    std::filesystem::remove(beside, error);
    err << sentence({file, "", "the file cannot be written",
                     "check its folder, and the space on the disk"})
        << '\n';
    return false;
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
