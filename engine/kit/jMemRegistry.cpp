#include "kit/jMemRegistry.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <vector>

#include "jPointerTable.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

namespace {

struct Record {
    const char* file;
    const char* tag;
    size_t size;
    uint64_t order;
    int line;
    bool isBuffer;
};

// The registry itself. It is never destroyed, so allocations released by static destructors at exit
// still find it.
struct Registry {
    std::mutex lock;
    jPointerTable<Record> live;
    uint64_t nextOrder = 0;
    size_t unknownRemovals = 0;
};

Registry& registry()
{
    static Registry* instance = new Registry;
    return *instance;
}

} // namespace

void memAddInfo(void* ptr, bool isBuffer, const char* file, int line, const char* tag, size_t size)
{
    Registry& reg = registry();
    std::unique_lock guard(reg.lock);
    Record record{file, tag, size, reg.nextOrder++, line, isBuffer};
    if (reg.live.insert(ptr, record))
        return;
    guard.unlock();
    jLog::error("%s:pointer %p registered twice (%s at %s:%d)", "memAddInfo", ptr, tag, file, line);
}

void memRemoveInfo(void* ptr, const char* file, int line, const char* tag)
{
    Registry& reg = registry();
    std::unique_lock guard(reg.lock);
    if (reg.live.erase(ptr))
        return;
    ++reg.unknownRemovals;
    guard.unlock();
    jLog::error("%s:unknown pointer %p removed (%s at %s:%d)", "memRemoveInfo", ptr, tag, file, line);
}

size_t jMemSnapshot::count(const std::string& tag) const
{
    auto it = m_counts.find(tag);
    return it == m_counts.end() ? 0 : it->second;
}

size_t jMemSnapshot::total() const
{
    size_t sum = 0;
    for (const auto& [tag, n] : m_counts)
        sum += n;
    return sum;
}

std::string jMemSnapshot::changesSince(const jMemSnapshot& before) const
{
    std::map<std::string, long long> delta;
    for (const auto& [tag, n] : m_counts)
        delta[tag] += static_cast<long long>(n);
    for (const auto& [tag, n] : before.m_counts)
        delta[tag] -= static_cast<long long>(n);
    std::string text;
    for (const auto& [tag, d] : delta) {
        if (d != 0)
            text += tag + ": " + (d > 0 ? "+" : "") + std::to_string(d) + "\n";
    }
    return text;
}

jMemSnapshot jMemRegistry::snapshot()
{
    Registry& reg = registry();
    std::lock_guard guard(reg.lock);
    jMemSnapshot snap;
    reg.live.forEach([&snap](void*, const Record& record) { ++snap.m_counts[record.tag ? record.tag : "?"]; });
    return snap;
}

size_t jMemRegistry::liveCount()
{
    Registry& reg = registry();
    std::lock_guard guard(reg.lock);
    return reg.live.size();
}

std::string jMemRegistry::leakReport()
{
    Registry& reg = registry();
    std::vector<Record> records;
    {
        std::lock_guard guard(reg.lock);
        reg.live.forEach([&records](void*, const Record& record) { records.push_back(record); });
    }
    std::sort(records.begin(), records.end(),
              [](const Record& a, const Record& b) { return a.order < b.order; });
    std::string text;
    for (const Record& r : records) {
        text += std::string(r.tag ? r.tag : "?") + " (" + (r.file ? r.file : "?") + ":" +
                std::to_string(r.line) + ") " + std::to_string(r.size) + " bytes" +
                (r.isBuffer ? " buffer" : " object") + "\n";
    }
    return text;
}

size_t jMemRegistry::unknownRemovals()
{
    Registry& reg = registry();
    std::lock_guard guard(reg.lock);
    return reg.unknownRemovals;
}
