#include "app/PlainReadingReport.h"

#include "scene/Diagnostics.h"

#include <ostream>

namespace orbel::app {

namespace {

std::string placeOf(const ShapeLoss& loss) {
    return loss.line > 0 ? "line " + std::to_string(loss.line) : "";
}

std::string textOf(const ShapeLoss& loss) {
    return loss.count == 1 ? loss.text : loss.text + " (" + std::to_string(loss.count) + " times)";
}

} // namespace

void print(const PlainReading& reading, const std::string& file, std::ostream& out) {
    for (const ShapeLoss& loss : reading.losses) {
        out << "note: " << sentence({file, placeOf(loss), textOf(loss), ""}) << '\n';
    }
}

std::string lossSummary(const std::string& file) {
    const PlainReading reading = readPlainFile(file);
    if (reading.losses.empty()) {
        return {};
    }
    const ShapeLoss& first = reading.losses.front();
    const std::size_t more = reading.losses.size() - 1;
    return sentence({file, placeOf(first),
                     textOf(first) + (more > 0 ? ", and " + std::to_string(more) + " more" : ""),
                     wayOut});
}

} // namespace orbel::app
