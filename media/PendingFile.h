#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// Who may write to a target at the same time.
enum class Writers {
    One, ///< under `film.mp4.part`, locked; what a killed program left there is taken over
    Any, ///< each under a hidden name of its own; the last to be complete stays
};

/// What becomes of a file that has the name already.
enum class Existing { Replaced, Kept };

/// A file that comes into being as a whole: it is written under another name in the target's folder
/// and takes the target's name, and its permissions if there is one, when it is complete and on the
/// disk. What is not completed goes.
///
/// With `Writers::One`, no other program, and no other object of this one, can write to the same
/// target while one lives. A target that is no regular file, such as a pipe, is written to as it
/// is.
class PendingFile {
public:
    /// Follows a link to the file that it leads to. Throws MediaError when somebody else is writing
    /// to the target or the folder takes no file.
    explicit PendingFile(const std::string& target, Writers writers = Writers::One);
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    ~PendingFile() { release(); }

    /// Where to write. Opening it anew, also to empty it, is fine; replacing it is not.
    [[nodiscard]] const std::string& path() const { return m_path; }
    /// Adds to the file. Throws MediaError.
    void write(std::string_view bytes);
    /// Leaves the target to others, and nothing of what was not completed.
    void release();
    /// Gives the file its name once its bytes are on the disk. Throws MediaError; its `code` is
    /// EEXIST when a file was to be kept.
    void complete(Existing existing = Existing::Replaced);

    /// Gives the name to another complete file in the folder instead. Throws MediaError.
    void completeWith(const std::string& other);

private:
    void takeShared();
    void takeOwn();
    void takePermissions(int file) const;
    [[nodiscard]] bool holdsItsName() const;
    void close();

    std::string m_named; ///< as the caller knows it, for messages
    std::string m_target;
    std::string m_path;
    bool m_isSpecial = false; ///< written to as it is
    int m_file = -1;
};

/// Writes the whole text or nothing. Throws MediaError.
void writeWholeFile(const std::string& path, std::string_view text);

/// Tells by trying that new files can be written in a folder, as permissions say nothing of
/// read-only and special file systems. Throws MediaError for the output that is `named` when there
/// is no such folder or it takes none. Leaves no file even when the program is killed meanwhile,
/// where the file system knows files without names.
void checkTakesFiles(const std::string& folder, const std::string& named);

/// Sees to it that a file, or the names in a folder, are on the disk; false, with `errno` set, when
/// that fails.
[[nodiscard]] bool syncPath(const std::string& path);

/// Gives a complete file another name in its folder, once it is on the disk; false, with `errno`
/// set, when that fails: EEXIST when a file was to be kept.
[[nodiscard]] bool publishFile(const std::string& from, const std::string& to,
                               Existing existing = Existing::Replaced);

} // namespace orbel
