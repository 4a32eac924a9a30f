#include "media/MediaWriter.h"

#include "media/DiskReserve.h"
#include "media/Encoder.h"
#include "media/MediaError.h"
#include "media/SequencePattern.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <system_error>

namespace orbel {

namespace {

constexpr const char* outOfRoom = "free some room or write elsewhere, then render again from there";

void checkOpen(bool finished) {
    if (finished) {
        throw std::logic_error("this output is finished");
    }
}

// --- One file per frame ---

struct FileClose {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool writeWhole(const std::string& path, const AVPacket& packet) {
    std::unique_ptr<std::FILE, FileClose> file(std::fopen(path.c_str(), "wb"));
    if (file == nullptr) {
        return false;
    }
    const auto size = static_cast<std::size_t>(packet.size);
    const bool written = std::fwrite(packet.data, 1, size, file.get()) == size;
    return std::fclose(file.release()) == 0 && written;
}

/// A picture, or a numbered sequence of them. A picture's packet is the whole file.
class PictureWriter final : public MediaWriter {
public:
    PictureWriter(const std::string& path, const WriterSpec& spec, const OutputTarget& target)
        : m_pattern(path),
          m_encoder(path, spec, target),
          m_packet(libav::owned<libav::PacketPtr>(av_packet_alloc())) {}

    PictureWriter(const PictureWriter&) = delete;
    PictureWriter& operator=(const PictureWriter&) = delete;
    ~PictureWriter() override {
        try {
            finish();
        } catch (const std::exception&) {
            // Nobody is left to tell; every complete picture stands.
        }
    }

    void write(const RasterInfo& raster, long frame) override {
        checkOpen(m_finished);
        m_encoder.send(raster, frame, frame);
        m_newest = frame;
        saveReady();
    }

    void finish() override {
        if (!m_finished) {
            m_finished = true;
            m_encoder.end();
            saveReady();
        }
    }

private:
    void saveReady() {
        while (m_encoder.receive(*m_packet, m_newest)) {
            save(static_cast<long>(m_packet->pts));
            av_packet_unref(m_packet.get());
        }
    }

    void save(long frame) {
        const std::string path = m_pattern.pathOf(frame);
        const std::string partial = path + ".part";
        if (!writeWhole(partial, *m_packet) || std::rename(partial.c_str(), path.c_str()) != 0) {
            const std::string why = std::generic_category().message(errno);
            std::remove(partial.c_str());
            throw MediaError(path, framePlace(frame), "the picture cannot be written (" + why + ")",
                             outOfRoom);
        }
    }

    SequencePattern m_pattern;
    Encoder m_encoder;
    libav::PacketPtr m_packet;
    long m_newest = 0;
    bool m_finished = false;
};

// --- One file for all frames ---

const char* containerName(OutputKind kind) {
    switch (kind) {
    case OutputKind::Mp4:
        return "mp4";
    case OutputKind::Mov:
        return "mov";
    default:
        return "matroska";
    }
}

class FilmWriter final : public MediaWriter {
public:
    FilmWriter(const std::string& path, const WriterSpec& spec, const OutputTarget& target)
        : m_path(path),
          m_indexLast(target.kind != OutputKind::Mkv),
          m_reserve(path),
          m_encoder(path, spec, target),
          m_packet(libav::owned<libav::PacketPtr>(av_packet_alloc())) {
        AVFormatContext* output = nullptr;
        // The muxer opens the file a second time, by this name, to move the index to the front.
        check(avformat_alloc_output_context2(&output, nullptr, containerName(target.kind),
                                             libav::fileUrl(path).c_str()));
        m_output.reset(output);
        addStream();
        openFile(target.kind);
    }

    FilmWriter(const FilmWriter&) = delete;
    FilmWriter& operator=(const FilmWriter&) = delete;
    ~FilmWriter() override {
        try {
            finish();
        } catch (const std::exception&) {
            // Nobody is left to tell; the file is as complete as it can be.
        }
    }

