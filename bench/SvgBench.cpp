// Reading the shapes that come with the program, from memory.

#include "shapes/SvgParser.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace orbel::bench {

namespace {

std::string contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> shapes(const std::string& name) {
    std::vector<std::string> texts;
    for (const auto& entry :
         std::filesystem::directory_iterator(ORBEL_SOURCE_DIR "/resources/Tessaly/SVG")) {
        if (name.empty() || entry.path().stem() == name) {
            texts.push_back(contents(entry.path()));
        }
    }
    return texts;
}

void parse(benchmark::State& state, const std::string& name) {
    const std::vector<std::string> texts = shapes(name);
    std::size_t bytes = 0;
    for (auto _ : state) {
        for (const std::string& text : texts) {
            PluginPath_Impl shape;
            svg_parser parser;
            parser.setPath(&shape);
            parser.parseBuffer(text);
            shape.normalize();
            benchmark::DoNotOptimize(shape.outlines().data());
            bytes += text.size();
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

const bool g_registered = [] {
    for (const char* const name : {"", "Basic Circle", "Lots of Circles", "Wild Splat"}) {
        const std::string full = std::string("svg/") + (*name == '\0' ? "all" : name);
        benchmark::RegisterBenchmark(full.c_str(), parse, std::string(name))
            ->Unit(benchmark::kMicrosecond);
    }
    return true;
}();

} // namespace

} // namespace orbel::bench
