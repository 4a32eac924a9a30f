#pragma once

#include "drawing/Outline.h"

#include <array>
#include <string>
#include <vector>

namespace orbel {

/// A letter as a pen draws it, for a font of size 1 with the baseline at 0, y downwards.
struct PenLetter {
    double advance = 0.0;
    std::vector<std::vector<PlanePoint>> lines;
};

/// The hands that are installed, by name.
[[nodiscard]] std::vector<std::string> installedHands();

/// The letters of a hand, from space, U+0020, on. Throws DrawingError when there is no such hand.
[[nodiscard]] std::vector<PenLetter> readHand(const std::string& name);

/// Reads the text of a Hershey font; what cannot be read is an empty letter.
[[nodiscard]] std::vector<PenLetter> parseHand(std::string_view text);

/// Pen lines in order, joined where one starts where the other ends, as smooth curves. `letters`
/// tells which letter each line belongs to, and afterwards which each curve begins in.
[[nodiscard]] std::vector<OutlineCurve>
smoothPenLines(const std::vector<std::vector<PlanePoint>>& lines, double size,
               std::vector<std::size_t>* letters);

} // namespace orbel
