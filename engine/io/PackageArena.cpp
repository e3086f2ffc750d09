#include "PackageArena.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <sys/mman.h>

#include "io/Package.h"
#include "kit/jAllocator.h"

namespace {

// Chunks double from 1 KB so that small trees stay small, up to 8 MB: a large document's chunks
// are then backed by huge pages (see jAllocator::localAlloc) and it wastes little at the end of its
// last chunk.
constexpr size_t MAX_CHUNK_SIZE = size_t(8) << 20;

// Large chunks are filled from start to end anyway: asking the system for all their pages in one
// call costs much less than taking a page fault for each.
void populate(void* chunk, size_t size)
{
#ifdef MADV_POPULATE_WRITE
    const uintptr_t page = 4096;
    if (size < (size_t(256) << 10))
        return;
    uintptr_t from = (reinterpret_cast<uintptr_t>(chunk) + page - 1) & ~(page - 1);
    uintptr_t to = (reinterpret_cast<uintptr_t>(chunk) + size) & ~(page - 1);
    madvise(reinterpret_cast<void*>(from), to - from, MADV_POPULATE_WRITE); // only a hint: failure is harmless
#else
    (void)chunk;
    (void)size;
#endif
}

} // namespace

PackageArena::~PackageArena()
{
    while (m_chunks) {
        Chunk* next = m_chunks->next;
        memRemoveInfo(m_chunks, "engine/io/PackageArena", __LINE__, "PackageArena::~PackageArena");
        jAllocator::get()->localFree(m_chunks);
        m_chunks = next;
    }
}

void* PackageArena::allocate_chunk(size_t size, size_t align)
{
    size_t needed = sizeof(Chunk) + size + align;
    size_t chunk_size = m_next_size > needed ? m_next_size : needed;
    if (m_next_size < MAX_CHUNK_SIZE)
        m_next_size *= 2;
    auto* chunk = static_cast<Chunk*>(jAllocator::get()->localAlloc(chunk_size));
    populate(chunk, chunk_size);
    memAddInfo(chunk, true, "engine/io/PackageArena", __LINE__, "PackageArena::allocate", chunk_size);
    chunk->next = m_chunks;
    chunk->size = chunk_size;
    m_chunks = chunk;
    m_reserved += chunk_size;
    m_cursor = reinterpret_cast<char*>(chunk + 1);
    m_end = reinterpret_cast<char*>(chunk) + chunk_size;
    return allocate(size, align);
}

const char* PackageArena::copyCounted(const char* text, size_t length)
{
    auto* prefix = static_cast<uint32_t*>(allocate(sizeof(uint32_t) + length + 1, alignof(uint32_t)));
    *prefix = static_cast<uint32_t>(length);
    auto* copy = reinterpret_cast<char*>(prefix + 1);
    if (length)
        std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

void PackageArena::indexLines(const uint64_t* newlines, size_t count)
{
    if (count == 0)
        return;
    auto* copy = static_cast<uint64_t*>(allocate(count * sizeof(uint64_t), alignof(uint64_t)));
    std::memcpy(copy, newlines, count * sizeof(uint64_t));
    m_newlines = copy;
    m_newline_count = count;
}

void PackageArena::locate(uint64_t offset, int& line, int& column) const
{
    const uint64_t* after = std::upper_bound(m_newlines, m_newlines + m_newline_count, offset);
    size_t before = static_cast<size_t>(after - m_newlines);
    uint64_t line_start = before ? m_newlines[before - 1] + 1 : 0;
    line = static_cast<int>(std::min<uint64_t>(before + 1, INT_MAX));
    column = static_cast<int>(std::min<uint64_t>(offset - line_start + 1, INT_MAX));
}

Package* PackageArena::makeNode()
{
    return new (allocate(sizeof(Package), alignof(Package))) Package(this);
}

// Children come after eight bytes, so that pointers and nodes stay aligned; the count takes the
// last four of them.
Package** PackageArena::makeItems(size_t capacity)
{
    auto* header = static_cast<uint64_t*>(allocate(sizeof(uint64_t) + capacity * sizeof(Package*), alignof(uint64_t)));
    *header = 0;
    return reinterpret_cast<Package**>(header + 1);
}

double* PackageArena::makeNumbers(uint32_t count, uint32_t integers)
{
    size_t size = sizeof(uint64_t) + count * (sizeof(double) + sizeof(uint16_t));
    auto* header = static_cast<uint32_t*>(allocate(size, alignof(double)));
    header[0] = integers;
    header[1] = count;
    return reinterpret_cast<double*>(header + 2);
}

Package* PackageArena::makeRow(uint32_t count)
{
    static_assert(alignof(Package) <= alignof(uint64_t), "the row follows an eight-byte header");
    auto* header = static_cast<uint64_t*>(allocate(sizeof(uint64_t) + count * sizeof(Package), alignof(uint64_t)));
    reinterpret_cast<uint32_t*>(header + 1)[-1] = count;
    return reinterpret_cast<Package*>(header + 1);
}
