#include "media/RawDump.h"

#include "media/MediaError.h"
#include "media/PendingFile.h"

#include <bit>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace orbel {

namespace {

static_assert(std::endian::native == std::endian::little,
              "a dump is little-endian and written as it lies in memory");

std::filesystem::path parentOf(const std::filesystem::path& folder) {
    const std::filesystem::path whole = folder.has_filename() ? folder : folder.parent_path();
    const std::filesystem::path parent = whole.parent_path();
    return parent.empty() ? "." : parent;
}

class RawDump final : public MediaWriter {
public:
    explicit RawDump(const std::filesystem::path& folder)
        : m_folder(folder), m_pending((folder / "frames").string()) {}

    void write(const RasterInfo& raster, long frame) override {
        const std::string path = (m_folder / rawFrameName(frame)).string();
        try {
            PendingFile file(path);
            writeRows(raster, &file);
            file.complete();
        } catch (const MediaError& error) {
            if (error.code() == 0) {
                throw;
            }
            throw MediaError(path, framePlace(frame),
                             "the frame cannot be written (" +
                                 std::generic_category().message(error.code()) + ")",
                             outOfRoom, MediaError::Passing);
        }
    }

    void finish() override { m_pending.release(); }

private:
    static void writeRows(const RasterInfo& raster, PendingFile* file) {
        const std::size_t row =
            static_cast<std::size_t>(raster.width) * static_cast<std::size_t>(raster.bytesPerPixel);
        for (int y = 0; y < raster.height; ++y) {
            const void* const bytes = raster.row(y);
            file->write({static_cast<const char*>(bytes), row});
        }
    }

    std::filesystem::path m_folder;
    PendingFile m_pending; // a sign that frames are being written
};

} // namespace

void checkRawFolder(const std::string& folder) {
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) {
        checkTakesFiles(folder, folder);
        return;
    }
    if (std::filesystem::exists(folder, error)) {
        throw MediaError(folder, "", "is no folder", "name a folder");
    }
    checkTakesFiles(parentOf(folder), folder);
}

std::unique_ptr<MediaWriter> openRawDump(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directory(folder, error);
    if (error) {
        throw MediaError(folder, "", "the folder cannot be made (" + error.message() + ")",
                         "choose another");
    }
    return std::make_unique<RawDump>(folder);
}

std::string rawFrameName(long frame) {
    char name[32];
    std::snprintf(name, sizeof name, "frame-%06ld.raw", frame);
    return name;
}

} // namespace orbel
