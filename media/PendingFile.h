#pragma once

#include <string>

namespace orbel {

/// A file that comes into being as a whole: it is written under a name of its own in the target's
/// folder (`film.mp4.part`) and takes the target's name when it is complete and on the disk. What a
/// program leaves behind that was killed is taken over by the next one.
///
/// While one lives, no other program, and no other object of this one, can write to the same
/// target. A target that is no regular file, such as a pipe, is written to as it is.
class PendingFile {
public:
    /// Follows a link to the file that it leads to. Throws MediaError when somebody else is writing
    /// to the target or the folder takes no file.
    explicit PendingFile(const std::string& target);
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    ~PendingFile() { release(); }

    /// Where to write. Opening it anew, also to empty it, is fine; replacing it is not.
    [[nodiscard]] const std::string& path() const { return m_path; }
    /// Leaves the target to others, and nothing of what was not completed.
    void release();
    /// Gives the file its name once its bytes are on the disk. Throws MediaError.
    void complete();

private:
    void take();
    [[nodiscard]] bool holdsItsName() const;
    void close();

    std::string m_named; ///< as the caller knows it, for messages
    std::string m_target;
    std::string m_path;
    int m_file = -1;
};

/// Gives a complete file another name in its folder, once it is on the disk; false, with `errno`
/// set, when that fails. Replaces what has that name.
[[nodiscard]] bool publishFile(const std::string& from, const std::string& to);

} // namespace orbel
