#include "kit/jAllocator.h"

#include <cstdlib>

#include "kit/jLog.h"

jAllocator* jAllocator::get()
{
    static jAllocator allocator;
    return &allocator;
}

void* jAllocator::localAlloc(size_t size)
{
    void* ptr = std::malloc(size ? size : 1);
    if (!ptr) {
        jLog::fatal("%s:out of memory allocating %zu bytes", "jAllocator::localAlloc", size);
        std::abort();
    }
    return ptr;
}

void jAllocator::localFree(void* ptr)
{
    std::free(ptr);
}
