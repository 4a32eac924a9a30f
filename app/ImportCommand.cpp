#include "app/ImportCommand.h"

#include "app/ConversionReport.h"
#include "drawing/DrawingImport.h"
#include "scene/Diagnostics.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <set>

namespace orbel::app {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

struct Task {
    std::string input;
    std::string output;
};

bool isDrawing(const fs::path& file) {
    const std::string ending = file.extension().string();
    return ending == ".svg" || ending == ".svgz" || ending == ".SVG" || ending == ".SVGZ";
}

/// The drawings of a folder, by name; anything else is taken as it is.
std::vector<std::string> drawingsOf(const std::string& input) {
    std::error_code error;
    if (!fs::is_directory(input, error)) {
        return {input};
    }
    std::vector<std::string> files;
    for (fs::directory_iterator at(input, error), end; !error && at != end; at.increment(error)) {
        if (isDrawing(at->path())) {
            files.push_back(at->path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// One run of the command.
class Import {
public:
    Import(const ImportCommandOptions& options, std::ostream& out, std::ostream& err)
        : m_options(options), m_out(out), m_err(err) {}

    int run() {
        Problems problems;
        const std::vector<Task> tasks = plan(&problems);
        if (!problems.empty()) {
            print(problems, m_err);
            return EXIT_BAD_INPUT;
        }
        json drawings = json::array();
        int code = EXIT_DONE;
        for (const Task& task : tasks) {
            code = std::max(code, convert(task, &drawings));
        }
        if (m_options.json) {
            m_out << json{{"drawings", std::move(drawings)}}.dump(2, ' ', false,
                                                                  json::error_handler_t::replace)
                  << '\n';
        }
        return code;
    }

private:
    std::vector<Task> plan(Problems* problems) {
        std::error_code error;
        const fs::path target = m_options.output;
        const bool single = m_options.inputs.size() == 1 &&
                            !fs::is_directory(m_options.inputs.front(), error) &&
                            !fs::is_directory(target, error);
        if (single) {
            checkPair(m_options.inputs.front(), m_options.output, problems);
            return {{m_options.inputs.front(), m_options.output}};
        }
        std::vector<Task> tasks;
        std::set<std::string> names;
        for (const std::string& input : m_options.inputs) {
            for (const std::string& file : drawingsOf(input)) {
                const std::string name = fs::path(file).stem().string() + ".svg";
                const std::string output = (target / name).string();
                if (!names.insert(name).second) {
                    problems->add({file, "", "another drawing becomes " + inQuotes(name) + " too",
                                   "rename one of them"});
                }
                checkPair(file, output, problems);
                tasks.push_back({file, output});
            }
        }
        if (tasks.empty()) {
            problems->add({m_options.inputs.front(), "", "the folder holds no drawing",
                           "name a folder with .svg or .svgz files"});
        } else if (problems->empty() && !fs::is_directory(target, error) &&
                   !fs::create_directory(target, error)) {
            problems->add({m_options.output, "", "the folder cannot be made",
                           "several drawings need a folder for -o"});
        }
        return tasks;
    }

    static void checkPair(const std::string& input, const std::string& output, Problems* problems) {
        std::error_code error;
        if (fs::equivalent(input, output, error)) {
            problems->add({output, "", "the output is also the input", "choose another name"});
        }
    }

    int convert(const Task& task, json* drawings) {
        const Conversion conversion = importDrawingFile(task.input, m_options.conversion);
        json entry{{"input", task.input}};
        int code = EXIT_BAD_INPUT;
        if (!conversion.shape) {
            const Problem problem{task.input, "", conversion.message, conversion.remedy};
            m_err << sentence(problem) << '\n';
            entry["problem"] = problem.message;
        } else if (writeWholeFile(task.output, conversion.shape->svg, m_err)) {
            entry.update(jsonOf(*conversion.shape));
            entry["output"] = task.output;
            tell(task, *conversion.shape);
            code = EXIT_DONE;
        } else {
            entry["problem"] = "the file cannot be written";
        }
        drawings->push_back(std::move(entry));
        return code;
    }

    void tell(const Task& task, const ConvertedShape& shape) {
        if (m_options.json) {
            return;
        }
        for (const std::string& note : shape.notes) {
            m_err << "note: " << sentence({task.input, "", note, ""}) << '\n';
        }
        m_out << sentence({task.output, "", summaryOf(shape), ""}) << '\n';
    }

    const ImportCommandOptions& m_options;
    std::ostream& m_out;
    std::ostream& m_err;
};

} // namespace

int importCommand(const ImportCommandOptions& options, std::ostream& out, std::ostream& err) {
    return Import(options, out, err).run();
}

} // namespace orbel::app
