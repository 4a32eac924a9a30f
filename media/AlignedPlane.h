#pragma once

#include <zimg++.hpp>

#include <array>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

/// What pictures are scaled in and with, whatever they are made of.
namespace orbel {

/// Rows begin at multiples of this, as the scaling library wants them.
inline constexpr std::size_t planeAlignment = 64;

struct alignas(planeAlignment) Cell {
    std::array<std::byte, planeAlignment> bytes;
};

using Cells = std::vector<Cell>;

[[nodiscard]] inline std::size_t cellsFor(std::size_t bytes) {
    return (bytes + planeAlignment - 1) / planeAlignment;
}

/// One component of a picture by itself.
template<typename T>
class Plane {
public:
    void resize(int width, int height) {
        m_cellsPerRow = cellsFor(static_cast<std::size_t>(width) * sizeof(T));
        m_cells.resize(m_cellsPerRow * static_cast<std::size_t>(height));
    }
    [[nodiscard]] T* row(int y) { return static_cast<T*>(cellsOf(y)); }
    [[nodiscard]] const T* row(int y) const {
        const void* const cells = m_cells.data() + static_cast<std::size_t>(y) * m_cellsPerRow;
        return static_cast<const T*>(cells);
    }
    [[nodiscard]] std::ptrdiff_t stride() const {
        return static_cast<std::ptrdiff_t>(m_cellsPerRow * planeAlignment);
    }
    [[nodiscard]] zimgxx::zimage_buffer view() {
        zimgxx::zimage_buffer buffer;
        buffer.data() = m_cells.data();
        buffer.stride() = stride();
        buffer.mask() = ZIMG_BUFFER_MAX;
        return buffer;
    }

private:
    [[nodiscard]] void* cellsOf(int y) {
        return m_cells.data() + static_cast<std::size_t>(y) * m_cellsPerRow;
    }

    std::size_t m_cellsPerRow = 0;
    Cells m_cells;
};

/// Bicubic, B = 0, C = 0.6; for integers, which every processor rounds alike.
[[nodiscard]] inline zimgxx::zfilter_graph_builder_params bicubic() {
    zimgxx::zfilter_graph_builder_params how;
    how.resample_filter = how.resample_filter_uv = ZIMG_RESIZE_BICUBIC;
    how.filter_param_a = how.filter_param_a_uv = 0.0;
    how.filter_param_b = how.filter_param_b_uv = 0.6;
    how.cpu_type = ZIMG_CPU_AUTO_64B;
    return how;
}

[[noreturn]] inline void failToScale(const zimgxx::zerror& error) {
    if (error.code == ZIMG_ERROR_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    throw std::runtime_error(std::string("the picture cannot be scaled (") +
                             static_cast<const char*>(error.msg) + ")");
}

} // namespace orbel
