#pragma once

#include <cstddef>
#include <map>
#include <string>

// A count of live registered allocations per tag, taken at one moment.
class jMemSnapshot {
public:
    // Returns the number of live allocations registered under tag.
    size_t count(const std::string& tag) const;
    // Returns the number of all live registered allocations.
    size_t total() const;
    // Returns one line per tag whose count differs from before ("tag: +2"), empty when equal.
    std::string changesSince(const jMemSnapshot& before) const;

    bool operator==(const jMemSnapshot& other) const = default;

private:
    friend class jMemRegistry;
    std::map<std::string, size_t> m_counts;
};

// Read access to the allocation registry that memAddInfo and memRemoveInfo keep.
class jMemRegistry {
public:
    // Returns the live allocations counted per tag.
    static jMemSnapshot snapshot();
    // Returns the number of live registered allocations.
    static size_t liveCount();
    // Returns a report of every live allocation ("tag (file:line) size bytes"), one per line, in the
    // order they were registered; empty when nothing is alive.
    static std::string leakReport();
    // Returns how many memRemoveInfo calls named a pointer that was not registered.
    static size_t unknownRemovals();
};
