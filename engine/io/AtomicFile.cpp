#include "AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "kit/jLog.h"

namespace {

// The permissions the new file should get: the old file's, or what a plain create would give.
mode_t mode_for(const char* path)
{
    struct stat info;
    if (stat(path, &info) == 0 && S_ISREG(info.st_mode))
        return info.st_mode & 07777;
    mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

AtomicFile::AtomicFile(const char* path) : m_path(path ? path : "")
{
    size_t slash = m_path.rfind('/');
    m_folder = slash == std::string::npos ? "." : slash == 0 ? "/" : m_path.substr(0, slash);
    std::string name = slash == std::string::npos ? m_path : m_path.substr(slash + 1);
    // Hidden, beside the target, and within the system's name limit whatever the target's name.
    m_temp = m_folder + "/." + name.substr(0, 200) + ".XXXXXX";
}

AtomicFile::~AtomicFile()
{
    discard();
}

bool AtomicFile::fail(const char* what)
{
    m_reason = std::string(what) + ": " + std::strerror(errno);
    discard();
    return false;
}

void AtomicFile::discard()
{
    if (m_fd < 0)
        return;
    ::close(m_fd);
    unlink(m_temp.c_str());
    m_fd = -1;
}

bool AtomicFile::open()
{
    m_fd = mkstemp(m_temp.data());
    if (m_fd < 0)
        return fail("cannot create a temporary file beside it");
    if (fchmod(m_fd, mode_for(m_path.c_str())) != 0)
        return fail("cannot set the permissions");
    return true;
}

bool AtomicFile::write(const char* data, size_t size)
{
    while (size > 0 && m_fd >= 0) {
        ssize_t written = ::write(m_fd, data, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return fail("cannot write");
        data += written;
        size -= static_cast<size_t>(written);
    }
    return m_fd >= 0;
}

bool AtomicFile::commit()
{
    if (m_fd < 0)
        return false;
    if (fsync(m_fd) != 0)
        return fail("cannot flush to disk");
    int fd = m_fd;
    m_fd = -1; // from here the temporary file is closed, whatever close() says
    const char* failed = ::close(fd) != 0                              ? "cannot close"
                         : !may_replace()                              ? "the file is read-only"
                         : rename(m_temp.c_str(), m_path.c_str()) != 0 ? "cannot replace the file"
                                                                       : nullptr;
    if (failed) {
        m_reason = std::string(failed) + ": " + std::strerror(errno);
        unlink(m_temp.c_str());
        return false;
    }
    sync_folder();
    return true;
}

bool AtomicFile::may_replace() const
{
    // A rename needs only the folder's permission: without this check a file the user may not
    // write would be replaced all the same. The effective user is the one the system checks; any
    // other failure (a missing target, for one) is left to the rename to report.
    return faccessat(AT_FDCWD, m_path.c_str(), W_OK, AT_EACCESS) == 0 ||
           (errno != EACCES && errno != EPERM && errno != EROFS);
}

void AtomicFile::sync_folder()
{
    // The new content is already in place, so a failure here is only worth a warning.
    int folder = ::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0 || (fsync(folder) != 0 && errno != EINVAL))
        jLog::warning("%s:%s: the folder could not be synced: %s", "AtomicFile::commit", m_path.c_str(),
                      std::strerror(errno));
    if (folder >= 0)
        ::close(folder);
}
