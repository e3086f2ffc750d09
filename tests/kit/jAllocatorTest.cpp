#include "kit/jAllocator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

struct Block {
    unsigned char* bytes;
    size_t size;
    unsigned char fill;
};

// Takes count blocks of sizes from 1 to 300 bytes (small objects and heap buffers alike), each
// filled with its own byte.
void take(std::vector<Block>& blocks, int count, std::mt19937& rng)
{
    for (int i = 0; i < count; ++i) {
        const size_t size = 1 + rng() % 300;
        auto* bytes = static_cast<unsigned char*>(jAllocator::get()->localAlloc(size));
        const auto fill = static_cast<unsigned char>(rng());
        std::memset(bytes, fill, size);
        blocks.push_back({bytes, size, fill});
    }
}

// True when every block is aligned for any type and still holds only its own byte: no two live
// blocks overlap and a freed block never comes back while another still uses it.
bool intact(const std::vector<Block>& blocks)
{
    for (const Block& b : blocks) {
        if (reinterpret_cast<uintptr_t>(b.bytes) % alignof(std::max_align_t) != 0)
            return false;
        for (size_t i = 0; i < b.size; ++i)
            if (b.bytes[i] != b.fill)
                return false;
    }
    return true;
}

// Takes and gives back blocks in random order, as a document's keys come and go.
bool churn(unsigned seed)
{
    std::mt19937 rng(seed);
    std::vector<Block> blocks;
    bool ok = true;
    for (int round = 0; round < 20; ++round) {
        take(blocks, 2000, rng);
        std::shuffle(blocks.begin(), blocks.end(), rng);
        for (size_t i = 0; i < blocks.size() / 2; ++i)
            jAllocator::get()->localFree(blocks[i].bytes);
        blocks.erase(blocks.begin(), blocks.begin() + static_cast<long>(blocks.size() / 2));
        ok = ok && intact(blocks);
    }
    for (const Block& b : blocks)
        jAllocator::get()->localFree(b.bytes);
    return ok;
}

} // namespace

TEST(jAllocatorTest, BlocksStayAlignedAndApartWhileOthersComeAndGoOnTwoThreads)
{
    bool other = false;
    std::thread second([&] { other = churn(2); });
    const bool first = churn(1);
    second.join();
    EXPECT_TRUE(first);
    EXPECT_TRUE(other);
}
