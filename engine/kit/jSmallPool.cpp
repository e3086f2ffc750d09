#include "jSmallPool.h"

#include <pthread.h>
#include <sys/mman.h>

#include <algorithm>
#include <new>

jSmallPool* jSmallPool::get()
{
    static jSmallPool* const pool = []() -> jSmallPool* {
        // Address space only: no memory and no commit charge until a block is opened.
        const int flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
        void* range = mmap(nullptr, RESERVED + BLOCK, PROT_NONE, flags, -1, 0);
        if (range == MAP_FAILED)
            return nullptr;
        void* words = mmap(nullptr, BLOCKS * WORDS_PER_BLOCK * sizeof(uint64_t), PROT_NONE, flags, -1, 0);
        if (words == MAP_FAILED) {
            munmap(range, RESERVED + BLOCK);
            return nullptr;
        }
        const uintptr_t base = (reinterpret_cast<uintptr_t>(range) + BLOCK - 1) / BLOCK * BLOCK;
        alignas(jSmallPool) static unsigned char storage[sizeof(jSmallPool)];
        jSmallPool* made = new (storage) jSmallPool(base, static_cast<uint64_t*>(words));
        // A child forked while another thread allocates would inherit a held lock: the fork waits
        // for the pool instead, as it does for the system heap.
        pthread_atfork([] { get()->m_mutex.lock(); }, [] { get()->m_mutex.unlock(); },
                       [] { get()->m_mutex.unlock(); });
        return made;
    }();
    return pool;
}

void* jSmallPool::allocate(size_t size)
{
    const size_t cls = (std::max(size, SMALLEST) + ALIGNMENT - 1) / ALIGNMENT - 1;
    std::lock_guard<std::mutex> lock(m_mutex);
    SizeClass& c = m_classes[cls];
    if (FreeSlot* slot = c.free) {
        c.free = slot->next;
        return slot;
    }
    if (c.next == c.end && !add_block(cls))
        return nullptr;
    void* slot = reinterpret_cast<void*>(c.next);
    c.next += slot_size(cls);
    return slot;
}

void jSmallPool::release(void* ptr)
{
    const size_t block = (reinterpret_cast<uintptr_t>(ptr) - m_base) / BLOCK;
    std::lock_guard<std::mutex> lock(m_mutex);
    SizeClass& c = m_classes[m_class_of[block]];
    auto* slot = static_cast<FreeSlot*>(ptr);
    slot->next = c.free;
    c.free = slot;
}

bool jSmallPool::add_block(size_t cls)
{
    if (m_blocks_used == BLOCKS)
        return false;
    const uintptr_t start = m_base + m_blocks_used * BLOCK;
    void* block = reinterpret_cast<void*>(start);
    const size_t slot = slot_size(cls);
    // The words' pages are zero, and take memory only once the registry writes them.
    const size_t words = (BLOCK / slot * sizeof(uint64_t) + 4095) & ~size_t(4095);
    if (mprotect(m_words + m_blocks_used * WORDS_PER_BLOCK, words, PROT_READ | PROT_WRITE) != 0 ||
        mprotect(block, BLOCK, PROT_READ | PROT_WRITE) != 0)
        return false;
    // A class's first block stays in small pages, so a program that makes few objects of a size
    // does not pay a whole huge page for them.
    SizeClass& c = m_classes[cls];
    if (c.blocks > 0)
        madvise(block, BLOCK, MADV_HUGEPAGE);
    m_class_of[m_blocks_used++] = uint8_t(cls);
    ++c.blocks;
    c.next = start;
    c.end = start + BLOCK / slot * slot;
    return true;
}
