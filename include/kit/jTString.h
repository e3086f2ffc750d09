#pragma once

#include <cstring>
#include <utility>

#include "kit/jAllocator.h"
#include "kit/jString.h"

// A string that keeps up to N-1 characters (and the terminating zero) in an inline buffer, so the
// usual short names cost no allocation. A longer text moves it to an allocated, registered buffer
// whose capacity is exactly the new length plus one; it stays there until the string goes.
template <int N>
class jTString {
    static_assert(N > 0, "the inline buffer needs room for the terminating zero");

public:
    jTString() { m_inline[0] = '\0'; }
    jTString(const char* text) : jTString() { assign(text); }
    jTString(const jString& text) : jTString() { assign(text); }
    jTString(const jTString& other) : jTString() { set_text(other.c_str(), other.m_length); }
    jTString(jTString&& other) noexcept : jTString() { take_from(other); }
    ~jTString() { free_buffer(); }

    jTString& operator=(const jTString& other)
    {
        if (this != &other)
            set_text(other.c_str(), other.m_length);
        return *this;
    }
    jTString& operator=(jTString&& other) noexcept
    {
        if (this != &other)
            take_from(other);
        return *this;
    }
    jTString& operator=(const char* text)
    {
        assign(text);
        return *this;
    }
    jTString& operator=(const jString& text)
    {
        assign(text);
        return *this;
    }

    // Replaces the text (null counts as empty); a text of N characters or more moves it to the heap.
    void assign(const char* text) { set_text(text, text_length(text)); }
    void assign(const jString& text) { set_text(text.c_str(), text.length()); }

    // Adds text at the end.
    void append(const char* text) { insert_text(m_length, text, text_length(text)); }
    void append(const jString& text) { insert_text(m_length, text.c_str(), text.length()); }
    jTString& operator+=(const char* text)
    {
        append(text);
        return *this;
    }
    jTString& operator+=(const jString& text)
    {
        append(text);
        return *this;
    }

    // Adds text at the front, as when a dotted name is built from the leaf up to the root.
    void prepend(const char* text) { insert_text(0, text, text_length(text)); }
    void prepend(const jString& text) { insert_text(0, text.c_str(), text.length()); }

    const char* c_str() const { return m_data; }
    int length() const { return m_length; }
    bool empty() const { return m_length == 0; }
    // Returns how many bytes the current buffer holds, the terminating zero included.
    int capacity() const { return m_capacity; }
    // Returns whether the text still lives in the inline buffer.
    bool isInline() const { return m_data == m_inline; }

    jString toString() const { return jString(m_data, m_length); }
    operator jString() const { return toString(); }

private:
    static int text_length(const char* text) { return text ? static_cast<int>(std::strlen(text)) : 0; }

    bool owns_bytes(const char* text) const { return text >= m_data && text < m_data + m_capacity; }

    void set_text(const char* text, int length)
    {
        if (length + 1 > m_capacity) {
            char* fresh = allocate(length + 1);
            std::memcpy(fresh, text, static_cast<size_t>(length));
            adopt(fresh, length + 1);
        } else if (length > 0) {
            std::memmove(m_data, text, static_cast<size_t>(length));
        }
        m_length = length;
        m_data[m_length] = '\0';
    }

    // Inserts length bytes of text at position at (0 or the end).
    void insert_text(int at, const char* text, int length)
    {
        if (length <= 0)
            return;
        if (owns_bytes(text)) { // the bytes would move under our feet
            jTString copy(*this);
            insert_text(at, copy.c_str() + (text - m_data), length);
            return;
        }
        int total = m_length + length;
        if (total + 1 > m_capacity) {
            char* fresh = allocate(total + 1);
            std::memcpy(fresh, m_data, static_cast<size_t>(at));
            std::memcpy(fresh + at + length, m_data + at, static_cast<size_t>(m_length - at));
            adopt(fresh, total + 1);
        } else {
            std::memmove(m_data + at + length, m_data + at, static_cast<size_t>(m_length - at));
        }
        std::memcpy(m_data + at, text, static_cast<size_t>(length));
        m_length = total;
        m_data[m_length] = '\0';
    }

    static char* allocate(int size)
    {
        char* buffer = static_cast<char*>(jAllocator::get()->localAlloc(static_cast<size_t>(size)));
        memAddInfo(buffer, true, "kit/jTString", __LINE__, "jTString::reserve", static_cast<size_t>(size));
        return buffer;
    }

    void adopt(char* buffer, int capacity)
    {
        free_buffer();
        m_data = buffer;
        m_capacity = capacity;
    }

    void free_buffer()
    {
        if (isInline())
            return;
        memRemoveInfo(m_data, "kit/jTString", __LINE__, "jTString::release");
        jAllocator::get()->localFree(m_data);
        m_data = m_inline;
        m_capacity = N;
    }

    void take_from(jTString& other)
    {
        if (other.isInline()) {
            set_text(other.m_data, other.m_length);
            return;
        }
        free_buffer();
        m_data = std::exchange(other.m_data, other.m_inline);
        m_capacity = std::exchange(other.m_capacity, N);
        m_length = std::exchange(other.m_length, 0);
        other.m_inline[0] = '\0';
    }

    char m_inline[N];
    char* m_data = m_inline;
    int m_length = 0;
    int m_capacity = N;
};
