#include "media/FilmWriter.h"

#include "media/MediaError.h"

#include <cerrno>
#include <cstdio>
#include <iterator>
#include <stdexcept>

namespace orbel {

namespace {

// More than the index of a film takes.
constexpr std::int64_t indexBytes = 65536;
constexpr std::int64_t indexBytesPerFrame = 64;

/// A fragment of a film ends after a second, or when so much would be lost.
constexpr std::int64_t fragmentBytes = 16 << 20;

const char* containerName(OutputKind kind) {
    switch (kind) {
    case OutputKind::Mp4:
        return "mp4";
    case OutputKind::Mov:
        return "mov";
    case OutputKind::Gif:
        return "gif";
    case OutputKind::WebP:
        return "webp";
    case OutputKind::Apng:
        return "apng";
    default:
        return "matroska";
    }
}

} // namespace

FilmWriter::FilmWriter(const std::string& path, const WriterSpec& spec, const OutputTarget& target)
    : m_path(path),
      m_kind(target.kind),
      m_isMovie(target.kind == OutputKind::Mp4 || target.kind == OutputKind::Mov),
      m_pending(path),
      m_reserve(m_pending.path()),
      m_encoder(path, spec, target),
      m_packet(libav::owned<libav::PacketPtr>(av_packet_alloc())) {
    AVFormatContext* output = nullptr;
    check(avformat_alloc_output_context2(&output, nullptr, containerName(target.kind),
                                         libav::fileUrl(m_pending.path()).c_str()));
    m_output.reset(output);
    addStream();
    openFile(target.kind);
}

FilmWriter::~FilmWriter() {
    try {
        finish();
    } catch (const std::exception&) {
        // Nobody is left to tell; the file is as complete as it can be.
    }
}

void FilmWriter::write(const RasterInfo& raster, long frame) {
    checkOpen(m_finished);
    m_newest = frame;
    keepRoomForIndex();
    const libav::FramePtr coded = m_encoder.toFrame(raster);
    m_encoder.code(*coded, m_count, frame);
    ++m_count;
    saveReady();
    if (m_follower != nullptr) {
        m_follower->code(*coded);
    }
}

void FilmWriter::code(AVFrame& frame) {
    checkOpen(m_finished);
    m_newest = m_count;
    keepRoomForIndex();
    m_encoder.code(frame, m_count, m_count);
    ++m_count;
    saveReady();
}

void FilmWriter::append(AVPacket& packet) {
    checkOpen(m_finished);
    m_newest = m_count;
    keepRoomForIndex();
    packet.pts = m_count;
    packet.dts = m_count;
    packet.duration = 1;
    packet.pos = -1;
    ++m_count;
    save(packet);
}

void FilmWriter::finish() {
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
    const int written = endFilm();
    const int flushed = m_output->pb->error;
    const int closed = avio_closep(&m_output->pb);
    if (m_count > 0) {
        publish(&failure);
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
    for (const int code : {written, flushed, closed}) {
        check(code);
    }
}

int FilmWriter::endFilm() {
    if (m_isMovie && !m_failed && m_count > 0) {
        endFragment();
    }
    return av_write_trailer(m_output.get());
}

/// The first failure is the one to tell.
void FilmWriter::publish(std::exception_ptr* failure) {
    try {
        if (m_isMovie) {
            publishMovie();
        } else {
            m_pending.complete();
        }
    } catch (const MediaError&) {
        *failure = *failure ? *failure : std::current_exception();
    }
}

void FilmWriter::publishMovie() {
    m_index->complete();
    if (m_kind != OutputKind::Mp4) {
        m_pending.complete();
        return;
    }
    const std::string front = m_pending.path() + ".front";
    try {
        writeIndexFirst(m_pending.path(), front);
    } catch (const MediaError&) { // no room for both: the film is as good with its index at the end
        std::remove(front.c_str());
        m_pending.complete();
        return;
    }
    m_pending.completeWith(front);
}

void FilmWriter::check(int code) const {
    if (code < 0) {
        throw MediaError(m_path, m_count > 0 ? framePlace(m_newest) : "",
                         "the film cannot be written (" + libav::reason(code) + ")", outOfRoom,
                         MediaError::Passing);
    }
}

void FilmWriter::addStream() {
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

void FilmWriter::openFile(OutputKind kind) {
    libav::forgetReason();
    check(avio_open(&m_output->pb, libav::fileUrl(m_pending.path()).c_str(), AVIO_FLAG_WRITE));
    // What the muxer has is on the disk, should the program die.
    m_output->flags |= AVFMT_FLAG_FLUSH_PACKETS;
    // No random identifiers: the same film is the same file.
    m_output->flags |= AVFMT_FLAG_BITEXACT;
    libav::Options options;
    if (m_isMovie) {
        m_index = std::make_unique<FilmIndex>(m_pending.path(), *m_output);
        options.set("movflags", "frag_custom+empty_moov+default_base_moof+skip_trailer");
    }
    // Pictures on a page begin again at their end.
    if (kind == OutputKind::WebP) {
        options.set("loop", "0");
    }
    if (kind == OutputKind::Apng) {
        options.set("plays", "0");
    }
    check(avformat_write_header(m_output.get(), options.get()));
}

void FilmWriter::keepRoomForIndex() {
    if (m_isMovie && !m_reserve.growTo(indexBytes + m_count * indexBytesPerFrame)) {
        m_failed = true;
        check(AVERROR(errno));
    }
}

void FilmWriter::save(AVPacket& packet) {
    av_packet_rescale_ts(&packet, m_encoder.context().time_base, m_output->streams[0]->time_base);
    packet.stream_index = 0;
    libav::forgetReason();
    if (m_isMovie) {
        m_fragment.push_back(libav::owned<libav::PacketPtr>(av_packet_clone(&packet)));
        m_fragmentBytes += packet.size;
    }
    const int code = av_interleaved_write_frame(m_output.get(), &packet);
    m_failed = code < 0 || m_output->pb->error < 0;
    check(code);
    check(m_output->pb->error);
    const AVRational rate = m_encoder.context().framerate;
    if (m_isMovie &&
        (m_fragmentBytes >= fragmentBytes || std::ssize(m_fragment) * rate.den >= rate.num)) {
        endFragment();
    }
}

/// What was taken since the fragment before goes to the file, and tells about itself.
void FilmWriter::endFragment() {
    if (m_fragment.empty()) {
        return;
    }
    const std::int64_t begin = avio_tell(m_output->pb);
    const int code = av_write_frame(m_output.get(), nullptr);
    avio_flush(m_output->pb);
    m_failed = code < 0 || m_output->pb->error < 0;
    m_index->add(m_fragment, begin, m_output->streams[0]->time_base);
    m_fragment.clear();
    m_fragmentBytes = 0;
    check(code);
    check(m_output->pb->error);
}

void FilmWriter::saveReady() {
    // After a failed write the rest could only add frames that are not there.
    while (!m_failed && m_encoder.receive(*m_packet, m_newest)) {
        save(*m_packet);
    }
}

} // namespace orbel
