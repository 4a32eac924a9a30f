#include "tests/support/Pictures.h"

#include "pixel/RasterFormats.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace orbel::test {

namespace {

constexpr std::size_t GUARD_BYTES = 64;
constexpr std::uint8_t GUARD = 0xA5;

double maximumOf(RasterFormat format) {
    const int bits = convertToPixelDepth(format);
    return bits == 32 ? 1.0 : (1 << bits) - 1;
}

template<typename T>
double load(const std::uint8_t* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return static_cast<double>(value);
}

/// Rounds to a whole number for formats of integers, in which one outside the range wraps.
template<typename T>
void store(std::uint8_t* at, double number) {
    T value{};
    if constexpr (std::is_integral_v<T>) {
        value = static_cast<T>(std::lround(number));
    } else {
        value = static_cast<T>(number);
    }
    std::memcpy(at, &value, sizeof value);
}

/// Where red, green, blue and alpha lie in a pixel.
std::array<int, 4> channelOffsets(const RasterInfo& picture) {
    std::array<int, 4> order{};
    getRasterChannelOrder(picture.pixelFormat, order[0], order[1], order[2], order[3]);
    for (int& position : order) {
        position *= picture.bytesPerPixel / 4;
    }
    return order;
}

/// Paints a format with components of type T: whole numbers up to a maximum, or numbers up to 1.
template<typename T>
void paintAs(const RasterInfo& picture, const std::function<Rgba(int x, int y)>& pixel) {
    const auto offsets = channelOffsets(picture);
    const double maximum = maximumOf(picture.pixelFormat);
    for (int y = 0; y < picture.height; ++y) {
        std::uint8_t* at = picture.row(y);
        for (int x = 0; x < picture.width; ++x, at += picture.bytesPerPixel) {
            const Rgba value = pixel(x, y);
            for (std::size_t i = 0; i < 4; ++i) {
                store<T>(at + offsets[i], value[i] * maximum);
            }
        }
    }
}

std::string text(const Rgba& p) {
    std::string result;
    for (const double c : p) {
        result += (result.empty() ? "(" : ", ") + testing::PrintToString(c);
    }
    return result + ")";
}

bool near(const Rgba& a, const Rgba& b, double tolerance) {
    return std::equal(a.begin(), a.end(), b.begin(), [tolerance](double u, double v) {
        return std::fabs(u - v) <= tolerance || (std::isnan(u) && std::isnan(v)) || u == v;
    });
}

} // namespace

std::string formatName(RasterFormat format) {
    switch (format) {
    case RF_ARGB8:
        return "ARGB8";
    case RF_RGBA8:
        return "RGBA8";
    case RF_ARGB16:
        return "ARGB16";
    case RF_RGBA16:
        return "RGBA16";
    case RF_ARGB32F:
        return "ARGB32F";
    case RF_RGBA32F:
        return "RGBA32F";
    default:
        return "other";
    }
}

GuardedImage::GuardedImage(int width, int height, RasterFormat format, RowLayout layout) {
    const int pixel = bytesPerPixel(format);
    const int stride = width * pixel + layout.padding;
    const auto rows = static_cast<std::size_t>(height);
    m_memory.assign(rows * static_cast<std::size_t>(stride) + 2 * GUARD_BYTES, GUARD);
    m_info = {
        m_memory.data() + GUARD_BYTES, format, width, height, stride, pixel, 1.0F, 1.0F, false};
    if (layout.bottomUp) {
        m_info.data = m_info.row(height - 1);
        m_info.rowBytes = -stride;
    }
    for (int y = 0; y < height; ++y) {
        std::memset(m_info.row(y), 0,
                    static_cast<std::size_t>(width) * static_cast<std::size_t>(pixel));
    }
}

bool GuardedImage::guardsIntact() const {
    std::vector<std::uint8_t> rest = m_memory;
    for (int y = 0; y < m_info.height; ++y) {
        const auto row = rest.begin() + (m_info.row(y) - m_memory.data());
        std::fill_n(row, m_info.width * m_info.bytesPerPixel, GUARD);
    }
    return std::all_of(rest.begin(), rest.end(), [](std::uint8_t b) { return b == GUARD; });
}

Rgba pixelAt(const RasterInfo& picture, int x, int y) {
    const auto offsets = channelOffsets(picture);
    const std::uint8_t* const pixel = picture.row(y) + x * picture.bytesPerPixel;
    Rgba value{};
    for (std::size_t i = 0; i < 4; ++i) {
        const std::uint8_t* const at = pixel + offsets[i];
        value[i] = (picture.bytesPerPixel == 4   ? load<std::uint8_t>(at)
                    : picture.bytesPerPixel == 8 ? load<std::uint16_t>(at)
                                                 : load<float>(at)) /
                   maximumOf(picture.pixelFormat);
    }
    return value;
}

void setPixel(const RasterInfo& picture, int x, int y, const Rgba& value) {
    RasterInfo one = picture;
    one.data = picture.row(y) + x * picture.bytesPerPixel;
    one.width = 1;
    one.height = 1;
    paint(one, [&value](int, int) { return value; });
}

void paint(const RasterInfo& picture, const std::function<Rgba(int x, int y)>& pixel) {
    switch (picture.bytesPerPixel) {
    case 4:
        return paintAs<std::uint8_t>(picture, pixel);
    case 8:
        return paintAs<std::uint16_t>(picture, pixel);
    default:
        return paintAs<float>(picture, pixel);
    }
}

double alphaSum(const RasterInfo& picture) {
    double sum = 0.0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            sum += alphaAt(picture, x, y);
        }
    }
    return sum;
}

testing::AssertionResult sameBytes(const RasterInfo& actual, const RasterInfo& expected) {
    const auto row = static_cast<std::size_t>(actual.width * actual.bytesPerPixel);
    for (int y = 0; y < actual.height; ++y) {
        if (std::memcmp(actual.row(y), expected.row(y), row) != 0) {
            return testing::AssertionFailure() << "row " << y << " differs";
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult samePicture(const RasterInfo& actual, const RasterInfo& expected,
                                     double tolerance) {
    if (actual.width != expected.width || actual.height != expected.height) {
        return testing::AssertionFailure() << "sizes differ";
    }
    constexpr int shown = 5;
    int different = 0;
    testing::AssertionResult failure = testing::AssertionFailure();
    for (int y = 0; y < actual.height; ++y) {
        for (int x = 0; x < actual.width; ++x) {
            const Rgba a = pixelAt(actual, x, y);
            const Rgba e = pixelAt(expected, x, y);
            if (!near(a, e, tolerance) && ++different <= shown) {
                failure << "(" << x << ", " << y << ") is " << text(a) << ", not " << text(e)
                        << "\n";
            }
        }
    }
    return different == 0 ? testing::AssertionSuccess() : failure << different << " pixels differ";
}

} // namespace orbel::test
