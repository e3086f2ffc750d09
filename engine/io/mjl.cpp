#include "io/mjl.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "AtomicFile.h"
#include "PackageReader.h"
#include "PackageWriter.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

namespace {

// The bytes of a file while it is parsed.
class TextBuffer {
public:
    explicit TextBuffer(size_t size) : m_size(size)
    {
        m_text = static_cast<char*>(jAllocator::get()->localAlloc(size));
        memAddInfo(m_text, true, "engine/io/mjl", __LINE__, "mjl::open", size);
    }
    ~TextBuffer()
    {
        memRemoveInfo(m_text, "engine/io/mjl", __LINE__, "mjl::open");
        jAllocator::get()->localFree(m_text);
    }
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    char* data() { return m_text; }
    size_t size() const { return m_size; }
    void shrink(size_t size) { m_size = size; }

private:
    char* m_text;
    size_t m_size;
};

// Reads the whole file into text; returns false with the system's reason.
bool read_file(int fd, TextBuffer& text, std::string& reason)
{
    size_t done = 0;
    while (done < text.size()) {
        ssize_t got = ::read(fd, text.data() + done, text.size() - done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            reason = std::string("cannot read: ") + std::strerror(errno);
            return false;
        }
        if (got == 0)
            break; // the file shrank since it was measured
        done += static_cast<size_t>(got);
    }
    text.shrink(done);
    return true;
}

} // namespace

mjl::mjl() = default;

mjl::~mjl()
{
    close();
}

void mjl::close()
{
    jDelete(m_root, "engine/io/mjl", __LINE__, "mjl::close");
    m_root = nullptr;
}

bool mjl::open(const char* path, int flags, ElementListener* listener)
{
    close();
    if (!path)
        path = "";
    std::string reason;
    int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    struct stat info;
    if (fd < 0 || fstat(fd, &info) != 0) {
        reason = std::string("cannot open: ") + std::strerror(errno);
    } else if (S_ISDIR(info.st_mode)) {
        reason = "cannot open: it is a folder";
    } else {
        TextBuffer text(static_cast<size_t>(info.st_size));
        if (read_file(fd, text, reason)) {
            ::close(fd);
            return read_text(text.data(), text.size(), path, "mjl::open", flags, listener);
        }
    }
    if (fd >= 0)
        ::close(fd);
    m_error = std::string(path) + ": " + reason;
    jLog::error("%s:%s", "mjl::open", m_error.c_str());
    return false;
}

bool mjl::parse(const char* text, size_t size, const char* name, int flags, ElementListener* listener)
{
    close();
    return read_text(text ? text : "", text ? size : 0, name ? name : "<memory>", "mjl::parse", flags, listener);
}

bool mjl::read_text(const char* text, size_t size, const char* name, const char* caller, int flags,
                    ElementListener* listener)
{
    m_root = jNew<Package>("engine/io/mjl", __LINE__, "mjl::read_text");
    if (PackageReader::read(text, size, name, *m_root, m_error, (flags & NUMBER_ROWS) != 0, listener))
        return true;
    close();
    jLog::error("%s:%s", caller, m_error.c_str());
    return false;
}

Package* mjl::getRoot()
{
    return m_root;
}

bool mjl::write(const Package* root, std::string& out, std::string* error, int flags)
{
    Package null_root;
    PackageWriter writer(out);
    writer.setEscapeBytes((flags & ESCAPE_BYTES) != 0);
    if (writer.write(root ? *root : null_root))
        return true;
    if (error)
        *error = writer.getError();
    return false;
}

bool mjl::save(const char* path, const Package* root, int, std::string* error)
{
    Package null_root;
    AtomicFile file(path);
    std::string reason;
    if (!file.open()) {
        reason = file.getReason();
    } else {
        PackageWriter writer(file);
        if (!writer.write(root ? *root : null_root))
            reason = file.getReason().empty() ? "cannot write the document: " + writer.getError() : file.getReason();
        else if (!file.commit())
            reason = file.getReason();
    }
    if (reason.empty())
        return true;
    std::string message = std::string(path ? path : "") + ": " + reason;
    jLog::error("%s:%s", "mjl::save", message.c_str());
    if (error)
        *error = message;
    return false;
}
