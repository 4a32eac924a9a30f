#pragma once

#include "media/DiskReserve.h"
#include "media/Encoder.h"
#include "media/FilmIndex.h"
#include "media/MediaWriter.h"
#include "media/PendingFile.h"

#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace orbel {

/// One file for all frames. It shows them in the order in which they come, as frames or as packets
/// that an encoder of the same settings made.
class FilmWriter final : public MediaWriter {
public:
    /// Throws MediaError.
    FilmWriter(const std::string& path, const WriterSpec& spec, const OutputTarget& target);
    FilmWriter(const FilmWriter&) = delete;
    FilmWriter& operator=(const FilmWriter&) = delete;
    ~FilmWriter() override;

    void write(const RasterInfo& raster, long frame) override;
    void finish() override;

    /// Codes a frame that is as the coder takes it, as the next one. Throws MediaError.
    void code(AVFrame& frame);
    /// Gives every frame that is written to another film as well, as the coders of both take it.
    /// Borrows it.
    void setFollower(FilmWriter* film) { m_follower = film; }
    /// Takes the data of a packet over as the next frame, whatever time it carries. Throws
    /// MediaError.
    void append(AVPacket& packet);
    /// The colours of a GIF, before its first frame.
    void setPalette(const AVFrame& palette) { m_encoder.setPalette(palette); }
    void abandon() override { m_count = 0; }

private:
    void check(int code) const;
    void addStream();
    void openFile(OutputKind kind);
    void keepRoomForIndex();
    void save(AVPacket& packet);
    void endFragment();
    [[nodiscard]] int endFilm();
    void saveReady();
    void publish(std::exception_ptr* failure);
    void publishMovie();

    std::string m_path;
    OutputKind m_kind;
    bool m_isMovie; ///< an MP4 or MOV, which needs an index of its frames
    PendingFile m_pending;
    DiskReserve m_reserve;
    Encoder m_encoder;
    libav::PacketPtr m_packet;
    libav::OutputPtr m_output;
    FilmWriter* m_follower = nullptr;
    std::unique_ptr<FilmIndex> m_index;
    std::vector<libav::PacketPtr> m_fragment; ///< what the next fragment will hold
    std::int64_t m_fragmentBytes = 0;
    bool m_failed = false;
    long m_count = 0;
    long m_newest = 0;
    bool m_finished = false;
};

} // namespace orbel
