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
    Coded,      ///< short films of the output's own coding, every frame of which stands alone
    CoderInput, ///< short films of what the output's coder takes, which codes them in one go
    Frames,     ///< short films of the frames without loss, which the output's writer is given
    Pictures,   ///< the numbered pictures or raw frames themselves
};

[[nodiscard]] PartKind partKind(const OutputTarget& target);

/// The ending of a part's file: ".mov" or ".mkv"; empty for pictures.
[[nodiscard]] std::string partEnding(const OutputTarget& target);

class FilmAssembly;

/// Opens a part of a film, whose file has that ending. Where the parts are the coder's input,
/// `film`, if given, takes the frames of this part while they are written; it is borrowed. Throws
/// MediaError.
[[nodiscard]] std::unique_ptr<MediaWriter> openPart(const std::string& path, const WriterSpec& spec,
                                                    const OutputTarget& target,
                                                    FilmAssembly* film = nullptr);

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
    friend std::unique_ptr<MediaWriter> openPart(const std::string&, const WriterSpec&,
                                                 const OutputTarget&, FilmAssembly*);
    class Film;
    std::unique_ptr<Film> m_film;
};

} // namespace orbel
