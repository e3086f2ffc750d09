#include "io/Package.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

#include "PackageArena.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "kit/jVector.h"

namespace {

const char* type_name(Package::Type type)
{
    static const char* const names[] = {"null", "bool", "int", "double", "string", "array", "object", "row of numbers"};
    return names[type];
}

// Whether a DOUBLE holds exactly the integer value.
bool double_equals_int(double d, int64_t i)
{
    // 2^63 is exact as a double; anything at or beyond it cannot be an int64.
    if (!(d >= -9223372036854775808.0 && d < 9223372036854775808.0))
        return false;
    return std::trunc(d) == d && static_cast<int64_t>(d) == i;
}

} // namespace

// A parsed document is mostly nodes; a field added without care grows every large load.
static_assert(sizeof(Package) <= 32, "a node should stay within 32 bytes");

Package::Package() = default;

Package::~Package()
{
    if (m_owns_arena)
        jDelete(m_arena, "engine/io/Package", __LINE__, "Package::~Package");
}

void Package::clear()
{
    if (m_owns_arena) {
        jDelete(m_arena, "engine/io/Package", __LINE__, "Package::clear");
        m_arena = nullptr;
        m_owns_arena = false;
    }
    reset_value(NUL);
    m_offset = 0;
}

PackageArena* Package::arena()
{
    if (!m_arena) {
        m_arena = jNew<PackageArena>("engine/io/Package", __LINE__, "Package::arena");
        m_owns_arena = true;
    }
    return m_arena;
}

void Package::reset_value(Type type)
{
    m_type = type;
    m_value.i = 0; // no children and no text: a count of 0
    m_in_row = false;
}

int Package::getLine() const
{
    int line = 0;
    int column = 0;
    if (m_offset && m_arena)
        m_arena->locate(m_offset - 1, line, column);
    return line;
}

int Package::getColumn() const
{
    int line = 0;
    int column = 0;
    if (m_offset && m_arena)
        m_arena->locate(m_offset - 1, line, column);
    return column;
}

int Package::getNumberLine(int index) const
{
    int line = 0;
    int column = 0;
    locate_number(index, line, column);
    return line;
}

int Package::getNumberColumn(int index) const
{
    int line = 0;
    int column = 0;
    locate_number(index, line, column);
    return column;
}

void Package::locate_number(int index, int& line, int& column) const
{
    if (in_row_of_numbers(index) && m_offset && m_arena)
        m_arena->locate(m_offset - 1 + row_distances()[index], line, column);
}

void Package::set_name(const char* name, size_t length)
{
    m_name = arena()->copyCounted(name, length);
}

int64_t Package::getInt(int64_t fallback) const
{
    if (m_type == INT)
        return m_value.i;
    if (m_type != DOUBLE || std::isnan(m_value.d))
        return fallback;
    // Out-of-range doubles saturate rather than overflow the conversion.
    if (m_value.d >= 9223372036854775808.0)
        return INT64_MAX;
    if (m_value.d < -9223372036854775808.0)
        return INT64_MIN;
    return static_cast<int64_t>(m_value.d);
}

Package* Package::find(const char* name) const
{
    if (m_type != OBJECT || !name)
        return nullptr;
    size_t length = std::strlen(name);
    for (uint32_t i = 0, n = count(); i < n; ++i) {
        Package* child = child_at(i);
        if (child->name_length() == length && std::memcmp(child->m_name, name, length) == 0)
            return child;
    }
    return nullptr;
}

void Package::setNull() { reset_value(NUL); }

void Package::setBool(bool value)
{
    reset_value(BOOL);
    m_value.b = value;
}

void Package::setInt(int64_t value)
{
    reset_value(INT);
    m_value.i = value;
}

void Package::setDouble(double value)
{
    reset_value(DOUBLE);
    m_value.d = value;
}

void Package::setString(const char* text)
{
    setString(text, text ? static_cast<int>(std::strlen(text)) : 0);
}

void Package::setString(const char* text, int length)
{
    size_t size = text && length > 0 ? static_cast<size_t>(length) : 0;
    // Copy first: text may be this node's own string, which reset_value forgets.
    const char* copy = arena()->copyCounted(text, size);
    reset_value(STRING);
    m_value.s = copy;
}

void Package::setArray() { reset_value(ARRAY); }
void Package::setObject() { reset_value(OBJECT); }

