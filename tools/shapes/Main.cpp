#include "tools/shapes/Drawings.h"

#include <filesystem>
#include <fstream>
#include <iostream>

/// Writes the shape files into the folder named on the command line.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: orbel-shapes FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    for (const orbel::artwork::Drawing& drawing : orbel::artwork::allDrawings()) {
        std::ofstream file(folder / (drawing.name + ".svg"), std::ios::binary);
        file << orbel::artwork::svgText(drawing);
        if (!file.flush()) {
            std::cerr << "cannot write " << folder / (drawing.name + ".svg") << "\n";
            return 1;
        }
    }
    return 0;
}
