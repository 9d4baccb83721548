// Replacing whole files on POSIX systems: write a locked temporary file, flush it, rename it over the old
// one.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/framework/name_hash.h"
#include "platform/posix/descriptors.h"

namespace fieldscan {
namespace system {

namespace {

// The path of the new file that is to replace `target`.
std::string temporaryFor(const std::string& target) {
    const std::string folder = folderOf(target);
    const std::size_t start = target.rfind('/') + 1;
    const auto* const name = reinterpret_cast<const unsigned char*>(target.data()) + start;
    return folder + ".fieldscan-" + nameHash(name, target.size() - start);
}

// True if a new file was refused for another reason than lack of room: the old file itself may be written.
bool mayWriteInPlace(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
        case EROFS:
        case EBUSY:   // a mount point
        case EXDEV:   // another file system
        case EISDIR:  // foreign things under the name of the new file
        case ELOOP:
        case ENXIO:
        case ENAMETOOLONG:  // of the whole path: the name is short
            return true;
        default:
            return false;
    }
}

// Copies the rights of single users and groups, which are not in the mode. Where the old file has none, those
// that the new one got from its folder are removed.
bool copyAccessList(int from, int to) {
    constexpr char kName[] = "system.posix_acl_access";
    char list[4096];
    const ssize_t size = ::fgetxattr(from, kName, list, sizeof list);
    if (size >= 0)
        return ::fsetxattr(to, kName, list, static_cast<std::size_t>(size), 0) == 0;
    if (errno == ERANGE)
        return false;
    return ::fremovexattr(to, kName) == 0 || errno == ENODATA || errno == EOPNOTSUPP;
}

class PosixReplacement : public Replacement {
public:
    ~PosixReplacement() override;
    FileHandle file() const override { return inPlace() ? m_old : m_new; }
    bool commit() override;
    bool begin(const std::string& path, CFile::Cause& cause);

private:
    bool inPlace() const { return m_new < 0; }
    int makeNew(mode_t mode);
    bool giveRights(const struct stat& old) const;
    bool beginInPlace(CFile::Cause& cause);
    bool rename();
    bool copyOver() const;
    bool endInPlace() const;
    void dropNew();

