#include "AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "kit/jLog.h"

namespace {

// Splits path into its folder ("." when there is none) and its name.
void split(const std::string& path, std::string& folder, std::string& name)
{
    size_t slash = path.rfind('/');
    folder = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    name = slash == std::string::npos ? path : path.substr(slash + 1);
}

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

bool write_all(int fd, const char* data, size_t size)
{
    while (size > 0) {
        ssize_t written = ::write(fd, data, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

bool failed(std::string& reason, const char* what)
{
    reason = std::string(what) + ": " + std::strerror(errno);
    return false;
}

// Makes the rename itself durable. The content is already in place, so a failure here is only
// worth a warning.
void sync_folder(const std::string& folder, const char* path)
{
    int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0 || (fsync(fd) != 0 && errno != EINVAL))
        jLog::warning("%s:%s: the folder could not be synced: %s", "AtomicFile::replace", path, std::strerror(errno));
    if (fd >= 0)
        ::close(fd);
}

} // namespace

bool AtomicFile::replace(const char* path, const char* data, size_t size, std::string& reason)
{
    std::string folder;
    std::string name;
    split(path, folder, name);
    // Keep the temporary name within the system's limit whatever the target's name.
    std::string temp = folder + "/." + name.substr(0, 200) + ".XXXXXX";
    int fd = mkstemp(temp.data());
    if (fd < 0)
        return failed(reason, "cannot create a temporary file beside it");
    bool ok = (fchmod(fd, mode_for(path)) == 0 || failed(reason, "cannot set the permissions"))
              && (write_all(fd, data, size) || failed(reason, "cannot write"))
              && (fsync(fd) == 0 || failed(reason, "cannot flush to disk"));
    if (::close(fd) != 0 && ok)
        ok = failed(reason, "cannot close");
    if (ok && rename(temp.c_str(), path) != 0)
        ok = failed(reason, "cannot replace the file");
    if (!ok) {
        unlink(temp.c_str());
        return false;
    }
    sync_folder(folder, path);
    return true;
}
