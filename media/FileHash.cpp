#include "media/FileHash.h"

#include "media/MediaError.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <system_error>

#include <openssl/evp.h>

namespace orbel {

namespace {

struct HashFree {
    void operator()(EVP_MD_CTX* hash) const { EVP_MD_CTX_free(hash); }
};
using HashPtr = std::unique_ptr<EVP_MD_CTX, HashFree>;

HashPtr makeHash() {
    HashPtr hash(EVP_MD_CTX_new());
    if (hash == nullptr || EVP_DigestInit_ex(hash.get(), EVP_sha256(), nullptr) != 1) {
        throw std::bad_alloc();
    }
    return hash;
}

void add(const std::string& path, EVP_MD_CTX* hash) {
    std::ifstream stream(path, std::ios::binary);
    std::vector<char> block(1 << 18);
    while (stream) {
        stream.read(block.data(), std::ssize(block));
        EVP_DigestUpdate(hash, block.data(), static_cast<std::size_t>(stream.gcount()));
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
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    EVP_DigestFinal_ex(hash.get(), digest.data(), &length);
    std::string digits;
    for (unsigned i = 0; i < length; ++i) {
        constexpr const char* hexadecimal = "0123456789abcdef";
        digits.push_back(hexadecimal[digest[i] >> 4U]);
        digits.push_back(hexadecimal[digest[i] & 15U]);
    }
    return digits;
}

} // namespace orbel
