#include "media/FilmIndex.h"

#include "media/MediaError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orbel {

namespace {

constexpr int blockBytes = 4096;
constexpr std::int64_t boxHead = 8; ///< size and name

/// H.264 grows when its start codes become sizes.
constexpr std::int64_t mostAdded = 256;

using Head = std::array<std::uint8_t, 16>;

void put(std::uint64_t number, int bytes, std::uint8_t* at) {
    for (int i = 0; i < bytes; ++i) {
        at[i] = static_cast<std::uint8_t>(number >> (8 * (bytes - 1 - i)));
    }
}

/// The head of a box of media data, which no player looks into by itself.
Head dataHead(std::int64_t size) {
    Head head{0, 0, 0, 1, 'm', 'd', 'a', 't'}; // 1: the size follows, in 64 bits
    put(static_cast<std::uint64_t>(size), 8, head.data() + 8);
    return head;
}

[[noreturn]] void fail(const std::string& path, const std::string& why) {
    throw MediaError(path, "", "the film cannot be written (" + why + ")", outOfRoom,
                     MediaError::Passing);
}

void checkCode(const std::string& path, int code) {
    if (code < 0) {
        fail(path, libav::reason(code));
    }
}

void writeAt(int file, const std::string& path, const void* bytes, std::size_t count,
             std::int64_t at) {
    const auto* next = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = pwrite(file, next, count, at);
        if (written < 0 && errno != EINTR) {
            fail(path, libav::reason(AVERROR(errno)));
        }
        const auto taken = static_cast<std::size_t>(std::max<ssize_t>(written, 0));
        next += taken;
        at += static_cast<std::int64_t>(taken);
        count -= taken;
    }
}

/// A muxer with one stream like another's.
libav::OutputPtr muxerLike(const std::string& path, const char* container, const AVStream& stream) {
    AVFormatContext* raw = nullptr;
    checkCode(path, avformat_alloc_output_context2(&raw, nullptr, container,
                                                   libav::fileUrl(path).c_str()));
    libav::OutputPtr output(raw);
    AVStream* const own = avformat_new_stream(raw, nullptr);
    if (own == nullptr) {
        throw std::bad_alloc();
    }
    checkCode(path, avcodec_parameters_copy(own->codecpar, stream.codecpar));
    own->time_base = stream.time_base;
    own->avg_frame_rate = stream.avg_frame_rate;
    own->sample_aspect_ratio = stream.sample_aspect_ratio;
    raw->flags |= AVFMT_FLAG_BITEXACT;
    return output;
}

} // namespace

FilmIndex::FilmIndex(std::string path, const AVFormatContext& film)
    : m_path(std::move(path)), m_output(muxerLike(m_path, film.oformat->name, *film.streams[0])) {
    auto* const block = static_cast<std::uint8_t*>(av_malloc(blockBytes));
    m_output->pb = avio_alloc_context(block, blockBytes, 1, this, nullptr, take, seek);
    if (block == nullptr || m_output->pb == nullptr) {
        throw std::bad_alloc();
    }
    m_output->flags |= AVFMT_FLAG_CUSTOM_IO;
    check(avformat_write_header(m_output.get(), nullptr));
    m_file = open(m_path.c_str(), O_RDWR | O_CLOEXEC);
    check(m_file < 0 ? AVERROR(errno) : 0);
}

FilmIndex::~FilmIndex() {
    if (m_file >= 0) {
        close(m_file);
    }
    if (m_output != nullptr && m_output->pb != nullptr) {
        av_freep(&m_output->pb->buffer);
        avio_context_free(&m_output->pb);
    }
}

int FilmIndex::take(void* self, libav::WrittenBytes* bytes, int count) {
    auto& index = *static_cast<FilmIndex*>(self);
    if (index.m_index != nullptr && index.m_at >= index.m_end) {
        // Sizes are filled in when what they count has been written.
        const auto at = static_cast<std::size_t>(index.m_at - index.m_end);
        const auto size = static_cast<std::size_t>(count);
        index.m_index->resize(std::max(index.m_index->size(), at + size));
        std::copy_n(bytes, size, index.m_index->begin() + static_cast<std::ptrdiff_t>(at));
    }
    index.m_at += count;
    return count;
}

