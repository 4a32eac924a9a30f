#include "app/CommandLine.h"

#include "app/CheckCommand.h"
#include "app/DoctorCommand.h"
#include "app/ImportCommand.h"
#include "app/ParamsCommand.h"
#include "app/RenderCommand.h"
#include "app/ShapesCommand.h"
#include "app/TextCommand.h"
#include "scene/Diagnostics.h"

#include <CLI/CLI.hpp>

#include <map>
#include <string>

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
    ImportCommandOptions import;
    TextCommandOptions text;
    std::string checkedScene;
    std::optional<std::string> sheet;
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
    command->add_flag("--import", scene.import, "The shape is any SVG drawing: convert it first");
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

constexpr const char* importExamples = R"(Examples:
  orbel import logo.svg -o shape.svg
  orbel import drawings/ -o shapes/ --take strokes --order nearest
  orbel import map.svgz -o map.svg --smallest 1 --simplify 0.5

OUT holds one path for every outline, in pixels of the drawing's page, as the reader of shapes
represents exactly. Clips do not cut; what they hide wholly is left out.)";

/// The options that both `import` and a scene's shape take.
void addConversion(CLI::App* command, ImportOptions& options) {
    using Take = ImportOptions::Take;
    using Order = ImportOptions::Order;
    using Closed = ImportOptions::Closed;
    command->add_option("--take", options.take, "Which outlines: strokes, fills or both")
        ->type_name("WHICH")
        ->transform(CLI::CheckedTransformer(std::map<std::string, Take>{
            {"strokes", Take::Strokes}, {"fills", Take::Fills}, {"both", Take::Both}}));
    command->add_option("--order", options.order, "As painted, or each nearest to the one before")
        ->type_name("paint|nearest")
        ->transform(CLI::CheckedTransformer(
            std::map<std::string, Order>{{"paint", Order::Paint}, {"nearest", Order::Nearest}}));
    command
        ->add_option("--smallest", options.smallest,
                     "Leave out what is smaller than this part of the page (0.2)")
        ->type_name("PERCENT")
        ->check(CLI::Range(0.0, 100.0));
    command->add_flag("!--no-page-rectangles", options.pageRectangles,
                      "Leave out rectangles as large as the page");
    command
        ->add_option("--closed", options.closed,
                     "Keep: fills are closed, strokes as drawn; or close all, or none")
        ->type_name("keep|all|none")
        ->transform(CLI::CheckedTransformer(std::map<std::string, Closed>{
            {"keep", Closed::Keep}, {"all", Closed::All}, {"none", Closed::None}}));
    command
        ->add_option("--simplify", options.simplify,
                     "Fewer points, moving outlines by up to so many pixels")
        ->type_name("TOLERANCE")
        ->check(CLI::Range(0.0, 1e6));
    command->add_option("--seconds", options.seconds, "How long a drawing may take (10)")
        ->type_name("TIME")
        ->check(CLI::Range(0.1, 3600.0));
}

void addImport(CLI::App& program, ImportCommandOptions& options) {
    CLI::App* const command = program.add_subcommand("import", "Turn any SVG drawing into a shape");
    command->add_option("drawings", options.inputs, "Drawings (.svg, .svgz), or folders of them")
        ->type_name("IN")
        ->required();
    command->add_option("-o,--output", options.output, "Shape, or a folder for several")
        ->type_name("OUT")
        ->required();
    addConversion(command, options.conversion);
    command->add_flag("--json", options.json, "Tell what was made as JSON");
    command->footer(importExamples);
}

constexpr const char* textExamples = R"(Examples:
  orbel text "Hello" -o hello.svg
  orbel text "Grüße\naus Rom" -o card.svg --font "DejaVu Serif:bold" --align center --width 1200
  orbel text "with a pen" -o pen.svg --single-stroke --hand scripts

\n starts a new line. Outlines stand in reading order, each letter's together: with Paths set to
"Stroke Sequentially" they write. Hands are the Hershey fonts that are installed.)";

void addText(CLI::App& program, TextCommandOptions& options) {
    using Align = LetteringOptions::Align;
    LetteringOptions& lettering = options.lettering;
    CLI::App* const command = program.add_subcommand("text", "Turn a text into a shape");
    command->add_option("text", lettering.text, "What is written")->type_name("TEXT")->required();
    command->add_option("-o,--output", options.output, "Shape")->type_name("OUT")->required();
    command->add_option("--font", lettering.font, "Family and style, as \"DejaVu Sans:bold\"")
        ->type_name("FONT");
    command->add_option("--size", lettering.size, "Of the font, in pixels (100)")
        ->type_name("PIXELS")
        ->check(CLI::Range(1.0, 10000.0));
    command->add_option("--width", lettering.width, "Pixels that the longest line shall span")
        ->type_name("PIXELS")
        ->check(CLI::Range(1.0, 100000.0));
    command->add_option("--line-height", lettering.lineHeight, "In sizes of the font (1.2)")
        ->type_name("FACTOR")
        ->check(CLI::Range(0.1, 10.0));
    command->add_option("--align", lettering.align, "Of lines")
        ->type_name("left|center|right")
        ->transform(CLI::CheckedTransformer(std::map<std::string, Align>{
            {"left", Align::Left}, {"center", Align::Center}, {"right", Align::Right}}));
    CLI::Option* const pen =
        command->add_flag("--single-stroke", lettering.singleStroke, "One pen line a stroke");
    command
        ->add_flag("--outline", options.outline, "The outlines of the font's letters; the default")
        ->excludes(pen);
    command->add_option("--hand", lettering.hand, "Letters of single strokes (cursive)")
        ->type_name("NAME")
        ->needs(pen);
    command->add_flag("--json", options.json, "Tell what was made as JSON");
    command->footer(textExamples);
}

int runChosen(const CLI::App& program, const Commands& commands, std::ostream& out,
              std::ostream& err) {
    if (program.got_subcommand("render")) {
        return renderCommand(commands.render, err);
    }
    if (program.got_subcommand("import")) {
        return importCommand(commands.import, out, err);
    }
    if (program.got_subcommand("text")) {
        return textCommand(commands.text, out, err);
    }
    if (program.got_subcommand("check")) {
        return checkCommand(commands.checkedScene, out);
    }
    if (program.got_subcommand("doctor")) {
        return doctorCommand(out);
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
    addImport(program, commands.import);
    addText(program, commands.text);
    CLI::App* const check =
        program.add_subcommand("check", "Tell everything that is wrong with a scene");
    check->add_option("scene", commands.checkedScene, "Scene file")->type_name("SCENE")->required();
    CLI::App* const params = program.add_subcommand("params", "List the parameters");
    CLI::Option* const json = params->add_flag("--json", commands.json, "As JSON");
    params->add_flag("--markdown", commands.markdown, "As a Markdown page")->excludes(json);
    CLI::App* const shapes = program.add_subcommand("shapes", "List the built-in shapes");
    addText(shapes, "--sheet", commands.sheet, "Draw them all into a picture", "OUT.png");
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
