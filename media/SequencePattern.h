#pragma once

#include <optional>
#include <string>

namespace orbel {

/// A file name with a place for the frame number, as in `shot-%04d.png`. The name is never given to
/// printf: only `%d`, `%Nd` (padded with spaces), `%0Nd` (padded with zeros) and `%%` are known.
/// The folder part is taken as it stands.
class SequencePattern {
public:
    /// Throws MediaError for any other directive, for a second number and for a field wider
    /// than 18.
    explicit SequencePattern(const std::string& path);

    /// True when the name has a place for a number.
    [[nodiscard]] bool isNumbered() const { return m_numbered; }
    /// The path of this frame; without a number every frame has the same.
    [[nodiscard]] std::string pathOf(long number) const;
    /// The number in a file name (without folder) that `pathOf` would make.
    [[nodiscard]] std::optional<long> numberOf(const std::string& name) const;
    /// The folder, with its closing slash; empty for the current one.
    [[nodiscard]] const std::string& folder() const { return m_folder; }

private:
    std::size_t readDirective(const std::string& path, const std::string& name, std::size_t at);
    [[nodiscard]] std::string nameOf(long number) const;

    std::string m_folder;
    std::string m_before;
    std::string m_after;
    std::size_t m_width = 0;
    bool m_zeros = false;
    bool m_numbered = false;
};

} // namespace orbel
