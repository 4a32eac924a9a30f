#include "scene/SceneReader.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orbel::Problems problems;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto scene = orbel::readScene(text, "folder/scene.json", &problems);
    // What cannot be read is explained, in words that can be printed.
    if (!scene && problems.empty()) {
        __builtin_trap();
    }
    for (const orbel::Problem& problem : problems.items()) {
        if (orbel::sentence(problem).empty()) {
            __builtin_trap();
        }
    }
    return 0;
}
