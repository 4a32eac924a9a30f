#include "tests/support/Scene.h"

#include "render/RenderDispatch.h"
#include "tests/support/TestFolder.h"

#include <map>
#include <mutex>

namespace orbel::test {

namespace {

class ShapeFolder {
public:
    std::string file(const std::string& svgContent) {
        const std::lock_guard lock(m_mutex);
        std::string& path = m_files[svgContent];
        if (path.empty()) {
            path = m_folder.file(std::to_string(m_files.size()) + ".svg",
                                 "<svg>" + svgContent + "</svg>");
        }
        return path;
    }

private:
    TestFolder m_folder;
    std::mutex m_mutex;
    std::map<std::string, std::string> m_files;
};

} // namespace

std::string shapeFile(const std::string& svgContent) {
    static ShapeFolder folder;
    return folder.file(svgContent);
}

Frame::Frame(const Scene& scene)
    : input(scene.width, scene.height, scene.format, scene.layout),
      output(scene.width, scene.height, scene.format, scene.layout) {
    paint(input.info(), [&](int x, int y) {
        const double u = static_cast<double>(x) / scene.width;
        const double v = static_cast<double>(y) / scene.height;
        const double alpha = x < scene.width / 2 ? 1.0 : v;
        return Rgba{u * alpha, v * alpha, (1 - u) * alpha, alpha};
    });
}

Frame render(Scene scene) {
    Frame frame(scene);
    PlainHost host(&scene, frame);
    frame.result = Render(&host);
    EXPECT_TRUE(frame.input.guardsIntact());
    EXPECT_TRUE(frame.output.guardsIntact());
    return frame;
}

} // namespace orbel::test