Package* Package::add(const char* name)
{
    if (m_type == NUL)
        reset_value(name ? OBJECT : ARRAY);
    if (m_type != ARRAY && m_type != OBJECT) {
        jLog::error("%s:cannot add a child to a node of type %s", "Package::add", type_name(getType()));
        return nullptr;
    }
    Package* child = arena()->makeNode();
    if (m_type == OBJECT && name)
        child->set_name(name, std::strlen(name));
    return appendChild(child);
}

Package* Package::appendChild(Package* child)
{
    // The pointer array holds 4 children, then doubles: it is full when the count is 0 (nothing
    // yet) or a power of two from 4 on. Children read from text stay where they are; only an
    // array that points at them is made.
    uint32_t n = count();
    bool full = n == 0 || (n >= 4 && std::has_single_bit(n));
    if (full || m_in_row) {
        uint32_t capacity = std::max(4u, std::bit_ceil(n + 1));
        Package** items = arena()->makeItems(capacity);
        for (uint32_t i = 0; i < n; ++i)
            items[i] = child_at(i);
        m_value.items = items;
        m_in_row = false;
    }
    m_value.items[n] = child;
    set_count(n + 1);
    return child;
}

Package* Package::addBool(const char* name, bool value)
{
    Package* child = add(name);
    if (child)
        child->setBool(value);
    return child;
}

Package* Package::addInt(const char* name, int64_t value)
{
    Package* child = add(name);
    if (child)
        child->setInt(value);
    return child;
}

Package* Package::addDouble(const char* name, double value)
{
    Package* child = add(name);
    if (child)
        child->setDouble(value);
    return child;
}

Package* Package::addString(const char* name, const char* text)
{
    Package* child = add(name);
    if (child)
        child->setString(text);
    return child;
}

Package* Package::addArray(const char* name)
{
    Package* child = add(name);
    if (child)
        child->setArray();
    return child;
}

Package* Package::addObject(const char* name)
{
    Package* child = add(name);
    if (child)
        child->setObject();
    return child;
}

bool Package::same_value(const Package& other) const
{
    if (m_type == NUMBERS || other.m_type == NUMBERS)
        return m_type == NUMBERS ? same_numbers(other) : other.same_numbers(*this);
    if (isNumber() && other.isNumber()) {
        if (m_type == INT && other.m_type == INT)
            return m_value.i == other.m_value.i;
        if (m_type == DOUBLE && other.m_type == DOUBLE)
            return m_value.d == other.m_value.d;
        return m_type == INT ? double_equals_int(other.m_value.d, m_value.i)
                             : double_equals_int(m_value.d, other.m_value.i);
    }
    if (m_type != other.m_type)
        return false;
    switch (getType()) {
    case BOOL:
        return m_value.b == other.m_value.b;
    case STRING:
        return count() == other.count() && std::memcmp(m_value.s, other.m_value.s, count()) == 0;
    case ARRAY:
    case OBJECT:
        return count() == other.count();
    default:
        return true;
    }
}

bool Package::same_numbers(const Package& other) const
{
    const int n = getNumNumbers();
    if (other.getNumNumbers() != n && (other.m_type != ARRAY || static_cast<int>(other.count()) != n))
        return false;
    for (int i = 0; i < n; ++i) {
        double value = getNumber(i);
        if (other.m_type == NUMBERS) {
            if (other.getNumber(i) != value)
                return false;
            continue;
        }
        const Package* entry = other.child_at(static_cast<uint32_t>(i));
        bool same = entry->m_type == INT ? double_equals_int(value, entry->m_value.i)
                                         : entry->m_type == DOUBLE && entry->m_value.d == value;
        if (!same)
            return false;
    }
    return true;
}

bool Package::equals(const Package& other) const
{
    // An explicit stack: a tree built in memory may be deeper than the call stack allows.
    jVector<std::pair<const Package*, const Package*>> pending;
    pending.append({this, &other});
    while (!pending.empty()) {
        auto [a, b] = pending.back();
        pending.remove(pending.size() - 1);
        if (!a->same_value(*b))
            return false;
        if (a->m_type == NUMBERS || b->m_type == NUMBERS)
            continue; // same_value compared the entries
        for (int i = a->getNumChildren() - 1; i >= 0; --i) {
            const Package* x = a->child_at(static_cast<uint32_t>(i));
            const Package* y = b->child_at(static_cast<uint32_t>(i));
            // The names of the two tops do not matter: a subtree may be compared with a root.
            if (x->name_length() != y->name_length() || std::memcmp(x->getName(), y->getName(), x->name_length()) != 0)
                return false;
            pending.append({x, y});
        }
    }
    return true;
}
