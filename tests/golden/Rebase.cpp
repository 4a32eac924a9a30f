#include "tests/golden/GoldenScenes.h"

#include <exception>
#include <iostream>

// orbel-golden-rebase [SCENE...]: renders the golden frames anew, all of them unless some are
// named, and says which changed.
int main(int argc, char** argv) try {
    using namespace orbel::golden;
    const std::vector<std::string> scenes =
        argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : sceneNames();
    for (const std::string& scene : scenes) {
        const Frames frames = render(scene);
        if (stored(scene, frames).bytes != frames.bytes) {
            store(scene, frames);
            std::cout << scene << ": " << frames.bytes.size() << " frames stored\n";
        }
    }
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
