#pragma once

#include "host/Numeric.h"
#include "pixel/LineWalk.h"

#include <cstddef>
#include <cstring>
#include <limits>
#include <type_traits>

/// A small generic image library: pixels, a view of pixel memory, and a stateless processor over
/// it, for components of `unsigned char`, `float` and `double`.
namespace orbel::Vxs {

/// A point in pixels, x to the right, y downwards.
template<typename T>
struct VxPointT {
    T x;
    T y;
};

/// A rectangle in pixels.
template<typename T>
struct VxRectT {
    T left;
    T top;
    T right;
    T bottom;

    friend bool operator==(const VxRectT&, const VxRectT&) = default;
};

/// Stands for "the whole image" where a rectangle is asked for.
inline constexpr VxRectT<long> VxRectZero{0, 0, 0, 0};

/// The value, or the end of the range that it lies beyond. `low` is at most `high`.
template<typename T>
constexpr T Clamp(T value, T low, T high) {
    return value < low ? low : (value > high ? high : value);
}

/// A pixel as it lies in memory, alpha first.
template<typename T>
struct PixelARGB {
    PixelARGB(T alpha, T red, T green, T blue) : a(alpha), r(red), g(green), b(blue) {}

    T a;
    T r;
    T g;
    T b;
};

/// A view of pixel memory, which it does not own. Rows may run bottom-up: the row bytes are signed.
template<typename T, typename P>
class ImageBuffer {
public:
    /// A zero rectangle is replaced by 0, 0, `width`, `height`.
    ImageBuffer(void* base, int rowBytes, int width, int height, const VxRectT<long>& rect)
        : m_base(base),
          m_width(width),
          m_height(height),
          m_rowBytes(rowBytes),
          m_rect(rect == VxRectZero ? VxRectT<long>{0, 0, width, height} : rect) {}

    /// The component type's numeric maximum, also for floating types: not 1.0.
    [[nodiscard]] virtual T baseTypeMax() const { return std::numeric_limits<T>::max(); }
    /// Bytes per pixel.
    [[nodiscard]] virtual int byteDepth() const { return static_cast<int>(sizeof(P)); }
    /// Bits per pixel.
    [[nodiscard]] virtual int bitDepth() const { return byteDepth() * 8; }
    /// Row bytes times height, with the sign of the row bytes.
    [[nodiscard]] virtual std::ptrdiff_t byteSize() const {
        return static_cast<std::ptrdiff_t>(m_rowBytes) * m_height;
    }
    virtual ~ImageBuffer() = default;
    ImageBuffer(const ImageBuffer&) = default;
    ImageBuffer& operator=(const ImageBuffer&) = default;

    /// The first byte of the row that comes first.
    [[nodiscard]] void* basePtr() const { return m_base; }
    [[nodiscard]] int rowbytes() const { return m_rowBytes; }
    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }
    /// The part of the image that is meant; kept for whoever asks, pixels outside can be reached.
    [[nodiscard]] const VxRectT<long>& rect() const { return m_rect; }
    /// The first byte of a pixel; the position is not checked.
    [[nodiscard]] void* getRawPtr(int x, int y) const {
        return static_cast<std::byte*>(m_base) + static_cast<std::ptrdiff_t>(y) * m_rowBytes +
               static_cast<std::ptrdiff_t>(x) * static_cast<std::ptrdiff_t>(sizeof(P));
    }

private:
    static_assert(sizeof(P) == 4 * sizeof(T), "a pixel is four components without padding");

    void* m_base;
    int m_width;
    int m_height;
    int m_rowBytes;
    VxRectT<long> m_rect;
    [[maybe_unused]] long m_reserved = 0;
};

/// What can be done to the pixels of a view. Without state: any thread may use one.
template<typename T, typename P>
class ImageProc {
public:
    ImageProc() = default;

    /// As `ImageBuffer::baseTypeMax`.
    [[nodiscard]] virtual T baseTypeMax() const { return std::numeric_limits<T>::max(); }
    /// Half of that, the maximum being counted as one more than it is.
    [[nodiscard]] virtual T halfBaseMax() const {
        return static_cast<T>((baseTypeMax() + T{1}) / T{2});
    }
    /// One over the numeric maximum.
    [[nodiscard]] virtual double baseTypeMaxReciprocal() const { return 1.0 / baseTypeMax(); }
    /// Limits to 0 and the largest value that both `int` and the component type hold.
    [[nodiscard]] virtual T baseClamp(int value) const {
        return static_cast<T>(Clamp<int>(value, 0, saturateTo<int>(baseTypeMax())));
    }
    virtual ~ImageProc() = default;
    ImageProc(const ImageProc&) = default;
    ImageProc& operator=(const ImageProc&) = default;

    /// Draws a one-pixel line, ends included, skipping points outside the image. Coordinates beyond
    /// the range of `int` are limited to it. Returns 0.
    int drawLine(ImageBuffer<T, P>& image, const P& colour, const VxPointT<long>& from,
                 const VxPointT<long>& to) const {
        walkLine(limit(from.x), limit(from.y), limit(to.x), limit(to.y), image.width(),
                 image.height(),
                 [&](int x, int y) { std::memcpy(image.getRawPtr(x, y), &colour, sizeof(P)); });
        return 0;
    }

private:
    static_assert(std::is_trivially_copyable_v<P>);

    static int limit(long coordinate) {
        constexpr long low = std::numeric_limits<int>::min();
        constexpr long high = std::numeric_limits<int>::max();
        return static_cast<int>(Clamp<long>(coordinate, low, high));
    }
};

extern template class ImageBuffer<unsigned char, PixelARGB<unsigned char>>;
extern template class ImageBuffer<float, PixelARGB<float>>;
extern template class ImageBuffer<double, PixelARGB<double>>;
extern template class ImageProc<unsigned char, PixelARGB<unsigned char>>;
extern template class ImageProc<float, PixelARGB<float>>;
extern template class ImageProc<double, PixelARGB<double>>;

} // namespace orbel::Vxs
