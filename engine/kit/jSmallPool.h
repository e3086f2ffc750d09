#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>

// The allocator's home for small objects (up to LARGEST bytes). A large track is millions of keys,
// marks and records of a few dozen bytes each: from the system heap every one costs a header and a
// lock, and walking them misses the address translation cache at nearly every object. Here objects
// of one size class (32 bytes, then 16-byte steps) lie packed in blocks of 2 MiB, backed by huge
// pages once the class has filled its first block; an allocation pops the class's free list or
// bumps its block.
// Freed memory goes back to its class's list and is reused there; it is not returned to the system.
//
// The blocks are carved, in order, from one range of address space reserved up front without any
// memory behind it, so whether a pointer came from the pool is a subtraction and a compare.
// Beside every block lies a word per slot for the allocation registry, in a second such range: a
// registered pool object is filed there by its slot's index, with no search and no table to grow.
class jSmallPool {
public:
    static constexpr size_t LARGEST = 256;
    static constexpr size_t ALIGNMENT = 16;
    // The least a slot takes. The allocation registry places an allocation's entry by its address
    // in 32-byte steps, as the system heap spaces its chunks: two pool objects never share a step.
    static constexpr size_t SMALLEST = 32;

    // The process-wide pool, never destroyed (objects may be freed while the process exits); null
    // when the system refused the address range, and then every allocation comes from the heap.
    static jSmallPool* get();
    // The pool the allocator takes small objects from, or null when everything comes from the heap:
    // builds checked by the sanitizers take it all from there, so that they see every object's
    // bounds and lifetime.
    static jSmallPool* active()
    {
#ifdef KUVO_SYSTEM_HEAP
        return nullptr;
#else
        return get();
#endif
    }

    // Returns size bytes (1 to LARGEST, at least SMALLEST taken), aligned to ALIGNMENT; null when
    // the reserved range is used up or the system refuses memory for a new block (the caller then
    // takes the heap).
    void* allocate(size_t size);
    // Returns memory from allocate to its class. ptr must come from this pool.
    void release(void* ptr);
    // True when ptr lies in the pool's range, i.e. came from allocate.
    bool owns(const void* ptr) const { return reinterpret_cast<uintptr_t>(ptr) - m_base < RESERVED; }

    // Returns the registry's word for the slot that starts at ptr (zero until the registry writes
    // it), or null when ptr is not the start of a slot of this pool. The registry keeps the words
    // under its own lock; the pool never reads them.
    uint64_t* registryWord(const void* ptr) const
    {
        const uintptr_t offset = reinterpret_cast<uintptr_t>(ptr) - m_base;
        if (offset >= RESERVED)
            return nullptr;
        const size_t block = offset / BLOCK;
        const size_t slot = slot_size(m_class_of[block]);
        const size_t within = offset % BLOCK;
        if (within % slot != 0)
            return nullptr;
        return m_words + block * WORDS_PER_BLOCK + within / slot;
    }
    // Calls visit(word) for every registry word that is not zero, block by block.
    template <class Visit>
    void forEachRegistryWord(Visit visit)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        for (size_t block = 0; block < m_blocks_used; ++block) {
            const uint64_t* words = m_words + block * WORDS_PER_BLOCK;
            for (size_t i = 0, slots = BLOCK / slot_size(m_class_of[block]); i < slots; ++i)
                if (words[i])
                    visit(words[i]);
        }
    }

private:
    static constexpr size_t BLOCK = size_t(2) << 20;
    static constexpr size_t RESERVED = size_t(64) << 30;
    static constexpr size_t BLOCKS = RESERVED / BLOCK;
    static constexpr size_t CLASSES = LARGEST / ALIGNMENT;
    // Room for a word per slot of the smallest class; a block of a larger class uses the start.
    static constexpr size_t WORDS_PER_BLOCK = BLOCK / SMALLEST;

    struct FreeSlot {
        FreeSlot* next;
    };
    struct SizeClass {
        FreeSlot* free = nullptr;
        uintptr_t next = 0; // the next unused slot of the class's newest block
        uintptr_t end = 0;  // the end of that block
        size_t blocks = 0;
    };

    jSmallPool(uintptr_t base, uint64_t* words) : m_base(base), m_words(words) {}
    // The bytes of each slot of size class cls.
    static size_t slot_size(size_t cls) { return (cls + 1) * ALIGNMENT; }
    // Gives the class a fresh block; false when there is none.
    bool add_block(size_t cls);

    std::mutex m_mutex;
    const uintptr_t m_base;
    uint64_t* const m_words; // the registry's words, WORDS_PER_BLOCK for each block
    size_t m_blocks_used = 0;
    SizeClass m_classes[CLASSES];
    uint8_t m_class_of[BLOCKS] = {}; // the class of every block handed out
};
