#include "tests/golden/GoldenScenes.h"

#include "film/FrameInput.h"
#include "film/FrameRenderer.h"
#include "media/MediaWriter.h"
#include "scene/SceneReader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace orbel::golden {

namespace {

namespace fs = std::filesystem;

const fs::path goldenFolder = ORBEL_GOLDEN_DIR;
constexpr int amplification = 16;

fs::path storedFile(const std::string& scene) {
    return goldenFolder / "expected" / (scene + ".raw");
}

std::string packed(const MemoryImage& image) {
    std::string bytes;
    for (int y = 0; y < image.info().height; ++y) {
        bytes.append(reinterpret_cast<const char*>(image.info().row(y)), image.rowSize());
    }
    return bytes;
}

MemoryImage imageOf(const Frames& frames, const std::string& bytes) {
    MemoryImage image(frames.size.width, frames.size.height, frames.format, RowLayout{});
    std::memcpy(
        image.info().data, bytes.data(),
        std::min(bytes.size(), image.rowSize() * static_cast<std::size_t>(frames.size.height)));
    return image;
}

// Differences of bytes are shown for 8-bit frames; deeper frames only show where they differ.
MemoryImage differenceOf(const Frames& frames, const std::string& a, const std::string& b) {
    MemoryImage image(frames.size.width, frames.size.height, RF_RGBA8, RowLayout{});
    const auto pixel = static_cast<std::size_t>(bytesPerPixel(frames.format));
    const std::size_t pixels = std::min(a.size(), b.size()) / pixel;
    for (std::size_t i = 0; i < pixels; ++i) {
        std::uint8_t* const out = image.info().data + 4 * i;
        for (std::size_t c = 0; c < pixel; ++c) {
            const int difference = static_cast<unsigned char>(a[i * pixel + c]) -
                                   static_cast<unsigned char>(b[i * pixel + c]);
            const int shown =
                pixel == 4 ? std::abs(difference) * amplification : (difference != 0 ? 255 : 0);
            std::uint8_t& channel = out[c * 4 / pixel % 3];
            channel = static_cast<std::uint8_t>(std::min(channel + shown, 255));
        }
        out[3] = 255;
    }
    return image;
}

void writePicture(const fs::path& file, const MemoryImage& image) {
    WriterSpec spec;
    spec.width = image.info().width;
    spec.height = image.info().height;
    spec.format = image.info().pixelFormat;
    const auto writer = openWriter(file.string(), spec);
    writer->write(image.info(), 0);
    writer->finish();
}

} // namespace

std::vector<std::string> sceneNames() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(goldenFolder / "scenes")) {
        if (entry.path().extension() == ".json") {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string testName(const std::string& scene) {
    std::string name = scene;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

std::string sceneFile(const std::string& scene) {
    return goldenFolder / "scenes" / (scene + ".json");
}

ScenePlan planOf(const std::string& scene) {
    Problems problems;
    const auto read = readSceneFile(sceneFile(scene), &problems);
    auto plan = read && problems.empty() ? planScene(*read, 1, &problems) : std::nullopt;
    if (!plan || !problems.empty()) {
        std::ostringstream text;
        print(problems, text);
        throw std::runtime_error(text.str());
    }
    return std::move(*plan);
}

Frames render(const std::string& scene) {
    ScenePlan plan = planOf(scene);
    FrameInput source(&plan);
    FrameRenderer renderer(&plan, {}, {});
    const MemoryImage input = renderer.makeImage();
    const MemoryImage output = renderer.makeImage();
    Frames frames{plan.format, plan.size, plan.frames.first, {}};
    for (long frame = plan.frames.first; frame <= plan.frames.last; ++frame) {
        source.fill(frame, input);
        if (const int error = renderer.render(frame, input, output); error != 0) {
            throw std::runtime_error(scene + ": frame " + std::to_string(frame) +
                                     " ends with code " + std::to_string(error));
        }
        frames.bytes.push_back(packed(output));
    }
    return frames;
}

Frames stored(const std::string& scene, const Frames& like) {
    Frames frames{like.format, like.size, like.first, {}};
    std::ifstream file(storedFile(scene), std::ios::binary);
    for (const std::string& frame : like.bytes) {
        std::string bytes(frame.size(), '\0');
        if (!file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
            break;
        }
        frames.bytes.push_back(std::move(bytes));
    }
    return frames;
}

void store(const std::string& scene, const Frames& frames) {
    fs::create_directories(storedFile(scene).parent_path());
    std::ofstream file(storedFile(scene), std::ios::binary);
    for (const std::string& frame : frames.bytes) {
        file.write(frame.data(), static_cast<std::streamsize>(frame.size()));
    }
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + storedFile(scene).string());
    }
}

std::string writeDifference(const std::string& scene, const Frames& expected, const Frames& actual,
                            std::size_t index) {
    const fs::path folder = ORBEL_GOLDEN_OUTPUT_DIR;
    fs::create_directories(folder);
    const std::string name =
        scene + "-" + std::to_string(expected.first + static_cast<long>(index));
    const std::string& a = expected.bytes[index];
    const std::string& b = actual.bytes[index];
    writePicture(folder / (name + "-expected.png"), imageOf(expected, a));
    writePicture(folder / (name + "-actual.png"), imageOf(actual, b));
    writePicture(folder / (name + "-difference.png"), differenceOf(actual, a, b));
    return folder.string();
}

} // namespace orbel::golden
