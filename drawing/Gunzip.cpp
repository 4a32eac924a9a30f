#include "drawing/Gunzip.h"

#include "drawing/DrawingDocument.h"

#define ZLIB_CONST // the input stays as it is
#include <zlib.h>

#include <array>

namespace orbel {

bool isGzip(std::string_view bytes) {
    return bytes.starts_with("\x1f\x8b");
}

std::string gunzip(std::string_view bytes) {
    z_stream stream{};
    constexpr int gzipOnly = 16 + MAX_WBITS;
    if (inflateInit2(&stream, gzipOnly) != Z_OK) {
        throw std::bad_alloc();
    }
    stream.next_in = reinterpret_cast<const Bytef*>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    std::string text;
    std::array<char, std::size_t{1} << 16> chunk{};
    int state = Z_OK;
    while (state == Z_OK && text.size() <= mostUnpackedBytes) {
        stream.next_out = reinterpret_cast<Bytef*>(chunk.data());
        stream.avail_out = static_cast<uInt>(chunk.size());
        state = inflate(&stream, Z_NO_FLUSH);
        text.append(chunk.data(), chunk.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    if (text.size() > mostUnpackedBytes) {
        throw DrawingError{"the packed drawing becomes larger than 64 MiB",
                           "is it a drawing? Simplify it, or split it"};
    }
    if (state != Z_STREAM_END) {
        throw DrawingError{"the packed drawing is damaged or cut off", "save the drawing again"};
    }
    return text;
}

} // namespace orbel
