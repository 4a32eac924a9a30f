#include "app/CommandLine.h"

#include "app/CheckCommand.h"
#include "app/DoctorCommand.h"
#include "app/FarmCommand.h"
#include "app/ImportCommand.h"
#include "app/ParamsCommand.h"
#include "app/RenderCommand.h"
#include "app/ShapesCommand.h"
#include "app/StudioCommand.h"
#include "app/TextCommand.h"
#include "film/BuildInfo.h"
#include "scene/Diagnostics.h"
#include "scene/NearestName.h"
#include "scene/Scene.h"

#include <CLI/CLI.hpp>

#include <algorithm>
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
    FarmOptions farm;
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

void addSceneOptions(CLI::App* command, SceneOptions& scene) {
    addText(command, "--frames", scene.frames, "First and last frame, or one", "A-B");
    addText(command, "--format", scene.format,
            "Pixel format: argb8, rgba8, argb16, rgba16, argb32f, rgba32f", "F");
    addText(command, "--shape", scene.shape, "Built-in shape or SVG file", "NAME");
    command->add_flag("--import", scene.import, "The shape is any SVG drawing: convert it first");
    addText(command, "--input", scene.input,
            "Picture, sequence (name-%04d.png), clip or colour (#rrggbb)", "INPUT");
    addText(command, "--first", scene.first, "Number of a sequence's first file, if not 0 or 1",
            "N");
    addText(command, "--size", scene.size, "Size of the frame", "WxH");
    addText(command, "--fps", scene.fps, "Frames per second", "RATE");
    addRepeated(command, "--set", scene.set, "Set a parameter; repeat for more", "NAME=VALUE");
    addRepeated(command, "--animate", scene.animate,
                "Animate a parameter; easings are linear, hold, ease, ease-in, ease-out",
                "NAME=FRAME:VALUE[:EASING],...");
}

CLI::App* addRender(CLI::App& program, RenderOptions& options) {
    CLI::App* const command = program.add_subcommand("render", "Render a scene into a film");
    addText(command, "scene", options.scene, "Scene file", "SCENE");
    addText(command, "-o,--output", options.output, "Film, picture or numbered pictures", "OUT");
    addText(command, "--raw", options.rawFolder, "Write raw frames into this folder", "DIR");
    addSceneOptions(command, options.overrides);
    command->add_option("--threads", options.threads, "Threads; 1 does everything on one")
        ->type_name("N")
        ->check(CLI::Range(1, 1024));
    command
        ->add_option("--progress", options.progress,
                     "How to tell of it: text, or json with one event a line")
        ->type_name("HOW")
        ->check(CLI::IsMember({"text", "json"}));
    command->add_flag("--resume", options.resume,
                      "Render in chunks beside the output, going on with what is there");
    command->add_flag("--restart", options.restart, "The same, throwing away what is there");
    command->add_option("--chunk", options.chunk, "Frames of a chunk; 60 if not said")
        ->type_name("N")
        ->check(CLI::Range(1, 1'000'000));
    command->add_flag("--profile", options.profile, "Tell where the time went");
    command->add_flag("-q,--quiet", options.quiet, "Tell nothing but problems");
    command->footer(renderExamples);
    return command;
}

void addThreads(CLI::App* command, int& threads) {
    command->add_option("--threads", threads, "Threads of a task")
        ->type_name("N")
        ->check(CLI::Range(0, 1024));
}

/// A command about a job that is there.
CLI::App* addJobCommand(CLI::App* farm, FarmOptions& options, const std::string& name,
                        const std::string& help) {
    CLI::App* const command = farm->add_subcommand(name, help);
    command->add_option("job", options.job, "The job's folder, such as film.mp4.orbel")
        ->type_name("JOB")
        ->required();
    command->callback([&options, name] { options.command = name; });
    return command;
}

