#pragma once

#include "media/MediaWriter.h"
#include "media/OutputTarget.h"

#include <memory>
#include <string>

/// Films that are made in parts, each by itself, and put together in the end: byte for byte the
/// film that is made in one go.
namespace orbel {

/// What the parts of an output are.
enum class PartKind {
    Coded,    ///< short films of the output's own coding, every frame of which stands alone
    Frames,   ///< short films without loss, from which the output is coded in one go
    Pictures, ///< the numbered pictures or raw frames themselves
};

[[nodiscard]] PartKind partKind(const OutputTarget& target);

/// The ending of a part's file: ".mov" or ".mkv"; empty for pictures.
[[nodiscard]] std::string partEnding(const OutputTarget& target);

/// Opens a part of a film, whose file has that ending. Throws MediaError.
[[nodiscard]] std::unique_ptr<MediaWriter> openPart(const std::string& path, const WriterSpec& spec,
                                                    const OutputTarget& target);

/// The coded bytes of a frame of a part, from 0 on. Throws MediaError when it has no such frame.
[[nodiscard]] std::string codedFrame(const std::string& part, long index);

/// Puts a film together. What is not finished leaves nothing behind.
class FilmAssembly {
public:
    /// `spec` is what the parts were opened with. Throws MediaError.
    FilmAssembly(const std::string& path, const WriterSpec& spec);
    FilmAssembly(const FilmAssembly&) = delete;
    FilmAssembly& operator=(const FilmAssembly&) = delete;
    ~FilmAssembly();

    /// Takes the frames of the next part. Throws MediaError that names the part when it has not
    /// exactly so many or one of them cannot be read: what was taken of it stays, so that only a
    /// new assembly helps.
    void append(const std::string& part, long frames);
    /// Throws MediaError.
    void finish();

private:
    class Film;
    std::unique_ptr<Film> m_film;
};

} // namespace orbel
