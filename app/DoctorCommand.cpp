#include "app/DoctorCommand.h"

#include "app/PluginFolders.h"
#include "app/PluginProbe.h"
#include "film/ShapeFolder.h"
#include "scene/Diagnostics.h"
#include "scene/SceneShapes.h"
#include "shapes/ShapeFile.h"
#include "shapes/ShapeTable.h"

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <ostream>
#include <vector>

namespace orbel::app {

namespace {

namespace fs = std::filesystem;

/// What was looked at, line by line, and whether all of it was well.
class Report {
public:
    explicit Report(std::ostream& out) : m_out(out) {}

    void heading(const std::string& text) { m_out << text << '\n'; }
    void good(const std::string& text) { m_out << "  ok       " << text << '\n'; }
    /// `details` stand on lines of their own below what is wrong, then comes what to do.
    void bad(const std::string& text, const std::vector<std::string>& details,
             const std::string& remedy) {
        m_out << "  PROBLEM  " << text << '\n';
        for (const std::string& detail : details) {
            m_out << "             " << detail << '\n';
        }
        m_out << "           -> " << remedy << '\n';
        m_well = false;
    }
    [[nodiscard]] bool isWell() const { return m_well; }

private:
    std::ostream& m_out;
    bool m_well = true;
};

/// One kind of plug-in: how its hosts find it and what may be wrong with it.
struct Door {
    std::string name;
    std::string file; ///< what it is called where hosts look
    std::vector<PluginHostFolders> hosts;
    std::function<std::string(const std::string& folder)> binary;
    std::function<PluginProbe(const std::string& file)> probe;
    std::string component; ///< of the installation
    std::string place;     ///< below the prefix of an installation or of an unpacked archive
};

void checkShapeFiles(Report& report) {
    report.heading("Built-in shapes, for the orbel program");
    prepareShapeTable();
    const int count = g_numSVGShapes - 1;
    int missing = 0;
    for (int shape = 1; shape <= count; ++shape) {
        missing += fileExists(presetFile(shape).c_str()) == 1 ? 0 : 1;
    }
    const std::string folder = inQuotes(fs::path(presetFile(1)).parent_path().string());
    if (missing == 0) {
        report.good(std::to_string(count) + " shapes in " + folder);
    } else {
        report.bad(std::to_string(missing) + " of " + std::to_string(count) +
                       " shapes are not in " + folder,
                   {},
                   "install them with cmake --install, or set QUARVEX_ORBEL_SVG_DIR to their "
                   "folder");
    }
}

std::string firstFile(const Door& door, const PluginHostFolders& host) {
    for (const std::string& folder : host.folders) {
        std::error_code error;
        std::string file = door.binary(folder);
        if (fs::exists(file, error)) {
            return file;
        }
    }
    return {};
}

/// The folder of the plug-in that came with this program; empty when it came alone.
std::string folderBesideProgram(const Door& door) {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    const fs::path folder = program.parent_path().parent_path() / door.place;
    return fs::exists(door.binary(folder.string()), error) ? folder.string() : "";
}

void tellMissing(const Door& door, const PluginHostFolders& host, Report& report) {
    const std::string own = folderBesideProgram(door);
    report.bad(host.host + ": no " + door.file + " in any of", host.folders,
               own.empty()
                   ? "install it there (cmake --install BUILD --component " + door.component +
                         "), or set " + host.setting + " to the folder that holds it"
                   : "set " + host.setting + " to " + inQuotes(own) + ", or copy it from there");
}

void checkDoor(const Door& door, Report& report) {
    report.heading(door.name);
    std::map<std::string, PluginProbe> probes; // hosts mostly find the same file
    for (const PluginHostFolders& host : door.hosts) {
        const std::string file = firstFile(door, host);
        if (file.empty()) {
            tellMissing(door, host, report);
            continue;
        }
        const auto [at, isNew] = probes.try_emplace(file);
        if (isNew) {
            at->second = door.probe(file);
        }
        const PluginProbe& probe = at->second;
        if (probe.loads) {
            report.good(host.host + ": " + file + " (" + probe.words + ")");
        } else {
            report.bad(host.host + ": " + file + " does not work", {probe.words},
                       "build it on this machine and install it with its shapes (cmake --install "
                       "BUILD --component " +
                           door.component + ")");
        }
    }
}

/// The bundle carries its shapes with it, so they are looked at without its help.
PluginProbe probeBundle(const std::string& file) {
    PluginProbe probe = probeOfx(file);
    const fs::path contents = fs::path(file).parent_path().parent_path();
    std::error_code error;
    if (probe.loads && std::getenv("QUARVEX_ORBEL_SVG_DIR") == nullptr &&
        !fs::is_directory(contents / "Resources" / "Tessaly" / "SVG", error)) {
        return {false, "it loads, but its built-in shapes are missing"};
    }
    return probe;
}

#ifdef __APPLE__
void checkFxPlug(Report& report) {
    const fs::path folder = "/Library/Plug-Ins/FxPlug";
    report.heading("FxPlug bundle");
    std::error_code error;
    const bool complete = fs::is_directory(folder / "Orbel.fxplug", error) &&
                          fs::is_directory(folder / "Tessaly" / "SVG", error);
    if (complete) {
        report.good((folder / "Orbel.fxplug").string() + ", its shapes beside it");
    } else {
        report.bad("Orbel.fxplug and Tessaly/SVG are not both in " + folder.string(), {},
                   "install them there (cmake --install BUILD --component fxplug)");
    }
}
#endif

} // namespace

int doctorCommand(std::ostream& out) {
    Report report(out);
    checkShapeFiles(report);
    checkDoor({"OFX bundle", "Orbel.ofx.bundle", ofxHosts(), ofxBinary, probeBundle, "ofx",
               "OFX/Plugins"},
              report);
    checkDoor({"frei0r plug-in", "orbel.so", frei0rHosts(),
               [](const std::string& folder) { return folder + "/orbel.so"; }, probeFrei0r,
               "frei0r", "lib/frei0r-1"},
              report);
#ifdef __APPLE__
    checkFxPlug(report);
#endif
    return report.isWell() ? EXIT_DONE : 1;
}

} // namespace orbel::app
