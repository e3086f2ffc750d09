#include "PackageBuilder.h"

#include <bit>
#include <cfloat>
#include <charconv>
#include <climits>
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

bool is_digit(char c)
{
    return static_cast<unsigned>(c - '0') <= 9;
}

// Returns the first byte from p on that is not a digit, or end. Numbers are short, and where their
// digits stop is different each time: finding it eight bytes at a time saves a mispredicted branch.
const char* skip_digits(const char* p, const char* end)
{
    if constexpr (std::endian::native == std::endian::little) {
        for (; end - p >= 8; p += 8) {
            uint64_t word;
            std::memcpy(&word, p, 8);
            word ^= 0x3030303030303030; // digits become bytes 0 to 9
            // The top bit of each byte that is 10 or more; the additions cannot carry across bytes.
            uint64_t others = (((word & 0x7F7F7F7F7F7F7F7F) + 0x7676767676767676) | word) & 0x8080808080808080;
            if (others)
                return p + std::countr_zero(others) / 8;
        }
    }
    while (p < end && is_digit(*p))
        ++p;
    return p;
}

// Returns whether the reader's own value of the number at p (its grammar already checked) is the
// nearest double, reading it digit by digit. In its normal precision the reader gathers the digits in a 64-bit integer while
// they stay below 2^53 and applies the power of ten with one multiplication or division by an exact
// table entry. With at most 15 digits, which nearly every number a program writes has, that integer
// holds all of them; with a power of ten within 10^-22 to 10^22 both operands are then exact, and
// the one rounding of the operation is the right one.
bool exact_after_scan(const char* p, const char* end)
{
    p += *p == '-';
    const char* q = skip_digits(p, end);
    long fraction = 0;
    if (q < end && *q == '.') {
        const char* first = q + 1;
        q = skip_digits(first, end);
        fraction = q - first;
    }
    if (q - p - (fraction > 0) > 15)
        return false;
    if (q == end || (*q != 'e' && *q != 'E'))
        return true; // the power is 10^-fraction
    ++q;
    bool negative = q < end && *q == '-';
    q += q < end && (*q == '-' || *q == '+');
    long exponent = 0;
    for (int n = 0; q < end && is_digit(*q); ++q, ++n) {
        if (n == 3)
            return false;
        exponent = exponent * 10 + (*q - '0');
    }
    long power = (negative ? -exponent : exponent) - fraction;
    return power >= -22 && power <= 22;
}

// The top bit of each byte of word that is outside '-' to '9' ("-./0123456789"), so that cannot
// belong to a number without an exponent. The additions cannot carry across bytes.
uint64_t outside_number(uint64_t word)
{
    uint64_t low = word & 0x7F7F7F7F7F7F7F7F;
    uint64_t from_minus = low + 0x5353535353535353; // top bit set from '-' (0x2D) on
    uint64_t past_nine = low + 0x4646464646464646;  // top bit set past '9' (0x39)
    return (~from_minus | past_nine | word) & 0x8080808080808080;
}

// Returns whether the reader's own value of the number at p is the nearest double (see
// exact_after_scan). A number of at most 15 bytes without an exponent, the usual case, has at most
// 15 digits and a power of ten of 10^-15 at worst; two words tell that without a branch per digit.
bool reader_value_is_exact(const char* p, const char* end)
{
    if constexpr (FLT_EVAL_METHOD != 0)
        return false; // the operation would round to a wider type first
    if constexpr (std::endian::native == std::endian::little) {
        if (end - p >= 16) {
            uint64_t words[2];
            std::memcpy(words, p, sizeof words);
            uint64_t first = outside_number(words[0]);
            uint64_t stops = first ? first : outside_number(words[1]);
            if (stops) {
                int bit = std::countr_zero(stops); // the top bit of the first byte after the number
                auto after = static_cast<char>((first ? words[0] : words[1]) >> (bit - 7));
                if (after != 'e' && after != 'E')
                    return true;
            }
        }
    }
    return exact_after_scan(p, end);
}

} // namespace

PackageBuilder::PackageBuilder(Package& root, const char* text, const TextStream& stream, bool number_rows,
                               mjl::ElementListener* listener)
    : m_root(root), m_arena(root.arena()), m_text(text), m_stream(stream), m_number_rows(number_rows),
      m_listener(listener)
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

void PackageBuilder::grow_pending()
{
    size_t capacity = m_pending_capacity ? m_pending_capacity * 2 : 256;
    void* grown = jAllocator::get()->localAlloc(capacity * sizeof(Package));
    memAddInfo(grown, true, "engine/io/PackageBuilder", __LINE__, "PackageBuilder::grow_pending",
               capacity * sizeof(Package));
    if (m_pending) {
        // Pending nodes hold only plain values and pointers into the arena: moving their bytes
        // moves them.
        std::memcpy(grown, static_cast<void*>(m_pending), m_pending_count * sizeof(Package));
        memRemoveInfo(m_pending, "engine/io/PackageBuilder", __LINE__, "PackageBuilder::grow_pending");
        jAllocator::get()->localFree(m_pending);
    }
    m_pending = static_cast<Package*>(grown);
    m_pending_capacity = capacity;
}

void PackageBuilder::finish(const LineLog& lines)
{
    m_arena->indexLines(lines.offsets(), lines.count());
}

bool PackageBuilder::fail(const char* reason, size_t offset)
{
    m_failure = reason;
    m_failure_offset = offset;
    return false;
}

