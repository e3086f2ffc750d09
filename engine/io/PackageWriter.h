#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "io/Package.h"
#include "io/mjl.h"

class AtomicFile;

// Writes a Package tree as canonical JSON text: members in tree order, two-space indent, an array
// of scalars on one line, containers holding containers one child per line, numbers in their
// shortest exact form and a final newline. The walk keeps its own stack, so the nesting limit is
// checked rather than left to the call stack, and a failure can name the member it is at.
// The text is gathered in a buffer and handed on in large pieces, to a string or straight to a file.
class PackageWriter {
public:
    // The text goes to out, replacing what it held.
    explicit PackageWriter(std::string& out);
    // The text goes to the file, which must be open.
    explicit PackageWriter(AtomicFile& file);
    PackageWriter(const PackageWriter&) = delete;
    PackageWriter& operator=(const PackageWriter&) = delete;

    // Writes the tree. Returns false with the reason in getError() when a number is not finite, a
    // string is not UTF-8 or the tree nests deeper than mjl::MAX_DEPTH (the destination then holds
    // a partial text), or when the file refuses the text (the reason is then the file's).
    bool write(const Package& root);
    // With on true, a string byte that is not part of well-formed UTF-8 is written as a \u00XX
    // escape instead of failing the write (see mjl::ESCAPE_BYTES).
    void setEscapeBytes(bool on) { m_escape_bytes = on; }
    const std::string& getError() const { return m_error; }

private:
    struct Frame {
        const Package* node;
        uint32_t next;
    };

    static bool is_scalar(const Package& node);
    bool write_value(const Package& node);
    bool write_scalar(const Package& node);
    bool write_inline_array(const Package& node);
    // Writes a row of NUMBERS on one line, as an array of scalars is.
    bool write_numbers(const Package& node);
    void write_integer(int64_t value);
    bool write_double(double value);
    bool write_string(const char* text, size_t length);
    // Writes the escape \uXXXX of a 16-bit code.
    void put_escape(unsigned code);
    void write_indent(int depth);
    // Returns room for bytes (at most BUFFER_SIZE) at m_cursor.
    char* reserve(size_t bytes)
    {
        if (static_cast<size_t>(m_end - m_cursor) < bytes)
            flush();
        return m_cursor;
    }
    void put(char c) { *reserve(1) = c, ++m_cursor; }
    void put(const char* text, size_t length);
    void flush();
    void emit(const char* data, size_t size);
    bool fail(const char* what);
    std::string member_path() const;

    static constexpr size_t BUFFER_SIZE = 64 * 1024;

    std::string* m_string = nullptr;
    AtomicFile* m_file = nullptr;
    bool m_file_failed = false;
    bool m_escape_bytes = false;
    char* m_cursor = m_buffer;
    char* m_end = m_buffer + BUFFER_SIZE;
    int m_depth = 0;
    Frame m_frames[mjl::MAX_DEPTH];
    std::string m_error;
    char m_buffer[BUFFER_SIZE];
};
