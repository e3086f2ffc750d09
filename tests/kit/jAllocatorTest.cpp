#include "kit/jAllocator.h"

#include <cstdint>
#include <cstring>

#include "support/Scenario.h"

namespace {

using jAllocatorTest = Scenario;

const size_t HUGE_PAGE = size_t(2) << 20;

// Fills every byte of a table and reads the ends back, as a table that playback streams through.
bool writable(void* table, size_t size)
{
    auto* bytes = static_cast<unsigned char*>(table);
    std::memset(bytes, 0xab, size);
    return bytes[0] == 0xab && bytes[size - 1] == 0xab;
}

} // namespace

TEST_F(jAllocatorTest, LargeTablesStartOnAHugePageAndAreWholeWritable)
{
    for (size_t size : {HUGE_PAGE, HUGE_PAGE + 1, 3 * HUGE_PAGE - 17}) {
        void* table = jAllocator::get()->largeAlloc(size);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(table) % HUGE_PAGE, 0u) << size;
        EXPECT_TRUE(writable(table, size)) << size;
        jAllocator::get()->largeFree(table, size);
    }
}

TEST_F(jAllocatorTest, SmallTablesComeFromTheEveryDayAllocator)
{
    void* a = jAllocator::get()->largeAlloc(64);
    void* b = jAllocator::get()->largeAlloc(HUGE_PAGE - 1);
    EXPECT_TRUE(writable(a, 64));
    EXPECT_TRUE(writable(b, HUGE_PAGE - 1));
    jAllocator::get()->largeFree(a, 64);
    jAllocator::get()->largeFree(b, HUGE_PAGE - 1);
    jAllocator::get()->largeFree(nullptr, 0);
    jAllocator::get()->largeFree(nullptr, HUGE_PAGE);
}
