#include "media/PendingFile.h"

#include "media/MediaError.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

namespace {

constexpr mode_t usualMode = 0666;

std::string folderOf(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

std::string linkedFile(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) {
        return path;
    }
    const std::filesystem::path whole = std::filesystem::weakly_canonical(path, error);
    return error ? path : whole.string();
}

/// A renaming is on the disk when its folder is. Not every file system has that to offer.
void syncFolder(const std::string& file) {
    const int folder = open(folderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        static_cast<void>(fsync(folder));
        close(folder);
    }
}

bool syncFile(int file) {
    return fsync(file) == 0 || errno == EINVAL || errno == EROFS;
}

/// False, with `errno` set, when the folder takes no file.
bool takesFiles(const std::string& folder) {
    int file = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, usualMode);
    if (file < 0) {
        std::string named = folder + "/.orbel-XXXXXX";
        file = mkostemp(named.data(), O_CLOEXEC);
        if (file < 0) {
            return false;
        }
        unlink(named.c_str());
    }
    close(file);
    return true;
}

/// A second name never takes the place of what came there in the meantime.
bool giveName(const std::string& from, const std::string& to, Existing existing) {
    if (existing == Existing::Replaced) {
        return std::rename(from.c_str(), to.c_str()) == 0;
    }
    return link(from.c_str(), to.c_str()) == 0 && unlink(from.c_str()) == 0;
}

[[noreturn]] void refuse(const std::string& file, const std::string& what, int code) {
    throw MediaError(file, "", what + " (" + std::generic_category().message(code) + ")",
                     "free some room or write elsewhere, then try again", MediaError::Passing,
                     code);
}

} // namespace

PendingFile::PendingFile(const std::string& target, Writers writers)
    : m_named(target), m_target(linkedFile(target)), m_path(m_target + ".part") {
    std::error_code error;
    const auto status = std::filesystem::status(m_target, error);
    m_isSpecial = std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
    if (m_isSpecial) {
        m_path = m_target;
    } else if (writers == Writers::One) {
        takeShared();
    } else {
        takeOwn();
    }
}

void PendingFile::release() {
    if (m_file >= 0) {
        if (!m_isSpecial) {
            unlink(m_path.c_str());
        }
        close();
    }
}

/// The lock belongs to the open file, so that it ends with the program, however that ends.
void PendingFile::takeShared() {
    do {
        close();
        m_file = open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, usualMode);
        if (m_file < 0) {
            refuse(m_named, "the file cannot be made", errno);
        }
        if (flock(m_file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            close();
            throw MediaError(m_named, "", "another program is writing this output",
                             "wait until it has ended or choose another name", MediaError::Passing);
        }
        // Between opening and locking, the one before may have completed or removed it.
    } while (!holdsItsName());
    static_cast<void>(ftruncate(m_file, 0));
}

void PendingFile::takeOwn() {
    std::random_device random;
    do {
        m_path = folderOf(m_target) + "/.orbel-" + std::to_string(random());
        m_file = open(m_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, usualMode);
    } while (m_file < 0 && errno == EEXIST);
    if (m_file < 0) {
        refuse(m_named, "the file cannot be made", errno);
    }
}

void PendingFile::write(std::string_view bytes) {
    if (m_file < 0 && m_isSpecial) {
        m_file = open(m_path.c_str(), O_WRONLY | O_CLOEXEC);
    }
    while (!bytes.empty()) {
        const ssize_t written = ::write(m_file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            refuse(m_named, "the file cannot be written", errno);
        }
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
}

bool PendingFile::holdsItsName() const {
    struct stat opened {};
    struct stat named {};
    return fstat(m_file, &opened) == 0 && stat(m_path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

void PendingFile::close() {
    if (m_file >= 0) {
        ::close(m_file);
        m_file = -1;
    }
}

void PendingFile::takePermissions(int file) const {
    struct stat old {};
    if (stat(m_target.c_str(), &old) == 0) {
        static_cast<void>(fchmod(file, old.st_mode & 07777));
    }
}

void PendingFile::complete(Existing existing) {
    if (m_isSpecial) {
        close();
    }
    if (m_file < 0) {
        return;
    }
    takePermissions(m_file);
    if (!syncFile(m_file) || !giveName(m_path, m_target, existing)) {
        refuse(m_named, "the output cannot be completed", errno);
    }
    syncFolder(m_target);
    close();
}

void PendingFile::completeWith(const std::string& other) {
    const int file = open(other.c_str(), O_RDONLY | O_CLOEXEC);
    if (file >= 0) {
        takePermissions(file);
        ::close(file);
    }
    if (!publishFile(other, m_target)) {
        refuse(m_named, "the output cannot be completed", errno);
    }
    release();
}

void writeWholeFile(const std::string& path, std::string_view text) {
    PendingFile file(path, Writers::Any);
    file.write(text);
    file.complete();
}

void checkTakesFiles(const std::string& folder, const std::string& named) {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error)) {
        throw MediaError(named, "", "the folder \"" + folder + "\" does not exist",
                         "make it or choose another");
    }
    if (!takesFiles(folder)) {
        throw MediaError(named, "",
                         "the folder \"" + folder + "\" cannot be written (" +
                             std::generic_category().message(errno) + ")",
                         "change its permissions or choose another");
    }
}

bool syncPath(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool synced = file >= 0 && syncFile(file);
    const int code = errno;
    if (file >= 0) {
        close(file);
    }
    errno = code;
    return synced;
}

bool publishFile(const std::string& from, const std::string& to, Existing existing) {
    if (!syncPath(from) || !giveName(from, to, existing)) {
        return false;
    }
    syncFolder(to);
    return true;
}

} // namespace orbel
