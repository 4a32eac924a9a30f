#include "media/VideoDecoder.h"

#include "media/MediaError.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <vector>

namespace orbel {

namespace {

constexpr std::int64_t mostPixels = std::int64_t{1} << 28;

constexpr const char* usualFormats =
    "convert it to PNG, TIFF, EXR or JPEG, or to a common clip format";

MediaError undecodable(const std::string& path, int code) {
    return {path, "", "is no picture or clip that can be decoded (" + libav::reason(code) + ")",
            usualFormats};
}

void checkInput(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        throw MediaError(path, "", "there is no such file", "check the name and the folder");
    }
    if (std::filesystem::is_directory(status)) {
        throw MediaError(path, "", "is a folder",
                         "name a picture, a clip or a sequence such as name-%04d.png");
    }
    if (std::filesystem::is_regular_file(status) && std::filesystem::file_size(path, error) == 0) {
        throw MediaError(path, "", "the file is empty", "write it again");
    }
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Lists of other files, and text drawn as pictures: nobody means these as a clip, and a playlist
/// may wait for ever for its next entry.
bool isRefused(std::string_view format) {
    return isOneOf(format, {"hls", "dash", "concat", "sdp", "imf", "tty", "webm_dash_manifest"});
}

bool holdsOnePicture(std::string_view format) {
    return format == "image2" || (format.size() > 5 && format.ends_with("_pipe"));
}

const AVInputFormat* probe(const std::string& path) {
    AVIOContext* io = nullptr;
    const std::string url = libav::fileUrl(path);
    int code = avio_open(&io, url.c_str(), AVIO_FLAG_READ);
    const libav::IoPtr owner(io);
    const AVInputFormat* container = nullptr;
    if (code >= 0) {
        code = av_probe_input_buffer2(io, &container, url.c_str(), nullptr, 0, 0);
    }
    if (code < 0) {
        throw undecodable(path, code);
    }
    if (isRefused(container->name)) {
        throw MediaError(path, "", "is no picture or clip but a list or a text", usualFormats);
    }
    return container;
}

const AVCodec* decoderFor(const AVStream& stream) {
    const AVCodecID id = stream.codecpar->codec_id;
    const AVDictionaryEntry* alpha = av_dict_get(stream.metadata, "alpha_mode", nullptr, 0);
    if (alpha != nullptr && std::string_view(alpha->value) == "1") {
        // Only these read the alpha that such streams carry beside the picture.
        const char* name = id == AV_CODEC_ID_VP9 ? "libvpx-vp9" : "libvpx";
        if (id == AV_CODEC_ID_VP8 || id == AV_CODEC_ID_VP9) {
            if (const AVCodec* found = avcodec_find_decoder_by_name(name)) {
                return found;
            }
        }
    }
    return avcodec_find_decoder(id);
}

} // namespace

VideoDecoder::VideoDecoder(const std::string& path, int threads)
    : m_packet(libav::owned<libav::PacketPtr>(av_packet_alloc())) {
    libav::silenceLog();
    libav::forgetReason();
    checkInput(path);
    open(path);
    openCodec(path, threads);
}

void VideoDecoder::open(const std::string& path) {
    const AVInputFormat* container = probe(path);
    libav::Options options;
    options.set("protocol_whitelist", "file");
    options.set("pattern_type", "none"); // a sequence is this program's own business
    AVFormatContext* input = nullptr;
    int code = avformat_open_input(&input, libav::fileUrl(path).c_str(), container, options.get());
    if (code < 0) {
        throw undecodable(path, code);
    }
    m_input.reset(input);
    m_still = holdsOnePicture(container->name);
    if (!m_still) {
        code = avformat_find_stream_info(input, nullptr);
        if (code < 0) {
            throw undecodable(path, code);
        }
    }
    code = av_find_best_stream(input, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (code < 0 || (input->streams[code]->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0) {
        throw MediaError(path, "", "has no pictures in it", usualFormats);
    }
    m_stream = input->streams[code];
    for (unsigned i = 0; i < input->nb_streams; ++i) {
        input->streams[i]->discard =
            input->streams[i] == m_stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
}

void VideoDecoder::openCodec(const std::string& path, int threads) {
    const AVCodec* decoder = decoderFor(*m_stream);
    if (decoder == nullptr) {
        throw MediaError(path, "",
                         std::string("there is no decoder for its coding (") +
                             avcodec_get_name(m_stream->codecpar->codec_id) + ")",
                         usualFormats);
    }
    m_codec = libav::owned<libav::CodecPtr>(avcodec_alloc_context3(decoder));
    if (avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar) < 0) {
        throw std::bad_alloc();
    }
    m_codec->pkt_timebase = m_stream->time_base;
    m_codec->max_pixels = mostPixels;
    m_codec->thread_count = threads;
    m_codec->opaque = &m_watch;
    m_codec->err_recognition |= AV_EF_CRCCHECK;
    if (decoder->id == AV_CODEC_ID_FFV1) {
        m_codec->thread_type =
            FF_THREAD_SLICE; // a wrong checksum belongs to the frame in the works
    }
    if (m_still) {
        // A clip may be concealed over a scratch; half a picture is no picture.
        if (decoder->id == AV_CODEC_ID_TIFF) {
            m_watch.anyErrorCounts = true; // asked to stop, it does so at every unknown tag, too
        } else {
            m_codec->err_recognition |= AV_EF_EXPLODE;
        }
        m_codec->thread_type = FF_THREAD_SLICE;
    }
    const int code = avcodec_open2(m_codec.get(), decoder, nullptr);
    if (code < 0) {
        throw undecodable(path, code);
    }
    if (m_still) {
        m_watch.owner = this;
        m_execute = m_codec->execute2;
        m_codec->execute2 = executeParts;
    }
}

/// Some decoders run the parts of a picture without asking how they ended; this asks.
int VideoDecoder::executeParts(AVCodecContext* codec, Part* part, void* data, int* results,
                               int count) {
    auto& decoder =
        *static_cast<VideoDecoder*>(static_cast<libav::DecoderWatch*>(codec->opaque)->owner);
    std::vector<int> codes(static_cast<std::size_t>(std::max(count, 0)));
    int* where = results == nullptr ? codes.data() : results;
    const int code = decoder.m_execute(codec, part, data, where, count);
    decoder.m_partFailed =
        decoder.m_partFailed || std::any_of(where, where + count, [](int c) { return c < 0; });
    return code;
}

bool VideoDecoder::isPremultiplied() const {
    return m_stream->codecpar->codec_id == AV_CODEC_ID_EXR;
}

std::optional<FrameRate> VideoDecoder::frameRate() const {
    const AVRational average = m_stream->avg_frame_rate;
    const AVRational guess = av_guess_frame_rate(m_input.get(), m_stream, nullptr);
    for (const AVRational rate : {average, guess}) {
        if (rate.num > 0 && rate.den > 0) {
            return FrameRate{rate.num, rate.den};
        }
    }
    return std::nullopt;
}

double VideoDecoder::pixelAspect(AVFrame& frame) const {
    const AVRational aspect = av_guess_sample_aspect_ratio(m_input.get(), m_stream, &frame);
    return aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1.0;
}

Turn VideoDecoder::turn(const AVFrame& frame) const {
    std::array<std::int32_t, 9> matrix{};
    libav::SideData said = libav::sideData(*m_stream, AV_PKT_DATA_DISPLAYMATRIX);
    if (const AVFrameSideData* const own =
            av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX)) {
        said = {own->data, own->size};
    }
    if (said.bytes == nullptr || said.size < sizeof matrix) {
        return {};
    }
    std::copy_n(said.bytes, sizeof matrix, reinterpret_cast<std::uint8_t*>(matrix.data()));
    return turnOf(matrix.data());
}

bool VideoDecoder::forgives(int code) const {
    // A recording may begin between two key frames.
    return code == AVERROR_INVALIDDATA && !m_still && !m_begun;
}

int VideoDecoder::feed() {
    for (;;) {
        int code = av_read_frame(m_input.get(), m_packet.get());
        if (code == AVERROR_EOF) {
            return avcodec_send_packet(m_codec.get(), nullptr);
        }
        if (code < 0) {
            endAt(code, AV_NOPTS_VALUE);
            return 0;
        }
        const bool ours = m_packet->stream_index == m_stream->index;
        const std::int64_t time = m_packet->pts;
        const bool isKey = (m_packet->flags & AV_PKT_FLAG_KEY) != 0;
        code = ours ? avcodec_send_packet(m_codec.get(), m_packet.get()) : 0;
        av_packet_unref(m_packet.get());
        // What refers to the damaged frame comes behind it, also where it is shown before.
        if (ours && code == 0 && !worksAhead() && tookDamage()) {
            code = AVERROR_INVALIDDATA;
        }
        m_begun = m_begun || (ours && code == 0 && isKey);
        if (ours && code < 0 && !forgives(code)) {
            endAt(code, time);
            return 0;
        }
        if (ours && code == 0) {
            return 0;
        }
    }
}

/// Several packets at once: which one is damaged cannot be told.
bool VideoDecoder::worksAhead() const {
    return (m_codec->active_thread_type & FF_THREAD_FRAME) != 0;
}

/// Before the first key frame that is no sign of damage: a recording may begin between two.
bool VideoDecoder::tookDamage() {
    return m_watch.damaged.exchange(false) && (m_still || m_begun);
}

/// No more packets: what is still inside the decoder comes out.
void VideoDecoder::endAt(int code, std::int64_t time) {
    m_damage = Damage{code, time};
    static_cast<void>(avcodec_send_packet(m_codec.get(), nullptr));
}

/// Frames of several packets may be in the works when one fails. Where threads work ahead, what
/// comes out may already be predicted from it, and the error may be told with a later packet.
bool VideoDecoder::isBehindDamage(const AVFrame& frame) const {
    const std::int64_t time = frame.best_effort_timestamp;
    if (!m_damage || time == AV_NOPTS_VALUE || worksAhead()) {
        return m_damage.has_value();
    }
    return m_damage->time == AV_NOPTS_VALUE
               ? m_nextTime == AV_NOPTS_VALUE || time > m_nextTime + m_duration / 2
               : time >= m_damage->time;
}

/// What a decoder made up in the place of data that it could not use. Of what comes before the
/// first whole frame that is no sign of damage: a recording may begin between two key frames.
bool VideoDecoder::isGuessed(const AVFrame& frame) const {
    const bool marked = frame.decode_error_flags != 0 || (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0;
    return m_partFailed || (marked && (m_still || m_decodedAny));
}

int VideoDecoder::receive(AVFrame& frame) {
    const int code = avcodec_receive_frame(m_codec.get(), &frame);
    if (code == 0 && (tookDamage() || isGuessed(frame))) {
        m_damage = m_damage.value_or(Damage{AVERROR_INVALIDDATA, frame.best_effort_timestamp});
    }
    return code == 0 && isBehindDamage(frame) ? m_damage->code : code;
}

int VideoDecoder::next(AVFrame& frame) {
    libav::forgetReason();
    for (;;) {
        const int code = receive(frame);
        if (code == 0) {
            m_decodedAny = true;
            m_duration = libav::durationOf(frame);
            m_nextTime = frame.best_effort_timestamp == AV_NOPTS_VALUE
                             ? AV_NOPTS_VALUE
                             : frame.best_effort_timestamp + m_duration;
            return 1;
        }
        if (m_damage) {
            return m_damage->code;
        }
        if (code == AVERROR_EOF) {
            return 0;
        }
        if (code != AVERROR(EAGAIN) && !forgives(code)) {
            endAt(code, AV_NOPTS_VALUE);
            continue;
        }
        if (const int fed = feed(); fed < 0) {
            return fed == AVERROR_EOF ? 0 : fed;
        }
    }
}

bool VideoDecoder::nextPacket(AVPacket& packet) {
    av_packet_unref(&packet);
    while (av_read_frame(m_input.get(), &packet) >= 0) {
        if (packet.stream_index == m_stream->index) {
            return true;
        }
        av_packet_unref(&packet);
    }
    return false;
}

bool VideoDecoder::seek(std::int64_t timestamp) {
    if (av_seek_frame(m_input.get(), m_stream->index, timestamp, AVSEEK_FLAG_BACKWARD) < 0) {
        return false;
    }
    avcodec_flush_buffers(m_codec.get());
    m_damage.reset();
    m_nextTime = AV_NOPTS_VALUE;
    return true;
}

std::optional<std::int64_t> VideoDecoder::findEnd() {
    const std::int64_t known = m_stream->duration;
    const std::int64_t start = m_stream->start_time == AV_NOPTS_VALUE ? 0 : m_stream->start_time;
    const std::int64_t last =
        known > 0 ? start + known : std::numeric_limits<std::int64_t>::max() / 2;
    // Where this fails the whole file is read: slower, same answer.
    (void)av_seek_frame(m_input.get(), m_stream->index, last, AVSEEK_FLAG_BACKWARD);
    std::optional<std::int64_t> end;
    while (av_read_frame(m_input.get(), m_packet.get()) >= 0) {
        const AVPacket& packet = *m_packet;
        const std::int64_t time = packet.pts == AV_NOPTS_VALUE ? packet.dts : packet.pts;
        if (packet.stream_index == m_stream->index && time != AV_NOPTS_VALUE &&
            (packet.flags & AV_PKT_FLAG_DISCARD) == 0) {
            end = std::max(end.value_or(time), time + std::max<std::int64_t>(packet.duration, 0));
        }
        av_packet_unref(m_packet.get());
    }
    return end;
}

} // namespace orbel
