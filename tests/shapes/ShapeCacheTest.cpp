#include "shapes/ShapeCache.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "shapes/CriticalSection.h"
#include "tests/shapes/SvgText.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>
#include <utility>

#include <sys/stat.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;

/// An effect instance whose "Shape" is a file.
class Instance {
public:
    explicit Instance(const std::string& path)
        : m_host(RasterInfo{}, RasterInfo{}, &m_parameters, MemoryHostSettings{}) {
        setUserDataPath(&m_data, path.c_str());
        m_host.setUserData(&m_data);
    }

    PluginPath_Impl* shape() { return static_cast<PluginPath_Impl*>(getSVGShape(&m_host)); }

private:
    ParameterStore m_parameters;
    Orbel_UserData m_data;
    PluginHost_MEMORY_Impl m_host;
};

class ShapeCache : public testing::Test {
protected:
    ShapeCache() { flushStrokeCache(); }
    ~ShapeCache() override { flushStrokeCache(); }

    [[nodiscard]] std::string pathOf(const std::string& name) const { return m_folder / name; }

    std::string write(const std::string& name, int lines) const {
        return m_folder.file(name, test::svgOfLines(lines));
    }

    const test::TestFolder m_folder;
};

TEST_F(ShapeCache, twoInstancesShareTheEntryOfAFile) {
    const std::string path = write("a.svg", 2);
    Instance first(path);
    Instance second(path);
    PluginPath_Impl* const shape = first.shape();
    EXPECT_EQ(second.shape(), shape);
    EXPECT_EQ(g_cacheShapes.size(), 1U);
    EXPECT_EQ(shape->outlines().size(), 2U);
    EXPECT_EQ(shape->outlines()[0].vertices[0].x, 0.25); // normalised
    EXPECT_EQ(shape->outlines()[0].vertices[1].y, 0.625);
}

TEST_F(ShapeCache, anotherSpellingIsAnotherEntry) {
    write("a.svg", 1);
    PluginPath_Impl* const plain = Instance(pathOf("a.svg")).shape();
    EXPECT_NE(Instance(pathOf("./a.svg")).shape(), plain);
    ASSERT_EQ(g_cacheShapes.size(), 2U);
    EXPECT_EQ(findStokeCache(pathOf("./a.svg").c_str()), g_cacheShapes[1].get());
    EXPECT_EQ(findStokeCache("a.svg"), nullptr);
}

TEST_F(ShapeCache, aPathWithPercentSignsIsReadAndFoundAgain) {
    Instance instance(write("50%% %s.svg", 3));
    EXPECT_EQ(instance.shape()->outlines().size(), 3U);
    EXPECT_EQ(instance.shape()->outlines().size(), 3U);
    ASSERT_EQ(g_cacheShapes.size(), 1U);
    EXPECT_EQ(g_cacheShapes[0]->name, pathOf("50% .svg"));
    // One that reads alike as format text is another file, and stays one.
    Instance other(write("50%% .svg", 4));
    EXPECT_EQ(other.shape()->outlines().size(), 4U);
    EXPECT_EQ(instance.shape()->outlines().size(), 3U);
    EXPECT_EQ(findStokeCache(pathOf("50%% .svg").c_str())->path.outlines().size(), 4U);
    EXPECT_EQ(findStokeCache(pathOf("50% .svg").c_str()), nullptr);
}

TEST_F(ShapeCache, aPathOf1023BytesIsKeptWhole) {
    std::string folder = m_folder.path();
    while (folder.size() < 900) {
        folder += "/" + std::string(std::min<std::size_t>(100, 1010 - folder.size()), 'd');
    }
    fs::create_directories(folder);
    const std::string path = folder + "/" + std::string(1023 - folder.size() - 1, 'f');
    test::writeBytes(path, "<svg><line/></svg>");
    ASSERT_EQ(path.size(), 1023U);
    EXPECT_EQ(Instance(path).shape()->outlines().size(), 1U);
    EXPECT_EQ(g_cacheShapes.at(0)->name, path);
}

TEST_F(ShapeCache, withoutAReadableFileThereIsTheNullShape) {
    const std::string pipe = pathOf("pipe.svg");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    PluginPath_Impl* const none = Instance("").shape();
    ASSERT_NE(none, nullptr);
    EXPECT_TRUE(none->outlines().empty());
    for (const std::string& path : {pathOf("missing.svg"), m_folder / "", pipe,
                                    std::string("/dev/zero"), std::string(2000, 'x')}) {
        EXPECT_EQ(Instance(path).shape(), none) << path;
        EXPECT_EQ(fileExists(path.c_str()), 0) << path;
    }
    EXPECT_EQ(fileExists(nullptr), 0);
    EXPECT_TRUE(g_cacheShapes.empty());
}

TEST_F(ShapeCache, aBrokenFileIsKeptWithWhatItGave) {
    const std::string path = m_folder.file("broken.svg", "<svg><line x2='1'/><line");
    Instance instance(path);
    EXPECT_EQ(fileExists(path.c_str()), 1);
    EXPECT_EQ(instance.shape()->outlines().size(), 1U);
    EXPECT_EQ(instance.shape(), &g_cacheShapes.at(0)->path);
}

TEST_F(ShapeCache, aChangedFileIsReadAgainOnlyAfterAFlush) {
    Instance instance(write("a.svg", 1));
    EXPECT_EQ(instance.shape()->outlines().size(), 1U);
    write("a.svg", 5);
    EXPECT_EQ(instance.shape()->outlines().size(), 1U);
    flushStrokeCache();
    EXPECT_TRUE(g_cacheShapes.empty());
    EXPECT_EQ(instance.shape()->outlines().size(), 5U);
    fs::remove(pathOf("a.svg"));
    EXPECT_TRUE(instance.shape()->outlines().empty());
}

// Whoever draws holds the lock, and no shape may come or go meanwhile.
TEST_F(ShapeCache, nobodyAsksOrFlushesWhileTheLockIsHeld) {
    Instance instance(write("a.svg", 1));
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"ask", [&] { static_cast<void>(instance.shape()); }}, {"flush", flushStrokeCache}};
    for (const auto& [name, call] : calls) {
        std::atomic<bool> done = false;
        std::thread other;
        {
            const Stroke_CSLock lock(&g_globalCritSection);
            other = std::thread([&, work = call] {
                work();
                done = true;
            });
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            EXPECT_FALSE(done) << name;
        }
        other.join();
        EXPECT_TRUE(done) << name;
    }
}

TEST_F(ShapeCache, severalThreadsMayAskAtOnce) {
    const std::string paths[] = {write("a.svg", 1), write("b.svg", 2)};
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i != 4; ++i) {
        threads.emplace_back([&, i] {
            Instance instance(paths[i % 2]);
            for (int j = 0; j != 20; ++j) {
                const Stroke_CSLock lock(&g_globalCritSection); // as a render does
                EXPECT_EQ(instance.shape()->outlines().size(), i % 2 + 1);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(g_cacheShapes.size(), 2U);
}

} // namespace
} // namespace orbel
