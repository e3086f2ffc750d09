#pragma once

#include <cstddef>
#include <cstdint>

// The offsets of the newlines a reader meets in a text, in order. Outside strings, where a valid
// document cannot hold a raw newline, every newline is whitespace between tokens: noting them as
// the reader skips it spares reading a large text a second time to find where its lines start.
class LineLog {
public:
    LineLog() = default;
    // Frees the offsets.
    ~LineLog();
    LineLog(const LineLog&) = delete;
    LineLog& operator=(const LineLog&) = delete;

    // Notes a newline at offset, after those already noted.
    void note(size_t offset)
    {
        if (m_count == m_capacity)
            grow();
        m_offsets[m_count++] = offset;
    }
    // Returns the offsets noted so far, in order.
    const uint64_t* offsets() const { return m_offsets; }
    size_t count() const { return m_count; }

private:
    void grow();

    uint64_t* m_offsets = nullptr;
    size_t m_count = 0;
    size_t m_capacity = 0;
};
