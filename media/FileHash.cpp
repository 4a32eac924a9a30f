#include "media/FileHash.h"

#include "media/MediaError.h"

extern "C" {
#include <libavutil/hash.h>
}

#include <array>
#include <cerrno>
#include <fstream>
#include <memory>
#include <new>
#include <system_error>

namespace orbel {

namespace {

struct HashFree {
    void operator()(AVHashContext* hash) const { av_hash_freep(&hash); }
};
using HashPtr = std::unique_ptr<AVHashContext, HashFree>;

HashPtr makeHash() {
    AVHashContext* hash = nullptr;
    if (av_hash_alloc(&hash, "SHA256") < 0) {
        throw std::bad_alloc();
    }
    av_hash_init(hash);
    return HashPtr(hash);
}

void add(const std::string& path, AVHashContext* hash) {
    std::ifstream stream(path, std::ios::binary);
    std::vector<char> block(1 << 18);
    while (stream) {
        stream.read(block.data(), std::ssize(block));
        av_hash_update(hash, reinterpret_cast<const std::uint8_t*>(block.data()),
                       static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.eof()) {
        throw MediaError(path, "",
                         "the file cannot be read (" + std::generic_category().message(errno) + ")",
                         "check the file and its permissions", MediaError::Passing);
    }
}

} // namespace

std::string hashOfFiles(const std::vector<std::string>& paths) {
    const HashPtr hash = makeHash();
    for (const std::string& path : paths) {
        add(path, hash.get());
    }
    std::array<std::uint8_t, 2 * AV_HASH_MAX_SIZE + 1> digits{};
    av_hash_final_hex(hash.get(), digits.data(), static_cast<int>(digits.size()));
    return reinterpret_cast<const char*>(digits.data());
}

} // namespace orbel
