#include "tools/shapes/Drawings.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

bool writeAll(const std::vector<orbel::artwork::Drawing>& drawings,
              const std::filesystem::path& folder) {
    for (const orbel::artwork::Drawing& drawing : drawings) {
        const std::filesystem::path path = folder / (drawing.name + ".svg");
        std::ofstream file(path, std::ios::binary);
        file << orbel::artwork::svgText(drawing);
        if (!file.flush()) {
            std::cerr << "cannot write " << path << "\n";
            return false;
        }
    }
    return true;
}

} // namespace

/// Writes the shape files and the drawings of the example scenes into two folders.
int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: orbel-shapes SHAPE_FOLDER SCENE_FOLDER\n";
        return 2;
    }
    const bool written = writeAll(orbel::artwork::shapeDrawings(), argv[1]) &&
                         writeAll(orbel::artwork::sceneDrawings(), argv[2]);
    return written ? 0 : 1;
}
