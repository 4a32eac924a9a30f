#pragma once

#include "film/ScenePlan.h"
#include "studio/Json.h"

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orbel::studio {

/// Converts drawings and texts, and remembers what it converted last: a page asks for a scene many
/// times over while something else in it changes. Any thread.
class Conversions {
public:
    using Note = std::function<void(const std::string&)>;
    using Stopped = std::function<bool()>;
    /// Makes a converter that tells what is left out, and ends when it is told so.
    using Maker = std::function<ShapeConverter(Note, Stopped)>;

    explicit Conversions(Maker make) : m_make(std::move(make)) {}

    /// The converter for one request, empty where there is none at all. `stopped` may be empty.
    [[nodiscard]] ShapeConverter until(Stopped stopped);
    /// What was left out of the scene's shape when it was converted.
    [[nodiscard]] std::vector<std::string> notesOf(const Scene& scene);

private:
    /// What came out of one shape.
    struct Converted {
        std::optional<std::string> shape;
        std::optional<ImportOptions> import;
        std::optional<LetteringOptions> lettering;
        std::string stamp; ///< of the file
        std::optional<std::string> svg;
        std::vector<std::string> notes;
        Problems problems;

        /// The shape, or nothing and why.
        std::optional<std::string> give(Problems* told) const;
    };

    [[nodiscard]] const Converted* known(const Scene& scene) const;
    [[nodiscard]] bool lockUntil(const Stopped& stopped);
    std::optional<std::string> convert(const Scene& scene, const Stopped& stopped,
                                       Problems* problems);

    Maker m_make;
    std::timed_mutex m_mutex;      ///< held while something is converted
    std::deque<Converted> m_known; ///< the last ones, newest first
};

/// What the shape reader takes of an SVG text, as `{paths, size}` to be drawn small: outlines as
/// path data in a square box.
[[nodiscard]] json outlinesJson(std::string_view svg);

/// What a drawing or a text that a scene has as its shape becomes: `{before, after}`. `before` is
/// what the plain reader would draw of the drawing; `after` is `{paths, size, notes}`, or
/// `{error, remedy}`. Both are missing for any other shape.
[[nodiscard]] json shapeJson(const Scene& scene, Conversions& conversions,
                             const Conversions::Stopped& stopped);

/// What a drawing becomes when it is imported: `{paths, size, notes}`, or `{error, remedy}`.
[[nodiscard]] json importJson(std::string_view svg);

} // namespace orbel::studio
