#pragma once

#include <new>
#include <type_traits>
#include <utility>

#include "kit/jAllocator.h"

// A growable array indexed by int. Appending to a full vector doubles its capacity, taking 5 as the
// capacity when it is 0 or less, so an empty vector first grows to 10. The storage is registered
// with the allocation registry. A vector may start on an external buffer that it never frees; it
// moves to its own storage the first time it grows.
template <class T>
class jVector {
public:
    enum Type { OWNED = 0, EXTERNAL = 1 };

    jVector() = default;
    // Uses buffer (room for capacity elements, none constructed) until the vector has to grow.
    jVector(T* buffer, int capacity)
        : m_type(EXTERNAL), m_external(true), m_capacity(capacity), m_data(buffer)
    {
    }
    jVector(const jVector& other) { copyFrom(other); }
    jVector(jVector&& other) noexcept { takeFrom(other); }
    virtual ~jVector() { release(); }

    jVector& operator=(const jVector& other)
    {
        if (this != &other) {
            release();
            copyFrom(other);
        }
        return *this;
    }
    jVector& operator=(jVector&& other) noexcept
    {
        if (this != &other) {
            release();
            takeFrom(other);
        }
        return *this;
    }

    // Appends a copy of value; grows the storage by the doubling rule when full.
    virtual void append(const T& value)
    {
        if (m_count == m_capacity) {
            T copy(value); // value may live inside the storage that grow() frees
            grow();
            new (m_data + m_count) T(std::move(copy));
        } else {
            new (m_data + m_count) T(value);
        }
        ++m_count;
    }
    virtual void append(T&& value)
    {
        if (m_count == m_capacity) {
            T moved(std::move(value));
            grow();
            new (m_data + m_count) T(std::move(moved));
        } else {
            new (m_data + m_count) T(std::move(value));
        }
        ++m_count;
    }
    // Inserts value before index (0..size); an index out of range appends.
    virtual void insert(int index, const T& value)
    {
        if (index < 0 || index >= m_count) {
            append(value);
            return;
        }
        append(value);
        for (int i = m_count - 1; i > index; --i)
            std::swap(m_data[i], m_data[i - 1]);
    }
    // Removes the element at index, keeping the order of the rest; returns false when out of range.
    virtual bool remove(int index)
    {
        if (index < 0 || index >= m_count)
            return false;
        for (int i = index; i + 1 < m_count; ++i)
            m_data[i] = std::move(m_data[i + 1]);
        --m_count;
        m_data[m_count].~T();
        return true;
    }
    // Removes the first element equal to value; returns whether one was found.
    bool removeValue(const T& value) { return remove(find(value)); }
    // Returns the index of the first element equal to value, or -1.
    int find(const T& value) const
    {
        for (int i = 0; i < m_count; ++i) {
            if (m_data[i] == value)
                return i;
        }
        return -1;
    }
    bool contains(const T& value) const { return find(value) >= 0; }

    // Makes the capacity exactly n when n exceeds the count; the elements are kept.
    virtual void reserve(int n)
    {
        if (n <= m_count || n == m_capacity)
            return;
        reallocate(n);
    }
    // Destroys the elements and keeps the storage.
    virtual void clear()
    {
        for (int i = 0; i < m_count; ++i)
            m_data[i].~T();
        m_count = 0;
    }
    // Destroys the elements and frees the storage; the count and capacity become 0.
    virtual void release()
    {
        clear();
        freeStorage();
        m_data = nullptr;
        m_capacity = 0;
        m_external = false;
        m_type = OWNED;
    }

    int size() const { return m_count; }
    int getCount() const { return m_count; }
    int capacity() const { return m_capacity; }
    bool empty() const { return m_count == 0; }
    bool isExternal() const { return m_external; }
    int type() const { return m_type; }

    T& operator[](int i) { return m_data[i]; }
    const T& operator[](int i) const { return m_data[i]; }
    T& back() { return m_data[m_count - 1]; }
    const T& back() const { return m_data[m_count - 1]; }
    T* data() { return m_data; }
    const T* data() const { return m_data; }
    T* begin() { return m_data; }
    T* end() { return m_data + m_count; }
    const T* begin() const { return m_data; }
    const T* end() const { return m_data + m_count; }

private:
    void grow() { reallocate(m_capacity <= 0 ? 10 : m_capacity * 2); }

    void reallocate(int capacity)
    {
        T* fresh = static_cast<T*>(jAllocator::get()->localAlloc(sizeof(T) * static_cast<size_t>(capacity)));
        memAddInfo(fresh, true, "kit/jVector", __LINE__, "jVector::reserve", sizeof(T) * static_cast<size_t>(capacity));
        for (int i = 0; i < m_count; ++i) {
            new (fresh + i) T(std::move(m_data[i]));
            m_data[i].~T();
        }
        freeStorage();
        m_data = fresh;
        m_capacity = capacity;
        m_external = false;
        m_type = OWNED;
    }

    void freeStorage()
    {
        if (m_data && !m_external) {
            memRemoveInfo(m_data, "kit/jVector", __LINE__, "jVector::release");
            jAllocator::get()->localFree(m_data);
        }
    }

    void copyFrom(const jVector& other)
    {
        if (other.m_count > 0)
            reallocate(other.m_count);
        for (int i = 0; i < other.m_count; ++i)
            new (m_data + i) T(other.m_data[i]);
        m_count = other.m_count;
    }

    void takeFrom(jVector& other)
    {
        if (other.m_external) { // an external buffer stays with its owner
            copyFrom(other);
            other.clear();
            return;
        }
        m_data = other.m_data;
        m_count = other.m_count;
        m_capacity = other.m_capacity;
        other.m_data = nullptr;
        other.m_count = 0;
        other.m_capacity = 0;
    }

    int m_type = OWNED;
    bool m_external = false;
    int m_count = 0;
    int m_capacity = 0;
    T* m_data = nullptr;
};
