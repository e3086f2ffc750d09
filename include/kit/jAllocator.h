#pragma once

#include <cstddef>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

// The engine's allocator. Every object or buffer taken from it is registered by its owner with
// memAddInfo right after allocation and unregistered with memRemoveInfo right before it is freed, so
// the allocation registry always knows what is alive, who made it and where.
class jAllocator {
public:
    // Returns the process-wide allocator.
    static jAllocator* get();

    // Returns size bytes aligned for any fundamental type; logs a fatal error and aborts when the
    // system has no memory left, so callers never see null for a non-zero size. Small objects
    // come packed by size in huge pages, buffers from the system heap (the whole huge pages inside
    // one of two huge pages or more backed by huge pages); sanitizer builds take everything from the heap.
    void* localAlloc(size_t size);
    // Frees memory obtained from localAlloc; null is ignored.
    void localFree(void* ptr);

    // Returns size bytes for a large table that is read all over (as playback reads its curves),
    // page-aligned and backed by huge pages where the system offers them, so that reading it at
    // random does not miss the address translation cache as well. Tables smaller than a huge page
    // come from localAlloc. Aborts as localAlloc does.
    void* largeAlloc(size_t size);
    // largeAlloc's table with every byte zero. Tables of a huge page or more come from the system
    // zero-filled, so nothing is written until they are used.
    void* largeAllocZeroed(size_t size);
    // Frees memory obtained from largeAlloc or largeAllocZeroed with the same size; null is ignored.
    void largeFree(void* ptr, size_t size);
};

// Registers a live allocation. isBuffer is true for raw buffers, false for objects. file, tag and
// every string given here must outlive the allocation (they are string literals in practice).
// Registering a pointer that is already registered logs an error and keeps the first record.
void memAddInfo(void* ptr, bool isBuffer, const char* file, int line, const char* tag, size_t size);
// Unregisters an allocation. Unregistering a pointer that is not registered logs an error naming
// the caller's file, line and tag, and changes nothing.
void memRemoveInfo(void* ptr, const char* file, int line, const char* tag);

// Allocates a T through the engine allocator, constructs it with args and registers it as an object.
template <class T, class... Args>
T* jNew(const char* file, int line, const char* tag, Args&&... args)
{
    void* mem = jAllocator::get()->localAlloc(sizeof(T));
    T* obj = new (mem) T(std::forward<Args>(args)...);
    memAddInfo(obj, false, file, line, tag, sizeof(T));
    return obj;
}

// Unregisters, destroys and frees an object made by jNew; null is ignored. A base-class pointer is
// accepted when T has a virtual destructor.
template <class T>
void jDelete(T* obj, const char* file, int line, const char* tag)
{
    if (!obj)
        return;
    void* whole = obj;
    if constexpr (std::is_polymorphic_v<T>)
        whole = dynamic_cast<void*>(obj);
    memRemoveInfo(whole, file, line, tag);
    obj->~T();
    jAllocator::get()->localFree(whole);
}
