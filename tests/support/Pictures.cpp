#include "tests/support/Pictures.h"

#include "pixel/RasterFormats.h"

#include <algorithm>
#include <cmath>
#include <cstring>

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

template<typename T>
void store(std::uint8_t* at, double number) {
    const T value = static_cast<T>(number);
    std::memcpy(at, &value, sizeof value);
}

std::array<std::uint8_t*, 4> channels(const RasterInfo& picture, int x, int y) {
    std::array<int, 4> order{};
    getRasterChannelOrder(picture.pixelFormat, order[0], order[1], order[2], order[3]);
    std::array<std::uint8_t*, 4> at{};
    for (std::size_t i = 0; i < 4; ++i) {
        at[i] = picture.row(y) + x * picture.bytesPerPixel + order[i] * picture.bytesPerPixel / 4;
    }
    return at;
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
    paint(m_info, [](int, int) { return Rgba{}; });
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
    const auto at = channels(picture, x, y);
    Rgba value{};
    for (std::size_t i = 0; i < 4; ++i) {
        value[i] = (picture.bytesPerPixel == 4   ? load<std::uint8_t>(at[i])
                    : picture.bytesPerPixel == 8 ? load<std::uint16_t>(at[i])
                                                 : load<float>(at[i])) /
                   maximumOf(picture.pixelFormat);
    }
    return value;
}

void setPixel(const RasterInfo& picture, int x, int y, const Rgba& value) {
    const auto at = channels(picture, x, y);
    const double maximum = maximumOf(picture.pixelFormat);
    for (std::size_t i = 0; i < 4; ++i) {
        switch (picture.bytesPerPixel) {
        case 4:
            store<std::uint8_t>(at[i], std::round(value[i] * maximum));
            break;
        case 8:
            store<std::uint16_t>(at[i], std::round(value[i] * maximum));
            break;
        default:
            store<float>(at[i], value[i]);
        }
    }
}

void paint(const RasterInfo& picture, const std::function<Rgba(int x, int y)>& pixel) {
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            setPixel(picture, x, y, pixel(x, y));
        }
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
