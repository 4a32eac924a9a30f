#include "studio/EventHub.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace orbel::studio {
namespace {

using namespace std::chrono_literals;

/// A page that keeps what it is sent; it may dawdle, or be gone.
class Page final : public BodySink {
public:
    bool write(std::string_view bytes) override {
        while (dawdles) {
            std::this_thread::sleep_for(1ms);
        }
        text += bytes;
        ++writes;
        return !closed;
    }

    std::string text;
    std::atomic<int> writes = 0;
    std::atomic<bool> dawdles = false;
    std::atomic<bool> closed = false;
};

class Listening : public testing::Test {
protected:
    Listening() {
        while (hub.listeners() == 0 || page.writes == 0) {
            std::this_thread::sleep_for(1ms);
        }
    }
    ~Listening() override { end(); }

    void end() {
        if (thread.joinable()) {
            hub.close();
            page.dawdles = false;
            thread.join();
        }
    }
    bool waitFor(int writes) {
        for (int i = 0; i < 5000 && page.writes < writes; ++i) {
            std::this_thread::sleep_for(1ms);
        }
        return page.writes >= writes;
    }
    static std::string line(int number) { return "{\"n\":" + std::to_string(number) + "}\n"; }

    const std::string alive = "{\"event\":\"alive\"}\n";
    EventHub hub;
    Page page;
    std::thread thread{[this] { hub.listen(page, [] { return false; }); }};
};

TEST_F(Listening, bringsEveryEventInOrderAndTheLastOnesAtTheEnd) {
    std::string expected = alive;
    for (int i = 0; i < 24; ++i) {
        hub.tell({{"n", i}});
        expected += line(i);
        ASSERT_TRUE(waitFor(i + 2));
    }
    page.dawdles = true;
    hub.tell({{"n", 24}});
    end();
    EXPECT_EQ(page.text, expected + line(24));
    EXPECT_EQ(hub.listeners(), 0);
}

TEST_F(Listening, saysSeldomThatItIsAlive) {
    std::this_thread::sleep_for(1200ms); // two rests
    EXPECT_EQ(page.writes, 1);
    end();
    EXPECT_EQ(page.text, alive);
}

TEST_F(Listening, leavesOutWhatASlowPageMissed) {
    page.dawdles = true;
    hub.tell({{"n", -1}});
    std::this_thread::sleep_for(50ms); // the page has taken that one, or finds it among the rest
    for (int i = 0; i < 100; ++i) {
        hub.tell({{"n", i}});
    }
    page.dawdles = false;
    ASSERT_TRUE(waitFor(2));
    end();
    EXPECT_EQ(page.text.find(line(35)), std::string::npos);
    EXPECT_NE(page.text.find(line(36) + line(37)), std::string::npos);
    EXPECT_TRUE(page.text.ends_with(line(98) + line(99)));
}

TEST_F(Listening, endsWithThePage) {
    page.closed = true;
    hub.tell({{"n", 1}});
    thread.join();
    EXPECT_EQ(hub.listeners(), 0);
}

} // namespace
} // namespace orbel::studio
