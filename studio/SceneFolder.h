#pragma once

#include "studio/Json.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orbel::studio {

/// What an ending says about a file.
enum class FileKind { Svg, Picture, Clip, Raw, Scene, Other };
[[nodiscard]] FileKind kindOf(std::string_view name);

/// Tells one state of a file from another: "" when there is none.
[[nodiscard]] std::string revisionOf(const std::optional<std::string>& bytes);

/// How writing treats a file that is there already.
enum class Overwrite { No, Yes };

/// The one folder that the studio reads scenes from and writes to. Files are addressed by plain
/// names: nothing that leads elsewhere is found, links included. Any thread.
class SceneFolder {
public:
    static constexpr std::uintmax_t largestScene = std::uintmax_t{16} << 20;

    explicit SceneFolder(std::filesystem::path folder);

    [[nodiscard]] const std::filesystem::path& path() const { return m_folder; }
    /// Where the file of this name is or would be. Throws a 404 Refusal for a name that is none of
    /// this folder's.
    [[nodiscard]] std::filesystem::path pathOf(const std::string& name) const;
    /// As `pathOf`; an ending other than these kinds is refused with 400.
    [[nodiscard]] std::filesystem::path pathOf(const std::string& name,
                                               std::initializer_list<FileKind> kinds) const;

    /// The bytes of a scene or its journal; nothing when there is no such file. Throws a Refusal
    /// when it cannot be read or is too large to be a scene.
    [[nodiscard]] static std::optional<std::string> read(const std::filesystem::path& file);
    /// Writes the whole file or leaves everything as it was: under another name first. Throws a
    /// Refusal: 409 when it may not overwrite, 507 when there is no room.
    static void write(const std::filesystem::path& file, std::string_view bytes,
                      Overwrite overwrite);

    /// Whether the file is there with these very bytes.
    [[nodiscard]] static bool holds(const std::filesystem::path& file, std::string_view bytes);
    /// The name itself, or one with a number when it is taken.
    [[nodiscard]] std::string freeName(const std::string& name) const;
    /// `[{name, kind}]`, by name; what is hidden or no file for a scene is left out. Pictures with
    /// numbers are there once more as `{name: "shot-%04d.png", kind: "sequence", first, count}`.
    [[nodiscard]] json list() const;

    /// Unsaved work on a scene, kept beside it.
    [[nodiscard]] std::filesystem::path journalOf(const std::string& scene) const;
    /// `{text, savedAt: "2026-01-31T12:00:00Z"}`, or null.
    [[nodiscard]] json journal(const std::string& scene) const;

private:
    std::filesystem::path m_folder;
};

} // namespace orbel::studio