void addSubmit(CLI::App* farm, FarmOptions& options) {
    CLI::App* const command = farm->add_subcommand("submit", "Hand a film in");
    command->callback([&options] { options.command = "submit"; });
    command->add_option("scene", options.scene, "Scene file")->type_name("SCENE")->required();
    addText(command, "-o,--output", options.output, "Film or numbered pictures", "OUT");
    addText(command, "--raw", options.rawFolder, "Write raw frames into this folder", "DIR");
    addSceneOptions(command, options.overrides);
    command->add_option("--chunk", options.chunk, "Frames of a task; 60 if not said")
        ->type_name("N")
        ->check(CLI::Range(1, 1'000'000));
    command->add_option("--engine", options.engine, "slurm, or local for this machine alone")
        ->check(CLI::IsMember({"slurm", "local"}));
    command->add_flag("--dry-run", options.dryRun, "Show what would be handed in, and estimates");
    command->add_flag("--restart", options.restart, "Throw away what an earlier job has left");
}

/// What the tasks themselves are called with.
void addTasks(CLI::App* farm, FarmOptions& options) {
    for (const char* const name : {"task", "join", "supervise"}) {
        CLI::App* const command = addJobCommand(farm, options, name, "");
        command->group(""); // not for people
        command->add_option("--list", options.list);
        command->add_option("--index", options.index);
        command->add_option("--scratch", options.scratch);
        command->add_option("--nodes", options.nodes);
        addThreads(command, options.threads);
    }
}

