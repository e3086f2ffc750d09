#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "io/Package.h"
#include "io/mjl.h"

// Writes a Package tree as canonical JSON text: members in tree order, two-space indent, an array
// of scalars on one line, containers holding containers one child per line, numbers in their
// shortest exact form and a final newline. The walk keeps its own stack, so the nesting limit is
// checked rather than left to the call stack, and a failure can name the member it is at.
class PackageWriter {
public:
    // The text goes to out, replacing what it held.
    explicit PackageWriter(std::string& out);
    PackageWriter(const PackageWriter&) = delete;
    PackageWriter& operator=(const PackageWriter&) = delete;

    // Writes the tree. Returns false with the reason in getError() when a number is not finite, a
    // string is not UTF-8 or the tree nests deeper than mjl::MAX_DEPTH; out then holds a partial
    // text.
    bool write(const Package& root);
    const std::string& getError() const { return m_error; }

private:
    struct Frame {
        const Package* node;
        uint32_t next;
    };

    bool write_value(const Package& node);
    bool write_scalar(const Package& node);
    bool write_inline_array(const Package& node);
    bool write_double(double value);
    bool write_string(const char* text, size_t length);
    void write_indent(int depth);
    char* reserve(size_t bytes)
    {
        if (static_cast<size_t>(m_end - m_cursor) < bytes)
            grow(bytes);
        return m_cursor;
    }
    void grow(size_t bytes);
    void put(char c) { *reserve(1) = c, ++m_cursor; }
    void put(const char* text, size_t length);
    bool fail(const char* what);
    std::string member_path() const;

    std::string& m_out;
    char* m_cursor = nullptr;
    char* m_end = nullptr;
    int m_depth = 0;
    Frame m_frames[mjl::MAX_DEPTH];
    std::string m_error;
};
