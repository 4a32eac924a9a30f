#include "drawing/Lettering.h"

#include "drawing/Conversion.h"
#include "drawing/DrawingDocument.h"
#include "drawing/FontShaper.h"
#include "drawing/LimitedProcess.h"
#include "drawing/SingleStrokes.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <utility>

namespace orbel {

namespace {

constexpr double seconds = 10.0;
constexpr double margin = 0.1; // round the writing, in sizes of the font
constexpr std::size_t mostBytes = 100000;

/// One line with its outlines at size 1, the pen starting at 0.
struct WrittenLine {
    double width = 0.0;
    std::vector<DrawnCurve> curves;
};

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else if (c == '\t') {
            lines.back() += ' ';
        } else if (static_cast<unsigned char>(c) >= 0x20) {
            lines.back() += c;
        }
    }
    return lines;
}

/// "DejaVu Sans:bold:italic"
FontChoice fontOf(const std::string& text) {
    constexpr std::array<std::pair<std::string_view, int>, 9> weights{{{"thin", 100},
                                                                       {"light", 300},
                                                                       {"book", 380},
                                                                       {"regular", 400},
                                                                       {"medium", 500},
                                                                       {"semibold", 600},
                                                                       {"bold", 700},
                                                                       {"heavy", 800},
                                                                       {"black", 900}}};
    FontChoice font;
    std::size_t colon = text.find(':');
    font.family = text.substr(0, colon);
    while (colon != std::string::npos) {
        const std::size_t next = text.find(':', colon + 1);
        const std::string word =
            text.substr(colon + 1, next == std::string::npos ? next : next - colon - 1);
        const auto* const weight = std::find_if(weights.begin(), weights.end(),
                                                [&](const auto& w) { return w.first == word; });
        if (weight != weights.end()) {
            font.weight = weight->second;
        } else if (word == "italic" || word == "oblique") {
            (word == "italic" ? font.italic : font.oblique) = true;
        } else if (word == "condensed") {
            font.stretch = 2;
        } else {
            throw DrawingError{"\"" + word + "\" is no style of a font",
                               "write light, bold, black, italic, oblique or condensed after the "
                               "family, as in \"DejaVu Sans:bold\""};
        }
        colon = next;
    }
    return font;
}

std::string letterAt(const std::string& line, std::size_t byte) {
    const char* const at = line.c_str() + byte;
    return {at, static_cast<std::size_t>(g_utf8_next_char(at) - at)};
}

WrittenLine outlineLine(const std::string& line, const FontChoice& font, FontShaper* shaper) {
    WrittenLine written;
    std::vector<ShapedCluster> clusters =
        shaper->shape(line, {{0, line.size(), font}}, FontShaper::Direction::FromText);
    for (ShapedCluster& cluster : clusters) {
        for (OutlineCurve& curve : cluster.curves) {
            transformCurve({1, 0, 0, 1, written.width, 0}, &curve);
        }
        written.width += cluster.advance;
    }
    std::stable_sort(clusters.begin(), clusters.end(),
                     [](const auto& a, const auto& b) { return a.byte < b.byte; });
    for (ShapedCluster& cluster : clusters) {
        for (OutlineCurve& curve : cluster.curves) {
            written.curves.push_back(
                {std::move(curve), {"", letterAt(line, cluster.byte), "#000000", ""}});
        }
    }
    return written;
}

/// Pen lines one letter after the other, joined across letters where the hand does so.
WrittenLine penLine(const std::string& line, const std::vector<PenLetter>& hand,
                    std::map<unsigned, std::size_t>* missing) {
    WrittenLine written;
    std::vector<std::vector<PlanePoint>> lines;
    std::vector<std::size_t> bytes;
    for (const char* at = line.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
        const unsigned character = g_utf8_get_char(at);
        if (character < 0x20 || character - 0x20 >= hand.size()) {
            ++(*missing)[character];
            continue;
        }
        const PenLetter& letter = hand[character - 0x20];
        for (std::vector<PlanePoint> points : letter.lines) {
            for (PlanePoint& p : points) {
                p.x += written.width;
            }
            lines.push_back(std::move(points));
            bytes.push_back(static_cast<std::size_t>(at - line.c_str()));
        }
        written.width += letter.advance;
    }
    const std::vector<OutlineCurve> curves = smoothPenLines(lines, 1.0, &bytes);
    for (std::size_t i = 0; i < curves.size(); ++i) {
        written.curves.push_back({curves[i], {"", letterAt(line, bytes[i]), "", "#000000"}});
    }
    return written;
}

