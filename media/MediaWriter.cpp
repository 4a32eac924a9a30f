#include "media/MediaWriter.h"

#include "media/Encoder.h"
#include "media/EvenFilmWriter.h"
#include "media/FilmWriter.h"
#include "media/GifWriter.h"
#include "media/MediaError.h"
#include "media/PendingFile.h"
#include "media/SequencePattern.h"

#include <exception>
#include <stdexcept>
#include <system_error>

namespace orbel {

namespace {

/// A picture, or a numbered sequence of them. A picture's packet is the whole file.
class PictureWriter final : public MediaWriter {
public:
    PictureWriter(const std::string& path, const WriterSpec& spec, const OutputTarget& target)
        : m_pattern(path),
          m_isSequence(target.isSequence),
          m_pending(path),
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
            m_pending.release();
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
        try {
            if (m_isSequence) {
                PendingFile picture(path);
                put(&picture);
            } else {
                put(&m_pending);
            }
        } catch (const MediaError& error) {
            if (error.code() == 0) {
                throw;
            }
            throw MediaError(path, framePlace(frame),
                             "the picture cannot be written (" +
                                 std::generic_category().message(error.code()) + ")",
                             outOfRoom, MediaError::Passing);
        }
    }

    void put(PendingFile* file) {
        const void* const bytes = m_packet->data;
        file->write({static_cast<const char*>(bytes), static_cast<std::size_t>(m_packet->size)});
        file->complete();
    }

    SequencePattern m_pattern;
    bool m_isSequence;
    PendingFile m_pending; // of a sequence: a sign that it is being written
    Encoder m_encoder;
    libav::PacketPtr m_packet;
    long m_newest = 0;
    bool m_finished = false;
};

} // namespace

void MediaWriter::checkOpen(bool finished) {
    if (finished) {
        throw std::logic_error("this output is finished");
    }
}

std::unique_ptr<MediaWriter> openWriter(const std::string& path, const WriterSpec& spec) {
    const OutputTarget target = checkOutput(path, 1);
    if (target.kind == OutputKind::Gif) {
        return std::make_unique<GifWriter>(path, spec, target);
    }
    const auto openFilm = [&](const WriterSpec& film) {
        return std::make_unique<FilmWriter>(path, film, target);
    };
    if (target.kind == OutputKind::Mp4) {
        return openEvenFilm(spec, openFilm);
    }
    if (target.isFilm) {
        return openFilm(spec);
    }
    return std::make_unique<PictureWriter>(path, spec, target);
}

} // namespace orbel
