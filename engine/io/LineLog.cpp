#include "LineLog.h"

#include <cstring>

#include "kit/jAllocator.h"

LineLog::~LineLog()
{
    if (m_offsets) {
        memRemoveInfo(m_offsets, "engine/io/LineLog", __LINE__, "LineLog::~LineLog");
        jAllocator::get()->localFree(m_offsets);
    }
}

void LineLog::grow()
{
    size_t capacity = m_capacity ? m_capacity * 2 : 1024;
    auto* grown = static_cast<uint64_t*>(jAllocator::get()->localAlloc(capacity * sizeof(uint64_t)));
    memAddInfo(grown, true, "engine/io/LineLog", __LINE__, "LineLog::grow", capacity * sizeof(uint64_t));
    if (m_offsets) {
        std::memcpy(grown, m_offsets, m_count * sizeof(uint64_t));
        memRemoveInfo(m_offsets, "engine/io/LineLog", __LINE__, "LineLog::grow");
        jAllocator::get()->localFree(m_offsets);
    }
    m_offsets = grown;
    m_capacity = capacity;
}