    void write(const RasterInfo& raster, long frame) override {
        checkOpen(m_finished);
        m_newest = frame;
        keepRoomForIndex();
        m_encoder.send(raster, m_count, frame);
        ++m_count;
        saveReady();
    }

    void finish() override {
        if (m_finished) {
            return;
        }
        m_finished = true;
        std::exception_ptr failure;
        try {
            m_encoder.end();
            saveReady();
        } catch (const MediaError&) {
            failure = std::current_exception();
        }
        m_reserve.release();
        if (m_failed) {
            m_output->pb->error = 0;
        }
        // The trailer makes the frames before a failure playable.
        const int written = av_write_trailer(m_output.get());
        const int flushed = m_output->pb->error;
        const int closed = avio_closep(&m_output->pb);
        if (m_count == 0) {
            std::remove(m_path.c_str());
        }
        if (failure) {
            std::rethrow_exception(failure);
        }
        for (const int code : {written, flushed, closed}) {
            check(code);
        }
    }

private:
    void check(int code) const {
        if (code < 0) {
            throw MediaError(m_path, m_count > 0 ? framePlace(m_newest) : "",
                             "the film cannot be written (" + libav::reason(code) + ")", outOfRoom);
        }
    }

    void addStream() {
        AVStream* stream = avformat_new_stream(m_output.get(), nullptr);
        if (stream == nullptr) {
            throw std::bad_alloc();
        }
        const AVCodecContext& codec = m_encoder.context();
        check(avcodec_parameters_from_context(stream->codecpar, &codec));
        stream->time_base = codec.time_base;
        stream->avg_frame_rate = codec.framerate;
        stream->sample_aspect_ratio = codec.sample_aspect_ratio;
    }

    void openFile(OutputKind kind) {
        libav::forgetReason();
        check(avio_open(&m_output->pb, libav::fileUrl(m_path).c_str(), AVIO_FLAG_WRITE));
        // What the muxer has is on the disk, should the program die.
        m_output->flags |= AVFMT_FLAG_FLUSH_PACKETS;
        libav::Options options;
        if (kind == OutputKind::Mp4) {
            options.set("movflags", "faststart");
        }
        check(avformat_write_header(m_output.get(), options.get()));
    }

    void keepRoomForIndex() {
        if (m_indexLast && !m_reserve.growTo(indexBytes + m_count * indexBytesPerFrame)) {
            m_failed = true;
            check(AVERROR(errno));
        }
    }

    void saveReady() {
        // After a failed write the rest could only add frames that are not there.
        while (!m_failed && m_encoder.receive(*m_packet, m_newest)) {
            av_packet_rescale_ts(m_packet.get(), m_encoder.context().time_base,
                                 m_output->streams[0]->time_base);
            m_packet->stream_index = 0;
            libav::forgetReason();
            const int code = av_interleaved_write_frame(m_output.get(), m_packet.get());
            m_failed = code < 0 || m_output->pb->error < 0;
            check(code);
            check(m_output->pb->error);
        }
    }

    // More than the index of a film takes.
    static constexpr std::int64_t indexBytes = 65536;
    static constexpr std::int64_t indexBytesPerFrame = 64;

    std::string m_path;
    bool m_indexLast;
    DiskReserve m_reserve;
    Encoder m_encoder;
    libav::PacketPtr m_packet;
    libav::OutputPtr m_output;
    bool m_failed = false;
    long m_count = 0;
    long m_newest = 0;
    bool m_finished = false;
};

} // namespace

std::unique_ptr<MediaWriter> openWriter(const std::string& path, const WriterSpec& spec) {
    const OutputTarget target = checkOutput(path, 1);
    if (target.isFilm) {
        return std::make_unique<FilmWriter>(path, spec, target);
    }
    return std::make_unique<PictureWriter>(path, spec, target);
}

} // namespace orbel
