#pragma once

#include "kit/jVector.h"

// An owned, null-terminated text string. Positions and lengths are ints; a search that finds
// nothing returns -1. The heap buffer is registered with the allocation registry.
class jString {
public:
    jString() = default;
    jString(const char* text);
    jString(const char* text, int length);
    jString(const jString& other);
    jString(jString&& other) noexcept;
    ~jString();

    jString& operator=(const jString& other);
    jString& operator=(jString&& other) noexcept;
    jString& operator=(const char* text);

    // Returns the shared empty string.
    static const jString& null();

    const char* c_str() const { return m_data ? m_data : ""; }
    int length() const { return m_length; }
    bool empty() const { return m_length == 0; }
    bool nempty() const { return m_length != 0; }

    // Returns the position of the first occurrence of text at or after from, or -1.
    int find(const char* text, int from = 0) const;
    // Returns the position of the last occurrence of text, or -1.
    int rfind(const char* text) const;
    // Returns the text from position from to the end; empty when from is past the end.
    jString substr(int from) const;
    // Returns at most count characters from position from.
    jString substr(int from, int count) const;
    // Returns a lower-case copy (ASCII letters only; other bytes are kept).
    jString lower() const;
    // Turns this string to lower case in place.
    void lowerSelf();
    // Returns whether other occurs in this string (the empty string occurs everywhere).
    bool contain(const jString& other) const;
    // Appends the parts of this string between separators to parts, in order; returns how many
    // were appended. With keepEmpty false, empty parts (from doubled or edge separators) are skipped.
    int splitSelf(char separator, jVector<jString>& parts, bool keepEmpty) const;

    // Returns the file name of a path without its directory and its last extension
    // ("data/walk.anim" gives "walk").
    jString baseName() const;
    // Returns the directory of a path without the trailing separator ("data/walk.anim" gives
    // "data"); empty when the path has no directory.
    jString dirName() const;

    jString operator+(const char* text) const;
    jString operator+(const jString& other) const;
    jString& operator+=(const char* text);
    jString& operator+=(const jString& other);
    jString& operator+=(char c);

    bool operator==(const jString& other) const;
    bool operator==(const char* text) const;
    bool operator!=(const jString& other) const { return !(*this == other); }
    bool operator!=(const char* text) const { return !(*this == text); }
    // Byte-wise order, shorter first when one is a prefix of the other.
    bool operator<(const jString& other) const;

private:
    void assign(const char* text, int length);
    void append(const char* text, int length);
    void reserve(int capacity);

    char* m_data = nullptr;
    int m_length = 0;
    int m_capacity = 0;
};

jString operator+(const char* text, const jString& s);

// Returns the shortest text that reads back as the same float ("0.1", "2", "-1.5e-07").
jString ToString(float value);
