#include "PackageBuilder.h"

#include <bit>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <new>

#include "PackageArena.h"
#include "kit/jAllocator.h"

namespace {

// Returns true when a number that does not fit a double is too large rather than too small: its
// first significant digit stands at a positive power of ten. Counts saturate, which cannot change
// the sign of a number that is out of range.
bool beyond_largest_double(const char* p, const char* end)
{
    constexpr long long limit = 1000000000;
    if (p < end && *p == '-')
        ++p;
    while (p < end && *p == '0')
        ++p;
    long long magnitude = -1;
    for (; p < end && *p >= '0' && *p <= '9'; ++p)
        magnitude += magnitude < limit;
    if (magnitude < 0 && p < end && *p == '.') {
        for (++p; p < end && *p == '0'; ++p)
            magnitude -= magnitude > -limit;
    }
    while (p < end && *p != 'e' && *p != 'E')
        ++p;
    if (p == end)
        return magnitude > 0;
    bool negative = *++p == '-';
    p += *p == '-' || *p == '+';
    long long exponent = 0;
    for (; p < end; ++p)
        exponent = exponent < limit ? exponent * 10 + (*p - '0') : limit;
    return magnitude + (negative ? -exponent : exponent) > 0;
}

// Powers of ten that are exact in a double (up to 10^22).
constexpr double EXACT_POWERS[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Powers of five that fit 64 bits: 5^0 to 5^27.
constexpr uint64_t FIVE_POWERS[] = {
    1ull,
    5ull,
    25ull,
    125ull,
    625ull,
    3125ull,
    15625ull,
    78125ull,
    390625ull,
    1953125ull,
    9765625ull,
    48828125ull,
    244140625ull,
    1220703125ull,
    6103515625ull,
    30517578125ull,
    152587890625ull,
    762939453125ull,
    3814697265625ull,
    19073486328125ull,
    95367431640625ull,
    476837158203125ull,
    2384185791015625ull,
    11920928955078125ull,
    59604644775390625ull,
    298023223876953125ull,
    1490116119384765625ull,
    7450580596923828125ull};

#ifdef __SIZEOF_INT128__
// Computes mantissa * 10^scale (|scale| <= 27) in integers: 10^scale is 5^scale * 2^scale, and the
// power of five is exact in 64 bits, so the product, or a quotient with enough bits and its
// remainder, holds everything needed to round to the nearest double (ties to even) exactly,
// whatever the floating-point unit is set to.
double scale_in_integers(uint64_t mantissa, int scale)
{
    using u128 = unsigned __int128;
    u128 exact = 0;
    int exponent = scale; // of two
    bool inexact = false; // something below the bits of exact was dropped
    if (scale >= 0) {
        exact = static_cast<u128>(mantissa) * FIVE_POWERS[scale];
    } else {
        // Shifted as far as 127 bits allow, the quotient keeps at least 63 significant bits.
        int shift = 63 + std::countl_zero(mantissa);
        u128 dividend = static_cast<u128>(mantissa) << shift;
        exact = dividend / FIVE_POWERS[-scale];
        inexact = dividend % FIVE_POWERS[-scale] != 0;
        exponent -= shift;
    }
    uint64_t high = static_cast<uint64_t>(exact >> 64);
    int bits = high ? 128 - std::countl_zero(high) : 64 - std::countl_zero(static_cast<uint64_t>(exact));
    int drop = bits > 53 ? bits - 53 : 0;
    uint64_t kept = static_cast<uint64_t>(exact >> drop);
    if (drop > 0) {
        u128 rest = exact & ((static_cast<u128>(1) << drop) - 1);
        u128 half = static_cast<u128>(1) << (drop - 1);
        if (rest > half || (rest == half && (inexact || (kept & 1))))
            ++kept; // may carry to 2^53, which a double still holds exactly
    }
    return std::ldexp(static_cast<double>(kept), exponent + drop);
}
#endif

// Whether the eight bytes are all ASCII digits.
bool eight_digits(uint64_t bytes)
{
    return ((bytes & 0xF0F0F0F0F0F0F0F0) | (((bytes + 0x0606060606060606) & 0xF0F0F0F0F0F0F0F0) >> 4)) ==
           0x3333333333333333;
}

// The value of eight ASCII digits read little-endian: pairs, then fours, then all eight are
// combined with multiplications instead of eight dependent steps.
uint32_t eight_digit_value(uint64_t bytes)
{
    bytes -= 0x3030303030303030;
    bytes = bytes * 10 + (bytes >> 8);
    const uint64_t mask = 0x000000FF000000FF;
    bytes = ((bytes & mask) * 0x000F424000000064 + ((bytes >> 16) & mask) * 0x0000271000000001) >> 32;
    return static_cast<uint32_t>(bytes);
}

// Appends the digits from p to mantissa; returns where they stop.
const char* read_digits(const char* p, const char* end, uint64_t& mantissa)
{
    if constexpr (std::endian::native == std::endian::little) {
        uint64_t bytes = 0;
        while (end - p >= 8 && (std::memcpy(&bytes, p, 8), eight_digits(bytes))) {
            mantissa = mantissa * 100000000 + eight_digit_value(bytes);
            p += 8;
        }
    }
    for (; p < end && static_cast<unsigned>(*p - '0') <= 9; ++p)
        mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
    return p;
}

// Converts the JSON number at p (already checked by the reader) to the nearest double when it has
// at most 19 significant digits and a power of ten within 10^-27 to 10^27, which nearly every number
// a program writes has: one exact floating-point operation when the mantissa fits 53 bits and the
// power is small, else integer arithmetic. Returns false when the general conversion must decide.
bool quick_decimal(const char* p, const char* end, double& out)
{
    bool negative = *p == '-';
    p += negative;
    const char* first = p;
    uint64_t mantissa = 0; // wraps when there are more than 19 significant digits, which are refused
    p = read_digits(p, end, mantissa);
    long digits = p - first;
    int scale = 0;
    if (p < end && *p == '.') {
        const char* fraction = ++p;
        p = read_digits(p, end, mantissa);
        digits += p - fraction;
        scale = -static_cast<int>(p - fraction);
    }
    if (digits > 19) {
        // Leading zeros, as in 0.000123, are not significant.
        for (const char* q = first; q < p && (*q == '0' || *q == '.'); ++q)
            digits -= *q == '0';
        if (digits > 19)
            return false;
    }
    if (p < end && (*p == 'e' || *p == 'E')) {
        bool negative_exponent = *++p == '-';
        p += *p == '-' || *p == '+';
        int exponent = 0;
        for (; p < end && static_cast<unsigned>(*p - '0') <= 9; ++p) {
            exponent = exponent * 10 + (*p - '0');
            if (exponent > 1000)
                return false;
        }
        scale += negative_exponent ? -exponent : exponent;
    }
    double value = 0.0;
    if (mantissa != 0 && mantissa <= (uint64_t(1) << 53) && scale >= -22 && scale <= 22) {
        // Both operands are exact, so the one rounding is the right one.
        value = static_cast<double>(mantissa);
        value = scale < 0 ? value / EXACT_POWERS[-scale] : value * EXACT_POWERS[scale];
    } else if (mantissa != 0) {
#ifdef __SIZEOF_INT128__
        if (scale < -27 || scale > 27)
            return false;
        value = scale_in_integers(mantissa, scale);
#else
        return false;
#endif
    }
    out = negative ? -value : value;
    return true;
}

} // namespace

PackageBuilder::PackageBuilder(Package& root, const char* text, const TextStream& stream)
    : m_root(root), m_text(text), m_stream(stream)
{
}

PackageBuilder::~PackageBuilder()
{
    if (m_pending) {
        memRemoveInfo(m_pending, "engine/io/PackageBuilder", __LINE__, "PackageBuilder::~PackageBuilder");
        jAllocator::get()->localFree(m_pending);
    }
}

void PackageBuilder::advance(size_t offset)
{
    if (offset < m_scan) { // count again from the top rather than backwards
        m_scan = 0;
        m_line = 1;
        m_line_start = 0;
    }
    const char* p = m_text + m_scan;
    const char* end = m_text + offset;
    while (p < end) {
        // Eight bytes at a time while they hold no newline, which is most of the text.
        if (end - p >= 8) {
            uint64_t word;
            std::memcpy(&word, p, 8);
            word ^= 0x0A0A0A0A0A0A0A0Aull;
            if (((word - 0x0101010101010101ull) & ~word & 0x8080808080808080ull) == 0) {
                p += 8;
                continue;
            }
        }
        if (*p == '\n')
            ++m_line, m_line_start = static_cast<size_t>(p + 1 - m_text);
        ++p;
    }
    m_scan = offset;
}

void PackageBuilder::locate(size_t offset, int& line, int& column)
{
    advance(offset);
    line = static_cast<int>(m_line);
    size_t from_line_start = offset - m_line_start + 1;
    column = static_cast<int>(from_line_start > INT_MAX ? INT_MAX : from_line_start);
}

Package* PackageBuilder::push_pending()
{
    if (m_pending_count == m_pending_capacity) {
        size_t capacity = m_pending_capacity ? m_pending_capacity * 2 : 256;
        void* grown = jAllocator::get()->localAlloc(capacity * sizeof(Package));
        memAddInfo(grown, true, "engine/io/PackageBuilder", __LINE__, "PackageBuilder::push_pending",
                   capacity * sizeof(Package));
        if (m_pending) {
            // Pending nodes hold only plain values and pointers into the arena: moving their bytes
            // moves them.
            std::memcpy(grown, static_cast<void*>(m_pending), m_pending_count * sizeof(Package));
            memRemoveInfo(m_pending, "engine/io/PackageBuilder", __LINE__, "PackageBuilder::push_pending");
            jAllocator::get()->localFree(m_pending);
        }
        m_pending = static_cast<Package*>(grown);
        m_pending_capacity = capacity;
    }
    return new (m_pending + m_pending_count++) Package(m_arena);
}

Package* PackageBuilder::begin_value(Package::Type type, size_t start)
{
    Package* node = &m_root;
    if (m_depth > 0) {
        node = push_pending();
        if (m_key) {
            node->m_name = m_key;
            node->m_name_length = m_key_length;
            m_key = nullptr;
        }
    }
    advance(start);
    node->m_type = type;
    node->m_line = m_line;
    node->m_column = static_cast<uint32_t>(start - m_line_start + 1);
    return node;
}

bool PackageBuilder::fail(const char* reason, size_t offset)
{
    m_failure = reason;
    m_failure_offset = offset;
    return false;
}

bool PackageBuilder::Null()
{
    begin_value(Package::NUL, m_stream.Tell() - 4);
    return true;
}

bool PackageBuilder::Bool(bool value)
{
    begin_value(Package::BOOL, m_stream.Tell() - (value ? 4 : 5))->m_value.b = value;
    return true;
}

bool PackageBuilder::Int(int value)
{
    begin_value(Package::INT, m_stream.Tell())->m_value.i = value;
    return true;
}

bool PackageBuilder::Uint(unsigned value)
{
    begin_value(Package::INT, m_stream.Tell())->m_value.i = value;
    return true;
}

bool PackageBuilder::Int64(int64_t value)
{
    begin_value(Package::INT, m_stream.Tell())->m_value.i = value;
    return true;
}

bool PackageBuilder::Uint64(uint64_t value)
{
    if (value > static_cast<uint64_t>(INT64_MAX))
        return Double(static_cast<double>(value));
    return Int64(static_cast<int64_t>(value));
}

bool PackageBuilder::Double(double)
{
    // The reader's own conversion is approximate (its exact one reads outside its tables on some
    // long mantissas with large exponents). The number's bytes are still where the stream stands,
    // the reader has checked their grammar, so they are converted again here, exactly: quickly
    // when that is simple, else by the general conversion.
    size_t start = m_stream.Tell();
    const char* text = m_text + start;
    double value = 0;
    if (!quick_decimal(text, m_stream.getEnd(), value)) {
        std::from_chars_result read = std::from_chars(text, m_stream.getEnd(), value);
        if (read.ec == std::errc::result_out_of_range) {
            if (beyond_largest_double(text, read.ptr))
                return fail("number too large for a double", start);
            value = *text == '-' ? -0.0 : 0.0; // below the smallest subnormal: it rounds to zero
        }
    }
    begin_value(Package::DOUBLE, start)->m_value.d = value;
    return true;
}

bool PackageBuilder::RawNumber(const char*, rapidjson::SizeType, bool)
{
    return fail("numbers kept as text are not supported", m_stream.Tell());
}

bool PackageBuilder::String(const char* text, rapidjson::SizeType length, bool)
{
    if (length > INT_MAX)
        return fail("string longer than 2 GB", m_stream.Tell());
    if (!m_arena)
        m_arena = m_root.arena();
    const char* copy = m_arena->copyText(text, length);
    Package* node = begin_value(Package::STRING, m_stream.Tell());
    node->m_value.s = copy;
    node->m_count = length;
    return true;
}

bool PackageBuilder::Key(const char* text, rapidjson::SizeType length, bool)
{
    if (length > INT_MAX)
        return fail("member name longer than 2 GB", m_stream.Tell());
    m_key = m_arena->copyText(text, length);
    m_key_length = length;
    return true;
}

bool PackageBuilder::begin_container(Package::Type type)
{
    static_assert(mjl::MAX_DEPTH == 512, "the reason below names the limit");
    if (m_depth == mjl::MAX_DEPTH)
        return fail("nesting deeper than 512 levels", m_stream.Tell());
    if (!m_arena)
        m_arena = m_root.arena();
    begin_value(type, m_stream.Tell());
    m_frames[m_depth++] = m_pending_count;
    return true;
}

bool PackageBuilder::end_container()
{
    size_t first = m_frames[--m_depth];
    size_t count = m_pending_count - first;
    if (count > INT_MAX)
        return fail("container with more than 2^31 elements", m_stream.Tell());
    // The container itself waits just below its children, unless it is the root.
    Package* node = m_depth == 0 ? &m_root : m_pending + first - 1;
    node->m_count = static_cast<uint32_t>(count);
    node->m_capacity = static_cast<uint32_t>(count);
    if (count) {
        void* row = m_arena->allocate(count * sizeof(Package), alignof(Package));
        std::memcpy(row, static_cast<const void*>(m_pending + first), count * sizeof(Package));
        node->m_value.nodes = static_cast<Package*>(row);
        node->m_in_row = true;
    }
    m_pending_count = first;
    return true;
}

bool PackageBuilder::StartObject() { return begin_container(Package::OBJECT); }
bool PackageBuilder::EndObject(rapidjson::SizeType) { return end_container(); }
bool PackageBuilder::StartArray() { return begin_container(Package::ARRAY); }
bool PackageBuilder::EndArray(rapidjson::SizeType) { return end_container(); }
