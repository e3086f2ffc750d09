#include "kit/jString.h"

#include <charconv>
#include <cstring>

namespace {

int textLength(const char* text)
{
    return text ? static_cast<int>(std::strlen(text)) : 0;
}

int findIn(const char* hay, int hayLength, const char* needle, int needleLength, int from)
{
    if (from < 0)
        from = 0;
    if (needleLength == 0)
        return from <= hayLength ? from : -1;
    for (int i = from; i + needleLength <= hayLength; ++i) {
        if (std::memcmp(hay + i, needle, static_cast<size_t>(needleLength)) == 0)
            return i;
    }
    return -1;
}

} // namespace

jString::jString(const char* text) { assign(text, textLength(text)); }
jString::jString(const char* text, int length) { assign(text, length); }
jString::jString(const jString& other) { assign(other.m_data, other.m_length); }

jString::jString(jString&& other) noexcept
    : m_data(other.m_data), m_length(other.m_length), m_capacity(other.m_capacity)
{
    other.m_data = nullptr;
    other.m_length = 0;
    other.m_capacity = 0;
}

jString::~jString()
{
    if (m_data) {
        memRemoveInfo(m_data, "kit/jString", __LINE__, "jString::release");
        jAllocator::get()->localFree(m_data);
    }
}

jString& jString::operator=(const jString& other)
{
    if (this != &other)
        assign(other.m_data, other.m_length);
    return *this;
}

jString& jString::operator=(jString&& other) noexcept
{
    if (this != &other) {
        std::swap(m_data, other.m_data);
        std::swap(m_length, other.m_length);
        std::swap(m_capacity, other.m_capacity);
    }
    return *this;
}

jString& jString::operator=(const char* text)
{
    if (text >= c_str() && text <= c_str() + m_length) { // assigning a piece of ourselves
        jString copy(text);
        return *this = std::move(copy);
    }
    assign(text, textLength(text));
    return *this;
}

const jString& jString::null()
{
    static const jString empty;
    return empty;
}

void jString::reserve(int capacity)
{
    if (capacity <= m_capacity)
        return;
    char* fresh = static_cast<char*>(jAllocator::get()->localAlloc(static_cast<size_t>(capacity)));
    memAddInfo(fresh, true, "kit/jString", __LINE__, "jString::reserve", static_cast<size_t>(capacity));
    if (m_data) {
        std::memcpy(fresh, m_data, static_cast<size_t>(m_length) + 1);
        memRemoveInfo(m_data, "kit/jString", __LINE__, "jString::reserve");
        jAllocator::get()->localFree(m_data);
    }
    m_data = fresh;
    m_capacity = capacity;
}

void jString::assign(const char* text, int length)
{
    if (length <= 0 || !text) {
        m_length = 0;
        if (m_data)
            m_data[0] = '\0';
        return;
    }
    reserve(length + 1);
    std::memmove(m_data, text, static_cast<size_t>(length));
    m_data[length] = '\0';
    m_length = length;
}

void jString::append(const char* text, int length)
{
    if (length <= 0)
        return;
    if (m_length + length + 1 > m_capacity) {
        jString joined;
        joined.reserve(m_length + length + 1);
        std::memcpy(joined.m_data, c_str(), static_cast<size_t>(m_length));
        std::memcpy(joined.m_data + m_length, text, static_cast<size_t>(length));
        joined.m_length = m_length + length;
        joined.m_data[joined.m_length] = '\0';
        *this = std::move(joined);
        return;
    }
    std::memcpy(m_data + m_length, text, static_cast<size_t>(length));
    m_length += length;
    m_data[m_length] = '\0';
}

int jString::find(const char* text, int from) const
{
    return findIn(c_str(), m_length, text ? text : "", textLength(text), from);
}

int jString::rfind(const char* text) const
{
    if (!text)
        text = "";
    int n = textLength(text);
    if (n > m_length)
        return -1;
    for (int i = m_length - n; i >= 0; --i) {
        if (std::memcmp(c_str() + i, text, static_cast<size_t>(n)) == 0)
            return i;
    }
    return -1;
}

jString jString::substr(int from) const
{
    return substr(from, m_length);
}

jString jString::substr(int from, int count) const
{
    if (from < 0)
        from = 0;
    if (from >= m_length || count <= 0)
        return jString();
    if (count > m_length - from)
        count = m_length - from;
    return jString(c_str() + from, count);
}

jString jString::lower() const
{
    jString copy(*this);
    copy.lowerSelf();
    return copy;
}

void jString::lowerSelf()
{
    for (int i = 0; i < m_length; ++i) {
        if (m_data[i] >= 'A' && m_data[i] <= 'Z')
            m_data[i] = static_cast<char>(m_data[i] - 'A' + 'a');
    }
}

bool jString::contain(const jString& other) const
{
    return findIn(c_str(), m_length, other.c_str(), other.m_length, 0) >= 0;
}

int jString::splitSelf(char separator, jVector<jString>& parts, bool keepEmpty) const
{
    int added = 0;
    int start = 0;
    for (int i = 0; i <= m_length; ++i) {
        if (i < m_length && m_data[i] != separator)
            continue;
        if (keepEmpty || i > start) {
            parts.append(jString(c_str() + start, i - start));
            ++added;
        }
        start = i + 1;
    }
    return added;
}

jString jString::baseName() const
{
    int slash = rfind("/");
    int backslash = rfind("\\");
    int nameStart = (slash > backslash ? slash : backslash) + 1;
    jString name = substr(nameStart);
    int dot = name.rfind(".");
    return dot > 0 ? name.substr(0, dot) : name;
}

jString jString::dirName() const
{
    int slash = rfind("/");
    int backslash = rfind("\\");
    int cut = slash > backslash ? slash : backslash;
    return cut < 0 ? jString() : substr(0, cut);
}

jString jString::operator+(const char* text) const
{
    jString joined(*this);
    joined.append(text, textLength(text));
    return joined;
}

jString jString::operator+(const jString& other) const
{
    jString joined(*this);
    joined.append(other.c_str(), other.m_length);
    return joined;
}

jString& jString::operator+=(const char* text)
{
    append(text, textLength(text));
    return *this;
}

jString& jString::operator+=(const jString& other)
{
    append(other.c_str(), other.m_length);
    return *this;
}

jString& jString::operator+=(char c)
{
    append(&c, 1);
    return *this;
}

bool jString::operator==(const jString& other) const
{
    return m_length == other.m_length &&
           std::memcmp(c_str(), other.c_str(), static_cast<size_t>(m_length)) == 0;
}

bool jString::operator==(const char* text) const
{
    return m_length == textLength(text) && std::memcmp(c_str(), text ? text : "", static_cast<size_t>(m_length)) == 0;
}

bool jString::operator<(const jString& other) const
{
    int n = m_length < other.m_length ? m_length : other.m_length;
    int c = std::memcmp(c_str(), other.c_str(), static_cast<size_t>(n));
    return c != 0 ? c < 0 : m_length < other.m_length;
}

jString operator+(const char* text, const jString& s)
{
    return jString(text) + s;
}

jString ToString(float value)
{
    char buffer[32];
    auto result = std::to_chars(buffer, buffer + sizeof(buffer), value);
    return jString(buffer, static_cast<int>(result.ptr - buffer));
}