std::vector<WrittenLine> writeLines(const LetteringOptions& options,
                                    std::vector<std::string>* notes) {
    std::vector<WrittenLine> written;
    if (options.singleStroke) {
        const std::vector<PenLetter> hand = readHand(options.hand);
        std::map<unsigned, std::size_t> missing;
        for (const std::string& line : linesOf(options.text)) {
            written.push_back(penLine(line, hand, &missing));
        }
        for (const auto& [character, count] : missing) {
            char name[16];
            std::snprintf(name, sizeof name, "U+%04X", character);
            notes->push_back("the hand \"" + options.hand + "\" has no " + name + ": left out");
        }
        return written;
    }
    FontShaper shaper;
    const FontChoice font = fontOf(options.font);
    if (!shaper.hasFamily(font.family)) {
        notes->push_back("the font \"" + font.family + "\" is not installed: another one is used");
    }
    for (const std::string& line : linesOf(options.text)) {
        written.push_back(outlineLine(line, font, &shaper));
    }
    shaper.tellMissing(notes);
    return written;
}

/// Puts the lines below one another and draws the page round them.
DrawnPage arrange(std::vector<WrittenLine> lines, const LetteringOptions& options) {
    double widest = 0.0;
    for (const WrittenLine& line : lines) {
        widest = std::max(widest, line.width);
    }
    const double size = options.width > 0 && widest > 0 ? options.width / widest : options.size;
    const double align = options.align == LetteringOptions::Align::Center  ? 0.5
                         : options.align == LetteringOptions::Align::Right ? 1.0
                                                                           : 0.0;
    DrawnPage page;
    OutlineBox box;
    double baseline = 0.0;
    for (WrittenLine& line : lines) {
        const double left = (widest - line.width) * align * size;
        for (DrawnCurve& drawn : line.curves) {
            transformCurve({size, 0, 0, size, left, baseline}, &drawn.curve);
            box.add(boxOf(drawn.curve));
            page.curves.push_back(std::move(drawn));
        }
        baseline += options.lineHeight * size;
    }
    if (box.empty()) {
        throw DrawingError{"there is nothing to write", "give a text with letters in it"};
    }
    const double edge = margin * size;
    for (DrawnCurve& drawn : page.curves) {
        transformCurve({1, 0, 0, 1, edge - box.left, edge - box.top}, &drawn.curve);
    }
    page.width = box.right - box.left + 2 * edge;
    page.height = box.bottom - box.top + 2 * edge;
    page.baseline = edge - box.top;
    return page;
}

ConvertedPage writeText(const LetteringOptions& options) {
    if (g_utf8_validate(options.text.data(), static_cast<gssize>(options.text.size()), nullptr) ==
        FALSE) {
        throw DrawingError{"the text is not UTF-8", "save or type it as UTF-8"};
    }
    if (options.text.size() > mostBytes) {
        throw DrawingError{"the text is longer than 100,000 bytes", "split it"};
    }
    ConvertedPage result;
    result.page = arrange(writeLines(options, &result.notes), options);
    return result;
}

} // namespace

Conversion letterText(const LetteringOptions& options, const StopConversion& stopped) {
    return convertLimited([&] { return writeText(options); }, seconds, stopped);
}

InstalledLetters installedLetters() {
    const auto list = [] {
        std::string names;
        for (const std::string& family : FontShaper().families()) {
            names += family + '\n';
        }
        return names;
    };
    InstalledLetters letters{linesOf(runLimited(list, {}).answer), installedHands()};
    std::erase(letters.families, "");
    std::sort(letters.families.begin(), letters.families.end());
    return letters;
}

} // namespace orbel
