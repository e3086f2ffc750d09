#pragma once

#include <cstddef>
#include <cstdint>

class Package;

// The memory of one document tree: nodes, names, strings and children arrays are bump-allocated
// from chunks that are only given back all at once, when the root goes. A parsed document makes
// millions of small nodes; one pointer bump each keeps building the tree cheaper than parsing it.
class PackageArena {
public:
    PackageArena() = default;
    // Frees every chunk.
    ~PackageArena();
    PackageArena(const PackageArena&) = delete;
    PackageArena& operator=(const PackageArena&) = delete;

    // Returns size bytes aligned to align (a power of two); never null.
    void* allocate(size_t size, size_t align)
    {
        uintptr_t at = (reinterpret_cast<uintptr_t>(m_cursor) + align - 1) & ~(uintptr_t(align) - 1);
        if (at + size <= reinterpret_cast<uintptr_t>(m_end) && m_cursor) {
            m_cursor = reinterpret_cast<char*>(at + size);
            return reinterpret_cast<void*>(at);
        }
        return allocate_chunk(size, align);
    }
    // Returns a copy of length bytes of text followed by a zero byte, with the length (below 4 GB)
    // kept in the four bytes before it: names and strings both.
    const char* copyCounted(const char* text, size_t length);
    // Returns a new null node living in this arena.
    Package* makeNode();
    // Returns room for capacity child pointers, with a count of 0 in the four bytes before it.
    Package** makeItems(size_t capacity);
    // Returns room for a row of count nodes, with the count in the four bytes before it.
    Package* makeRow(uint32_t count);
    // Returns room for a row of count numbers (at most 32), with the count in the four bytes before
    // it, the mask of its integer entries in the four before those, and room for count 16-bit
    // distances after it.
    double* makeNumbers(uint32_t count, uint32_t integers);

    // Notes where the lines of the text the tree was read from start (once, after reading), from
    // the offsets of its count newlines in order, so that nodes keep only a byte offset.
    void indexLines(const uint64_t* newlines, size_t count);
    // Gives the 1-based line and column of a byte offset of that text.
    void locate(uint64_t offset, int& line, int& column) const;

    // Returns the bytes taken from the allocator for chunks.
    size_t getReservedBytes() const { return m_reserved; }

private:
    struct Chunk {
        Chunk* next;
        size_t size;
    };

    void* allocate_chunk(size_t size, size_t align);

    Chunk* m_chunks = nullptr;
    char* m_cursor = nullptr;
    char* m_end = nullptr;
    size_t m_next_size = 1024;
    size_t m_reserved = 0;
    // The offsets of the newlines of the text, in order.
    const uint64_t* m_newlines = nullptr;
    size_t m_newline_count = 0;
};
