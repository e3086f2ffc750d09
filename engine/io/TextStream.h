#pragma once

#include <cstddef>

#include <rapidjson/rapidjson.h>
#include <rapidjson/stream.h>

#include "LineLog.h"

// RapidJSON's input stream over size bytes of memory that need not end with a zero byte: past the
// end it reads zeros, which the reader takes for the end of the text. Parsing caller memory in
// place saves copying a large document just to terminate it. The reader skips whitespace through
// skipWhitespace (see PackageReader), which notes the newlines in lines.
class TextStream {
public:
    typedef char Ch;

    TextStream(const char* text, size_t size, LineLog& lines)
        : m_cursor(text), m_begin(text), m_end(text + size), m_lines(&lines)
    {
    }

    Ch Peek() const { return RAPIDJSON_LIKELY(m_cursor != m_end) ? *m_cursor : '\0'; }
    Ch Take() { return RAPIDJSON_LIKELY(m_cursor != m_end) ? *m_cursor++ : '\0'; }
    // Returns the offset of the next byte.
    size_t Tell() const { return static_cast<size_t>(m_cursor - m_begin); }
    // Returns the end of the text, for handlers that read a token again from its first byte.
    const char* getEnd() const { return m_end; }
    // Moves past spaces, tabs, carriage returns and newlines, noting each newline.
    void skipWhitespace()
    {
        for (; m_cursor != m_end; ++m_cursor) {
            char c = *m_cursor;
            if (c == '\n')
                m_lines->note(static_cast<size_t>(m_cursor - m_begin));
            else if (c != ' ' && c != '\t' && c != '\r')
                return;
        }
    }

    // The writing half of the stream concept; only in-place parsing uses it, and this reader never does.
    Ch* PutBegin() { return nullptr; }
    void Put(Ch) {}
    void Flush() {}
    size_t PutEnd(Ch*) { return 0; }

private:
    const char* m_cursor;
    const char* m_begin;
    const char* m_end;
    LineLog* m_lines; // shared by the copies the reader makes
};

// The stream is four pointers: RapidJSON may copy it into registers while it scans a token.
template <>
struct rapidjson::StreamTraits<TextStream> {
    enum { copyOptimization = 1 };
};
