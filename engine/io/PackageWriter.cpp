#include "PackageWriter.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "AtomicFile.h"

namespace {

// Returns the length of the UTF-8 sequence starting at p (a byte of 0x80 or more), or 0 when it is
// not well formed (RFC 3629: no overlong forms, nothing beyond U+10FFFF). Encoded UTF-16 surrogates
// are accepted here; the caller decides what to do with them.
int utf8_length(const unsigned char* p, const unsigned char* end)
{
    unsigned lead = p[0];
    int length = 0;
    unsigned low = 0x80;
    unsigned high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (end - p < length || p[1] < low || p[1] > high)
        return 0;
    for (int k = 2; k < length; ++k) {
        if (p[k] < 0x80 || p[k] > 0xBF)
            return 0;
    }
    return length;
}

const char HEX[] = "0123456789abcdef";

} // namespace

PackageWriter::PackageWriter(std::string& out) : m_string(&out)
{
    m_string->clear();
}

PackageWriter::PackageWriter(AtomicFile& file) : m_file(&file) {}

bool PackageWriter::is_scalar(const Package& node)
{
    return node.m_type != Package::ARRAY && node.m_type != Package::OBJECT && node.m_type != Package::NUMBERS;
}

void PackageWriter::emit(const char* data, size_t size)
{
    if (m_string) {
        m_string->append(data, size);
    } else if (!m_file_failed && !m_file->write(data, size)) {
        m_file_failed = true;
        m_error = m_file->getReason();
    }
}

void PackageWriter::flush()
{
    emit(m_buffer, static_cast<size_t>(m_cursor - m_buffer));
    m_cursor = m_buffer;
}

void PackageWriter::put(const char* text, size_t length)
{
    if (static_cast<size_t>(m_end - m_cursor) < length) {
        flush();
        if (length > BUFFER_SIZE / 2) { // a long string goes on as it is
            emit(text, length);
            return;
        }
    }
    std::memcpy(m_cursor, text, length);
    m_cursor += length;
}

void PackageWriter::write_indent(int depth)
{
    size_t width = static_cast<size_t>(depth) * 2;
    std::memset(reserve(width), ' ', width);
    m_cursor += width;
}

bool PackageWriter::write(const Package& root)
{
    bool written = write_value(root);
    while (written && !m_file_failed && m_depth > 0) {
        Frame& frame = m_frames[m_depth - 1];
        const Package& node = *frame.node;
        if (frame.next < node.count()) {
            const Package& child = *node.child_at(frame.next++);
            put(frame.next == 1 ? "\n" : ",\n", frame.next == 1 ? 1 : 2);
            write_indent(m_depth);
            if (node.m_type == Package::OBJECT) {
                if (!write_string(child.getName(), child.name_length()))
                    return false;
                put(": ", 2);
            }
            written = write_value(child);
        } else {
            put('\n');
            write_indent(m_depth - 1);
            put(node.m_type == Package::OBJECT ? '}' : ']');
            --m_depth;
        }
    }
    if (!written)
        return false;
    put('\n');
    flush();
    return !m_file_failed;
}

bool PackageWriter::write_value(const Package& node)
{
    if (is_scalar(node))
        return write_scalar(node);
    if (node.m_type == Package::NUMBERS)
        return write_numbers(node);
    if (m_depth == mjl::MAX_DEPTH)
        return fail("nests deeper than 512 levels");
    bool object = node.m_type == Package::OBJECT;
    if (node.count() == 0) {
        put(object ? "{}" : "[]", 2);
        return true;
    }
    if (!object) {
        bool flat = true;
        for (uint32_t i = 0; i < node.count() && flat; ++i)
            flat = is_scalar(*node.child_at(i));
        if (flat)
            return write_inline_array(node);
    }
    put(object ? '{' : '[');
    m_frames[m_depth++] = {&node, 0};
    return true;
}

bool PackageWriter::write_inline_array(const Package& node)
{
    Frame& frame = m_frames[m_depth++];
    frame = {&node, 0};
    put('[');
    for (uint32_t i = 0; i < node.count(); ++i) {
        if (i)
            put(", ", 2);
        frame.next = i + 1;
        if (!write_scalar(*node.child_at(i)))
            return false;
    }
    put(']');
    --m_depth;
    return true;
}

