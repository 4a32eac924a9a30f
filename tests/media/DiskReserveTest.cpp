#include "media/DiskReserve.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;

TEST(DiskReserve, takesRoomAndGivesItBack) {
    const std::string film = testing::TempDir() + "reserved-film.mov";
    const std::string room = film + ".reserve";
    {
        DiskReserve reserve(film);
        EXPECT_FALSE(fs::exists(room));
        ASSERT_TRUE(reserve.growTo(100'000));
        ASSERT_TRUE(reserve.growTo(50'000)) << "never shrinks";
        EXPECT_EQ(fs::file_size(room), 100'000U);
        reserve.release();
        EXPECT_FALSE(fs::exists(room));
        ASSERT_TRUE(reserve.growTo(1));
    }
    EXPECT_FALSE(fs::exists(room));
}

TEST(DiskReserve, saysWhenThereIsNoRoom) {
    EXPECT_FALSE(DiskReserve(testing::TempDir() + "no/such/folder/film.mov").growTo(1));
}

} // namespace
} // namespace orbel
