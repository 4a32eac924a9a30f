#include "media/RawDump.h"
#include "tests/doors/fxplug/HostedRequest.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <iostream>
#include <map>

// orbel-fxplug-host SCENE --raw DIR --host fcp|motion|fce [--field upper|lower]: renders a scene
// file through the FxPlug bundle, as the application of that name would ask for it. The frames have
// the layout of `orbel render --raw`, so both folders can be compared.
namespace orbel::fxtest {

namespace {

struct Options {
    std::string scene;
    std::string folder;
    Application application = Application::FinalCutPro;
    Field field = Field::None;
};

void render(const Options& options) {
    test::HostedScene scene(options.scene);
    const ScenePlan& plan = scene.plan();
    LoadedEffect effect(ORBEL_BUNDLE, options.application);
    apply(scene, effect);
    const auto dump = openRawDump(options.folder);
    // Motion hands over single fields at full height.
    const Field rows = options.application == Application::Motion ? Field::None : options.field;
    for (long frame = plan.frames.first; frame <= plan.frames.last; ++frame) {
        const MemoryImage input = scene.input(frame, plan.format);
        const MemoryImage output = scene.image(plan.format);
        const RasterInfo result = fieldRows(output.info(), rows);
        if (!effect.render(requestOf(scene, frame, options.field), fieldRows(input.info(), rows),
                           result)) {
            throw std::runtime_error("frame " + std::to_string(frame) + " was not rendered");
        }
        dump->write(result, frame);
    }
    dump->finish();
}

int run(int argc, char** argv) {
    const std::map<std::string, Application> applications{{"fcp", Application::FinalCutPro},
                                                          {"motion", Application::Motion},
                                                          {"fce", Application::FinalCutExpress}};
    const std::map<std::string, Field> fields{{"upper", Field::Upper}, {"lower", Field::Lower}};
    Options options;
    CLI::App app("Renders a scene file through the FxPlug bundle", "orbel-fxplug-host");
    app.add_option("SCENE", options.scene, "the scene file")->required();
    app.add_option("--raw", options.folder, "folder for the frames")->required();
    app.add_option("--host", options.application, "who asks: fcp, motion or fce")
        ->required()
        ->transform(CLI::CheckedTransformer(applications));
    app.add_option("--field", options.field,
                   "only the upper or lower field of every frame; the lower one is half a frame "
                   "later")
        ->transform(CLI::CheckedTransformer(fields));
    CLI11_PARSE(app, argc, argv);
    render(options);
    return 0;
}

} // namespace

} // namespace orbel::fxtest

int main(int argc, char** argv) {
    try {
        // The effect would look in the plug-in folder of its own platform.
        setenv("QUARVEX_ORBEL_SVG_DIR", ORBEL_SHAPES, 0);
        return orbel::fxtest::run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "orbel-fxplug-host: " << error.what() << '\n';
        return 1;
    }
}