    std::string m_target;
    std::string m_folder;
    std::string m_temporary;
    int m_old = -1;  // locked, so that appending writers wait and then find the new file; -1: there is none
    int m_new = -1;  // locked until it is renamed; -1: the old file is written
    bool m_made = false;  // there was no old file: it was made, to be written in place
    bool m_done = false;  // committed: nothing is removed
};

// Makes and locks the new file; -1 with errno set when that fails.
int PosixReplacement::makeNew(mode_t mode) {
    constexpr int kFlags = O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
    for (int tries = 0;; ++tries) {
        int file = ::open(m_temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | kFlags, mode);
        const bool made = file >= 0;
        if (!made) {
            if (errno != EEXIST)
                return -1;
            file = ::open(m_temporary.c_str(), O_WRONLY | kFlags);
            if (file < 0 && errno != ENOENT)
                return -1;
        }
        if (file >= 0) {
            struct stat status;
            if (takeLock(file) != Lock::held && ::fstat(file, &status) == 0 && isNamed(status, m_temporary)) {
                if (made)
                    return file;
                // Without a writer: a killed program left it.
                const bool removed = ::unlink(m_temporary.c_str()) == 0;
                const int error = errno;
                ::close(file);
                errno = error;
                if (!removed)
                    return -1;
                continue;
            }
            ::close(file);
        }
        if (!waitForFile(tries)) {
            errno = ETXTBSY;
            return -1;
        }
    }
}

// Called before anything is written: who may not read the old file must not read the new one either.
bool PosixReplacement::giveRights(const struct stat& old) const {
    struct stat own;
    if (::fstat(m_new, &own) != 0)
        return false;
    if ((own.st_uid != old.st_uid || own.st_gid != old.st_gid) &&
        ::fchown(m_new, old.st_uid, old.st_gid) != 0)
        return false;
    return copyAccessList(m_old, m_new) &&
           (own.st_mode == old.st_mode || ::fchmod(m_new, old.st_mode & 07777) == 0);
}

bool PosixReplacement::beginInPlace(CFile::Cause& cause) {
    m_made = m_old < 0;
    if (m_old < 0)
        m_old = openLocked(m_target, O_WRONLY | O_CREAT | O_EXCL, cause);
    return m_old >= 0;
}

bool PosixReplacement::begin(const std::string& path, CFile::Cause& cause) {
    m_target = withoutLinks(path);
    struct stat status;
    m_old = openLocked(path, O_WRONLY, cause);
    if (m_old < 0 && cause != CFile::causeNotFound)
        return false;
    // isNamed is false for a link of /proc, which leads to an open file whatever its text names.
    if (m_old >= 0 && (::fstat(m_old, &status) != 0 || !S_ISREG(status.st_mode) || status.st_nlink != 1 ||
                       !isNamed(status, m_target)))
        return true;
    m_folder = folderOf(m_target);
    m_temporary = temporaryFor(m_target);
    m_new = makeNew(m_old < 0 ? 0666 : 0600);
    if (m_new >= 0 && (m_old < 0 || giveRights(status)))
        return true;
    const bool refused = m_new >= 0 || mayWriteInPlace(errno);
    cause = causeOf(errno);
    dropNew();
    return refused && beginInPlace(cause);
}

bool PosixReplacement::rename() {
    const auto renamed = [&](unsigned int flags) {
        return ::renameat2(AT_FDCWD, m_temporary.c_str(), AT_FDCWD, m_target.c_str(), flags) == 0;
    };
    if (m_old >= 0)
        return renamed(0);
    if (renamed(RENAME_NOREPLACE))
        return true;
    if (errno == EEXIST) {  // another program made it: its writer finishes first
        CFile::Cause cause;
        m_old = openLocked(m_target, O_WRONLY, cause);
        if (m_old < 0 && cause != CFile::causeNotFound)
            return false;
    }
    return renamed(0);
}

// Copies the contents of the new file into the old one.
bool PosixReplacement::copyOver() const {
    char piece[16384];
    for (off_t at = 0;;) {
        const ssize_t got = uninterrupted([&] { return ::pread(m_new, piece, sizeof piece, at); });
        if (got <= 0)
            return got == 0;
        for (ssize_t done = 0; done < got;) {
            const ssize_t put = uninterrupted(
                [&] { return ::write(m_old, piece + done, static_cast<std::size_t>(got - done)); });
            if (put <= 0)
                return false;
            done += put;
        }
        at += got;
    }
}

// Cuts off what is left of the old contents beyond the position, and flushes.
bool PosixReplacement::endInPlace() const {
    struct stat status;
    if (::fstat(m_old, &status) == 0 && S_ISREG(status.st_mode) &&
        !cutFile(m_old, ::lseek(m_old, 0, SEEK_CUR)))
        return false;
    return flushDescriptor(m_old);
}

bool PosixReplacement::commit() {
    bool done = false;
    if (inPlace()) {
        done = endInPlace();
    } else if (flushDescriptor(m_new)) {
        done = rename();
        if (done)
            flushFolder(m_folder);
        else if (m_old >= 0 && mayWriteInPlace(errno)) {
            const bool copied = copyOver();
            done = endInPlace() && copied;
            dropNew();  // while m_done is false: it is removed
        }
    }
    m_done = done;
    return done;
}

void PosixReplacement::dropNew() {
    if (m_new < 0)
        return;
    if (!m_done)
        ::unlink(m_temporary.c_str());
    ::close(m_new);
    m_new = -1;
}

PosixReplacement::~PosixReplacement() {
    const bool overwritten = inPlace() && !m_done && m_old >= 0 && ::lseek(m_old, 0, SEEK_CUR) > 0;
    if (overwritten)
        endInPlace();  // a part of the new contents, not mixed with the old ones
    dropNew();
    if (m_old < 0)
        return;
    if (m_made && !m_done)
        ::unlink(m_target.c_str());
    ::close(m_old);
}

}  // namespace

std::unique_ptr<Replacement> beginReplacement(const CString& path, CFile::Cause& cause) {
    auto replacement = std::make_unique<PosixReplacement>();
    if (!replacement->begin(hostPath(path), cause))
        return nullptr;
    return replacement;
}

}  // namespace system
}  // namespace fieldscan
