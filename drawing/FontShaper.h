#pragma once

#include "drawing/Outline.h"

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// A font as it is asked for; the nearest installed one is taken, letter by letter.
struct FontChoice {
    std::string family = "sans"; ///< or several, separated by commas
    int weight = 400;            ///< 100 to 1000
    int stretch = 4;             ///< 0, ultra-condensed, to 8, ultra-expanded
    bool italic = false;
    bool oblique = false;
    bool smallCaps = false;
    std::string features; ///< OpenType features, as "liga 0, kern 0"
    std::string language; ///< as "de"; empty for none
    friend bool operator==(const FontChoice&, const FontChoice&) = default;
};

/// Lengths of a font of size 1; heights and depths are positive away from the baseline, positions
/// upwards.
struct FontMetrics {
    double ascent = 0.8;
    double descent = 0.2;
    double xHeight = 0.5;
    double lineThickness = 0.05;
    double underline = -0.1;  ///< middle of the line
    double strike = 0.25;     ///< middle of the line
    double subscript = 0.2;   ///< how far below the line
    double superscript = 0.4; ///< how far above
};

/// Letters that stand or fall together, for a font of size 1 at the pen, y downwards.
struct ShapedCluster {
    std::size_t byte = 0; ///< where it begins in the text
    std::size_t run = 0;
    double advance = 0.0;
    bool upright = false; ///< stands upright in vertical text
    std::vector<OutlineCurve> curves;
};

/// A stretch of text in one font.
struct FontRun {
    std::size_t begin = 0; ///< bytes
    std::size_t end = 0;
    FontChoice font;
};

/// Chooses fonts, shapes text of any script and draws its glyphs. Only in a process of its own:
/// fonts and texts come from outside.
class FontShaper {
public:
    FontShaper();
    ~FontShaper();
    FontShaper(const FontShaper&) = delete;
    FontShaper& operator=(const FontShaper&) = delete;

    enum class Direction { FromText, LeftToRight, RightToLeft };

    /// The clusters from left to right. `runs` cover `text`, UTF-8 without line ends, in order.
    /// Glyphs that no font has are left out and remembered.
    [[nodiscard]] std::vector<ShapedCluster>
    shape(const std::string& text, const std::vector<FontRun>& runs, Direction direction);
    [[nodiscard]] FontMetrics metricsOf(const FontChoice& font);
    /// Whether the font draws small capitals itself.
    [[nodiscard]] bool hasSmallCapitals(const FontChoice& font);
    /// The families that are installed, and the names that stand for one of them; in no order.
    [[nodiscard]] std::vector<std::string> families();
    /// Whether a font of the first family is installed by this name.
    [[nodiscard]] bool hasFamily(std::string_view family);

    /// Appends a sentence about the lists of families, parted by commas, of which none is
    /// installed.
    void tellUninstalled(const std::set<std::string>& families, std::vector<std::string>* notes);
    /// Appends a sentence about the characters that no font has.
    void tellMissing(std::vector<std::string>* notes) const;

private:
    struct Libraries;
    std::unique_ptr<Libraries> m_libraries;
    std::map<unsigned, std::size_t> m_missing;
};

} // namespace orbel
