#include "farm/DiskEstimate.h"

#include "doors/memory/MemoryImage.h"
#include "farm/Chunk.h"

#include <filesystem>

namespace orbel {

namespace {

/// Bytes of a pixel as measured over pictures with a stroke on a photograph; raw ones have theirs.
double bytesOfAPixel(const Job& job, RasterFormat format) {
    const bool deep = bytesPerPixel(format) > 4;
    if (!job.outputs.file) {
        return bytesPerPixel(format);
    }
    switch (targetOf(*job.outputs.file).kind) {
    case OutputKind::Png:
    case OutputKind::Tiff:
        return deep ? 1.9 : 1.0;
    case OutputKind::Exr:
        return 3.5;
    case OutputKind::Mov:
        return 1.3;
    case OutputKind::Mp4:
    case OutputKind::Mp4Frames:
        return 0.6;
    case OutputKind::Gif:
    case OutputKind::WebP:
    case OutputKind::Apng:
        return 0.65;
    case OutputKind::Mkv:
        break;
    }
    return deep ? 1.7 : 0.65;
}

} // namespace

DiskEstimate estimateDisk(const Job& job, RasterFormat format) {
    std::uint64_t bytes = 0;
    long frames = 0;
    for (long chunk = 0; chunk < job.chunkCount(); ++chunk) {
        if (const std::optional<ChunkRecord> record = finishedChunk(job, chunk)) {
            bytes += record->bytes;
            frames += record->frames;
        }
    }
    const double usual = bytesOfAPixel(job, format) * job.size.width * job.size.height;
    const double each =
        frames > 0 ? static_cast<double>(bytes) / static_cast<double>(frames) : usual;
    const auto missing = static_cast<double>(job.frames.count() - frames);
    // Pictures are put into place by a second name.
    const double joined =
        job.kind() == PartKind::Pictures ? 0.0 : each * static_cast<double>(job.frames.count());
    std::error_code error;
    const auto space =
        std::filesystem::space(std::filesystem::path(job.folder).parent_path(), error);
    DiskEstimate estimate;
    estimate.needed = static_cast<std::uint64_t>(each * missing + joined);
    estimate.available = error ? UINT64_MAX : space.available;
    return estimate;
}

std::optional<Problem> checkDisk(const Job& job, RasterFormat format) {
    const DiskEstimate estimate = estimateDisk(job, format);
    if (estimate.fits()) {
        return std::nullopt;
    }
    const auto megabytes = [](std::uint64_t bytes) {
        return std::to_string((bytes + 999'999) / 1'000'000) + " MB";
    };
    return Problem{job.folder, "",
                   "the film and its chunks need some " + megabytes(estimate.needed) +
                       ", and the disk has " + megabytes(estimate.available),
                   outOfRoom};
}

} // namespace orbel
