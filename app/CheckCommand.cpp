#include "app/CheckCommand.h"

#include "film/ScenePlan.h"
#include "film/ShapeFolder.h"
#include "scene/PixelFormats.h"
#include "scene/SceneReader.h"
#include "scene/SceneShapes.h"
#include "shapes/PathModel.h"
#include "shapes/ShapeFile.h"
#include "shapes/SvgParser.h"

#include <ostream>

namespace orbel::app {

namespace {

std::string counted(std::size_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// Writes the reader's notices as they come.
class NoticePrinter final : public SvgReaderObserver {
public:
    NoticePrinter(const std::string& file, std::ostream& out) : m_file(file), m_out(out) {}

    void notice(const SvgNotice& notice) override {
        const std::string place = notice.line > 0 ? "line " + std::to_string(notice.line) : "";
        m_out << "note: " << sentence({m_file, place, notice.text, ""}) << '\n';
    }

private:
    const std::string& m_file;
    std::ostream& m_out;
};

void readShape(const std::string& file, std::ostream& out) {
    if (fileExists(file.c_str()) != 1) {
        return; // told among the problems
    }
    NoticePrinter printer(file, out);
    PluginPath_Impl path;
    svg_parser parser;
    parser.setPath(&path);
    parser.setObserver(&printer);
    parser.parse(file.c_str());
    const std::size_t outlines = path.outlines().size();
    out << "note: " << sentence({file, "", counted(outlines, "outline"), ""});
    out << (outlines == 0 ? ": no stroke will be drawn\n" : "\n");
}

void readShapes(const Scene& scene, std::ostream& out) {
    if (scene.shape) {
        readShape(*scene.shape, out);
    }
    for (const int preset : chosenPresets(scene)) {
        readShape(presetFile(preset), out);
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

} // namespace

int checkCommand(const std::string& sceneFile, std::ostream& out) {
    prepareShapeTable();
    Problems problems;
    const std::optional<Scene> scene = readSceneFile(sceneFile, &problems);
    std::optional<ScenePlan> plan;
    if (scene) {
        plan = planScene(*scene, 1, &problems);
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

} // namespace orbel::app