bool PackageBuilder::Uint64(uint64_t value)
{
    if (value > static_cast<uint64_t>(INT64_MAX))
        return Double(static_cast<double>(value));
    return Int64(static_cast<int64_t>(value));
}

bool PackageBuilder::Double(double approximate)
{
    // The reader's exact conversion reads outside its tables on some long mantissas with large
    // exponents, so it runs in its normal precision, whose value is only sometimes the nearest.
    // The number's bytes are still where the stream stands, with their grammar checked: when they
    // show that the reader's value is not exact, they are converted again here.
    size_t start = m_stream.Tell();
    const char* text = m_text + start;
    double value = approximate;
    if (!reader_value_is_exact(text, m_stream.getEnd())) {
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
    const char* copy = m_arena->copyCounted(text, length);
    begin_value(Package::STRING, m_stream.Tell())->m_value.s = copy;
    return true;
}

bool PackageBuilder::Key(const char* text, rapidjson::SizeType length, bool)
{
    if (length > INT_MAX)
        return fail("member name longer than 2 GB", m_stream.Tell());
    m_key = m_arena->copyCounted(text, length);
    return true;
}

bool PackageBuilder::begin_container(Package::Type type)
{
    static_assert(mjl::MAX_DEPTH == 512, "the reason below names the limit");
    if (m_depth == mjl::MAX_DEPTH)
        return fail("nesting deeper than 512 levels", m_stream.Tell());
    if (m_listener && m_listened_depth == 0 && m_depth == 1)
        listen_for(type);
    begin_value(type, m_stream.Tell());
    m_frames[m_depth++] = m_pending_count;
    return true;
}

void PackageBuilder::listen_for(Package::Type type)
{
    const char* name = m_listener->arrayName();
    size_t length = std::strlen(name);
    // Names keep their length in the four bytes before them (PackageArena::copyCounted).
    if (m_key && reinterpret_cast<const uint32_t*>(m_key)[-1] == length && std::memcmp(m_key, name, length) == 0)
        m_listened_depth = type == Package::ARRAY ? 2 : -1;
}

void PackageBuilder::show_ended(const Package* node, size_t first)
{
    if (m_depth == m_listened_depth) {
        // The pending node moves when the stack grows: the listener gets a copy that stays.
        auto* shown = static_cast<Package*>(m_arena->allocate(sizeof(Package), alignof(Package)));
        std::memcpy(static_cast<void*>(shown), static_cast<const void*>(node), sizeof(Package));
        m_listener->element(static_cast<int>(first - 1 - m_frames[m_depth - 1]), shown);
    } else if (m_depth == m_listened_depth - 1) {
        m_listened_depth = -1;
    }
}

bool PackageBuilder::end_container()
{
    size_t first = m_frames[--m_depth];
    size_t count = m_pending_count - first;
    if (count > INT_MAX)
        return fail("container with more than 2^31 elements", m_stream.Tell());
    // The container itself waits just below its children, unless it is the root.
    Package* node = m_depth == 0 ? &m_root : m_pending + first - 1;
    if (count) {
        Package* row = m_arena->makeRow(static_cast<uint32_t>(count));
        std::memcpy(static_cast<void*>(row), static_cast<const void*>(m_pending + first), count * sizeof(Package));
        node->m_value.nodes = row;
        node->m_in_row = true;
    }
    m_pending_count = first;
    if (m_listened_depth > 0)
        show_ended(node, first);
    return true;
}

bool PackageBuilder::end_number_row()
{
    constexpr int64_t exact = int64_t(1) << 53; // integers up to this size are exact as doubles
    size_t first = m_frames[m_depth - 1];
    size_t count = m_pending_count - first;
    if (count == 0 || count > Package::MAX_ROW_NUMBERS)
        return false;
    Package* node = m_depth == 1 ? &m_root : m_pending + first - 1;
    const Package* entries = m_pending + first;
    uint32_t integers = 0;
    for (size_t i = 0; i < count; ++i) {
        const Package& entry = entries[i];
        bool integer = entry.m_type == Package::INT;
        if (integer ? entry.m_value.i < -exact || entry.m_value.i > exact : entry.m_type != Package::DOUBLE)
            return false;
        if (entry.m_offset - node->m_offset > UINT16_MAX)
            return false;
        integers |= uint32_t(integer) << i;
    }
    double* numbers = m_arena->makeNumbers(static_cast<uint32_t>(count), integers);
    auto* distances = reinterpret_cast<uint16_t*>(numbers + count);
    for (size_t i = 0; i < count; ++i) {
        const Package& entry = entries[i];
        numbers[i] = entry.m_type == Package::INT ? static_cast<double>(entry.m_value.i) : entry.m_value.d;
        distances[i] = static_cast<uint16_t>(entry.m_offset - node->m_offset);
    }
    node->m_type = Package::NUMBERS;
    node->m_value.numbers = numbers;
    m_pending_count = first;
    --m_depth;
    if (m_listened_depth > 0)
        show_ended(node, first);
    return true;
}

bool PackageBuilder::StartObject() { return begin_container(Package::OBJECT); }
bool PackageBuilder::EndObject(rapidjson::SizeType) { return end_container(); }
bool PackageBuilder::StartArray() { return begin_container(Package::ARRAY); }
bool PackageBuilder::EndArray(rapidjson::SizeType) { return (m_number_rows && end_number_row()) || end_container(); }
