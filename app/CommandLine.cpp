#include "app/CommandLine.h"

#include "app/CheckCommand.h"
#include "app/DoctorCommand.h"
#include "app/ParamsCommand.h"
#include "app/RenderCommand.h"
#include "app/ShapesCommand.h"
#include "app/StudioCommand.h"
#include "scene/Diagnostics.h"

#include <CLI/CLI.hpp>

namespace orbel::app {

namespace {

constexpr const char* renderExamples = R"(Examples:
  orbel render scene.json -o film.mp4
  orbel render scene.json --frames 0-9 -o still-%04d.png
  orbel render --shape "Basic Star" --set Thickness=14 --set "Camera/Zoom=500" \
      --animate "End=0:0,45:100" --input clip.mp4 --size 1280x720 --fps 30 \
      --set "Transfer Mode=Normal" --frames 0-59 -o star.mp4
  orbel render --shape logo.svg --input "#203040" --size 640x360 --frames 0-30 \
      --animate "Transform/XY Position=0:0.3/0.5:ease,30:0.7/0.5" -o logo.mov

The ending of OUT decides: .png, .tif (one frame, or name-%04d.png), .exr (premultiplied float),
.mp4 (H.264 over black), .mov (ProRes 4444 with alpha), .mkv (FFV1, lossless, with alpha).
Options that describe the scene replace what SCENE says. Without "Transfer Mode" the stroke
stands alone; "Normal" lays it over the input.)";

struct Commands {
    RenderOptions render;
    std::string checkedScene;
    std::optional<std::string> sheet;
    StudioOptions studio;
    bool json = false;
    bool markdown = false;
};

/// One value for each time the option is given, so that none swallows the scene's name.
void addRepeated(CLI::App* command, const std::string& name, std::vector<std::string>& values,
                 const std::string& help, const std::string& form) {
    command->add_option(name, values, help)
        ->type_name(form)
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false);
}

void addText(CLI::App* command, const std::string& name, std::optional<std::string>& value,
             const std::string& help, const std::string& form) {
    command->add_option(name, value, help)->type_name(form);
}

CLI::App* addRender(CLI::App& program, RenderOptions& options) {
    CLI::App* const command = program.add_subcommand("render", "Render a scene into a film");
    addText(command, "scene", options.scene, "Scene file", "SCENE");
    addText(command, "-o,--output", options.output, "Film, picture or numbered pictures", "OUT");
    addText(command, "--raw", options.rawFolder, "Write raw frames into this folder", "DIR");
    SceneOptions& scene = options.overrides;
    addText(command, "--frames", scene.frames, "First and last frame, or one", "A-B");
    addText(command, "--format", scene.format,
            "Pixel format: argb8, rgba8, argb16, rgba16, argb32f, rgba32f", "F");
    addText(command, "--shape", scene.shape, "Built-in shape or SVG file", "NAME");
    addText(command, "--input", scene.input,
            "Picture, sequence (name-%04d.png), clip or colour (#rrggbb)", "INPUT");
    addText(command, "--size", scene.size, "Size of the frame", "WxH");
    addText(command, "--fps", scene.fps, "Frames per second", "RATE");
    addRepeated(command, "--set", scene.set, "Set a parameter; repeat for more", "NAME=VALUE");
    addRepeated(command, "--animate", scene.animate,
                "Animate a parameter; easings are linear, hold, ease, ease-in, ease-out",
                "NAME=FRAME:VALUE[:EASING],...");
    command->add_option("--threads", options.threads, "Threads; 1 does everything on one")
        ->type_name("N")
        ->check(CLI::Range(1, 1024));
    command->add_flag("--profile", options.profile, "Tell where the time went");
    command->add_flag("-q,--quiet", options.quiet, "Tell nothing but problems");
    command->footer(renderExamples);
    return command;
}

void addStudio(CLI::App& program, StudioOptions& options) {
    CLI::App* const command = program.add_subcommand("studio", "Make a scene in the browser");
    command->add_option("place", options.place, "Scene file or folder")->type_name("SCENE|FOLDER");
    command->add_option("--port", options.port, "Port on this machine; any that is free by default")
        ->type_name("N");
    command->add_flag("--no-open", options.noOpen, "Leave the browser alone");
    command->footer("Only this machine can reach it, and only with the address that is printed.\n"
                    "From elsewhere: ssh -L 8080:127.0.0.1:8080 HOST orbel studio --no-open --port "
                    "8080");
}

int runChosen(const CLI::App& program, const Commands& commands, std::ostream& out,
              std::ostream& err) {
    if (program.got_subcommand("render")) {
        return renderCommand(commands.render, err);
    }
    if (program.got_subcommand("check")) {
        return checkCommand(commands.checkedScene, out);
    }
    if (program.got_subcommand("doctor")) {
        return doctorCommand(out);
    }
    if (program.got_subcommand("studio")) {
        return studioCommand(commands.studio, out, err);
    }
    if (program.got_subcommand("shapes")) {
        return shapesCommand(commands.sheet, out, err);
    }
    paramsCommand(commands.json       ? ParamsLayout::Json
                  : commands.markdown ? ParamsLayout::Markdown
                                      : ParamsLayout::Text,
                  out);
    return EXIT_DONE;
}

} // namespace

int runCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    Commands commands;
    CLI::App program("Draws animated three-dimensional strokes along vector paths", "orbel");
    program.set_version_flag("--version", "orbel " ORBEL_VERSION);
    program.require_subcommand(1);
    addRender(program, commands.render);
    CLI::App* const check =
        program.add_subcommand("check", "Tell everything that is wrong with a scene");
    check->add_option("scene", commands.checkedScene, "Scene file")->type_name("SCENE")->required();
    CLI::App* const params = program.add_subcommand("params", "List the parameters");
    CLI::Option* const json = params->add_flag("--json", commands.json, "As JSON");
    params->add_flag("--markdown", commands.markdown, "As a Markdown page")->excludes(json);
    CLI::App* const shapes = program.add_subcommand("shapes", "List the built-in shapes");
    addText(shapes, "--sheet", commands.sheet, "Draw them all into a picture", "OUT.png");
    addStudio(program, commands.studio);
    program.add_subcommand("doctor", "Tell whether hosts find the plug-ins and their shapes");
    program.footer("\"orbel COMMAND --help\" tells more.");
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error, out, err) == 0 ? EXIT_DONE : EXIT_BAD_INPUT;
    }
    return runChosen(program, commands, out, err);
}

} // namespace orbel::app
