#include "film/ScenePlan.h"

#include "doors/memory/MemoryImage.h"
#include "film/MachineMemory.h"
#include "media/MediaError.h"
#include "scene/RationalRate.h"
#include "scene/SceneLimits.h"
#include "scene/SceneShapes.h"
#include "shapes/InlineShapes.h"
#include "shapes/ShapeFile.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

namespace orbel {

namespace {

constexpr int mostFramesInFlight = 4;

std::uint64_t frameBytes(const FrameSize& size, RasterFormat format) {
    return static_cast<std::uint64_t>(size.width) * static_cast<std::uint64_t>(size.height) *
           static_cast<std::uint64_t>(bytesPerPixel(format));
}

std::string megabytes(std::uint64_t bytes) {
    return std::to_string((bytes + 999'999) / 1'000'000) + " MB";
}

bool isUnreadable(const std::string& path) {
    return fileExists(path.c_str()) != 1;
}

/// How many frames of the scene, from 0 on, find a frame in the input; at least one. Nothing when
/// it is not known, or when there is no end.
std::optional<long> framesCovered(const MediaProperties& media, const FrameRate& sceneRate) {
    if (!media.frameCount || !media.frameRate || *media.frameRate == sceneRate) {
        return media.frameCount;
    }
    const double duration = static_cast<double>(*media.frameCount) / media.frameRate->perSecond();
    const double frames = std::ceil(duration * sceneRate.perSecond());
    long covered = static_cast<long>(std::clamp(frames, 1.0, static_cast<double>(lastFrame + 1)));
    while (covered > 1 && mediaFrame(media, sceneRate, covered - 1) >= *media.frameCount) {
        --covered;
    }
    return covered;
}

class Planner {
public:
    Planner(const Scene& scene, int threads, Problems* problems, const ShapeConverter& convert)
        : m_scene(scene), m_threads(threads), m_problems(problems), m_convert(convert) {}

    [[nodiscard]] ScenePlan plan() {
        m_plan.sceneFile = m_scene.file;
        m_plan.format = m_scene.format;
        m_plan.pixelAspect = m_scene.pixelAspect;
        m_plan.renderScaleX = m_scene.renderScaleX;
        m_plan.renderScaleY = m_scene.renderScaleY;
        for (const auto& [id, keys] : m_scene.parameters) {
            m_plan.parameters.setKeys(id, keys);
        }
        openInput();
        planRate();
        planFrames();
        planSize();
        checkRawInput();
        planShape();
        return std::move(m_plan);
    }

private:
    /// A place in the scene file, or the option that stands for it.
    [[nodiscard]] Site site(const char* pointer, const char* option) const {
        return siteIn(m_scene, pointer, option, m_problems);
    }

    void openInput() {
        if (const auto* const color = std::get_if<ColorInput>(&m_scene.input)) {
            m_plan.color = *color;
        } else if (const auto* const media = std::get_if<MediaInput>(&m_scene.input)) {
            openMediaInput(*media);
        }
    }

    void openMediaInput(const MediaInput& input) {
        try {
            m_plan.media = openMedia(input.path, m_threads, input.first);
            m_plan.alpha = {SourceAlpha::Straight, OutputAlpha::Straight};
            // What is wrong with the file shows here and not in the middle of the film.
            static_cast<void>(m_plan.media->readFrame(0));
        } catch (const MediaError& error) {
            m_problems->add({error.file(), error.place(), error.message(), error.remedy()});
            m_inputFailed = true;
        }
    }

    void planRate() {
        if (m_scene.framesPerSecond) {
            m_plan.frameRate = rationalRate(*m_scene.framesPerSecond);
        } else if (!m_inputFailed && m_plan.media && m_plan.media->properties().frameRate) {
            m_plan.frameRate = *m_plan.media->properties().frameRate;
        }
    }

    /// A sequence that may begin with 1 and ends with the very number that one from 0 on would
    /// have to end with has lost its first file.
    void checkFirstNumber(const MediaProperties& media) {
        if (media.firstNumber == 1 && media.frameCount == m_plan.frames.last &&
            !std::get<MediaInput>(m_scene.input).first) {
            site("/input/file", "--input")
                .report("the sequence lacks file 0, or is too short: frames 0 to " +
                            std::to_string(m_plan.frames.last) +
                            " are asked for, and it has the numbers 1 to " +
                            std::to_string(*media.frameCount),
                        "add what is missing, or choose fewer frames");
        }
    }

    void planFrames() {
        if (m_scene.frames) {
            m_plan.frames = *m_scene.frames;
            if (!m_inputFailed && m_plan.media) {
                checkFirstNumber(m_plan.media->properties());
            }
        } else if (!m_inputFailed && m_plan.media) {
            const MediaProperties& media = m_plan.media->properties();
            m_plan.frames.last = framesCovered(media, m_plan.frameRate).value_or(1) - 1;
        }
    }

    void planSize() {
        if (m_scene.size) {
            m_plan.size = *m_scene.size;
        } else if (m_plan.media) {
            m_plan.size = {m_plan.media->properties().width, m_plan.media->properties().height};
        } else if (!m_inputFailed) {
            site("", "--size")
                .report("the size of the frame is missing",
                        "add \"size\": [width, height] or --size WIDTHxHEIGHT, or give a "
                        "picture or clip as input");
        }
        planMemory();
    }

    void planMemory() {
        const std::uint64_t frame = frameBytes(m_plan.size, m_plan.format);
        // Every frame in the making has input and output; beside them stand one blur sample and
        // what the input is made from.
        const std::uint64_t common = 2 * frame;
        const std::uint64_t memory = machineMemory();
        const std::uint64_t least = common + 2 * frame;
        if (least > memory) {
            site("/size", "--size")
                .report("rendering " + std::to_string(m_plan.size.width) + " x " +
                            std::to_string(m_plan.size.height) + " needs " + megabytes(least) +
                            " of memory, and this machine has " + megabytes(memory),
                        "choose a smaller size, or a format of fewer bits");
            return;
        }
        if (frame > 0) {
            const std::uint64_t room = (memory / 2 - std::min(common, memory / 2)) / (2 * frame);
            m_plan.framesInFlight = static_cast<int>(
                std::clamp<std::uint64_t>(room, 1, static_cast<std::uint64_t>(mostFramesInFlight)));
        }
    }

    void planShape() {
        if (!m_scene.needsConversion() || !m_convert) {
            m_plan.shapePath = m_scene.shape.value_or("");
            checkShapes(m_scene, m_problems);
            return;
        }
        checkPresets(m_scene, m_problems);
        m_plan.shapeText = m_convert(m_scene, m_problems).value_or("");
        if (m_plan.shapeText.size() > maxInlineShapeBytes) {
            site("/shape", "--shape")
                .report("the shape has more points than can be drawn",
                        R"(simplify it: "import": {"simplify": 0.5})");
        }
    }

    void checkRawInput() {
        const auto* const raw = std::get_if<RawInput>(&m_scene.input);
        if (raw == nullptr || frameBytes(m_plan.size, m_plan.format) == 0) {
            return;
        }
        const Site place = site("/input/raw", "--input");
        if (isUnreadable(raw->path)) {
            place.report("the file " + inQuotes(raw->path) + " does not exist or cannot be read",
                         "check its name; it is relative to the scene file");
            return;
        }
        const std::uint64_t needed = frameBytes(m_plan.size, m_plan.format);
        std::error_code error;
        const std::uint64_t found = std::filesystem::file_size(raw->path, error);
        if (error || found != needed) {
            place.report(inQuotes(raw->path) + " holds " + std::to_string(found) +
                             " bytes, and a frame of this size and format has " +
                             std::to_string(needed),
                         R"(correct "size" or "format", or give another file)");
            return;
        }
        if (m_problems->empty()) {
            readRawInput(raw->path, static_cast<std::size_t>(needed), place);
        }
    }

    void readRawInput(const std::string& path, std::size_t bytes, const Site& place) {
        m_plan.rawFrame.resize(bytes);
        std::ifstream stream(path, std::ios::binary);
        if (!stream.read(reinterpret_cast<char*>(m_plan.rawFrame.data()),
                         static_cast<std::streamsize>(bytes))) {
            place.report(inQuotes(path) + " cannot be read", "check the file and its permissions");
        }
    }

    const Scene& m_scene;
    int m_threads;
    Problems* m_problems;
    const ShapeConverter& m_convert;
    ScenePlan m_plan;
    bool m_inputFailed = false;
};

} // namespace

std::optional<ScenePlan> planScene(const Scene& scene, int threads, Problems* problems,
                                   const ShapeConverter& convert) {
    ScenePlan plan = Planner(scene, threads, problems, convert).plan();
    if (!problems->empty()) {
        return std::nullopt;
    }
    return plan;
}

void resize(ScenePlan* plan, const FrameSize& size) {
    plan->renderScaleX *= static_cast<double>(size.width) / plan->size.width;
    plan->renderScaleY *= static_cast<double>(size.height) / plan->size.height;
    if (size.width > plan->size.width || size.height > plan->size.height) {
        plan->framesInFlight = 1; // memory was looked at for the smaller one
    }
    plan->size = size;
}

long mediaFrame(const MediaProperties& media, const FrameRate& sceneRate, long frame) {
    if (!media.frameRate || *media.frameRate == sceneRate) {
        return frame;
    }
    // A moment on the border between two frames belongs to the later one, however it is rounded.
    constexpr double rounding = 1e-6;
    const double moment = static_cast<double>(frame) / sceneRate.perSecond();
    return static_cast<long>(std::floor(moment * media.frameRate->perSecond() + rounding));
}

std::optional<long> firstMissingFrame(const ScenePlan& plan) {
    if (plan.media == nullptr) {
        return std::nullopt;
    }
    const std::optional<long> covered = framesCovered(plan.media->properties(), plan.frameRate);
    if (!covered || *covered > plan.frames.last) {
        return std::nullopt;
    }
    return std::max(*covered, plan.frames.first);
}

} // namespace orbel
