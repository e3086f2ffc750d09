#pragma once

#include <cstddef>

#include <rapidjson/rapidjson.h>
#include <rapidjson/stream.h>

// RapidJSON's input stream over size bytes of memory that need not end with a zero byte: past the
// end it reads zeros, which the reader takes for the end of the text. Parsing caller memory in
// place saves copying a large document just to terminate it.
class TextStream {
public:
    typedef char Ch;

    TextStream(const char* text, size_t size) : m_cursor(text), m_begin(text), m_end(text + size) {}

    Ch Peek() const { return RAPIDJSON_LIKELY(m_cursor != m_end) ? *m_cursor : '\0'; }
    Ch Take() { return RAPIDJSON_LIKELY(m_cursor != m_end) ? *m_cursor++ : '\0'; }
    // Returns the offset of the next byte.
    size_t Tell() const { return static_cast<size_t>(m_cursor - m_begin); }

    // The writing half of the stream concept; only in-place parsing uses it, and this reader never does.
    Ch* PutBegin() { return nullptr; }
    void Put(Ch) {}
    void Flush() {}
    size_t PutEnd(Ch*) { return 0; }

private:
    const char* m_cursor;
    const char* m_begin;
    const char* m_end;
};

// The stream is three pointers: RapidJSON may copy it into registers while it scans a token.
template <>
struct rapidjson::StreamTraits<TextStream> {
    enum { copyOptimization = 1 };
};