bool PackageWriter::write_numbers(const Package& node)
{
    put('[');
    for (int i = 0; i < node.getNumNumbers(); ++i) {
        if (i)
            put(", ", 2);
        if (node.isIntegerNumber(i))
            write_integer(static_cast<int64_t>(node.getNumber(i)));
        else if (!write_double(node.getNumber(i)))
            return false;
    }
    put(']');
    return true;
}

void PackageWriter::write_integer(int64_t value)
{
    char* start = reserve(24); // before m_end is read: reserving may move the buffer
    m_cursor = std::to_chars(start, m_end, value).ptr;
}

bool PackageWriter::write_scalar(const Package& node)
{
    switch (node.getType()) {
    case Package::BOOL:
        node.m_value.b ? put("true", 4) : put("false", 5);
        return true;
    case Package::INT:
        write_integer(node.m_value.i);
        return true;
    case Package::DOUBLE:
        return write_double(node.m_value.d);
    case Package::STRING:
        return write_string(node.m_value.s, node.count());
    default:
        put("null", 4);
        return true;
    }
}

bool PackageWriter::write_double(double value)
{
    if (!std::isfinite(value))
        return fail("is not a finite number");
    char* start = reserve(32);
    char* stop = std::to_chars(start, m_end, value).ptr;
    m_cursor = stop;
    // Without a '.' or an exponent the number would read back as an integer.
    for (char* p = start; p < stop; ++p) {
        if (*p == '.' || *p == 'e')
            return true;
    }
    put(".0", 2);
    return true;
}

bool PackageWriter::write_string(const char* text, size_t length)
{
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    const auto* end = p + length;
    put('"');
    while (p < end) {
        const unsigned char* run = p;
        while (p < end && *p >= 0x20 && *p < 0x80 && *p != '"' && *p != '\\')
            ++p;
        put(reinterpret_cast<const char*>(run), static_cast<size_t>(p - run));
        if (p == end)
            break;
        unsigned c = *p;
        if (c >= 0x80) {
            int n = utf8_length(p, end);
            if (n == 0 || (c == 0xED && p[1] >= 0xA0 && p[1] < 0xB0)) {
                if (!m_escape_bytes)
                    return fail("holds a string that is not valid UTF-8");
                put_escape(c);
                ++p;
                continue;
            }
            if (c == 0xED && p[1] >= 0xB0) {
                // A lone low surrogate, which the reader accepts from a \u escape: write it back
                // as one so that it reads back to the same bytes.
                put_escape(0xD000 | (p[1] & 0x3Fu) << 6 | (p[2] & 0x3Fu));
            } else {
                put(reinterpret_cast<const char*>(p), static_cast<size_t>(n));
            }
            p += n;
            continue;
        }
        ++p;
        char* out = reserve(6);
        out[0] = '\\';
        switch (c) {
        case '"': out[1] = '"'; break;
        case '\\': out[1] = '\\'; break;
        case '\b': out[1] = 'b'; break;
        case '\f': out[1] = 'f'; break;
        case '\n': out[1] = 'n'; break;
        case '\r': out[1] = 'r'; break;
        case '\t': out[1] = 't'; break;
        default:
            put_escape(c);
            continue;
        }
        m_cursor += 2;
    }
    put('"');
    return true;
}

void PackageWriter::put_escape(unsigned code)
{
    char* out = reserve(6);
    out[0] = '\\';
    out[1] = 'u';
    for (int k = 0; k < 4; ++k)
        out[2 + k] = HEX[code >> (12 - 4 * k) & 0xF];
    m_cursor += 6;
}

std::string PackageWriter::member_path() const
{
    std::string path;
    for (int i = 0; i < m_depth; ++i) {
        const Package& node = *m_frames[i].node;
        uint32_t index = m_frames[i].next - 1;
        if (m_frames[i].next == 0)
            break; // the container itself is at fault
        if (node.m_type == Package::OBJECT) {
            const Package& child = *node.child_at(index);
            if (!path.empty())
                path += '.';
            path.append(child.getName(), child.name_length());
        } else {
            path += '[' + std::to_string(index) + ']';
        }
    }
    return path.empty() ? "the root" : path;
}

bool PackageWriter::fail(const char* what)
{
    m_error = member_path() + " " + what;
    return false;
}
