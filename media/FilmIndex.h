#pragma once

#include "media/Libav.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orbel {

/// What makes an ordinary film out of an MP4 or MOV that was written in fragments: the index of all
/// of its frames, and the fragments' own heads hidden. While it is written, each fragment tells all
/// about itself, so that what a killed program leaves can be played; many editors, though, read
/// ordinary films only.
///
/// The index is made by the library's own writer of ordinary films, which is told where each frame
/// lies and whose other output goes nowhere.
class FilmIndex {
public:
    /// For a film like `film`, before its head is written. Throws MediaError naming `path`.
    FilmIndex(std::string path, const AVFormatContext& film);
    FilmIndex(const FilmIndex&) = delete;
    FilmIndex& operator=(const FilmIndex&) = delete;
    ~FilmIndex();

    /// Notes the packets of the newest fragment of the file, which begins at this byte, as far as
    /// they came to be in it. Times are counted in `timeBase`.
    void add(const std::vector<libav::PacketPtr>& packets, std::int64_t fragment,
             AVRational timeBase);
    /// Makes the file, closed by its writer, a film of all these packets. What comes behind their
    /// fragments goes.
    void complete();

private:
    static int take(void* self, libav::WrittenBytes* bytes, int count);
    static std::int64_t seek(void* self, std::int64_t offset, int whence);
    void check(int code) const;
    [[nodiscard]] std::int64_t boxSize(std::int64_t at) const;
    [[nodiscard]] std::string indexBytes();

    std::string m_path;
    libav::OutputPtr m_output;
    int m_file = -1;
    std::int64_t m_at = 0;          ///< where the library believes to write
    std::int64_t m_end = 0;         ///< of the newest fragment
    std::string* m_index = nullptr; ///< takes what is written behind it
};

/// Writes a complete film anew with its index in front, so that a page can play it while it is
/// still on its way. Throws MediaError.
void writeIndexFirst(const std::string& film, const std::string& to);

} // namespace orbel
