// How many copies of its own picture a frame costs: orbel-bench-frame --help

#include "bench/frame/CopyRatio.h"
#include "pixel/Acceleration.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdio>
#include <exception>

namespace orbel::bench {

namespace {

constexpr FrameSize SIZES[] = {{"1080p", 1920, 1080}, {"4K", 3840, 2160}, {"540p", 960, 540}};

constexpr StrokeKind KINDS[] = {{"r10", 10, 0, 1},
                                {"r50", 50, 0, 1},
                                {"soft50", 50, 100, 1},
                                {"blur8", 10, 0, 8},
                                {"blur8-50", 50, 0, 8}};

constexpr std::array<const char*, ACCELERATION_LEVELS> LEVELS{"scalar", "128-bit", "256-bit",
                                                              "512-bit"};

struct Layout {
    const char* name;
    RasterFormat format;
};
constexpr Layout LAYOUTS[] = {{"rgba8", RF_RGBA8}, {"rgba16", RF_RGBA16}, {"rgba32f", RF_RGBA32F}};

struct Choice {
    std::vector<std::string> formats{"rgba8"};
    std::vector<std::string> sizes{"1080p", "4K"};
    std::vector<std::string> strokes{"r10", "r50", "soft50", "blur8"};
    std::vector<int> levels;
    std::vector<int> threads{1};
    int runs = 31;
    bool peers = false;
};

/// The entries of a list that were asked for by name, in the order of the list.
template<typename Entry, std::size_t count>
std::vector<Entry> chosen(const Entry (&entries)[count], const std::vector<std::string>& names) {
    std::vector<Entry> found;
    for (const Entry& entry : entries) {
        for (const std::string& name : names) {
            if (name == entry.name) {
                found.push_back(entry);
            }
        }
    }
    return found;
}

template<typename Entry, std::size_t count>
std::vector<std::string> names(const Entry (&entries)[count]) {
    std::vector<std::string> all;
    for (const Entry& entry : entries) {
        all.emplace_back(entry.name);
    }
    return all;
}

void printHead() {
    std::printf("| what | size | stroke | ms | copies | fewest | copy ms |\n"
                "|---|---|---|---|---|---|---|\n");
}

void print(const std::string& what, const FrameSize& size, const StrokeKind& kind,
           const SubjectPtr& subject, int runs) {
    if (subject == nullptr) {
        return;
    }
    const CopyRatio r = measure(*subject, runs);
    std::printf("| %s | %s | %s | %.2f | %.2f | %.2f | %.3f |\n", what.c_str(), size.name,
                kind.name, r.subjectMedian * 1e3, r.median(), r.shortest(), r.copyMedian * 1e3);
    std::fflush(stdout);
}

/// Calls `printSetting(level, threads, its name)` for everything that was chosen.
template<class Print>
void forEachSetting(const Choice& choice, const Print& printSetting) {
    for (const int level : choice.levels) {
        for (const int threads : choice.threads) {
            printSetting(level, threads,
                         LEVELS[static_cast<std::size_t>(level)] + std::string(" x") +
                             std::to_string(threads));
        }
    }
}

void printFrames(const Choice& choice, const FrameSize& size, const StrokeKind& kind) {
    for (const Layout& layout : chosen(LAYOUTS, choice.formats)) {
        forEachSetting(choice, [&](int level, int threads, const std::string& setting) {
            print(std::string("orbel ") + layout.name + " " + setting, size, kind,
                  orbelFrame(size, layout.format, kind, level, threads), choice.runs);
        });
    }
}

/// Strokes without a picture, like with like.
void printStamps(const Choice& choice, const FrameSize& size, const StrokeKind& kind) {
    forEachSetting(choice, [&](int level, int threads, const std::string& setting) {
        print("orbel, stamps alone " + setting, size, kind, orbelStamps(size, kind, level, threads),
              choice.runs);
    });
    print("libmypaint, dabs alone", size, kind, mypaintDabs(size, kind), choice.runs);
}

void run(const Choice& choice) {
    printHead();
    for (const FrameSize& size : chosen(SIZES, choice.sizes)) {
        for (const StrokeKind& kind : chosen(KINDS, choice.strokes)) {
            printFrames(choice, size, kind);
            if (choice.peers) {
                print("cairo", size, kind, cairoFrame(size, kind), choice.runs);
                print("Qt", size, kind, qtFrame(size, kind), choice.runs);
                if (kind.samples == 1) {
                    printStamps(choice, size, kind);
                }
            }
        }
    }
}

void addNames(CLI::App& program, const std::string& option, std::vector<std::string>& values,
              const std::vector<std::string>& known, const std::string& help) {
    program.add_option(option, values, help)
        ->delimiter(',')
        ->check(CLI::IsMember(known))
        ->capture_default_str();
}

} // namespace

} // namespace orbel::bench

int main(int argc, char** argv) try {
    using namespace orbel;
    using namespace orbel::bench;
    Choice choice;
    choice.levels = {bestAccelerationLevel()};
    CLI::App program("Times whole frames in copies of their own picture", "orbel-bench-frame");
    addNames(program, "--format", choice.formats, names(LAYOUTS), "Pixel formats");
    addNames(program, "--size", choice.sizes, names(SIZES), "Sizes of the picture");
    addNames(program, "--stroke", choice.strokes, names(KINDS),
             "Radius; soft is fully feathered, blur averages eight samples");
    program
        .add_option("--level", choice.levels, "Levels of acceleration; 0 is the scalar reference")
        ->delimiter(',')
        ->check(CLI::Range(0, bestAccelerationLevel()))
        ->capture_default_str();
    program.add_option("--threads", choice.threads, "Threads that draw a frame")
        ->delimiter(',')
        ->check(CLI::Range(1, 64))
        ->capture_default_str();
    program.add_option("--runs", choice.runs, "Timed runs of each")
        ->check(CLI::Range(1, 10000))
        ->capture_default_str();
    program.add_flag("--peers", choice.peers,
                     "Cairo, Qt and libmypaint too, where built in, and our stamps alone");
    CLI11_PARSE(program, argc, argv);
    run(choice);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "orbel-bench-frame: %s\n", error.what());
    return 1;
}
