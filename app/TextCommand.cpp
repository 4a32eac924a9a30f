#include "app/TextCommand.h"

#include "app/ConversionReport.h"
#include "drawing/Lettering.h"
#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#include <ostream>
#include <string_view>

namespace orbel::app {

namespace {

std::string withLineEnds(std::string_view typed) {
    std::string text;
    for (std::size_t at = 0; at < typed.size(); ++at) {
        const bool lineEnd = typed.substr(at, 2) == "\\n";
        text += lineEnd ? '\n' : typed[at];
        at += lineEnd ? 1 : 0;
    }
    return text;
}

} // namespace

int textCommand(const TextCommandOptions& options, std::ostream& out, std::ostream& err) {
    LetteringOptions lettering = options.lettering;
    lettering.text = withLineEnds(lettering.text);
    const Conversion conversion = letterText(lettering);
    if (!conversion.shape) {
        err << sentence({commandLine, "text", conversion.message, conversion.remedy}) << '\n';
        return EXIT_BAD_INPUT;
    }
    if (!writeWholeFile(options.output, conversion.shape->svg, err)) {
        return EXIT_BAD_INPUT;
    }
    if (options.json) {
        out << jsonOf(*conversion.shape).dump(2) << '\n';
        return EXIT_DONE;
    }
    for (const std::string& note : conversion.shape->notes) {
        err << "note: " << note << '\n';
    }
    out << sentence({options.output, "", summaryOf(*conversion.shape), ""}) << '\n';
    return EXIT_DONE;
}

} // namespace orbel::app