void addFarm(CLI::App& program, FarmOptions& options) {
    CLI::App* const farm = program.add_subcommand("farm", "Make a film on many machines");
    farm->require_subcommand(1);
    addSubmit(farm, options);
    CLI::App* const status = addJobCommand(farm, options, "status", "Tell how far a job is");
    status->add_flag("--json", options.json, "As JSON");
    addJobCommand(farm, options, "resume", "Hand in what a job still lacks");
    addJobCommand(farm, options, "cancel", "End a job's tasks; what is complete stays");
    CLI::App* const verify =
        addJobCommand(farm, options, "verify", "Compare every chunk with its checksum");
    verify->add_option("--sample", options.sample, "And render so many frames again")
        ->type_name("K")
        ->check(CLI::Range(0, 1'000'000));
    for (const char* const name : {"submit", "resume"}) {
        CLI::App* const command = farm->get_subcommand(name);
        command->add_option("--nodes", options.nodes, "Most tasks at the same time")
            ->type_name("N")
            ->check(CLI::Range(1, 100'000));
        command->add_option("--program", options.program,
                            "This program, as the machines that render see it");
        addThreads(command, options.threads);
    }
    addThreads(verify, options.threads);
    addTasks(farm, options);
}

std::vector<std::string> commandNames(const CLI::App& program) {
    std::vector<std::string> names;
    for (const CLI::App* const command :
         program.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    return names;
}

/// Whether the first word stands for a command and is none; says so.
bool refusesCommand(const CLI::App& program, int argc, const char* const* argv, std::ostream& err) {
    const std::string word = argc < 2 ? "" : argv[1];
    const std::vector<std::string> names = commandNames(program);
    if (word.empty() || word.front() == '-' ||
        std::find(names.begin(), names.end(), word) != names.end()) {
        return false;
    }
    err << sentence({commandLine, "", "there is no command " + inQuotes(word),
                     "the nearest is " + inQuotes(nearestName(word, names)) +
                         "; \"orbel --help\" lists them all"})
        << '\n';
    return true;
}

constexpr const char* importExamples = R"(Examples:
  orbel import logo.svg -o shape.svg
  orbel import drawings/ -o shapes/ --take strokes --order nearest
  orbel import map.svgz -o map.svg --smallest 1 --simplify 0.5

OUT holds one path for every outline, in pixels of the drawing's page, as the reader of shapes
represents exactly. Clips do not cut; what they hide wholly is left out.)";

/// Lets an option take words for its values, and says which when it gets another one.
template<typename Value>
CLI::Validator wordsFor(std::map<std::string, Value> words) {
    const auto translate = [words = std::move(words)](std::string& word) -> std::string {
        if (const auto known = words.find(word); known != words.end()) {
            word = std::to_string(static_cast<int>(known->second));
            return {};
        }
        std::string all;
        for (const auto& one : words) {
            all += (all.empty() ? "" : ", ") + one.first;
        }
        return inQuotes(word) + " is none of " + all;
    };
    return {translate, ""};
}

/// The options that both `import` and a scene's shape take.
void addConversion(CLI::App* command, ImportOptions& options) {
    using Take = ImportOptions::Take;
    using Order = ImportOptions::Order;
    using Closed = ImportOptions::Closed;
    command->add_option("--take", options.take, "Which outlines")
        ->type_name("strokes|fills|both")
        ->transform(wordsFor<Take>(
            {{"strokes", Take::Strokes}, {"fills", Take::Fills}, {"both", Take::Both}}));
    command->add_option("--order", options.order, "As painted, or each nearest to the one before")
        ->type_name("paint|nearest")
        ->transform(wordsFor<Order>({{"paint", Order::Paint}, {"nearest", Order::Nearest}}));
    command
        ->add_option("--smallest", options.smallest,
                     "Leave out what is smaller than this part of the page (0.2)")
        ->type_name("PERCENT")
        ->check(CLI::Range(0.0, 100.0));
    command->add_flag_function(
        "--no-page-rectangles", [&options](std::int64_t) { options.pageRectangles = false; },
        "Leave out rectangles as large as the page");
    command
        ->add_option("--closed", options.closed,
                     "Keep: fills are closed, strokes as drawn; or close all, or none")
        ->type_name("keep|all|none")
        ->transform(wordsFor<Closed>(
            {{"keep", Closed::Keep}, {"all", Closed::All}, {"none", Closed::None}}));
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

\n starts a new line. Outlines stand in reading order, each letter's together: with
"Stroke Sequentially" on they write. Hands are the Hershey fonts that are installed.)";

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
        ->transform(wordsFor<Align>(
            {{"left", Align::Left}, {"center", Align::Center}, {"right", Align::Right}}));
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
    if (program.got_subcommand("import")) {
        return importCommand(commands.import, out, err);
    }
    if (program.got_subcommand("text")) {
        return textCommand(commands.text, out, err);
    }
    if (program.got_subcommand("check")) {
        return checkCommand(commands.checkedScene, out);
    }
    if (program.got_subcommand("farm")) {
        return farmCommand(commands.farm, out, err);
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
    program.set_version_flag("--version", buildText());
    program.require_subcommand(1);
    addRender(program, commands.render);
    addImport(program, commands.import);
    addText(program, commands.text);
    addFarm(program, commands.farm);
    CLI::App* const check = program.add_subcommand(
        "check", "Tell everything that is wrong with a scene, or that a shape loses");
    check->add_option("scene", commands.checkedScene, "Scene file, or shape (.svg)")
        ->type_name("FILE")
        ->required();
    CLI::App* const params = program.add_subcommand("params", "List the parameters");
    CLI::Option* const json = params->add_flag("--json", commands.json, "As JSON");
    params->add_flag("--markdown", commands.markdown, "As a Markdown page")->excludes(json);
    CLI::App* const shapes = program.add_subcommand("shapes", "List the built-in shapes");
    addText(shapes, "--sheet", commands.sheet, "Draw them all into a picture", "OUT.png");
    addStudio(program, commands.studio);
    program.add_subcommand("doctor", "Tell whether hosts find the plug-ins and their shapes");
    program.footer("\"orbel COMMAND --help\" tells more.");
    if (refusesCommand(program, argc, argv, err)) {
        return EXIT_BAD_INPUT;
    }
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error, out, err) == 0 ? EXIT_DONE : EXIT_BAD_INPUT;
    }
    return runChosen(program, commands, out, err);
}

} // namespace orbel::app
