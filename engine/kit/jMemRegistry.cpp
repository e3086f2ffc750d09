#include "kit/jMemRegistry.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "jPointerTable.h"
#include "jSmallPool.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

namespace {

// Where and what was allocated: every allocation made by one line of code with one size shares one
// site, so that a live allocation costs the registry one number besides its order.
struct Site {
    const char* file;
    const char* tag;
    size_t size;
    int line;
    bool isBuffer;

    bool operator==(const Site&) const = default;
};

struct SiteHash {
    size_t operator()(const Site& s) const
    {
        const auto mix = [](size_t h, size_t v) { return (h ^ v) * 0x100000001b3ull; };
        size_t h = mix(mix(reinterpret_cast<uintptr_t>(s.file), reinterpret_cast<uintptr_t>(s.tag)), s.size);
        return mix(h, static_cast<size_t>(s.line) << 1 | s.isBuffer);
    }
};

// A live allocation: its registration order in the high bits, its site in the low SITE_BITS. Orders
// start at 1, so that no record is zero: a pool slot's word of zero means nothing is registered.
constexpr int SITE_BITS = 24;
constexpr uint64_t SITE_MASK = (uint64_t(1) << SITE_BITS) - 1;

// The registry itself. It is never destroyed, so allocations released by static destructors at exit
// still find it. An object that starts a slot of the small-object pool is filed in the slot's word
// (see jSmallPool::registryWord); anything else in the table, by address.
struct Registry {
    std::mutex lock;
    jPointerTable<uint64_t> live;
    jSmallPool* pool = jSmallPool::active();
    size_t pooled = 0; // the words that are not zero
    std::vector<Site> sites;
    std::unordered_map<Site, uint32_t, SiteHash> siteIndex;
    uint64_t nextOrder = 1;
    size_t unknownRemovals = 0;

    uint64_t* wordOf(void* ptr) const { return pool ? pool->registryWord(ptr) : nullptr; }
    // Files a record; false when ptr is already registered.
    bool insert(void* ptr, uint64_t record)
    {
        uint64_t* word = wordOf(ptr);
        if (!word)
            return live.insert(ptr, record);
        if (*word)
            return false;
        *word = record;
        ++pooled;
        return true;
    }
    // Forgets ptr's record; false when ptr is not registered.
    bool erase(void* ptr)
    {
        uint64_t* word = wordOf(ptr);
        if (!word)
            return live.erase(ptr);
        if (!*word)
            return false;
        *word = 0;
        --pooled;
        return true;
    }
    // Calls visit(record) for every live allocation.
    template <class Visit>
    void forEach(Visit visit)
    {
        live.forEach([&visit](void*, uint64_t record) { visit(record); });
        if (pool)
            pool->forEachRegistryWord(visit);
    }

    // Returns the index of site, adding it when it is new. Past the last index every new site shares
    // the last one, which then reports the first such site's place and size.
    uint32_t indexOf(const Site& site)
    {
        auto [it, added] = siteIndex.try_emplace(site, static_cast<uint32_t>(sites.size()));
        if (!added)
            return it->second;
        if (sites.size() == SITE_MASK) {
            siteIndex.erase(it);
            return static_cast<uint32_t>(SITE_MASK - 1);
        }
        sites.push_back(site);
        return it->second;
    }

    const Site& siteOf(uint64_t record) const { return sites[record & SITE_MASK]; }
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
    const uint64_t record = reg.nextOrder++ << SITE_BITS | reg.indexOf(Site{file, tag, size, line, isBuffer});
    if (reg.insert(ptr, record))
        return;
    guard.unlock();
    jLog::error("%s:pointer %p registered twice (%s at %s:%d)", "memAddInfo", ptr, tag, file, line);
}

void memRemoveInfo(void* ptr, const char* file, int line, const char* tag)
{
    Registry& reg = registry();
    std::unique_lock guard(reg.lock);
    if (reg.erase(ptr))
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
    std::vector<size_t> perSite(reg.sites.size());
    reg.forEach([&perSite](uint64_t record) { ++perSite[record & SITE_MASK]; });
    for (size_t i = 0; i < perSite.size(); ++i)
        if (perSite[i] > 0)
            snap.m_counts[reg.sites[i].tag ? reg.sites[i].tag : "?"] += perSite[i];
    return snap;
}

size_t jMemRegistry::liveCount()
{
    Registry& reg = registry();
    std::lock_guard guard(reg.lock);
    return reg.live.size() + reg.pooled;
}

std::string jMemRegistry::leakReport()
{
    Registry& reg = registry();
    std::vector<Site> leaks;
    {
        std::lock_guard guard(reg.lock);
        std::vector<uint64_t> records;
        reg.forEach([&records](uint64_t record) { records.push_back(record); });
        std::sort(records.begin(), records.end()); // the order is in the high bits
        for (uint64_t record : records)
            leaks.push_back(reg.siteOf(record));
    }
    std::string text;
    for (const Site& r : leaks) {
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
