#include "doors/ofx/FramePixels.h"

#include "doors/memory/MemoryImage.h"
#include "doors/ofx/platform/OfxNames.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace orbel::ofx {

namespace {

/// Columns or rows from `low` up to `high`, exclusive.
struct Span {
    int low;
    int high;

    [[nodiscard]] bool contains(int i) const { return i >= low && i < high; }
    [[nodiscard]] int clamped(int i) const { return std::clamp(i, low, std::max(low, high)); }
};

std::size_t sizeOf(int pixels, int bytesPerPixel) {
    return static_cast<std::size_t>(pixels) * static_cast<std::size_t>(bytesPerPixel);
}

/// One row of pixels and the column of its first one.
template<class Byte>
struct Row {
    Byte* data; ///< null for a row that does not exist
    Span columns;
};

// Copies the columns of `to` that `from` has and clears the others.
void copyRow(const Row<const std::uint8_t>& from, const Row<std::uint8_t>& to, int bytesPerPixel) {
    const Span& c = to.columns;
    const int low = from.data == nullptr ? c.high : c.clamped(from.columns.low);
    const int high = from.data == nullptr ? c.high : c.clamped(from.columns.high);
    const auto at = [&](int column) {
        return to.data + std::ptrdiff_t{column - c.low} * bytesPerPixel;
    };
    std::memset(to.data, 0, sizeOf(low - c.low, bytesPerPixel));
    if (high > low) {
        std::memcpy(at(low), from.data + std::ptrdiff_t{low - from.columns.low} * bytesPerPixel,
                    sizeOf(high - low, bytesPerPixel));
    }
    std::memset(at(std::max(low, high)), 0, sizeOf(c.high - std::max(low, high), bytesPerPixel));
}

// Byte by byte: the host's rows need not be aligned for their components.
void makeOpaque(const Row<std::uint8_t>& row, const RasterInfo& like) {
    const float one = 1.0F;
    std::uint8_t maximum[4] = {0xFF, 0xFF, 0xFF, 0xFF};
    if (like.pixelFormat == RF_RGBA32F) {
        std::memcpy(maximum, &one, sizeof one);
    }
    const std::ptrdiff_t component = like.bytesPerPixel / 4;
    for (int x = 0; x < row.columns.high - row.columns.low; ++x) {
        std::memcpy(row.data + std::ptrdiff_t{x} * like.bytesPerPixel + 3 * component, maximum,
                    static_cast<std::size_t>(component));
    }
}

int halved(int y) {
    return y >= 0 ? y / 2 : -((1 - y) / 2);
}

} // namespace

Field fieldNamed(const std::string& name) {
    if (name == FIELD_LOWER) {
        return Field::Lower;
    }
    return name == FIELD_UPPER ? Field::Upper : Field::None;
}

void copyIn(const FieldImage& from, const OfxRectI& frame, const RasterInfo& to) {
    const OfxRectI bounds = from.image == nullptr ? OfxRectI{} : from.image->bounds();
    const Span rows{bounds.y1, bounds.y2};
    for (int r = 0; r < to.height; ++r) {
        const int full = frame.y2 - 1 - r;
        const int y = from.only == Field::None ? full : halved(full);
        const std::uint8_t* const row = rows.contains(y) ? from.image->row(y) : nullptr;
        copyRow({row, {bounds.x1, bounds.x2}}, {to.row(r), {frame.x1, frame.x2}}, to.bytesPerPixel);
    }
}

std::optional<RasterInfo> asFrame(const FieldImage& image, const OfxRectI& frame) {
    if (image.image == nullptr || image.only != Field::None || !image.image->format()) {
        return std::nullopt;
    }
    const OfxRectI& bounds = image.image->bounds();
    if (bounds.x1 != frame.x1 || bounds.y1 != frame.y1 || bounds.x2 != frame.x2 ||
        bounds.y2 != frame.y2) {
        return std::nullopt;
    }
    RasterInfo info;
    info.data = image.image->row(frame.y2 - 1);
    info.pixelFormat = *image.image->format();
    info.width = frame.x2 - frame.x1;
    info.height = frame.y2 - frame.y1;
    info.rowBytes = -image.image->rowBytes();
    info.bytesPerPixel = bytesPerPixel(info.pixelFormat);
    info.pixelAspect = image.image->pixelAspect();
    const int component = info.bytesPerPixel / 4;
    const bool aligned =
        reinterpret_cast<std::uintptr_t>(info.data) % static_cast<std::uintptr_t>(component) == 0 &&
        info.rowBytes % component == 0;
    return aligned ? std::optional(info) : std::nullopt;
}

bool overlap(const RasterInfo& a, const RasterInfo& b) {
    const auto range = [](const RasterInfo& info) {
        const auto first = reinterpret_cast<std::uintptr_t>(info.data);
        const auto last = reinterpret_cast<std::uintptr_t>(info.row(info.height - 1));
        return std::pair(std::min(first, last),
                         std::max(first, last) + sizeOf(info.width, info.bytesPerPixel));
    };
    return range(a).first < range(b).second && range(b).first < range(a).second;
}

void copyOut(const RasterInfo& from, const OfxRectI& frame, const FieldImage& to,
             const Delivery& delivery) {
    const OfxRectI& bounds = to.image->bounds();
    const OfxRectI& window = delivery.window;
    const Span columns{std::max(window.x1, bounds.x1), std::min(window.x2, bounds.x2)};
    if (columns.low >= columns.high) {
        return;
    }
    const Span rows{frame.y1, frame.y2};
    for (int y = std::max(window.y1, bounds.y1); y < std::min(window.y2, bounds.y2); ++y) {
        const int full = to.only == Field::None ? y : 2 * y + (to.only == Field::Upper ? 1 : 0);
        const bool odd = ((full - frame.y1) & 1) != 0;
        if (delivery.field != Field::None && odd != (delivery.field == Field::Upper)) {
            continue;
        }
        const std::uint8_t* const row =
            rows.contains(full) ? from.row(frame.y2 - 1 - full) : nullptr;
        const Row<std::uint8_t> target{to.image->row(y) + std::ptrdiff_t{columns.low - bounds.x1} *
                                                              from.bytesPerPixel,
                                       columns};
        copyRow({row, {frame.x1, frame.x2}}, target, from.bytesPerPixel);
        if (delivery.opaque) {
            makeOpaque(target, from);
        }
    }
}

} // namespace orbel::ofx
