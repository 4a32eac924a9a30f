#include "film/Film.h"

#include "film/FrameOnDemand.h"
#include "film/Profile.h"
#include "film/RenderPipeline.h"
#include "film/ShapeFolder.h"
#include "media/MediaReader.h"
#include "params/ParameterTable.h"
#include "tests/media/MediaFixtures.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

namespace orbel {
namespace {

Scene starScene(FrameSize size) {
    prepareShapeTable();
    Scene scene;
    scene.file = "scene.json";
    scene.size = size;
    scene.frames = {0, 9};
    scene.parameters[PARAM_PRESETS] = {{0, {1}, Easing::Linear}};
    scene.parameters[PARAM_THICKNESS] = {{0, {3}, Easing::Linear}};
    scene.parameters[PARAM_END] = {{0, {0}, Easing::Linear}, {9, {100}, Easing::Linear}};
    return scene;
}

ScenePlan planned(const Scene& scene, const FilmRequest& request) {
    Problems problems;
    std::optional<ScenePlan> plan = planFilm(scene, request, &problems);
    EXPECT_TRUE(problems.empty()) << problems.items().front().message;
    return std::move(plan).value_or(ScenePlan{});
}

/// Straight components from one file to another, with whatever there is between them.
PicturePtr filmed(const std::string& in, const std::string& out, Scene scene) {
    scene.input = MediaInput{in};
    scene.frames = FrameRange{9, 9};
    FilmRequest request;
    request.outputs.file = out;
    ScenePlan plan = planned(scene, request);
    EXPECT_EQ(renderFilm(&plan, request, {}).end, FilmEnd::Done);
    return openMedia(out, 1)->readFrame(0);
}

/// Every component from nothing to the whole, under every alpha of a few, a stroke away from them.
template<typename T>
void writeRamp(const std::string& path, FrameSize size, double alpha) {
    const RasterFormat format = sizeof(T) == 1 ? RF_RGBA8 : RF_RGBA16;
    MemoryImage image(size.width, size.height, format, {});
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const double value = static_cast<double>(x) / (size.width - 1);
            const auto whole = static_cast<double>(std::numeric_limits<T>::max());
            const std::array<T, 4> pixel{static_cast<T>(value * whole),
                                         static_cast<T>(whole - value * whole),
                                         static_cast<T>(whole), static_cast<T>(alpha * whole)};
            std::memcpy(image.info().row(y) + static_cast<std::size_t>(x) * sizeof pixel,
                        pixel.data(), sizeof pixel);
        }
    }
    WriterSpec spec;
    spec.width = size.width;
    spec.height = size.height;
    spec.format = format;
    spec.alpha = OutputAlpha::Straight;
    const auto writer = openWriter(path, spec);
    writer->write(image.info(), 0);
    writer->finish();
}

template<typename T>
void expectUntouchedRow(const Picture& before, const Picture& after, const std::string& what) {
    const auto& in = std::get<std::vector<T>>(before.components);
    const auto& out = std::get<std::vector<T>>(after.components);
    const auto row = static_cast<std::ptrdiff_t>(componentCount(before.width, 1));
    EXPECT_TRUE(std::equal(in.begin(), in.begin() + row, out.begin())) << what;
    EXPECT_NE(in, out) << what << ": the stroke is there";
}

TEST(Film, leavesPixelsAloneThatNothingIsDrawnOn) {
    const TestFolder folder;
    const FrameSize size{256, 64};
    for (const double alpha : {1.0, 0.5, 0.01}) {
        const std::string what = "alpha " + std::to_string(alpha);
        Scene scene = starScene(size);
        scene.parameters[PARAM_TRANSFER_MODE] = {{0, {1}, Easing::Linear}};
        writeRamp<std::uint8_t>(folder / "in.png", size, alpha);
        const PicturePtr eight = openMedia(folder / "in.png", 1)->readFrame(0);
        expectUntouchedRow<std::uint8_t>(
            *eight, *filmed(folder / "in.png", folder / "out.png", scene), what);
        scene.format = RF_ARGB16;
        writeRamp<std::uint16_t>(folder / "in.png", size, alpha);
        const PicturePtr sixteen = openMedia(folder / "in.png", 1)->readFrame(0);
        expectUntouchedRow<std::uint16_t>(
            *sixteen, *filmed(folder / "in.png", folder / "out.mkv", scene), what);
    }
}

