#include "doors/ofx/ClipImage.h"

#include "doors/memory/MemoryImage.h"
#include "doors/ofx/platform/OfxNames.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace orbel::ofx {

namespace {

std::string firstAnswer(const Properties& image, const Properties& clip, const char* name) {
    std::string answer = image.getString(name);
    return answer.empty() ? clip.getString(name) : answer;
}

std::optional<RasterFormat> formatOf(const std::string& components, const std::string& depth) {
    if (!components.empty() && components != COMPONENT_RGBA) {
        return std::nullopt;
    }
    if (depth == DEPTH_BYTE) {
        return RF_RGBA8;
    }
    if (depth == DEPTH_SHORT) {
        return RF_RGBA16;
    }
    return depth == DEPTH_FLOAT ? std::optional(RF_RGBA32F) : std::nullopt;
}

} // namespace

bool isUsableFrame(const OfxRectI& rect) {
    constexpr int longest = std::numeric_limits<std::int16_t>::max(); // side that is rendered
    // Far from the ends of the integers, so that places can be doubled and subtracted.
    constexpr int farthest = 1 << 28;
    for (const int edge : {rect.x1, rect.y1, rect.x2, rect.y2}) {
        if (edge < -farthest || edge > farthest) {
            return false;
        }
    }
    const std::int64_t width = std::int64_t{rect.x2} - rect.x1;
    const std::int64_t height = std::int64_t{rect.y2} - rect.y1;
    return width > 0 && height > 0 && width <= longest && height <= longest;
}

ClipImage::ClipImage(const HostSuites& suites, OfxImageClipHandle clip, OfxTime time)
    : m_suites(suites) {
    if (clip != nullptr && suites.effect->clipGetImage(clip, time, nullptr, &m_handle) != STAT_OK) {
        m_handle = nullptr;
    }
    if (m_handle != nullptr) {
        read(suites.properties(m_handle), suites.ofClip(clip));
    }
}

ClipImage::~ClipImage() {
    if (m_handle != nullptr) {
        m_suites.effect->clipReleaseImage(m_handle);
    }
}

void ClipImage::read(const Properties& image, const Properties& clip) {
    m_bounds = image.getRect(PROP_IMAGE_BOUNDS);
    m_region = image.getRect(PROP_IMAGE_REGION);
    m_rowBytes = image.getInt(PROP_IMAGE_ROW_BYTES, 0);
    m_premultiplication = firstAnswer(image, clip, PROP_PREMULTIPLICATION);
    m_field = image.getString(PROP_IMAGE_FIELD);
    const double aspect =
        image.getDouble(PROP_PIXEL_ASPECT, clip.getDouble(PROP_PIXEL_ASPECT, 1.0));
    m_pixelAspect = std::isfinite(aspect) && aspect > 0.001 && aspect < 1000.0
                        ? static_cast<float>(aspect)
                        : 1.0F;
    if (!isUsableFrame(m_bounds)) {
        return;
    }
    m_data = static_cast<std::uint8_t*>(image.getPointer(PROP_IMAGE_DATA));
    const auto format = formatOf(firstAnswer(image, clip, PROP_COMPONENTS),
                                 firstAnswer(image, clip, PROP_PIXEL_DEPTH));
    const std::int64_t width = std::int64_t{m_bounds.x2} - m_bounds.x1;
    const std::int64_t rowBytes = std::abs(std::int64_t{m_rowBytes});
    if (format && rowBytes >= width * bytesPerPixel(*format) && rowBytes <= INT_MAX) {
        m_format = format;
    }
}

std::uint8_t* ClipImage::row(int y) const {
    return m_data + (std::ptrdiff_t{y} - m_bounds.y1) * m_rowBytes;
}

} // namespace orbel::ofx
