#include "media/PendingFile.h"

#include "media/MediaError.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
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

} // namespace

PendingFile::PendingFile(const std::string& target)
    : m_named(target), m_target(linkedFile(target)), m_path(m_target + ".part") {
    std::error_code error;
    const auto status = std::filesystem::status(m_target, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        m_path = m_target;
        return;
    }
    take();
}

void PendingFile::release() {
    if (m_file >= 0) {
        unlink(m_path.c_str());
        close();
    }
}

/// The lock belongs to the open file, so that it ends with the program, however that ends.
void PendingFile::take() {
    do {
        close();
        m_file = open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, usualMode);
        if (m_file < 0) {
            throw MediaError(m_named, "",
                             "the file cannot be made (" + std::generic_category().message(errno) +
                                 ")",
                             "choose another name", MediaError::Passing);
        }
        if (flock(m_file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            close();
            throw MediaError(m_named, "", "another program is writing this output",
                             "wait until it has ended or choose another name", MediaError::Passing);
        }
        // Between opening and locking, the one before may have completed or removed it.
    } while (!holdsItsName());
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

void PendingFile::complete() {
    if (m_file < 0) {
        return;
    }
    if (!syncFile(m_file) || std::rename(m_path.c_str(), m_target.c_str()) != 0) {
        throw MediaError(
            m_named, "",
            "the output cannot be completed (" + std::generic_category().message(errno) + ")",
            "free some room or write elsewhere, then render again", MediaError::Passing);
    }
    syncFolder(m_target);
    close();
}

bool publishFile(const std::string& from, const std::string& to) {
    const int file = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    const bool synced = file >= 0 && syncFile(file);
    const int code = errno;
    if (file >= 0) {
        close(file);
    }
    if (!synced) {
        errno = code;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

} // namespace orbel
