#include "drawing/SingleStrokes.h"

#include "drawing/CurveFit.h"
#include "drawing/DrawingDocument.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace orbel {

namespace {

namespace fs = std::filesystem;

constexpr const char* fontFolder = ORBEL_HERSHEY_FOLDER;

constexpr double unitsPerSize = 30.0; // of a font's size; capitals are 21 units high
constexpr int baselineUnits = 9;
constexpr double joining = 0.6;    // units between ends that are one
constexpr double smoothing = 0.3;  // units that a curve may leave its corners by
constexpr double sharpTurn = 0.95; // radians; the letters' arcs turn by less

PenLetter readLetter(std::string_view line) {
    PenLetter letter;
    constexpr std::size_t head = 8; // number of the glyph and count of its pairs
    if (line.size() < head + 2) {
        return letter;
    }
    const auto unit = [line](std::size_t at) { return static_cast<int>(line[at]) - 'R'; };
    const int left = unit(head);
    letter.advance = (unit(head + 1) - left) / unitsPerSize;
    letter.lines.emplace_back();
    for (std::size_t at = head + 2; at + 1 < line.size(); at += 2) {
        if (line[at] == ' ' && line[at + 1] == 'R') {
            letter.lines.emplace_back();
        } else {
            letter.lines.back().push_back(
                {(unit(at) - left) / unitsPerSize, (unit(at + 1) - baselineUnits) / unitsPerSize});
        }
    }
    std::erase_if(letter.lines, [](const auto& points) { return points.size() < 2; });
    return letter;
}

} // namespace

std::vector<std::string> installedHands() {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator at(fontFolder, error), end; !error && at != end;
         at.increment(error)) {
        if (at->path().extension() == ".jhf") {
            names.push_back(at->path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<PenLetter> parseHand(std::string_view text) {
    std::vector<PenLetter> letters;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        letters.push_back(readLetter(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return letters;
}

std::vector<PenLetter> readHand(const std::string& name) {
    const std::vector<std::string> names = installedHands();
    if (names.empty()) {
        throw DrawingError{"no letters of single strokes are installed",
                           "install the package hershey-fonts-data, or write outlines"};
    }
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        std::string known;
        for (const std::string& one : names) {
            known.append(known.empty() ? "" : ", ").append(one);
        }
        throw DrawingError{"there is no hand \"" + name + "\"", "choose one of " + known};
    }
    std::ifstream stream(fs::path(fontFolder) / (name + ".jhf"), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream),
                           std::istreambuf_iterator<char>()};
    return parseHand(text);
}

std::vector<OutlineCurve> smoothPenLines(const std::vector<std::vector<PlanePoint>>& lines,
                                         double size, std::vector<std::size_t>* letters) {
    const double unit = size / unitsPerSize;
    std::vector<std::vector<PlanePoint>> joined;
    std::vector<std::size_t> owners;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!joined.empty() &&
            distanceOf(joined.back().back(), lines[i].front()) < joining * unit) {
            joined.back().insert(joined.back().end(), lines[i].begin() + 1, lines[i].end());
        } else {
            joined.push_back(lines[i]);
            owners.push_back((*letters)[i]);
        }
    }
    *letters = std::move(owners);
    std::vector<OutlineCurve> curves;
    curves.reserve(joined.size());
    for (const std::vector<PlanePoint>& points : joined) {
        curves.push_back(fitCurve(points, smoothing * unit, sharpTurn));
    }
    return curves;
}

} // namespace orbel
