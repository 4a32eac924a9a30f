#include "app/CheckCommand.h"

#include "app/PlainReadingReport.h"
#include "app/SceneDrawings.h"
#include "drawing/ShapeLosses.h"
#include "film/ScenePlan.h"
#include "film/ShapeFolder.h"
#include "scene/PixelFormats.h"
#include "scene/SceneReader.h"
#include "scene/SceneShapes.h"
#include "shapes/ShapeFile.h"

#include <filesystem>
#include <ostream>

namespace orbel::app {

namespace {

std::string counted(std::size_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void readShape(const std::string& file, bool own, std::ostream& out) {
    if (fileExists(file.c_str()) != 1) {
        return; // told among the problems
    }
    const PlainReading reading = readPlainFile(file);
    print(reading, file, out);
    const bool nothing = reading.outlines == 0 || reading.flat;
    out << "note: " << sentence({file, "", counted(reading.outlines, "outline"), ""})
        << (reading.flat ? ", flat in one direction" : "")
        << (nothing ? ": no stroke will be drawn\n" : "\n");
    if (own && !reading.losses.empty()) {
        out << "note: " << sentence({file, "", wayOut, ""}) << '\n';
    }
}

void readShapes(const Scene& scene, std::ostream& out) {
    if (scene.needsConversion()) {
        return; // its notes were told when it was converted
    }
    if (scene.shape) {
        readShape(*scene.shape, true, out);
    }
    for (const int preset : chosenPresets(scene)) {
        readShape(presetFile(preset), false, out);
    }
    if (!scene.shape && chosenPresets(scene).empty()) {
        out << "note: " << sentence({scene.file, "", "no shape: no stroke will be drawn", ""})
            << '\n';
    }
}

void describe(const ScenePlan& plan, const std::string& file, std::ostream& out) {
    out << sentence({file, "", "ready to render", ""}) << ": frames " << plan.frames.first << " to "
        << plan.frames.last << ", " << plan.size.width << " x " << plan.size.height << ", "
        << nameOf(plan.format) << ", " << numberText(plan.frameRate.perSecond())
        << " frames per second\n";
}

void noteShortClip(const ScenePlan& plan, const std::string& file, std::ostream& out) {
    if (const std::optional<long> missing = firstMissingFrame(plan)) {
        out << "note: "
            << sentence({file, "/frames", "the input ends before frame " + std::to_string(*missing),
                         "rendering will stop there"})
            << '\n';
    }
}

bool isDrawing(const std::string& file) {
    const std::string ending = std::filesystem::path(file).extension().string();
    return ending == ".svg" || ending == ".SVG" || ending == ".svgz" || ending == ".SVGZ";
}

/// A file without a scene. One that gives no stroke is bad input, losses alone are not.
int checkShape(const std::string& file, std::ostream& out) {
    if (fileExists(file.c_str()) != 1) {
        out << sentence({file, "", "the file does not exist or cannot be read", "check its name"})
            << '\n';
        return EXIT_BAD_INPUT;
    }
    const PlainReading reading = readPlainFile(file);
    readShape(file, true, out);
    if (reading.losses.empty()) {
        out << sentence({file, "", "the reader represents it exactly", ""}) << '\n';
    }
    return reading.outlines == 0 || reading.flat ? EXIT_BAD_INPUT : EXIT_DONE;
}

int checkScene(const std::string& sceneFile, std::ostream& out) {
    prepareShapeTable();
    Problems problems;
    const std::optional<Scene> scene = readSceneFile(sceneFile, &problems);
    std::optional<ScenePlan> plan;
    if (scene) {
        plan = planScene(*scene, 1, &problems, shapeConverter([&out](const std::string& note) {
            out << "note: " << note << '\n';
        }));
    }
    print(problems, out);
    if (scene) {
        readShapes(*scene, out);
    }
    if (!plan) {
        return EXIT_BAD_INPUT;
    }
    noteShortClip(*plan, sceneFile, out);
    describe(*plan, sceneFile, out);
    return EXIT_DONE;
}

} // namespace

int checkCommand(const std::string& file, std::ostream& out) {
    return isDrawing(file) ? checkShape(file, out) : checkScene(file, out);
}

} // namespace orbel::app
