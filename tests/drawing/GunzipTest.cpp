#include "drawing/Gunzip.h"

#include "drawing/DrawingDocument.h"
#include "drawing/DrawingImport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <zlib.h>

namespace orbel {
namespace {

std::string packed(std::string text) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 1, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string bytes(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(text.data());
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    bytes.resize(stream.total_out);
    deflateEnd(&stream);
    return bytes;
}

std::string complaintOf(const std::string& bytes) {
    try {
        return "none, but " + std::to_string(gunzip(bytes).size()) + " bytes";
    } catch (const DrawingError& error) {
        return error.message;
    }
}

TEST(Gunzip, givesBackWhatWasPacked) {
    std::string text;
    for (int i = 0; text.size() < 300'000; ++i) {
        text += std::to_string(i * 7919);
    }
    EXPECT_TRUE(isGzip(packed(text)));
    EXPECT_EQ(gunzip(packed(text)), text);
    EXPECT_EQ(gunzip(packed("")), "");
    EXPECT_FALSE(isGzip("<svg/>"));
}

TEST(Gunzip, refusesWhatIsDamagedOrTooLarge) {
    const std::string whole = packed("<svg/>");
    std::string damaged = whole;
    damaged[12] = static_cast<char>(damaged[12] ^ 0x55);
    for (const std::string& bytes : {whole.substr(0, whole.size() - 1), damaged}) {
        EXPECT_EQ(complaintOf(bytes), "the packed drawing is damaged or cut off");
    }
    EXPECT_EQ(gunzip(packed(std::string(mostUnpackedBytes, ' '))).size(), mostUnpackedBytes);
    EXPECT_EQ(complaintOf(packed(std::string(mostUnpackedBytes + 1, ' '))),
              "the packed drawing becomes larger than 64 MiB");
}

TEST(Gunzip, doesNotWaitForTheEndOfABomb) {
    z_stream stream{};
    ASSERT_EQ(deflateInit2(&stream, 1, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string bytes(std::size_t{4} << 20, '\0');
    std::string blanks(std::size_t{1} << 20, ' ');
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    for (int i = 0; i < 512; ++i) {
        stream.next_in = reinterpret_cast<Bytef*>(blanks.data());
        stream.avail_in = static_cast<uInt>(blanks.size());
        ASSERT_EQ(deflate(&stream, Z_NO_FLUSH), Z_OK);
    }
    bytes.resize(stream.total_out); // and never ended
    deflateEnd(&stream);
    EXPECT_EQ(importDrawing(bytes, {}).message, "the packed drawing becomes larger than 64 MiB");
}

TEST(Gunzip, letsPackedDrawingsBeImported) {
    const std::string drawing = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'>"
                                "<path d='M1 1L8 2L4 7Z'/></svg>";
    const Conversion plain = importDrawing(drawing, {});
    ASSERT_TRUE(plain.shape) << plain.message;
    const Conversion unpacked = importDrawing(packed(drawing), {});
    ASSERT_TRUE(unpacked.shape) << unpacked.message;
    EXPECT_EQ(unpacked.shape->svg, plain.shape->svg);
}

} // namespace
} // namespace orbel
