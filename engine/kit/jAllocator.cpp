#include "kit/jAllocator.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "jSmallPool.h"
#include "kit/jLog.h"

jAllocator* jAllocator::get()
{
    static jAllocator allocator;
    return &allocator;
}

namespace {

const size_t HUGE_PAGE = size_t(2) << 20;

size_t hugeRounded(size_t size)
{
    return (size + HUGE_PAGE - 1) / HUGE_PAGE * HUGE_PAGE;
}

// Takes size bytes from the system heap. A buffer of two huge pages or more (the keys of a long
// curve, a parsed document's nodes) is read all over: the whole huge pages inside it are asked to
// be backed by huge pages, as largeAlloc's tables are.
void* heapAlloc(size_t size)
{
    void* ptr = std::malloc(size ? size : 1);
    if (ptr && size >= 2 * HUGE_PAGE) {
        const auto start = reinterpret_cast<uintptr_t>(ptr);
        const uintptr_t first = hugeRounded(start);
        const uintptr_t last = (start + size) / HUGE_PAGE * HUGE_PAGE;
        madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
    }
    return ptr;
}

} // namespace

void* jAllocator::localAlloc(size_t size)
{
    jSmallPool* pool = size > 0 && size <= jSmallPool::LARGEST ? jSmallPool::active() : nullptr;
    void* ptr = pool ? pool->allocate(size) : nullptr;
    if (!ptr)
        ptr = heapAlloc(size);
    if (!ptr) {
        jLog::fatal("%s:out of memory allocating %zu bytes", "jAllocator::localAlloc", size);
        std::abort();
    }
    return ptr;
}

void jAllocator::localFree(void* ptr)
{
    jSmallPool* pool = jSmallPool::active();
    if (pool && pool->owns(ptr))
        pool->release(ptr);
    else
        std::free(ptr);
}

void* jAllocator::largeAlloc(size_t size)
{
    if (size < HUGE_PAGE)
        return localAlloc(size);
    // Map a huge page more than needed, then give back what lies outside the aligned part.
    size_t rounded = hugeRounded(size);
    void* mapped = mmap(nullptr, rounded + HUGE_PAGE, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
        jLog::fatal("%s:out of memory allocating %zu bytes", "jAllocator::largeAlloc", size);
        std::abort();
    }
    auto start = reinterpret_cast<uintptr_t>(mapped);
    uintptr_t aligned = (start + HUGE_PAGE - 1) / HUGE_PAGE * HUGE_PAGE;
    if (aligned > start)
        munmap(mapped, aligned - start);
    if (size_t tail = start + HUGE_PAGE - aligned)
        munmap(reinterpret_cast<void*>(aligned + rounded), tail);
    madvise(reinterpret_cast<void*>(aligned), rounded, MADV_HUGEPAGE);
    return reinterpret_cast<void*>(aligned);
}

void* jAllocator::largeAllocZeroed(size_t size)
{
    void* table = largeAlloc(size);
    if (size < HUGE_PAGE)
        std::memset(table, 0, size); // a fresh mapping is zero already
    return table;
}

void jAllocator::largeFree(void* ptr, size_t size)
{
    if (size < HUGE_PAGE)
        localFree(ptr);
    else if (ptr)
        munmap(ptr, hugeRounded(size));
}
