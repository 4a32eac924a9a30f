#pragma once

#include <string>

namespace orbel {

enum class OutputKind {
    Png,
    Tiff,
    Exr,
    Mp4,
    Mov,
    Mkv,
    Gif,
    WebP,
    Apng,
    Mp4Frames, ///< what an .mp4 is coded from, without loss; no ending names it
};

/// What a name asks for.
struct OutputTarget {
    OutputKind kind = OutputKind::Png;
    bool isFilm = false;     ///< one file for all frames
    bool isSequence = false; ///< one numbered picture per frame
};

/// What a name asks for, without a look at the disk. Throws MediaError for an ending that is not
/// known.
[[nodiscard]] OutputTarget targetOf(const std::string& path);

/// Reads the ending (`.png`, `.tif`, `.tiff`, `.exr`, `.mp4`, `.mov`, `.mkv`, `.gif`, `.webp`,
/// `.apng`, in any case) and checks that `frames` frames can go there: the folder exists and can be
/// written, the file is not a folder, the number in a sequence's name is sound, and a single
/// picture is not asked to hold several frames. Leaves nothing behind. Throws MediaError.
[[nodiscard]] OutputTarget checkOutput(const std::string& path, long frames);

} // namespace orbel