TEST(Film, showsTheFramesThatAreAskedForOneByOne) {
    const TestFolder folder;
    FilmRequest request;
    request.outputs.rawFolder = folder / "raw";
    request.frames = FrameRange{4, 6};
    request.size = FrameSize{40, 30};
    ScenePlan plan = planned(starScene({80, 60}), request);
    std::vector<long> told;
    FilmCallbacks callbacks;
    callbacks.frameWritten = [&](long frame) { told.push_back(frame); };
    const FilmResult film = renderFilm(&plan, request, callbacks);
    EXPECT_EQ(film.end, FilmEnd::Done);
    EXPECT_EQ(told, (std::vector<long>{4, 5, 6}));

    FrameOnDemand frames(planned(starScene({80, 60}), request));
    for (const long frame : {5L, 4L}) {
        const MemoryImage* const image = frames.render(frame, {});
        ASSERT_NE(image, nullptr);
        const std::string bytes =
            readBytes(folder / "raw/frame-00000" + std::to_string(frame) + ".raw");
        ASSERT_EQ(bytes.size(), 40U * 30 * 4);
        EXPECT_EQ(std::memcmp(image->info().row(0), bytes.data(), bytes.size()), 0);
    }
    EXPECT_EQ(frames.render(4, [] { return true; }), nullptr);
}

TEST(Film, drawsAnewWhatGaveWay) {
    const TestFolder folder;
    Scene scene = starScene({80, 60});
    scene.frames = FrameRange{7, 9};
    scene.input = ColorInput{{0.3, 0.6, 0.9, 0.4}}; // worked in while a frame is drawn
    scene.parameters[PARAM_TRANSFER_MODE] = {{0, {1}, Easing::Linear}};
    FilmRequest request;
    int attempts = 0;
    FilmCallbacks callbacks;
    callbacks.beforeFrame = [&] { ++attempts; };
    const auto film = [&](const char* name) {
        request.outputs.rawFolder = folder / name;
        ScenePlan plan = planned(scene, request);
        EXPECT_EQ(renderFilm(&plan, request, callbacks).framesWritten, 3);
        return readBytes(folder / (std::string(name) + "/frame-000008.raw"));
    };
    const std::string plain = film("plain");
    EXPECT_EQ(attempts, 3);
    callbacks.giveWay = [&] { return attempts % 2 == 0; };
    EXPECT_TRUE(film("anew") == plain);
    EXPECT_EQ(attempts, 3 + 3 * 2);
}

TEST(Film, tellsWhatStoppedIt) {
    const MediaError fullDisk("out.mkv", "frame 12", "the disk is full", "free some room",
                              MediaError::Passing);
    const std::array<std::pair<std::function<void()>, Problem>, 3> failures{
        {{[] { throw std::bad_alloc(); },
          {"scene.json", "frame 6", "there is not enough memory", "render at a smaller size"}},
         {[] { throw RenderError(7); },
          {"scene.json", "frame 6", "the effect gave up with code 7", ""}},
         {[&] { throw MediaError(fullDisk); },
          {"out.mkv", "frame 12", "the disk is full", "free some room"}}}};
    const TestFolder folder;
    for (const auto& [fail, problem] : failures) {
        for (const int threads : {1, 3}) {
            FilmRequest request;
            request.outputs.rawFolder = folder / "raw";
            request.frames = FrameRange{4, 9};
            request.threads = threads;
            FilmCallbacks callbacks;
            callbacks.beforeFrame = [&fail = fail, frame = 4]() mutable {
                if (frame++ == 6) {
                    fail();
                }
            };
            ScenePlan plan = planned(starScene({40, 30}), request);
            const FilmResult film = renderFilm(&plan, request, callbacks);
            EXPECT_EQ(film.end, FilmEnd::Failed);
            EXPECT_EQ(film.framesWritten, 2);
            EXPECT_FALSE(film.outputFailed);
            EXPECT_EQ(film.passing, problem.file == "out.mkv");
            ASSERT_TRUE(film.problem.has_value());
            EXPECT_EQ(sentence(*film.problem), sentence(problem));
        }
    }
}

TEST(Film, tellsWhatAFrameTakesOfEveryStage) {
    StageTimes times;
    times.rendering = std::chrono::milliseconds(500);
    times.whole = std::chrono::seconds(1);
    for (const auto& [frames, each] : {std::pair{0L, "500.00"}, {1L, "500.00"}, {4L, "125.00"}}) {
        const std::string line =
            std::string("rendering     0.50 s  ") + each + " ms         50 %   ";
        EXPECT_NE(profileText(times, frames).find(line), std::string::npos) << frames;
    }
}

} // namespace
} // namespace orbel
