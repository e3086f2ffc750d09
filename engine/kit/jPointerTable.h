#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "kit/jAllocator.h"

// A hash table from non-null pointers to values, kept in one flat array (open addressing with
// linear probing, at most three quarters full, backward-shift deletion). The allocation registry
// holds millions of entries while a large track is open; this keeps an insert or erase to a few
// probes in one array, with no allocation per entry. The array is one of the allocator's zeroed
// large tables (huge pages where the system offers them): growing writes only the entries it moves.
template <class Value>
class jPointerTable {
    static_assert(std::is_trivially_copyable_v<Value>, "entries move as bytes and start as zero bytes");

public:
    jPointerTable() = default;
    ~jPointerTable() { jAllocator::get()->largeFree(m_slots, m_capacity * sizeof(Slot)); }
    jPointerTable(const jPointerTable&) = delete;
    jPointerTable& operator=(const jPointerTable&) = delete;

    // Adds key with value; false (nothing changed) when key is already there.
    bool insert(void* key, const Value& value)
    {
        if ((m_count + 1) * 4 > m_capacity * 3)
            grow();
        size_t i = home(key);
        while (m_slots[i].key) {
            if (m_slots[i].key == key)
                return false;
            i = (i + 1) & mask();
        }
        m_slots[i].key = key;
        m_slots[i].value = value;
        ++m_count;
        return true;
    }

    // Removes key; false when it is not there.
    bool erase(void* key)
    {
        if (m_capacity == 0)
            return false;
        size_t i = home(key);
        while (m_slots[i].key != key) {
            if (!m_slots[i].key)
                return false;
            i = (i + 1) & mask();
        }
        // Pull later entries of the run back over the hole, so lookups never meet a gap too early.
        for (size_t j = (i + 1) & mask(); m_slots[j].key; j = (j + 1) & mask()) {
            const size_t k = home(m_slots[j].key);
            const bool stays = i <= j ? (i < k && k <= j) : (i < k || k <= j);
            if (!stays) {
                m_slots[i] = m_slots[j];
                i = j;
            }
        }
        m_slots[i].key = nullptr;
        --m_count;
        return true;
    }

    size_t size() const { return m_count; }

    // Calls f(key, value) for every entry, in no particular order.
    template <class F>
    void forEach(F&& f) const
    {
        for (size_t i = 0; i < m_capacity; ++i)
            if (m_slots[i].key)
                f(m_slots[i].key, m_slots[i].value);
    }

private:
    struct Slot {
        void* key;
        Value value;
    };

    size_t mask() const { return m_capacity - 1; }

    // Allocations made one after another lie close together in memory. Entries of neighbouring
    // addresses (in 32-byte steps, the heap's and the allocator pool's spacing) share a group of
    // GROUP slots, so registering or freeing a run of objects stays within a cache line or two;
    // the groups themselves are scattered by a multiplicative hash, so that densely packed objects
    // of many blocks never pile up into one long run of probes.
    static constexpr int GROUP_BITS = 3;
    size_t home(const void* key) const
    {
        const uint64_t a = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(key)) >> 5;
        const uint64_t group = ((a >> GROUP_BITS) * 0x9E3779B97F4A7C15ull) >> 32;
        return static_cast<size_t>(group << GROUP_BITS | (a & ((1u << GROUP_BITS) - 1))) & mask();
    }

    void grow()
    {
        Slot* old = m_slots;
        const size_t oldCapacity = m_capacity;
        m_capacity = oldCapacity ? oldCapacity * 2 : 1024;
        m_slots = static_cast<Slot*>(jAllocator::get()->largeAllocZeroed(m_capacity * sizeof(Slot)));
        m_count = 0;
        for (size_t i = 0; i < oldCapacity; ++i)
            if (old[i].key)
                insert(old[i].key, old[i].value);
        jAllocator::get()->largeFree(old, oldCapacity * sizeof(Slot));
    }

    Slot* m_slots = nullptr;
    size_t m_capacity = 0;
    size_t m_count = 0;
};
