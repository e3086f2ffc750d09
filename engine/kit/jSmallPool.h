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

    // Returns size bytes (1 to LARGEST, at least SMALLEST taken), aligned to ALIGNMENT; null when
    // the reserved range is used up or the system refuses memory for a new block (the caller then
    // takes the heap).
    void* allocate(size_t size);
    // Returns memory from allocate to its class. ptr must come from this pool.
    void release(void* ptr);
    // True when ptr lies in the pool's range, i.e. came from allocate.
    bool owns(const void* ptr) const { return reinterpret_cast<uintptr_t>(ptr) - m_base < RESERVED; }

private:
    static constexpr size_t BLOCK = size_t(2) << 20;
    static constexpr size_t RESERVED = size_t(64) << 30;
    static constexpr size_t BLOCKS = RESERVED / BLOCK;
    static constexpr size_t CLASSES = LARGEST / ALIGNMENT;

    struct FreeSlot {
        FreeSlot* next;
    };
    struct SizeClass {
        FreeSlot* free = nullptr;
        uintptr_t next = 0; // the next unused slot of the class's newest block
        uintptr_t end = 0;  // the end of that block
        size_t blocks = 0;
    };

    explicit jSmallPool(uintptr_t base) : m_base(base) {}
    // Gives the class a fresh block; false when there is none.
    bool add_block(size_t cls);

    std::mutex m_mutex;
    const uintptr_t m_base;
    size_t m_blocks_used = 0;
    SizeClass m_classes[CLASSES];
    uint8_t m_class_of[BLOCKS] = {}; // the class of every block handed out
};
