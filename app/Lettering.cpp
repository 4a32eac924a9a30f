#include "app/Lettering.h"

#include <algorithm>
#include <cstring>

namespace orbel::app {

namespace {

/// Rows from the top; the highest of five bits is the left dot.
using Letter = std::array<std::uint8_t, letterHeight>;

constexpr std::array<Letter, 10> digits{{
    {0b01110, 0b10001, 0b10011, 0b10101, 0b11001, 0b10001, 0b01110},
    {0b00100, 0b01100, 0b00100, 0b00100, 0b00100, 0b00100, 0b01110},
    {0b01110, 0b10001, 0b00001, 0b00110, 0b01000, 0b10000, 0b11111},
    {0b11110, 0b00001, 0b00001, 0b01110, 0b00001, 0b00001, 0b11110},
    {0b00010, 0b00110, 0b01010, 0b10010, 0b11111, 0b00010, 0b00010},
    {0b11111, 0b10000, 0b11110, 0b00001, 0b00001, 0b10001, 0b01110},
    {0b00110, 0b01000, 0b10000, 0b11110, 0b10001, 0b10001, 0b01110},
    {0b11111, 0b00001, 0b00010, 0b00100, 0b01000, 0b01000, 0b01000},
    {0b01110, 0b10001, 0b10001, 0b01110, 0b10001, 0b10001, 0b01110},
    {0b01110, 0b10001, 0b10001, 0b01111, 0b00001, 0b00010, 0b01100},
}};

constexpr std::array<Letter, 26> capitals{{
    {0b01110, 0b10001, 0b10001, 0b11111, 0b10001, 0b10001, 0b10001},
    {0b11110, 0b10001, 0b10001, 0b11110, 0b10001, 0b10001, 0b11110},
    {0b01110, 0b10001, 0b10000, 0b10000, 0b10000, 0b10001, 0b01110},
    {0b11110, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b11110},
    {0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b11111},
    {0b11111, 0b10000, 0b10000, 0b11110, 0b10000, 0b10000, 0b10000},
    {0b01110, 0b10001, 0b10000, 0b10111, 0b10001, 0b10001, 0b01110},
    {0b10001, 0b10001, 0b10001, 0b11111, 0b10001, 0b10001, 0b10001},
    {0b01110, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100, 0b01110},
    {0b00111, 0b00010, 0b00010, 0b00010, 0b00010, 0b10010, 0b01100},
    {0b10001, 0b10010, 0b10100, 0b11000, 0b10100, 0b10010, 0b10001},
    {0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b10000, 0b11111},
    {0b10001, 0b11011, 0b10101, 0b10101, 0b10001, 0b10001, 0b10001},
    {0b10001, 0b11001, 0b10101, 0b10011, 0b10001, 0b10001, 0b10001},
    {0b01110, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01110},
    {0b11110, 0b10001, 0b10001, 0b11110, 0b10000, 0b10000, 0b10000},
    {0b01110, 0b10001, 0b10001, 0b10001, 0b10101, 0b10010, 0b01101},
    {0b11110, 0b10001, 0b10001, 0b11110, 0b10100, 0b10010, 0b10001},
    {0b01111, 0b10000, 0b10000, 0b01110, 0b00001, 0b00001, 0b11110},
    {0b11111, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100, 0b00100},
    {0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01110},
    {0b10001, 0b10001, 0b10001, 0b10001, 0b10001, 0b01010, 0b00100},
    {0b10001, 0b10001, 0b10001, 0b10101, 0b10101, 0b11011, 0b10001},
    {0b10001, 0b10001, 0b01010, 0b00100, 0b01010, 0b10001, 0b10001},
    {0b10001, 0b10001, 0b01010, 0b00100, 0b00100, 0b00100, 0b00100},
    {0b11111, 0b00001, 0b00010, 0b00100, 0b01000, 0b10000, 0b11111},
}};

Letter letterOf(char c) {
    if (c >= '0' && c <= '9') {
        return digits[static_cast<std::size_t>(c - '0')];
    }
    if (c >= 'a' && c <= 'z') {
        return capitals[static_cast<std::size_t>(c - 'a')];
    }
    if (c >= 'A' && c <= 'Z') {
        return capitals[static_cast<std::size_t>(c - 'A')];
    }
    return {};
}

void drawDot(const RasterInfo& image, int x, int y, int size,
             const std::array<std::uint8_t, 4>& colour) {
    for (int row = std::max(y, 0); row < std::min(y + size, image.height); ++row) {
        for (int column = std::max(x, 0); column < std::min(x + size, image.width); ++column) {
            std::memcpy(image.row(row) + std::ptrdiff_t{4} * column, colour.data(), colour.size());
        }
    }
}

} // namespace

void drawText(const RasterInfo& image, int x, int y, int scale, std::string_view text,
              const std::array<std::uint8_t, 4>& colour) {
    for (const char c : text) {
        const Letter letter = letterOf(c);
        for (int row = 0; row < letterHeight; ++row) {
            for (int column = 0; column < 5; ++column) {
                if ((letter[static_cast<std::size_t>(row)] >> (4 - column) & 1) != 0) {
                    drawDot(image, x + column * scale, y + row * scale, scale, colour);
                }
            }
        }
        x += letterAdvance * scale;
    }
}

} // namespace orbel::app
