#include "app/SceneDrawings.h"

#include "drawing/Lettering.h"
#include "scene/SceneShapes.h"

#include <utility>

namespace orbel::app {

namespace {

std::string nameOf(const Scene& scene) {
    return scene.lettering ? scene.file : scene.shape.value_or(scene.file);
}

} // namespace

ShapeConverter shapeConverter(std::function<void(const std::string&)> note,
                              std::function<bool()> stopped) {
    return [note = std::move(note), stopped = std::move(stopped)](
               const Scene& scene, Problems* problems) -> std::optional<std::string> {
        Conversion conversion =
            scene.lettering ? letterText(*scene.lettering, stopped)
                            : importDrawingFile(scene.shape.value_or(""),
                                                scene.import.value_or(ImportOptions{}), stopped);
        if (!conversion.shape) {
            siteIn(scene, "/shape", "--shape", problems)
                .report((scene.lettering ? "" : inQuotes(nameOf(scene)) + ": ") +
                            conversion.message,
                        conversion.remedy);
            return std::nullopt;
        }
        for (const std::string& text : conversion.shape->notes) {
            if (note) {
                note(sentence({nameOf(scene), "", text, ""}));
            }
        }
        return std::move(conversion.shape->svg);
    };
}

} // namespace orbel::app
