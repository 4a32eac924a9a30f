#include "studio/Results.h"

#include "studio/Secrets.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>
#include <vector>

namespace orbel::studio {

namespace {

constexpr std::size_t pieceSize = std::size_t{256} << 10;

constexpr std::array<std::pair<std::string_view, std::string_view>, 11> mediaTypes{
    {{".mp4", "video/mp4"},
     {".mov", "video/quicktime"},
     {".mkv", "video/x-matroska"},
     {".gif", "image/gif"},
     {".webp", "image/webp"},
     {".apng", "image/apng"},
     {".png", "image/png"},
     {".jpg", "image/jpeg"},
     {".tif", "image/tiff"},
     {".tiff", "image/tiff"},
     {".exr", "image/x-exr"}}};

std::string_view typeOf(const std::string& file) {
    const auto* const found =
        std::find_if(mediaTypes.begin(), mediaTypes.end(),
                     [&](const auto& type) { return file.ends_with(type.first); });
    return found == mediaTypes.end() ? "application/octet-stream" : found->second;
}

/// Bytes `first` to `last`, both included.
struct ByteRange {
    std::uint64_t first;
    std::uint64_t last;
};

std::optional<std::uint64_t> numberOf(std::string_view text) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc{} && read.ptr == end ? std::optional(number) : std::nullopt;
}

/// "bytes=A-B", "bytes=A-" or "bytes=-N"; anything else stands for the whole.
std::optional<ByteRange> rangeOf(std::string_view field, std::uint64_t size) {
    constexpr std::string_view unit = "bytes=";
    const std::size_t dash = field.find('-');
    if (field.substr(0, unit.size()) != unit || dash == std::string_view::npos || size == 0) {
        return std::nullopt;
    }
    const auto from = numberOf(field.substr(unit.size(), dash - unit.size()));
    const auto to = numberOf(field.substr(dash + 1));
    if (from) {
        return ByteRange{*from, std::min(to.value_or(size - 1), size - 1)};
    }
    return to ? std::optional(ByteRange{size - std::min(*to, size), size - 1}) : std::nullopt;
}

void sendPart(const std::string& file, ByteRange range, BodySink& sink) {
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(range.first));
    std::uint64_t left = range.last - range.first + 1;
    std::vector<char> piece(pieceSize);
    while (left > 0) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize));
        if (!stream.read(piece.data(), static_cast<std::streamsize>(wanted)) ||
            !sink.write({piece.data(), wanted})) {
            return;
        }
        left -= wanted;
    }
}

} // namespace

std::string Results::add(const std::string& file) {
    const std::lock_guard lock(m_mutex);
    std::string name = randomSecret();
    m_files.emplace(name, file);
    return name;
}

std::string Results::fileOf(std::string_view path) {
    const std::lock_guard lock(m_mutex);
    const auto found = path.substr(0, folder.size()) == folder
                           ? m_files.find(path.substr(folder.size()))
                           : m_files.end();
    return found == m_files.end() ? "" : found->second;
}

bool Results::has(std::string_view path) {
    return !fileOf(path).empty();
}

Answer Results::answer(const RequestHead& head, std::string_view path) {
    const std::string file = fileOf(path);
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(file, error);
    if (error) {
        return answerOf(Refusal{404, "this file is gone", "export it again"});
    }
    Answer answer;
    answer.type = typeOf(file);
    answer.headers.push_back({"Accept-Ranges", "bytes"});
    const std::optional<ByteRange> asked = rangeOf(head.value("range"), size);
    const ByteRange range = asked.value_or(ByteRange{0, size == 0 ? 0 : size - 1});
    if (asked && range.first > range.last) {
        answer.status = 416;
        answer.headers.push_back({"Content-Range", "bytes */" + std::to_string(size)});
        return answer;
    }
    if (asked) {
        answer.status = 206;
        answer.headers.push_back({"Content-Range", "bytes " + std::to_string(range.first) + "-" +
                                                       std::to_string(range.last) + "/" +
                                                       std::to_string(size)});
    }
    answer.length = size == 0 ? 0 : range.last - range.first + 1;
    answer.stream = [file, range, size](BodySink& sink) {
        if (size > 0) {
            sendPart(file, range, sink);
        }
    };
    return answer;
}

} // namespace orbel::studio
