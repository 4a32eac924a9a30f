#pragma once

#include <stdexcept>
#include <string>

namespace orbel {

/// A picture, sequence or clip that cannot be read or written. `what()` is one sentence that can be
/// shown as it is: `FILE (PLACE): MESSAGE; REMEDY`.
class MediaError : public std::runtime_error {
public:
    /// Whether the same may go well another time: once there is room on the disk.
    enum Outlook { Lasting, Passing };

    /// `place` ("frame 12") and `remedy` may be empty; `code` is the system's, where it has one.
    MediaError(std::string file, std::string place, std::string message, std::string remedy,
               Outlook outlook = Lasting, int code = 0)
        : std::runtime_error(sentence(file, place, message, remedy)),
          m_file(std::move(file)),
          m_place(std::move(place)),
          m_message(std::move(message)),
          m_remedy(std::move(remedy)),
          m_outlook(outlook),
          m_code(code) {}

    [[nodiscard]] const std::string& file() const { return m_file; }
    [[nodiscard]] const std::string& place() const { return m_place; }
    [[nodiscard]] const std::string& message() const { return m_message; }
    [[nodiscard]] const std::string& remedy() const { return m_remedy; }
    [[nodiscard]] bool isPassing() const { return m_outlook == Passing; }
    [[nodiscard]] int code() const { return m_code; }

private:
    static std::string sentence(const std::string& file, const std::string& place,
                                const std::string& message, const std::string& remedy) {
        std::string text = file;
        if (!place.empty()) {
            text += " (" + place + ")";
        }
        text += ": " + message;
        if (!remedy.empty()) {
            text += "; " + remedy;
        }
        return text;
    }

    std::string m_file;
    std::string m_place;
    std::string m_message;
    std::string m_remedy;
    Outlook m_outlook;
    int m_code;
};

/// What to do when an output cannot be written any further.
inline constexpr const char* outOfRoom =
    "free some room or write elsewhere, then render again from there";

/// The usual place of a media error.
inline std::string framePlace(long frame) {
    return "frame " + std::to_string(frame);
}

} // namespace orbel