std::int64_t FilmIndex::seek(void* self, std::int64_t offset, int whence) {
    auto& index = *static_cast<FilmIndex*>(self);
    if (whence != SEEK_SET) {
        return AVERROR(ENOSYS);
    }
    return index.m_at = offset;
}

void FilmIndex::check(int code) const {
    checkCode(m_path, code);
}

std::int64_t FilmIndex::boxSize(std::int64_t at) const {
    std::array<std::uint8_t, 4> bytes{};
    if (pread(m_file, bytes.data(), bytes.size(), at) != std::ssize(bytes)) {
        fail(m_path, "what was written cannot be read");
    }
    std::int64_t size = 0;
    for (const std::uint8_t byte : bytes) {
        size = size << 8 | byte;
    }
    return size;
}

void FilmIndex::add(const std::vector<libav::PacketPtr>& packets, std::int64_t fragment,
                    AVRational timeBase) {
    std::int64_t at = fragment + boxSize(fragment) + boxHead; // the data, behind what tells of it
    const std::int64_t dataEnd = fragment + boxSize(fragment) + boxSize(at - boxHead);
    const std::int64_t fileEnd = lseek(m_file, 0, SEEK_END);
    const std::int64_t end = fileEnd < dataEnd ? fileEnd - mostAdded : dataEnd;
    const auto own = libav::owned<libav::PacketPtr>(av_packet_alloc());
    for (const libav::PacketPtr& packet : packets) {
        if (at + packet->size > end) {
            break; // the disk was full
        }
        check(av_packet_ref(own.get(), packet.get()));
        av_packet_rescale_ts(own.get(), timeBase, m_output->streams[0]->time_base);
        avio_seek(m_output->pb, at, SEEK_SET);
        const int code = av_write_frame(m_output.get(), own.get());
        av_packet_unref(own.get());
        check(code);
        at = avio_tell(m_output->pb);
    }
    m_end = at;
}

std::string FilmIndex::indexBytes() {
    std::string bytes;
    avio_seek(m_output->pb, m_end, SEEK_SET);
    m_index = &bytes;
    const int code = av_write_trailer(m_output.get());
    avio_flush(m_output->pb);
    m_index = nullptr;
    check(code);
    return bytes;
}

void FilmIndex::complete() {
    const std::string index = indexBytes();
    check(ftruncate(m_file, m_end) != 0 ? AVERROR(errno) : 0);
    writeAt(m_file, m_path, index.data(), index.size(), m_end);
    // The first box says what the file is. In the place of the second, which would tell of
    // fragments, data begin that reach to the index.
    const std::int64_t data = boxSize(0);
    const Head head = dataHead(m_end - data);
    writeAt(m_file, m_path, head.data(), head.size(), data);
}

void writeIndexFirst(const std::string& film, const std::string& to) {
    AVFormatContext* raw = nullptr;
    checkCode(to, avformat_open_input(&raw, libav::fileUrl(film).c_str(), nullptr, nullptr));
    const libav::InputPtr input(raw);
    const AVStream& stream = *input->streams[0];
    const libav::OutputPtr output = muxerLike(to, "mp4", stream);
    checkCode(to, avio_open(&output->pb, libav::fileUrl(to).c_str(), AVIO_FLAG_WRITE));
    libav::Options options;
    options.set("movflags", "faststart");
    checkCode(to, avformat_write_header(output.get(), options.get()));
    const auto packet = libav::owned<libav::PacketPtr>(av_packet_alloc());
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        av_packet_rescale_ts(packet.get(), stream.time_base, output->streams[0]->time_base);
        packet->pos = -1;
        checkCode(to, av_write_frame(output.get(), packet.get()));
        av_packet_unref(packet.get());
    }
    checkCode(to, av_write_trailer(output.get()));
    checkCode(to, output->pb->error);
    checkCode(to, avio_closep(&output->pb));
}

} // namespace orbel
