#include "app/ShapesCommand.h"

#include "app/ShapeSheet.h"
#include "film/ShapeFolder.h"
#include "media/MediaError.h"
#include "media/MediaWriter.h"
#include "media/OutputTarget.h"
#include "scene/Diagnostics.h"
#include "scene/SceneShapes.h"
#include "shapes/ShapeFile.h"
#include "shapes/ShapeTable.h"

#include <iomanip>
#include <new>
#include <ostream>

namespace orbel::app {

namespace {

bool hasFile(int shape) {
    return fileExists(presetFile(shape).c_str()) == 1;
}

void list(std::ostream& out) {
    for (int i = 1; i < g_numSVGShapes; ++i) {
        out << std::setw(2) << i << "  " << g_svgShapes[i].name << (hasFile(i) ? "" : "  (no file)")
            << '\n';
    }
}

/// Runs one step of making the sheet; what goes wrong is told and gives `failureCode`.
template<typename Step>
int guarded(const std::string& path, int failureCode, std::ostream& err, const Step& step) {
    try {
        step();
        return EXIT_DONE;
    } catch (const MediaError& error) {
        err << sentence({error.file(), error.place(), error.message(), error.remedy()}) << '\n';
    } catch (const std::bad_alloc&) {
        err << sentence({path, "", "there is not enough memory for the sheet", ""}) << '\n';
    }
    return failureCode;
}

void writeSheet(const std::string& path) {
    const MemoryImage sheet = makeShapeSheet();
    WriterSpec spec;
    spec.width = sheet.info().width;
    spec.height = sheet.info().height;
    const std::unique_ptr<MediaWriter> writer = openWriter(path, spec);
    writer->write(sheet.info(), 0);
    writer->finish();
}

int drawSheet(const std::string& path, std::ostream& err) {
    const int checked =
        guarded(path, EXIT_BAD_INPUT, err, [&] { static_cast<void>(checkOutput(path, 1)); });
    if (checked != EXIT_DONE) {
        return checked;
    }
    return guarded(path, EXIT_RENDERING_FAILED, err, [&] { writeSheet(path); });
}

} // namespace

int shapesCommand(const std::optional<std::string>& sheet, std::ostream& out, std::ostream& err) {
    prepareShapeTable();
    if (sheet) {
        return drawSheet(*sheet, err);
    }
    list(out);
    return EXIT_DONE;
}

} // namespace orbel::app
